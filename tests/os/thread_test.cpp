// Threads and asynchronous procedure calls.
#include "os/os.h"
#include "support/test_thread.h"

#include <atomic>
#include <vector>

namespace zel::os {
namespace {

TEST(Thread, StartsSuspendedUntilResumed) {
  std::atomic<bool> ran{false};
  test::TestEvent started;
  test::TestThread thread(
      [&] {
        ran = true;
        started.Set();
      },
      /*suspended=*/true);
  ASSERT_TRUE(thread.Started());
  EXPECT_NE(thread.id(), 0u);
  EXPECT_EQ(WaitOne(thread.handle(), 20, false), kWaitTimeout);
  EXPECT_FALSE(ran);
  EXPECT_EQ(ResumeThread(thread.handle()), 1u);
  EXPECT_TRUE(started.Wait());
  EXPECT_TRUE(thread.Join());
  EXPECT_TRUE(ran);
}

TEST(Thread, KnowsItsIdAndItsHandleIsSignalledAtItsEnd) {
  uint32_t seen = 0;
  Handle duplicate = nullptr;
  test::TestEvent ready, finish;
  test::TestThread thread([&] {
    seen = CurrentThreadId();
    duplicate = DuplicateCurrentThread();
    ready.Set();
    finish.Wait();
  });
  ASSERT_TRUE(ready.Wait());
  EXPECT_EQ(WaitOne(duplicate, 0, false), kWaitTimeout);
  finish.Set();
  EXPECT_EQ(WaitOne(duplicate, 10000, false), kWaitObject0);  // the duplicate names the thread too
  EXPECT_EQ(seen, thread.id());
  EXPECT_NE(seen, CurrentThreadId());
  EXPECT_TRUE(CloseHandle(duplicate));
}

TEST(Thread, PriorityIsKeptAndOnlyKnownValuesAreAccepted) {
  test::TestEvent finish;
  test::TestThread thread([&] { finish.Wait(); });
  ASSERT_TRUE(thread.Started());
  EXPECT_EQ(GetThreadPriority(thread.handle()), kPriorityNormal);
  EXPECT_TRUE(SetThreadPriority(thread.handle(), kPriorityLowest));
  EXPECT_EQ(GetThreadPriority(thread.handle()), kPriorityLowest);
  EXPECT_FALSE(SetThreadPriority(thread.handle(), 7));
  EXPECT_EQ(GetThreadPriority(thread.handle()), kPriorityLowest);
  finish.Set();
  EXPECT_EQ(GetThreadPriority(kCurrentThread), kPriorityNormal);
}

// APCs record the order they ran in and the thread they ran on.
struct ApcLog {
  std::vector<int> order;
  std::vector<uint32_t> threads;
};
ApcLog *g_log = nullptr;

void ZEL_CALLBACK Record(uintptr_t value) {
  g_log->order.push_back(static_cast<int>(value));
  g_log->threads.push_back(CurrentThreadId());
}

TEST(Apc, QueuedWhileBusyRunInOrderAtTheNextAlertableWait) {
  ApcLog log;
  g_log = &log;
  test::TestEvent busy, go;
  uint32_t non_alertable = 0, alertable = 0;
  size_t ran_before_alertable = 99;
  test::TestThread target([&] {
    busy.Set();
    go.Wait();                           // busy: not alertable
    non_alertable = SleepEx(10, false);  // APCs wait for an alertable wait
    ran_before_alertable = log.order.size();
    alertable = SleepEx(kInfinite, true);  // runs them all, then returns
  });
  ASSERT_TRUE(busy.Wait());
  for (int i = 1; i <= 100; ++i) ASSERT_TRUE(QueueApc(Record, target.handle(), i));
  go.Set();
  ASSERT_TRUE(target.Join());

  EXPECT_EQ(non_alertable, 0u);
  EXPECT_EQ(ran_before_alertable, 0u);
  EXPECT_EQ(alertable, kWaitIoCompletion);
  ASSERT_EQ(log.order.size(), 100u);
  for (int i = 0; i < 100; ++i) EXPECT_EQ(log.order[i], i + 1);
  for (uint32_t id : log.threads) EXPECT_EQ(id, target.id());
}

TEST(Apc, EndsAnAlertableWaitOnAnObject) {
  ApcLog log;
  g_log = &log;
  test::TestEvent never, ready;
  uint32_t result = 0;
  test::TestThread target([&] {
    ready.Set();
    result = WaitOne(never.handle(), 10000, true);
  });
  ASSERT_TRUE(ready.Wait());
  ASSERT_TRUE(QueueApc(Record, target.handle(), 7));
  ASSERT_TRUE(target.Join());
  EXPECT_EQ(result, kWaitIoCompletion);
  EXPECT_EQ(log.order, std::vector<int>{7});
}

TEST(Apc, RunsOnTheCallingThreadThroughItsPseudoHandle) {
  ApcLog log;
  g_log = &log;
  ASSERT_TRUE(QueueApc(Record, kCurrentThread, 3));
  EXPECT_EQ(SleepEx(0, true), kWaitIoCompletion);
  EXPECT_EQ(log.order, std::vector<int>{3});
}

TEST(Apc, CannotBeQueuedToAThreadThatHasEnded) {
  test::TestThread thread([] {});
  ASSERT_TRUE(thread.Started());
  Handle h = thread.handle();
  ASSERT_EQ(WaitOne(h, 10000, false), kWaitObject0);
  g_log = nullptr;
  EXPECT_FALSE(QueueApc(Record, h, 1));
}

}  // namespace
}  // namespace zel::os
