// Threads and asynchronous procedure calls.
#include "os/os.h"
#include "support/test_thread.h"

#include <atomic>
#include <vector>

namespace zel::os {
namespace {

TEST(Thread, StartsSuspendedKeepsItsPriorityAndItsHandleIsSignalledAtItsEnd) {
  std::atomic<uint32_t> seen{0};
  Handle duplicate = nullptr;
  test::TestEvent ready, finish;
  test::TestThread thread(
      [&] {
        seen = CurrentThreadId();
        duplicate = DuplicateCurrentThread();
        ready.Set();
        finish.Wait();
      },
      /*suspended=*/true);
  ASSERT_TRUE(thread.Started());
  EXPECT_NE(thread.id(), 0u);
  EXPECT_EQ(WaitOne(thread.handle(), 20, false), kWaitTimeout);
  EXPECT_EQ(seen, 0u);  // not started
  EXPECT_EQ(ResumeThread(thread.handle()), 1u);
  ASSERT_TRUE(ready.Wait());
  EXPECT_EQ(seen, thread.id());
  EXPECT_NE(seen, CurrentThreadId());

  EXPECT_EQ(GetThreadPriority(thread.handle()), kPriorityNormal);
  EXPECT_TRUE(SetThreadPriority(thread.handle(), kPriorityLowest));
  EXPECT_EQ(GetThreadPriority(thread.handle()), kPriorityLowest);
  EXPECT_FALSE(SetThreadPriority(thread.handle(), 7));
  EXPECT_EQ(GetThreadPriority(thread.handle()), kPriorityLowest);
  EXPECT_EQ(GetThreadPriority(kCurrentThread), kPriorityNormal);

  EXPECT_EQ(WaitOne(duplicate, 0, false), kWaitTimeout);
  finish.Set();
  EXPECT_EQ(WaitOne(duplicate, 10000, false), kWaitObject0);  // the duplicate names the thread too
  EXPECT_TRUE(CloseHandle(duplicate));
  EXPECT_TRUE(thread.Join());
}

// What the APCs ran with, and where.
std::vector<int> g_order;
std::vector<uint32_t> g_threads;

void ZEL_CALLBACK Record(uintptr_t value) {
  g_order.push_back(static_cast<int>(value));
  g_threads.push_back(CurrentThreadId());
}

TEST(Apc, EndAnAlertableWaitAndThoseQueuedWhileBusyRunInOrderAtTheNextOne) {
  g_order.clear();
  g_threads.clear();
  test::TestEvent never, waiting, busy, go;
  test::TestThread target([&] {
    waiting.Set();
    EXPECT_EQ(WaitOne(never, 10000, true), kWaitIoCompletion);  // ended by the first APC
    busy.Set();
    go.Wait();                                               // busy: not alertable
    EXPECT_EQ(SleepEx(10, false), 0u);                       // APCs wait for an alertable wait
    EXPECT_EQ(g_order.size(), 1u);                           // only the first has run
    EXPECT_EQ(SleepEx(kInfinite, true), kWaitIoCompletion);  // runs them all, then returns
  });
  ASSERT_TRUE(waiting.Wait());
  ASSERT_TRUE(QueueApc(Record, target.handle(), 0));
  ASSERT_TRUE(busy.Wait());
  for (int i = 1; i <= 100; ++i) ASSERT_TRUE(QueueApc(Record, target.handle(), i));
  go.Set();
  ASSERT_TRUE(target.Join());
  ASSERT_EQ(g_order.size(), 101u);
  for (int i = 0; i <= 100; ++i) EXPECT_EQ(g_order[i], i);
  for (uint32_t id : g_threads) EXPECT_EQ(id, target.id());
}

TEST(Apc, RunsOnTheCallingThreadThroughItsPseudoHandleButCannotGoToAnEndedThread) {
  g_order.clear();
  g_threads.clear();
  ASSERT_TRUE(QueueApc(Record, kCurrentThread, 3));
  EXPECT_EQ(SleepEx(0, true), kWaitIoCompletion);
  EXPECT_EQ(g_order, std::vector<int>{3});

  test::TestThread ended([] {});
  ASSERT_EQ(WaitOne(ended.handle(), 10000, false), kWaitObject0);
  EXPECT_FALSE(QueueApc(Record, ended.handle(), 1));
  EXPECT_EQ(g_order, std::vector<int>{3});
}

}  // namespace
}  // namespace zel::os
