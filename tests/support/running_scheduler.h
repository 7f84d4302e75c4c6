// A Scheduler running its loop on a thread of its own, for tests.
#pragma once

#include <zel/sched/scheduler.h>

#include "support/test_thread.h"

#include <memory>

namespace zel::test {

// Made attached to a new thread that runs Run; stopped and joined when it goes.
class RunningScheduler {
 public:
  explicit RunningScheduler(const char *name)
      : scheduler_(CreateScheduler(name, nullptr, true, nullptr)) {
    thread_ = std::make_unique<TestThread>([this] {
      SetThreadLocalScheduler(scheduler_.get());
      attached_.Set();
      scheduler_->Run();
    });
    EXPECT_TRUE(attached_.Wait());
  }
  ~RunningScheduler() {
    scheduler_->Stop();
    EXPECT_TRUE(thread_->Join());
  }
  RunningScheduler(const RunningScheduler &) = delete;
  RunningScheduler &operator=(const RunningScheduler &) = delete;

  Scheduler *operator->() const { return scheduler_.get(); }
  Scheduler *get() const { return scheduler_.get(); }
  uint32_t thread_id() const { return thread_->id(); }
  // Waits for the thread to end (after a stop); true when it has.
  bool Join() { return thread_->Join(); }

 private:
  safeptr<Scheduler> scheduler_;
  TestEvent attached_;
  std::unique_ptr<TestThread> thread_;
};

}  // namespace zel::test
