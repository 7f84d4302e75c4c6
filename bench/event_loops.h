// Three event loops, each running on a thread of its own, that other threads hand plain calls to:
// our Scheduler (QueueCall), a Boost.Asio io_context (post), and a libuv loop, which has no call
// queue of its own: a mutex-locked queue of calls that an async handle drains, as libuv programs
// carry work between threads. All three run their thread until they go.
#pragma once

#include <zel/sched/scheduler.h>

#include <uv.h>
#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/post.hpp>

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <mutex>
#include <thread>
#include <vector>

namespace zel::bench {

// A signal from one thread to another. The wait is bounded, so that a lost call fails the
// benchmark instead of hanging it.
class Latch {
 public:
  void Open() {
    std::lock_guard hold(mutex_);
    open_ = true;
    // Under the lock: the waiter may destroy the latch as soon as it has woken.
    opened_.notify_one();
  }
  // True once opened; false when `limit` passed first.
  bool Wait(std::chrono::milliseconds limit = std::chrono::seconds(30)) {
    std::unique_lock hold(mutex_);
    return opened_.wait_for(hold, limit, [this] { return open_; });
  }
  void Reset() {
    std::lock_guard hold(mutex_);
    open_ = false;
  }

 private:
  std::mutex mutex_;
  std::condition_variable opened_;
  bool open_ = false;
};

// Runs `work` on the loop's thread and waits until it has returned. Setting up and tearing down
// cannot go on without the loop, so a loop that does not answer ends the program.
template <typename Loop, typename Work>
void RunOn(Loop &loop, Work work) {
  struct Job {
    Work *work;
    Latch done;
  } job{&work, {}};
  loop.Post(
      [](uintptr_t p) {
        auto *j = reinterpret_cast<Job *>(p);
        (*j->work)();
        j->done.Open();
      },
      reinterpret_cast<uintptr_t>(&job));
  if (!job.done.Wait()) {
    std::fputs("sched_bench: the loop did not run a call within 30 s\n", stderr);
    std::abort();
  }
}

// The CPU time of the calling thread, in seconds.
inline double ThreadCpuSeconds() {
  timespec now;
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

// Our Scheduler, in its loop (Run) on a thread of its own.
class ZelLoop {
 public:
  ZelLoop()
      : scheduler_(CreateScheduler("bench loop", nullptr, true, nullptr)), thread_([this] {
          SetThreadLocalScheduler(scheduler_.get());
          scheduler_->Run();
        }) {}
  ~ZelLoop() {
    scheduler_->Stop();
    thread_.join();
  }
  ZelLoop(const ZelLoop &) = delete;
  ZelLoop &operator=(const ZelLoop &) = delete;

  void Post(SchedulerCall routine, uintptr_t argument) { scheduler_->QueueCall(routine, argument); }
  Scheduler *scheduler() const { return scheduler_.get(); }

 private:
  safeptr<Scheduler> scheduler_;
  std::thread thread_;
};

// An io_context run by one thread, kept running by a work guard while nothing is queued.
class AsioLoop {
 public:
  AsioLoop() : work_(boost::asio::make_work_guard(context_)), thread_([this] { context_.run(); }) {}
  ~AsioLoop() {
    work_.reset();
    thread_.join();
  }
  AsioLoop(const AsioLoop &) = delete;
  AsioLoop &operator=(const AsioLoop &) = delete;

  void Post(SchedulerCall routine, uintptr_t argument) {
    boost::asio::post(context_, [routine, argument] { routine(argument); });
  }
  boost::asio::io_context &context() { return context_; }

 private:
  boost::asio::io_context context_{1};  // the hint for a context one thread runs
  boost::asio::executor_work_guard<boost::asio::io_context::executor_type> work_;
  std::thread thread_;
};

// A libuv loop: posted calls go into a locked queue and uv_async_send wakes the loop, whose async
// callback takes the whole queue at once (libuv coalesces the sends that come meanwhile).
class UvLoop {
 public:
  UvLoop() {
    uv_loop_init(&loop_);
    uv_async_init(&loop_, &wake_, &UvLoop::Drain);
    wake_.data = this;
    thread_ = std::thread([this] { uv_run(&loop_, UV_RUN_DEFAULT); });
  }
  // Other handles opened on the loop must have been closed by then.
  ~UvLoop() {
    Post(&UvLoop::CloseWake, reinterpret_cast<uintptr_t>(this));
    thread_.join();
    uv_loop_close(&loop_);
  }
  UvLoop(const UvLoop &) = delete;
  UvLoop &operator=(const UvLoop &) = delete;

  void Post(SchedulerCall routine, uintptr_t argument) {
    {
      std::lock_guard hold(mutex_);
      queued_.push_back({routine, argument});
    }
    uv_async_send(&wake_);
  }
  uv_loop_t *loop() { return &loop_; }

 private:
  struct Call {
    SchedulerCall routine;
    uintptr_t argument;
  };

  static void Drain(uv_async_t *wake) {
    auto *self = static_cast<UvLoop *>(wake->data);
    {
      std::lock_guard hold(self->mutex_);
      self->running_.swap(self->queued_);  // both keep their capacity from round to round
    }
    for (const Call &call : self->running_) call.routine(call.argument);
    self->running_.clear();
  }
  // With its last handle closed, uv_run returns.
  static void CloseWake(uintptr_t self) {
    uv_close(reinterpret_cast<uv_handle_t *>(&reinterpret_cast<UvLoop *>(self)->wake_), nullptr);
  }

  uv_loop_t loop_;
  uv_async_t wake_;
  std::mutex mutex_;
  std::vector<Call> queued_;   // mutex_
  std::vector<Call> running_;  // the loop's thread
  std::thread thread_;
};

}  // namespace zel::bench
