// The Scheduler under load from several threads: plain calls arrive once each and in order, shared
// clients survive being scheduled, moved and taken out from everywhere at once, and a stop drops
// what comes after it.
#include <zel/sched/scheduler.h>

#include "support/log_capture.h"
#include "support/running_scheduler.h"
#include "support/test_thread.h"

#include <gtest/gtest.h>

#include <atomic>
#include <deque>
#include <memory>
#include <random>
#include <vector>

namespace zel {
namespace {

using Loop = test::RunningScheduler;

constexpr int kPosters = 4;
constexpr int kCallsEach = 20000;

// What the calls of one posting thread saw: the next number expected and the faults.
struct Sequence {
  int next = 0;
  int out_of_order = 0;
};

struct Call {
  Sequence *sequence;
  int number;
  std::atomic<int> *left;
  test::TestEvent *all_done;
};

void ZEL_CALLBACK RunCall(uintptr_t p) {
  auto *call = reinterpret_cast<Call *>(p);
  if (call->sequence->next++ != call->number) ++call->sequence->out_of_order;
  if (--*call->left == 0) call->all_done->Set();
}

// A shared client counting its calls, which must never run while the test has it descheduled.
struct Shared : DelayClient {
  bool Callback() override {
    ++calls;
    if (parked.load()) ++runs_while_parked;
    return false;
  }
  std::atomic<int> calls{0};
  std::atomic<bool> parked{false};
  std::atomic<int> runs_while_parked{0};
};

TEST(SchedulerStress, CallsArriveOnceInOrderWhileClientsAreShuffledEverywhere) {
  Loop loop("stress");
  Scheduler *s = loop.get();
  std::vector<Sequence> sequences(kPosters);
  std::deque<Call> calls;
  std::atomic<int> left{kPosters * kCallsEach};
  test::TestEvent all_done;
  for (int t = 0; t < kPosters; ++t)
    for (int i = 0; i < kCallsEach; ++i) calls.push_back(Call{&sequences[t], i, &left, &all_done});
  std::deque<Shared> clients(32);

  test::TestThreads posters(kPosters, [&](int t) {
    for (int i = 0; i < kCallsEach; ++i)
      s->QueueCall(&RunCall, reinterpret_cast<uintptr_t>(&calls[t * kCallsEach + i]));
  });
  test::TestThreads shufflers(3, [&](int t) {
    std::mt19937 random(t);
    for (int i = 0; i < 20000; ++i) {
      Shared &c = clients[random() % clients.size()];
      switch (random() % 4) {
        case 0: c.Schedule(s); break;
        case 1: c.Schedule(s, static_cast<float>(random() % 5) * 0.001f); break;
        case 2: c.Schedule(s, 0.0005f); break;  // earlier than most: moves it forward
        default: c.Deschedule(); break;
      }
    }
  });
  ASSERT_TRUE(posters.JoinAll());
  ASSERT_TRUE(shufflers.JoinAll());
  ASSERT_TRUE(all_done.Wait(60000));
  for (const Sequence &seq : sequences) {
    EXPECT_EQ(seq.next, kCallsEach);  // each call once
    EXPECT_EQ(seq.out_of_order, 0);   // in the order its thread posted them
  }
  // A probe due after every client that is still queued: once it has run, so have they.
  struct Probe : DelayClient {
    bool Callback() override {
      ran.Set();
      return false;
    }
    test::TestEvent ran;
  };
  Probe settled;
  settled.Schedule(s, 0.01f);
  ASSERT_TRUE(settled.ran.Wait());
  int called = 0;
  for (Shared &c : clients) {
    c.Deschedule();  // returns only when its callback is not running
    c.parked = true;
    called += c.calls;
  }
  EXPECT_GT(called, 0);
  Probe later;
  later.Schedule(s, 0.01f);
  ASSERT_TRUE(later.ran.Wait());
  for (const Shared &c : clients) EXPECT_EQ(c.runs_while_parked, 0);
  EXPECT_EQ(s->ClientCount(), 0);
}

TEST(SchedulerStress, AfterAStopNothingRunsAndDropsAreSaid) {
  test::LogCapture log;
  std::atomic<int> ran_after{0};
  std::atomic<bool> stopped{false};
  struct Flags {
    std::atomic<bool> *stopped;
    std::atomic<int> *ran_after;
  } flags{&stopped, &ran_after};
  const SchedulerCall note = [](uintptr_t p) {
    auto *f = reinterpret_cast<Flags *>(p);
    if (f->stopped->load()) ++*f->ran_after;
  };
  {
    Loop loop("stopping");
    Scheduler *s = loop.get();
    std::atomic<int> posted{0};
    // Posting goes on through the stop and a little beyond it.
    test::TestThreads posters(2, [&](int) {
      for (int after = 0; after < 100; after += stopped ? 1 : 0) {
        s->QueueCall(note, reinterpret_cast<uintptr_t>(&flags));
        ++posted;
      }
    });
    while (posted < 2000) os::Yield();
    s->Stop();
    stopped = true;
    ASSERT_TRUE(posters.JoinAll());
  }
  // At most the one call that was running as the stop came; whatever had not run was dropped,
  // each drop logged.
  EXPECT_LE(ran_after.load(), 1);
  int dropped = 0;
  for (const std::string &line : log.Lines())
    dropped += line == "stopping: Deactivating, APC ignored\r\n" ? 1 : 0;
  EXPECT_GT(dropped, 0);
}

}  // namespace
}  // namespace zel
