// ExecuteInUIThread: calls carried to the user-interface thread, which runs the global Scheduler.
#include <zel/sched/scheduler.h>
#include <zel/sched/ui_thread.h>

#include "support/test_thread.h"

#include <gtest/gtest.h>

#include <atomic>

namespace zel {
namespace {

struct UiCall {
  void Run() {
    ++runs;
    thread = os::CurrentThreadId();
  }
  std::atomic<int> runs{0};
  std::atomic<uint32_t> thread{0};
};

TEST(ExecuteInUIThread, OnTheUIThreadTheHookRunsAtOnce) {
  ASSERT_EQ(GetUIThreadID(), static_cast<int>(os::CurrentThreadId()));  // the loading thread
  UiCall t;
  ExecuteInUIThread call(Hook0V::Of<&UiCall::Run>(&t));
  EXPECT_EQ(t.runs, 1);
  EXPECT_TRUE(call.Wait(0));
  EXPECT_FALSE(call.IsQueued());
}

TEST(ExecuteInUIThread, FromAnotherThreadItRunsWhenTheUIThreadRunsItsLoop) {
  UiCall t;
  std::atomic<bool> waited{false}, timed_out{false};
  test::TestThread worker([&] {
    ExecuteInUIThread call(Hook0V::Of<&UiCall::Run>(&t));
    timed_out = !call.Wait(0);  // the user-interface thread has not run its loop yet
    waited = call.Wait(ExecuteInUIThread::kNoLimit);
  });
  // The user-interface thread runs the global Scheduler's APCs in its alertable waits.
  for (int i = 0; i < 1000 && !waited; ++i) os::SleepEx(10, true);
  ASSERT_TRUE(worker.Join());
  EXPECT_TRUE(waited);
  EXPECT_EQ(t.runs, 1);
  EXPECT_EQ(t.thread, os::CurrentThreadId());
}

TEST(ExecuteInUIThread, WaitsTimeOutWhileNobodyRunsTheHook) {
  const int ui = GetUIThreadID();
  SetUIThreadID(-1);  // no thread is the user-interface thread now
  UiCall t;
  {
    ExecuteInUIThread call(Hook0V::Of<&UiCall::Run>(&t));
    EXPECT_FALSE(call.Wait(30));
    EXPECT_TRUE(call.IsQueued());
    call.Callback();  // what the global Scheduler would do
    EXPECT_TRUE(call.Wait(0));
  }
  SetUIThreadID(ui);
  EXPECT_EQ(GetGlobalScheduler()->ClientCount(), 0);  // the destructor left the queue
  EXPECT_EQ(t.runs, 1);
}

}  // namespace
}  // namespace zel
