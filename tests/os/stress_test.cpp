// Threads meeting on waitable objects and APCs at full speed: nothing lost, nothing doubled.
#include "os/os.h"
#include "support/test_thread.h"

#include <atomic>

namespace zel::os {
namespace {

TEST(Stress, PingPongOnAutoResetEventsLosesNoWakeUp) {
  test::TestHandle ping(CreateEvent(false, false)), pong(CreateEvent(false, false));
  constexpr int kRounds = 20000;
  test::TestThread partner([&] {
    for (int i = 0; i < kRounds; ++i) {
      EXPECT_EQ(WaitOne(ping, 10000, false), kWaitObject0) << "round " << i;
      SetEvent(pong);
    }
  });
  for (int i = 0; i < kRounds; ++i) {
    SetEvent(ping);
    ASSERT_EQ(WaitOne(pong, 10000, false), kWaitObject0) << "round " << i;
  }
  ASSERT_TRUE(partner.Join());
}

TEST(Stress, SemaphoreUnitsAreEachTakenExactlyOnce) {
  test::TestHandle s(CreateSemaphore(0, 0x7FFFFFFF));
  constexpr int kPerProducer = 20000, kProducers = 2, kConsumers = 2,
                kTotal = kPerProducer * kProducers;
  std::atomic<int> taken{0};
  // Each consumer takes units until it takes one beyond the total: one of the closing units
  // released below once the producers are done.
  test::TestThreads consumers(kConsumers, [&](int) {
    while (WaitOne(s, 10000, false) == kWaitObject0)
      if (++taken > kTotal) return;
    ADD_FAILURE() << "a consumer timed out";
  });
  test::TestThreads producers(kProducers, [&](int) {
    for (int i = 0; i < kPerProducer; ++i) ReleaseSemaphore(s, 1, nullptr);
  });
  ASSERT_TRUE(producers.JoinAll());
  ReleaseSemaphore(s, kConsumers, nullptr);
  ASSERT_TRUE(consumers.JoinAll());
  EXPECT_EQ(taken, kTotal + kConsumers);
  EXPECT_EQ(WaitOne(s, 0, false), kWaitTimeout);
}

TEST(Stress, WaitOnSeveralObjectsReleasedFromSeveralThreads) {
  constexpr int kSignallers = 8, kRounds = 500;
  Handle signals[kSignallers], acks[kSignallers];
  for (int i = 0; i < kSignallers; ++i) {
    signals[i] = CreateEvent(false, false);
    acks[i] = CreateEvent(false, false);
  }
  test::TestThreads threads(kSignallers, [&](int i) {
    for (int r = 0; r < kRounds; ++r) {
      SetEvent(signals[i]);
      EXPECT_EQ(WaitOne(acks[i], 10000, false), kWaitObject0) << i << " round " << r;
    }
  });
  int counts[kSignallers] = {};
  for (int n = 0; n < kSignallers * kRounds; ++n) {
    uint32_t r = WaitMany(kSignallers, signals, false, 10000, false);
    ASSERT_LT(r, static_cast<uint32_t>(kSignallers)) << "after " << n << " signals";
    ++counts[r];
    SetEvent(acks[r]);
  }
  ASSERT_TRUE(threads.JoinAll());
  for (int i = 0; i < kSignallers; ++i) EXPECT_EQ(counts[i], kRounds) << i;

  // Wait-all over the same events: it returns once the last of them is set.
  test::TestThreads setters(kSignallers, [&](int i) { SetEvent(signals[i]); });
  EXPECT_EQ(WaitMany(kSignallers, signals, true, 10000, false), kWaitObject0);
  ASSERT_TRUE(setters.JoinAll());
  for (int i = 0; i < kSignallers; ++i) EXPECT_EQ(WaitOne(signals[i], 0, false), kWaitTimeout);
  for (Handle h : signals) CloseHandle(h);
  for (Handle h : acks) CloseHandle(h);
}

struct Flood {
  std::atomic<int> total{0}, out_of_order{0};
  int last[4] = {-1, -1, -1, -1};  // touched only on the target thread
};
Flood *g_flood = nullptr;

void ZEL_CALLBACK FloodApc(uintptr_t arg) {
  int source = static_cast<int>(arg >> 24), seq = static_cast<int>(arg & 0xFFFFFF);
  if (seq != g_flood->last[source] + 1) ++g_flood->out_of_order;
  g_flood->last[source] = seq;
  ++g_flood->total;
}

TEST(Stress, ApcsFromSeveralThreadsAllRunInEachSendersOrder) {
  Flood flood;
  g_flood = &flood;
  constexpr int kSenders = 4, kEach = 10000;
  test::TestEvent target_ready;
  test::TestThread target([&] {
    target_ready.Set();
    while (flood.total < kSenders * kEach) SleepEx(10000, true);
  });
  ASSERT_TRUE(target_ready.Wait());
  test::TestThreads senders(kSenders, [&](int s) {
    for (int i = 0; i < kEach; ++i)
      QueueApc(FloodApc, target.handle(), (uintptr_t{static_cast<unsigned>(s)} << 24) | i);
  });
  ASSERT_TRUE(senders.JoinAll());
  ASSERT_TRUE(target.Join(60000));
  EXPECT_EQ(flood.total, kSenders * kEach);
  EXPECT_EQ(flood.out_of_order, 0);
}

}  // namespace
}  // namespace zel::os
