// Many timers on one loop, in the manner of each implementation: our DelayClients, Asio's
// steady_timers and libuv's uv_timer_t handles. A set is made on the benchmark's thread and used
// on its loop's thread only; every timer that goes off tells the round (TimerRound::Fire).
//
// A set arms a timer to go off a number of milliseconds after the round's origin (Begin), arms it
// again for another time, or cancels it, each in its implementation's own way.
#pragma once

#include "event_loops.h"

#include <zel/sched/delay_client.h>
#include <zel/time/nano_time.h>

#include <uv.h>
#include <boost/asio/steady_timer.hpp>

#include <chrono>
#include <cstdint>
#include <vector>

namespace zel::bench {

// What one round of timers expects and what went off. Touched on the loop's thread; read by the
// benchmark's thread once `done` has opened.
struct TimerRound {
  // Expects `count` timers to go off, the others being cancelled.
  void Reset(int count, int timers) {
    left = count;
    fires.assign(static_cast<size_t>(timers), 0);
    done.Reset();
  }
  void Fire(int timer) {
    ++fires[static_cast<size_t>(timer)];
    if (--left == 0) {
      cpu_end = ThreadCpuSeconds();
      done.Open();
    }
  }

  int left = 0;
  std::vector<uint8_t> fires;  // per timer, how often it went off
  double cpu_start = 0;        // the loop thread's CPU time as the round began and ended
  double cpu_end = 0;
  Latch done;
};

// Our clients, on the Scheduler of a ZelLoop. The Scheduler takes delays from now, so the time
// that has passed since the origin is taken off.
class ZelTimers {
 public:
  ZelTimers(ZelLoop &loop, TimerRound &round, int count)
      : scheduler_(loop.scheduler()), clients_(static_cast<size_t>(count)) {
    for (int i = 0; i < count; ++i) clients_[static_cast<size_t>(i)].Bind(&round, i);
  }

  void Begin() { origin_ = GetAbsTimer(); }
  void Arm(int timer, int ms) {
    const double delay = origin_ + ms / 1000.0 - GetAbsTimer();
    clients_[static_cast<size_t>(timer)].Schedule(scheduler_, static_cast<float>(delay));
  }
  void Cancel(int timer) { clients_[static_cast<size_t>(timer)].Deschedule(); }

 private:
  class Client : public DelayClient {
   public:
    void Bind(TimerRound *round, int index) {
      round_ = round;
      index_ = index;
    }
    bool Callback() override {
      round_->Fire(index_);
      return false;
    }

   private:
    TimerRound *round_ = nullptr;
    int index_ = 0;
  };

  Scheduler *scheduler_;
  std::vector<Client> clients_;
  double origin_ = 0;
};

// steady_timers on the io_context of an AsioLoop. Re-arming or cancelling a waiting timer calls
// its handler with operation_aborted, which the handler passes over.
class AsioTimers {
 public:
  AsioTimers(AsioLoop &loop, TimerRound &round, int count) : loop_(loop), round_(round) {
    timers_.reserve(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i) timers_.emplace_back(loop.context());
  }
  ~AsioTimers() {
    RunOn(loop_, [this] { timers_.clear(); });
  }

  void Begin() { origin_ = std::chrono::steady_clock::now(); }
  void Arm(int timer, int ms) {
    boost::asio::steady_timer &t = timers_[static_cast<size_t>(timer)];
    t.expires_at(origin_ + std::chrono::milliseconds(ms));
    t.async_wait([this, timer](const boost::system::error_code &error) {
      if (!error) round_.Fire(timer);
    });
  }
  void Cancel(int timer) { timers_[static_cast<size_t>(timer)].cancel(); }

 private:
  AsioLoop &loop_;
  TimerRound &round_;
  std::vector<boost::asio::steady_timer> timers_;
  std::chrono::steady_clock::time_point origin_;
};

// uv_timer_t handles on the loop of a UvLoop, opened and closed on the loop's thread. libuv
// counts a timer's timeout from the loop's cached time, which Begin brings up to now.
class UvTimers {
 public:
  UvTimers(UvLoop &loop, TimerRound &round, int count)
      : loop_(loop), round_(round), timers_(static_cast<size_t>(count)) {
    RunOn(loop_, [this] {
      for (uv_timer_t &t : timers_) {
        uv_timer_init(loop_.loop(), &t);
        t.data = this;
      }
    });
  }
  ~UvTimers() {
    RunOn(loop_, [this] {
      for (uv_timer_t &t : timers_) uv_close(reinterpret_cast<uv_handle_t *>(&t), &Closed);
    });
    closed_.Wait();
  }

  void Begin() { uv_update_time(loop_.loop()); }
  void Arm(int timer, int ms) {
    uv_timer_start(&timers_[static_cast<size_t>(timer)], &Fired, static_cast<uint64_t>(ms), 0);
  }
  void Cancel(int timer) { uv_timer_stop(&timers_[static_cast<size_t>(timer)]); }

 private:
  static void Fired(uv_timer_t *t) {
    auto *self = static_cast<UvTimers *>(t->data);
    self->round_.Fire(static_cast<int>(t - self->timers_.data()));
  }
  // The memory of a handle may go only after its close callback has run.
  static void Closed(uv_handle_t *t) {
    auto *self = static_cast<UvTimers *>(t->data);
    if (++self->closed_count_ == self->timers_.size()) self->closed_.Open();
  }

  UvLoop &loop_;
  TimerRound &round_;
  std::vector<uv_timer_t> timers_;
  size_t closed_count_ = 0;  // the loop's thread
  Latch closed_;
};

}  // namespace zel::bench
