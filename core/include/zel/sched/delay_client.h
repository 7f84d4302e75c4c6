// DelayClient, the base of everything a Scheduler calls, and CallbackClient, a client that keeps
// the Scheduler it runs on.
#pragma once

#include <zel/config.h>

#include <atomic>
#include <cstdint>

namespace zel {

class Scheduler;

// An object a Scheduler calls on its own thread, as soon as possible or after a delay. A client
// belongs to at most one Scheduler at a time: scheduling it on another first takes it out of the
// first. It is idle (not queued, no Scheduler), queued (in one Scheduler's queue), or running
// (taken out of the queue while its callback runs; a true result queues it again).
//
// The fields below the callback belong to the Scheduler, which changes them under its lock. A
// client must outlive its time in a queue: deschedule it before destroying it (the destructor
// does so, from any thread, and waits while its callback runs on another).
class ZEL_API DelayClient {
 public:
  DelayClient() = default;
  DelayClient(const DelayClient &) = delete;
  DelayClient &operator=(const DelayClient &) = delete;
  // Takes the client out of its Scheduler's queue.
  virtual ~DelayClient();

  // Called by the Scheduler on its thread. True asks to be called again after the delay (from
  // the start of the pass that called it, and never twice in one pass). The base returns false.
  virtual bool Callback();
  // Nothing in the base; for derived clients that need a second entry point.
  virtual void Notify();

  // Queues the client on `scheduler` as soon as possible / after `delay` seconds (see
  // Scheduler::Schedule); nothing when `scheduler` is null.
  void Schedule(Scheduler *scheduler);
  void Schedule(Scheduler *scheduler, float delay);
  // Takes the client out of its Scheduler's queue (see Scheduler::Deschedule); its Scheduler
  // becomes null.
  void Deschedule();

  // Is it in a queue now? Any thread; from others than the Scheduler's, a snapshot.
  bool IsQueued() const { return heap_index_.load(std::memory_order_acquire) >= 0; }
  Scheduler *GetScheduler() const { return scheduler_.load(std::memory_order_acquire); }
  float GetDelay() const { return delay_; }
  // The absolute time (GetAbsTimer, seconds) it is due at, while queued. Read it on the
  // Scheduler's thread, or while no other thread schedules the client.
  double GetDueTime() const { return due_; }

 private:
  friend class Scheduler;
  friend class SchedulerQueue;

  double due_ = 0;
  std::atomic<int32_t> heap_index_{-1};  // changed under the Scheduler's lock
  // Read without a lock to find whose lock guards the rest; changed under that Scheduler's lock.
  std::atomic<Scheduler *> scheduler_{nullptr};
  float delay_ = 0;
  uint64_t sequence_ = 0;  // when it took its place in the queue: first come, first called
};

// A client that keeps the Scheduler it is to run on.
class ZEL_API CallbackClient : public DelayClient {
 public:
  explicit CallbackClient(Scheduler *home = nullptr) : home_(home) {}

  using DelayClient::Schedule;
  Scheduler *GetHome() const { return home_; }
  void SetHome(Scheduler *home) { home_ = home; }
  // Queues the client on its kept Scheduler after `delay` seconds (0: as soon as possible);
  // nothing when it keeps none.
  void Schedule(float delay);

 private:
  Scheduler *home_;
};

}  // namespace zel
