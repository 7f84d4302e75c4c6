// WorkThread: a thread that runs a Scheduler of its own.
#pragma once

#include <zel/sched/scheduler.h>
#include <zel/thread/thread.h>

namespace zel {

// A thread with its own Scheduler, which other threads hand work to (Schedule, QueueCall). The
// Scheduler, named as the thread, is a tracked object that depends on the root and deletes itself
// once deactivated (once the WorkThread lets go of it too); Start activates it, and deactivating
// it (directly, or as the tracked objects shut down) ends the thread. A stopped Scheduler stays
// stopped: a WorkThread runs its Scheduler once.
//
//   WorkThread worker("indexer");
//   worker.Start();
//   client.Schedule(worker.GetScheduler(), 0.5f);
//   ...
//   worker.GetScheduler()->RequestDeactivate();   // or let the destructor do it
class ZEL_API WorkThread : public SchedulerHost {
 public:
  WorkThread();
  explicit WorkThread(const strptr &name);
  // Asks the Scheduler to deactivate, then waits for the thread to end.
  ~WorkThread() override;
  WorkThread(const WorkThread &) = delete;
  WorkThread &operator=(const WorkThread &) = delete;

  // Reaps a thread that has ended, then activates the Scheduler and starts the thread unless one
  // runs; true when one runs.
  bool Start();
  // Sets the thread's priority (-2 lowest to 2 highest), then logs "<name>: Thread priority set
  // to " and "lowest", "low", "normal", "high", "highest" (or "..." for another value), when the
  // log has a listener, also when the system refused (intended). False when it refused.
  bool SetPriority(int priority);

  Scheduler *GetScheduler() const { return scheduler_.get(); }
  // The thread: wait on it to see the WorkThread end.
  Thread &GetThread() { return thread_; }

 protected:
  // Called first on the new thread; false skips the work. True in the base.
  virtual bool OnInit();
  // Called again and again while it returns true. The base runs the Scheduler's loop until the
  // Scheduler stops, and returns false.
  virtual bool DoWork();
  // Called last on the thread, after the Scheduler has deactivated. Nothing in the base.
  virtual void OnExit();

 private:
  // The Scheduler goes away: nothing to do, since the WorkThread's own reference keeps it until
  // the WorkThread goes.
  void OnSchedulerDying(Scheduler *scheduler) override;
  static void Body(void *self);

  safeptr<Scheduler> scheduler_;
  Thread thread_;
};

}  // namespace zel
