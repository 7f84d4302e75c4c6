// Events, semaphores and the wait functions, with the Windows semantics on every platform.
#include "os/os.h"
#include "support/test_thread.h"

namespace zel::os {
namespace {

using test::TestHandle;

TEST(Event, ManualResetStaysSetAutoResetReleasesOneWait) {
  TestHandle manual(CreateEvent(true, false)), automatic(CreateEvent(false, true));

  EXPECT_EQ(WaitOne(manual, 0, false), kWaitTimeout);
  EXPECT_TRUE(SetEvent(manual));
  EXPECT_EQ(WaitOne(manual, 0, false), kWaitObject0);
  EXPECT_EQ(WaitOne(manual, 0, false), kWaitObject0);
  EXPECT_TRUE(ResetEvent(manual));
  EXPECT_EQ(WaitOne(manual, 0, false), kWaitTimeout);

  EXPECT_EQ(WaitOne(automatic, 0, false), kWaitObject0);  // created set
  EXPECT_EQ(WaitOne(automatic, 0, false), kWaitTimeout);
}

TEST(Event, PulseReleasesOnlyThreadsAlreadyWaiting) {
  TestHandle manual(CreateEvent(true, false)), waiting(CreateEvent(true, false));

  // Nobody waits: a pulse leaves nothing behind.
  EXPECT_TRUE(PulseEvent(manual));
  EXPECT_EQ(WaitOne(manual, 0, false), kWaitTimeout);

  test::TestThread waiter([&] {
    SetEvent(waiting);
    EXPECT_EQ(WaitOne(manual, 10000, false), kWaitObject0);
  });
  ASSERT_EQ(WaitOne(waiting, 10000, false), kWaitObject0);
  // The waiter may not be asleep yet; pulse until it has been released.
  while (!waiter.Join(1)) PulseEvent(manual);
  EXPECT_EQ(WaitOne(manual, 0, false), kWaitTimeout);
}

TEST(Semaphore, CountsAndRefusesToPassItsMaximum) {
  TestHandle s(CreateSemaphore(1, 3));
  int32_t previous = -1;
  EXPECT_TRUE(ReleaseSemaphore(s, 2, &previous));
  EXPECT_EQ(previous, 1);
  EXPECT_FALSE(ReleaseSemaphore(s, 1, &previous));  // 3 + 1 > 3: nothing changes
  EXPECT_NE(LastError(), 0u);
  for (int i = 0; i < 3; ++i) EXPECT_EQ(WaitOne(s, 0, false), kWaitObject0) << i;
  EXPECT_EQ(WaitOne(s, 0, false), kWaitTimeout);
}

TEST(Wait, AnyTakesTheLowestSignalledObjectOnlyAndAllTakesEveryObjectOrNone) {
  TestHandle a(CreateEvent(false, false)), b(CreateEvent(false, true)), c(CreateEvent(false, true));
  Handle all[] = {a, b, c};
  EXPECT_EQ(WaitMany(3, all, false, 0, false), kWaitObject0 + 1);
  EXPECT_EQ(WaitMany(3, all, false, 0, false), kWaitObject0 + 2);
  EXPECT_EQ(WaitMany(3, all, false, 0, false), kWaitTimeout);

  TestHandle e(CreateEvent(false, true)), s(CreateSemaphore(0, 5));
  Handle both[] = {e, s};
  EXPECT_EQ(WaitMany(2, both, true, 0, false), kWaitTimeout);
  EXPECT_EQ(WaitOne(e, 0, false), kWaitObject0);  // the event was not consumed by the failed wait
  SetEvent(e);
  ReleaseSemaphore(s, 1, nullptr);
  EXPECT_EQ(WaitMany(2, both, true, 0, false), kWaitObject0);
  EXPECT_EQ(WaitOne(e, 0, false), kWaitTimeout);
  EXPECT_EQ(WaitOne(s, 0, false), kWaitTimeout);
}

TEST(Wait, RefusesWhatIsNotAHandle) {
  TestHandle e(CreateEvent(true, true));
  EXPECT_EQ(WaitOne(nullptr, 0, false), kWaitFailed);
  Handle twice[] = {e, e};
  EXPECT_EQ(WaitMany(0, twice, false, 0, false), kWaitFailed);
  EXPECT_EQ(WaitMany(2, twice, false, 0, false), kWaitObject0);  // wait-any accepts a repeat
  EXPECT_FALSE(CloseHandle(nullptr));
  EXPECT_FALSE(SetEvent(nullptr));
}

TEST(Wait, TimesOutWhenNothingHappens) {
  TestHandle e(CreateEvent(true, false));
  int64_t start = PerfCounter();
  EXPECT_EQ(WaitOne(e, 30, false), kWaitTimeout);
  // Never early: the time-out has passed when the wait returns.
  EXPECT_GE(PerfCounter() - start, PerfFrequency() * 30 / 1000 - PerfFrequency() / 1000);
  EXPECT_EQ(SleepEx(1, false), 0u);
}

}  // namespace
}  // namespace zel::os
