// Events, semaphores and the wait functions, with the Windows semantics on every platform.
#include "os/os.h"
#include "support/test_thread.h"

namespace zel::os {
namespace {

// Owns handles for a test.
struct Handles {
  std::vector<Handle> list;
  ~Handles() {
    for (Handle h : list) CloseHandle(h);
  }
  Handle Add(Handle h) {
    EXPECT_TRUE(IsHandle(h));
    list.push_back(h);
    return h;
  }
};

TEST(Event, ManualResetStaysSetAutoResetReleasesOneWait) {
  Handles h;
  Handle manual = h.Add(CreateEvent(true, false));
  Handle automatic = h.Add(CreateEvent(false, true));

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
  Handles h;
  Handle manual = h.Add(CreateEvent(true, false));
  Handle waiting = h.Add(CreateEvent(true, false));

  // Nobody waits: a pulse leaves nothing behind.
  EXPECT_TRUE(PulseEvent(manual));
  EXPECT_EQ(WaitOne(manual, 0, false), kWaitTimeout);

  uint32_t result = kWaitFailed;
  test::TestThread waiter([&] {
    SetEvent(waiting);
    result = WaitOne(manual, 10000, false);
  });
  ASSERT_EQ(WaitOne(waiting, 10000, false), kWaitObject0);
  // The waiter may not be asleep yet; pulse until it has been released.
  while (!waiter.Join(1)) PulseEvent(manual);
  EXPECT_EQ(result, kWaitObject0);
  EXPECT_EQ(WaitOne(manual, 0, false), kWaitTimeout);
}

TEST(Semaphore, CountsAndRefusesToPassItsMaximum) {
  Handles h;
  Handle s = h.Add(CreateSemaphore(1, 3));
  int32_t previous = -1;
  EXPECT_TRUE(ReleaseSemaphore(s, 2, &previous));
  EXPECT_EQ(previous, 1);
  EXPECT_FALSE(ReleaseSemaphore(s, 1, &previous));  // 3 + 1 > 3: nothing changes
  EXPECT_NE(LastError(), 0u);
  for (int i = 0; i < 3; ++i) EXPECT_EQ(WaitOne(s, 0, false), kWaitObject0) << i;
  EXPECT_EQ(WaitOne(s, 0, false), kWaitTimeout);
}

TEST(Wait, AnyReturnsTheLowestSignalledIndexAndConsumesOnlyIt) {
  Handles h;
  Handle a = h.Add(CreateEvent(false, false));
  Handle b = h.Add(CreateEvent(false, true));
  Handle c = h.Add(CreateEvent(false, true));
  Handle all[] = {a, b, c};
  EXPECT_EQ(WaitMany(3, all, false, 0, false), kWaitObject0 + 1);
  EXPECT_EQ(WaitMany(3, all, false, 0, false), kWaitObject0 + 2);
  EXPECT_EQ(WaitMany(3, all, false, 0, false), kWaitTimeout);
}

TEST(Wait, AllTakesEveryObjectAtOnceOrNone) {
  Handles h;
  Handle e = h.Add(CreateEvent(false, true));
  Handle s = h.Add(CreateSemaphore(0, 5));
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
  Handles h;
  Handle e = h.Add(CreateEvent(true, true));
  EXPECT_EQ(WaitOne(nullptr, 0, false), kWaitFailed);
  EXPECT_EQ(WaitMany(0, &e, false, 0, false), kWaitFailed);
  Handle twice[] = {e, e};
  EXPECT_EQ(WaitMany(2, twice, false, 0, false), kWaitObject0);  // wait-any accepts a repeat
  EXPECT_FALSE(CloseHandle(nullptr));
  EXPECT_FALSE(SetEvent(nullptr));
}

TEST(Wait, TimesOutWhenNothingHappens) {
  Handles h;
  Handle e = h.Add(CreateEvent(true, false));
  int64_t start = PerfCounter();
  EXPECT_EQ(WaitOne(e, 30, false), kWaitTimeout);
  // Never early: the time-out has passed when the wait returns.
  EXPECT_GE(PerfCounter() - start, PerfFrequency() * 30 / 1000 - PerfFrequency() / 1000);
  EXPECT_EQ(SleepEx(1, false), 0u);
}

TEST(Wait, SignalFromAnotherThreadReleasesABlockedWait) {
  Handles h;
  Handle e = h.Add(CreateEvent(false, false));
  Handle s = h.Add(CreateSemaphore(0, 1));
  Handle both[] = {e, s};
  test::TestThread signaller([&] { ReleaseSemaphore(s, 1, nullptr); });
  EXPECT_EQ(WaitMany(2, both, false, 10000, false), kWaitObject0 + 1);
  ASSERT_TRUE(signaller.Join());
}

}  // namespace
}  // namespace zel::os
