// Waitable timers: due times, periods, reset modes and completion routines on the arming thread.
#include "os/os.h"
#include "support/test_thread.h"

#include <atomic>

namespace zel::os {
namespace {

constexpr int64_t kMs = -10000;  // one millisecond, relative, in 100-ns units

struct Timer {
  explicit Timer(bool manual_reset) : handle(CreateWaitableTimer(manual_reset)) {}
  ~Timer() { CloseHandle(handle); }
  Handle handle;
};

TEST(Timer, SignalsAtItsDueTimeNotBefore) {
  Timer t(false);
  ASSERT_TRUE(IsHandle(t.handle));
  EXPECT_EQ(WaitOne(t.handle, 0, false), kWaitTimeout);  // never armed
  ASSERT_TRUE(SetWaitableTimer(t.handle, 200 * kMs, 0, nullptr, nullptr));
  EXPECT_EQ(WaitOne(t.handle, 0, false), kWaitTimeout);
  EXPECT_EQ(WaitOne(t.handle, 10000, false), kWaitObject0);
  EXPECT_EQ(WaitOne(t.handle, 0, false), kWaitTimeout);  // auto-reset: consumed
}

TEST(Timer, ManualResetStaysSignalledUntilArmedAgain) {
  Timer t(true);
  ASSERT_TRUE(SetWaitableTimer(t.handle, kMs, 0, nullptr, nullptr));
  EXPECT_EQ(WaitOne(t.handle, 10000, false), kWaitObject0);
  EXPECT_EQ(WaitOne(t.handle, 0, false), kWaitObject0);
  ASSERT_TRUE(SetWaitableTimer(t.handle, 10000 * kMs, 0, nullptr, nullptr));
  EXPECT_EQ(WaitOne(t.handle, 0, false), kWaitTimeout);
}

TEST(Timer, AbsoluteDueTimeInThePastSignalsAtOnce) {
  Timer t(false);
  ASSERT_TRUE(SetWaitableTimer(t.handle, SystemTime100ns() - 10000000, 0, nullptr, nullptr));
  EXPECT_EQ(WaitOne(t.handle, 10000, false), kWaitObject0);
}

TEST(Timer, PeriodicTimerSignalsAgainAndCancelStopsIt) {
  Timer t(false);
  ASSERT_TRUE(SetWaitableTimer(t.handle, kMs, 5, nullptr, nullptr));
  for (int i = 0; i < 3; ++i) EXPECT_EQ(WaitOne(t.handle, 10000, false), kWaitObject0) << i;
  ASSERT_TRUE(CancelWaitableTimer(t.handle));
  WaitOne(t.handle, 0, false);  // a signal from just before the cancel may remain
  EXPECT_EQ(WaitOne(t.handle, 50, false), kWaitTimeout);
}

TEST(Timer, ArmingAgainMovesTheDueTimeOfAWaitInProgress) {
  Timer t(false);
  ASSERT_TRUE(SetWaitableTimer(t.handle, 1000000 * kMs, 0, nullptr, nullptr));
  test::TestEvent waiting;
  uint32_t result = 0;
  test::TestThread waiter([&] {
    waiting.Set();
    result = WaitOne(t.handle, 10000, false);
  });
  ASSERT_TRUE(waiting.Wait());
  ASSERT_TRUE(SetWaitableTimer(t.handle, 5 * kMs, 0, nullptr, nullptr));
  ASSERT_TRUE(waiter.Join());
  EXPECT_EQ(result, kWaitObject0);
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

TEST(Timer, CompletionRoutineRunsOnTheArmingThreadInAnAlertableWait) {
  Timer t(false);
  RoutineLog log;
  uint32_t armer = 0, result = 0;
  test::TestEvent armed;
  test::TestThread thread([&] {
    armer = CurrentThreadId();
    SetWaitableTimer(t.handle, 10 * kMs, 0, Completion, &log);
    armed.Set();
    result = SleepEx(10000, true);
  });
  ASSERT_TRUE(armed.Wait());
  // This thread sees the timer signalled, but the routine is the arming thread's.
  EXPECT_EQ(WaitOne(t.handle, 10000, false), kWaitObject0);
  ASSERT_TRUE(thread.Join());
  EXPECT_EQ(result, kWaitIoCompletion);
  EXPECT_EQ(log.calls, 1);
  EXPECT_EQ(log.thread, armer);
}

TEST(Timer, CompletionRoutineWaitsForAnAlertableWait) {
  Timer t(false);
  RoutineLog log;
  ASSERT_TRUE(SetWaitableTimer(t.handle, kMs, 0, Completion, &log));
  EXPECT_EQ(SleepEx(30, false), 0u);  // due meanwhile, but not alertable
  EXPECT_EQ(log.calls, 0);
  EXPECT_EQ(SleepEx(10000, true), kWaitIoCompletion);
  EXPECT_EQ(log.calls, 1);
  EXPECT_EQ(log.thread, CurrentThreadId());
}

TEST(Timer, PeriodicCompletionRoutineRunsEachPeriod) {
  Timer t(false);
  RoutineLog log;
  ASSERT_TRUE(SetWaitableTimer(t.handle, kMs, 2, Completion, &log));
  while (log.calls < 3) ASSERT_EQ(SleepEx(10000, true), kWaitIoCompletion);
  CancelWaitableTimer(t.handle);
  SleepEx(0, true);  // a last routine queued before the cancel may still run
  int calls = log.calls;
  EXPECT_EQ(SleepEx(20, true), 0u);
  EXPECT_EQ(log.calls, calls);
}

}  // namespace
}  // namespace zel::os
