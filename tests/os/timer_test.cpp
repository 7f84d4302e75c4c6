// Waitable timers: due times, periods, reset modes and completion routines on the arming thread.
#include "os/os.h"
#include "support/test_thread.h"

#include <atomic>

namespace zel::os {
namespace {

constexpr int64_t kMs = -10000;  // one millisecond, relative, in 100-ns units

using test::TestHandle;

TEST(Timer, SignalsAtItsDueTimeNotBeforeAndResetsByItsMode) {
  for (bool manual_reset : {false, true}) {
    TestHandle t(CreateWaitableTimer(manual_reset));
    EXPECT_EQ(WaitOne(t, 0, false), kWaitTimeout);  // never armed
    ASSERT_TRUE(SetWaitableTimer(t, 100 * kMs, 0, nullptr, nullptr));
    EXPECT_EQ(WaitOne(t, 0, false), kWaitTimeout);
    EXPECT_EQ(WaitOne(t, 10000, false), kWaitObject0);
    // Auto-reset: consumed; manual reset: signalled until armed again.
    EXPECT_EQ(WaitOne(t, 0, false), manual_reset ? kWaitObject0 : kWaitTimeout);
    ASSERT_TRUE(SetWaitableTimer(t, 10000 * kMs, 0, nullptr, nullptr));
    EXPECT_EQ(WaitOne(t, 0, false), kWaitTimeout);
    // An absolute due time in the past signals at once.
    ASSERT_TRUE(SetWaitableTimer(t, SystemTime100ns() - 10000000, 0, nullptr, nullptr));
    EXPECT_EQ(WaitOne(t, 10000, false), kWaitObject0);
  }
}

struct RoutineLog {
  std::atomic<int> calls{0};
  std::atomic<uint32_t> thread{0};
};

void ZEL_CALLBACK Completion(void *arg, uint32_t, uint32_t) {
  auto *log = static_cast<RoutineLog *>(arg);
  log->thread = CurrentThreadId();
  ++log->calls;
}

TEST(Timer, ArmingAgainMovesAWaitInProgressAndTheRoutineRunsOnTheArmingThread) {
  TestHandle t(CreateWaitableTimer(false));
  ASSERT_TRUE(SetWaitableTimer(t, 1000000 * kMs, 0, nullptr, nullptr));
  RoutineLog log;
  test::TestEvent waiting;
  test::TestThread thread([&] {
    waiting.Wait();
    SetWaitableTimer(t, 10 * kMs, 0, Completion, &log);
    EXPECT_EQ(SleepEx(10000, true), kWaitIoCompletion);
    EXPECT_EQ(log.thread, CurrentThreadId());
  });
  waiting.Set();
  EXPECT_EQ(WaitOne(t, 10000, false), kWaitObject0);
  ASSERT_TRUE(thread.Join());
  EXPECT_EQ(log.calls, 1);
}

TEST(Timer, PeriodicSignalsAndRoutinesRepeatUntilCancelled) {
  TestHandle t(CreateWaitableTimer(false));
  RoutineLog log;
  ASSERT_TRUE(SetWaitableTimer(t, kMs, 2, Completion, &log));
  for (int i = 0; i < 3; ++i) EXPECT_EQ(WaitOne(t, 10000, false), kWaitObject0) << i;
  EXPECT_EQ(SleepEx(10, false), 0u);
  EXPECT_EQ(log.calls, 0);  // due several times, but no alertable wait yet
  while (log.calls < 3) ASSERT_EQ(SleepEx(10000, true), kWaitIoCompletion);
  EXPECT_EQ(log.thread, CurrentThreadId());
  ASSERT_TRUE(CancelWaitableTimer(t));
  SleepEx(0, true);      // a last routine queued before the cancel may still run,
  WaitOne(t, 0, false);  // and a last signal remain
  int calls = log.calls;
  EXPECT_EQ(SleepEx(20, true), 0u);
  EXPECT_EQ(log.calls, calls);
  EXPECT_EQ(WaitOne(t, 0, false), kWaitTimeout);
}

}  // namespace
}  // namespace zel::os
