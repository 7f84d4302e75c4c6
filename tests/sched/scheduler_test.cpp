// Scheduler: the queue's order, dispatch passes, waking a thread by APCs and timers, plain calls,
// descheduling from other threads, stopping, and window mode.
#include <zel/diag/counters.h>
#include <zel/diag/error.h>
#include <zel/sched/scheduler.h>

#include "sched/scheduler_queue.h"
#include "support/log_capture.h"
#include "support/running_scheduler.h"
#include "support/test_thread.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <deque>
#include <functional>
#include <random>
#include <string>
#include <vector>

namespace zel {
namespace {

using test::TestEvent;
using test::TestThread;

// A client that runs a function; its result asks to be called again.
struct FnClient : DelayClient {
  explicit FnClient(std::function<bool()> fn = [] { return false; }) : fn(std::move(fn)) {}
  bool Callback() override { return fn(); }
  std::function<bool()> fn;
};

// A client that appends its number to a shared list.
struct Recorder : DelayClient {
  Recorder(int n, std::vector<int> *l) : number(n), log(l) {}
  bool Callback() override {
    log->push_back(number);
    return false;
  }
  int number;
  std::vector<int> *log;
};

safeptr<Scheduler> Make(const char *name = "test") {
  return CreateScheduler(name, nullptr, true, nullptr);
}

TEST(SchedulerQueueOrder, DueTimesThenTheOrderOfQueuing) {
  std::deque<Recorder> clients;
  std::vector<int> log;
  for (int i = 0; i < 1000; ++i) clients.emplace_back(i, &log);
  SchedulerQueue queue;
  std::mt19937 random(7);
  // Ten due times, a hundred clients each, placed in a shuffled order.
  std::vector<int> order(1000);
  for (int i = 0; i < 1000; ++i) order[i] = i;
  std::shuffle(order.begin(), order.end(), random);
  for (int i : order) queue.Place(&clients[i], i % 10);
  queue.Remove(&clients[order[5]]);
  queue.Place(&clients[order[6]], -1);  // moved to the front
  std::vector<int> popped;
  while (!queue.empty()) popped.push_back(static_cast<Recorder *>(queue.PopHead())->number);
  ASSERT_EQ(popped.size(), 999u);
  EXPECT_EQ(popped[0], order[6]);
  for (size_t i = 2; i < popped.size(); ++i) {
    const int a = popped[i - 1], b = popped[i];
    ASSERT_LE(a % 10, b % 10);
    if (a % 10 != b % 10) continue;
    // Equal due times: in the order they were placed.
    const auto at = [&](int n) { return std::find(order.begin(), order.end(), n) - order.begin(); };
    ASSERT_LT(at(a), at(b)) << i;
  }
  for (const Recorder &c : clients) EXPECT_FALSE(c.IsQueued());
}

// An unattached Scheduler is a plain queue: passes run on the calling thread.
TEST(SchedulerDispatch, PassesAreBoundedAndRecurringClientsRunOncePerPass) {
  safeptr<Scheduler> s = Make();
  std::vector<int> log;
  std::deque<Recorder> many;
  for (int i = 0; i < 150; ++i) many.emplace_back(i, &log);
  for (Recorder &c : many) s->Schedule(&c);
  int recurring = 0;
  FnClient again([&] { return ++recurring < 3; });
  s->Schedule(&again);
  s->RunDueClients();
  EXPECT_EQ(log.size(), 101u);  // at most 101 calls in one pass
  EXPECT_EQ(recurring, 0);
  s->RunDueClients();
  EXPECT_EQ(log.size(), 150u);
  EXPECT_EQ(recurring, 1);  // a recurring client runs once per pass
  for (int i = 0; i < 150; ++i) EXPECT_EQ(log[i], i);
  for (int pass = 0; pass < 5 && again.IsQueued(); ++pass) {
    os::Sleep(2);  // its next due time is the end of the pass's 1 ms window
    s->RunDueClients();
  }
  EXPECT_EQ(recurring, 3);
  EXPECT_FALSE(again.IsQueued());
}

TEST(SchedulerDispatch, ReschedulingNeverPostponesAndMovesForward) {
  safeptr<Scheduler> s = Make();
  std::vector<int> log;
  Recorder a(1, &log), b(2, &log);
  s->Schedule(&a, 100);
  const double due = a.GetDueTime();
  s->Schedule(&a, 200);  // later: the earlier due time stays
  EXPECT_EQ(a.GetDueTime(), due);
  EXPECT_EQ(a.GetDelay(), 200);
  s->Schedule(&b, 100);
  s->Schedule(&b);  // earlier: moved to now
  s->RunDueClients();
  EXPECT_EQ(log, std::vector<int>{2});
  EXPECT_TRUE(a.IsQueued());
  EXPECT_NEAR(s->GetTimeToNextClient(), 100, 1);
  a.Deschedule();
  EXPECT_EQ(a.GetScheduler(), nullptr);
  // The largest finite float, as a double (intended).
  EXPECT_EQ(s->GetTimeToNextClient(), 3.4028234663852886e38);
}

TEST(SchedulerDispatch, AClientBelongsToOneSchedulerAtATime) {
  safeptr<Scheduler> first = Make("first"), second = Make("second");
  FnClient c;
  first->Schedule(&c, 50);
  second->Schedule(&c, 50);
  EXPECT_EQ(c.GetScheduler(), second.get());
  EXPECT_EQ(first->ClientCount(), 0);
  EXPECT_EQ(second->ClientCount(), 1);
  {
    FnClient gone;
    first->Schedule(&gone, 10);
  }  // a client leaves its queue as it goes
  EXPECT_EQ(first->ClientCount(), 0);
}

TEST(SchedulerDispatch, AThrowingCallbackLeavesThePassAndTheSchedulerUsable) {
  safeptr<Scheduler> s = Make();
  FnClient thrower([]() -> bool { throw ErrorX("from a client"); });
  std::vector<int> log;
  Recorder after(1, &log);
  s->Schedule(&thrower);
  s->Schedule(&after);
  EXPECT_THROW(s->RunDueClients(), ErrorX);
  EXPECT_TRUE(log.empty());
  s->RunDueClients();
  EXPECT_EQ(log, std::vector<int>{1});
}

TEST(SchedulerDispatch, CallbackClientsCountersAndTheClientCount) {
  safeptr<Scheduler> s = Make("counted");
  s->AddCounters("counted");
  CallbackClient homeless, homed(s.get());
  homeless.Schedule(0.5f);
  EXPECT_FALSE(homeless.IsQueued());
  homed.Schedule(0.5f);
  EXPECT_EQ(homed.GetScheduler(), s.get());
  double clients = -1;
  ASSERT_TRUE(ReadCounter("counted clients", clients));
  EXPECT_EQ(clients, 1);
  homed.Deschedule();
  ASSERT_TRUE(ReadCounter("counted clients", clients));
  EXPECT_EQ(clients, 0);
  s.reset();  // the counter goes with its Scheduler
  EXPECT_FALSE(ReadCounter("counted clients", clients));
}

// --- A Scheduler on its own thread ---

// A Scheduler running Run on a thread of its own until stopped.
class Running : public test::RunningScheduler {
 public:
  Running() : RunningScheduler("running") {}
};

struct CallLog {
  std::atomic<int> calls{0};
  std::atomic<uint32_t> thread{0};
  TestEvent done;
  int expected = 1;
};

void ZEL_CALLBACK Count(uintptr_t p) {
  auto *log = reinterpret_cast<CallLog *>(p);
  log->thread = os::CurrentThreadId();
  if (++log->calls == log->expected) log->done.Set();
}

TEST(SchedulerThread, ClientsAndCallsRunOnTheSchedulersThread) {
  Running s;
  EXPECT_EQ(s->GetThreadID(), s.thread_id());
  EXPECT_NE(s->GetThreadHandle(), nullptr);
  TestEvent ran;
  std::atomic<uint32_t> where{0};
  FnClient c([&] {
    where = os::CurrentThreadId();
    ran.Set();
    return false;
  });
  c.Schedule(s.get(), 0.02f);
  ASSERT_TRUE(ran.Wait());
  EXPECT_EQ(where, s.thread_id());
  CallLog log;
  s->QueueCall(&Count, reinterpret_cast<uintptr_t>(&log));
  ASSERT_TRUE(log.done.Wait());
  EXPECT_EQ(log.thread, s.thread_id());
}

TEST(SchedulerThread, CallsBeforeAttachingRunAfterItInOrder) {
  safeptr<Scheduler> s = Make();
  std::vector<int> order;
  TestEvent done;
  struct Step {
    std::vector<int> *order;
    int n;
    TestEvent *done;
  } steps[] = {{&order, 1, nullptr}, {&order, 2, nullptr}, {&order, 3, &done}};
  const SchedulerCall step = [](uintptr_t p) {
    auto *s = reinterpret_cast<Step *>(p);
    s->order->push_back(s->n);
    if (s->done != nullptr) s->done->Set();
  };
  for (Step &st : steps) s->QueueCall(step, reinterpret_cast<uintptr_t>(&st));
  TestThread thread([&] {
    s->AttachToThread(os::CurrentThreadId());
    while (!s->StopRequested() && !done.Wait(0)) os::SleepEx(10, true);
  });
  ASSERT_TRUE(done.Wait());
  EXPECT_TRUE(thread.Join());
  EXPECT_EQ(order, (std::vector<int>{1, 2, 3}));
}

TEST(SchedulerThread, DeschedulingFromAnotherThreadWaitsForTheCallback) {
  Running s;
  TestEvent entered, release;
  std::atomic<bool> finished{false};
  FnClient slow([&] {
    entered.Set();
    release.Wait();
    finished = true;
    return true;  // asks to run again: the Deschedule below takes it out
  });
  slow.Schedule(s.get());
  ASSERT_TRUE(entered.Wait());
  TestThread releaser([&] {
    os::Sleep(20);
    release.Set();
  });
  slow.Deschedule();
  EXPECT_TRUE(finished);  // Deschedule returned only after the callback had
  EXPECT_FALSE(slow.IsQueued());
  EXPECT_EQ(slow.GetScheduler(), nullptr);
}

TEST(SchedulerThread, StoppingEndsRunAndLaterCallsAreDropped) {
  test::LogCapture log;
  auto s = std::make_unique<Running>();
  Scheduler *raw = s->get();
  safeptr<Scheduler> keep(raw);
  raw->Stop();
  ASSERT_TRUE(s->Join());
  EXPECT_EQ(raw->GetState(), TrackedObj::kInactive);
  CallLog calls;
  raw->QueueCall(&Count, reinterpret_cast<uintptr_t>(&calls));
  EXPECT_EQ(calls.calls, 0);
  bool logged = false;
  for (const std::string &line : log.Lines())
    logged |= line == "running: Deactivating, APC ignored\r\n";
  EXPECT_TRUE(logged);
}

TEST(SchedulerThread, AnExceptionEndsRunAndIsLogged) {
  test::LogCapture log;
  safeptr<Scheduler> s = Make("thrower");
  FnClient thrower([]() -> bool { throw ErrorX("client failed"); });
  TestThread thread([&] {
    SetThreadLocalScheduler(s.get());
    thrower.Schedule(s.get());
    s->Run();
  });
  ASSERT_TRUE(thread.Join());
  bool logged = false;
  for (const std::string &line : log.Lines()) logged |= line == "client failed\r\n";
  EXPECT_TRUE(logged);
}

TEST(SchedulerThread, OutsideRunAnExceptionIsLoggedAndTheThreadGoesOn) {
  test::LogCapture log;
  safeptr<Scheduler> s = Make("waiting");
  FnClient thrower([]() -> bool { throw ErrorX("thrown in a wait"); });
  std::atomic<bool> went_on{false};
  TestThread thread([&] {
    s->AttachToThread(os::CurrentThreadId());
    thrower.Schedule(s.get());
    // Any alertable wait runs the Scheduler's wake-ups; the exception stays inside them.
    for (int i = 0; i < 100 && !went_on; ++i) {
      os::SleepEx(10, true);
      for (const std::string &line : log.Lines())
        went_on = went_on || line == "thrown in a wait\r\n";
    }
  });
  ASSERT_TRUE(thread.Join());
  EXPECT_TRUE(went_on);
}

TEST(SchedulerThread, IdleLoopsDoNotWake) {
  Running s;
  TestEvent ran;
  FnClient nudge([&] {
    ran.Set();
    return false;
  });
  nudge.Schedule(s.get());
  ASSERT_TRUE(ran.Wait());
  const int64_t passes = s->PassCount();
  os::Sleep(300);
  EXPECT_EQ(s->PassCount(), passes);
}

TEST(SchedulerRegistry, TheGlobalSchedulerIsTheLoadingThreadsRoot) {
  Scheduler *global = GetGlobalScheduler();
  ASSERT_NE(global, nullptr);
  EXPECT_EQ(GetTrackedObjRoot(), global);
  EXPECT_EQ(global->GetName().view().view(), "root");
  EXPECT_EQ(global->GetThreadID(), os::CurrentThreadId());
  EXPECT_EQ(GetThreadLocalScheduler(), global);
  Scheduler *on_thread = nullptr;
  safeptr<Scheduler> s = Make("");
  test::RunOnThread([&] {
    EXPECT_EQ(GetThreadLocalScheduler(), nullptr);
    SetThreadLocalScheduler(s.get());
    on_thread = GetThreadLocalScheduler();
  });
  EXPECT_EQ(on_thread, s.get());
  // Attached in the default mode, a Scheduler without a name takes its thread's id.
  cstring id;
  id << s->GetThreadID();
  EXPECT_EQ(s->GetName().view(), id.view());
}

// --- Window mode ---

// Runs the calling thread's window-mode loop until `done` or 10 s pass: the message loop on
// Windows, a poll loop over the Scheduler's descriptor on Linux.
bool LoopUntil(Scheduler *s, const std::function<bool()> &done) {
  for (int i = 0; i < 1000 && !done(); ++i) {
#if defined(_WIN32)
    (void)s;  // its window's messages come through the thread's message loop
    os::PumpMessages(10);
#else
    const int timeout = s->WindowModeTimeout();
    os::WaitReadable(s->WindowModeDescriptor(), timeout < 0 || timeout > 10 ? 10 : timeout);
    s->DispatchWindowMode();
#endif
  }
  return done();
}

TEST(SchedulerWindowMode, CallsWakeUpsAndTimersGoThroughTheLoop) {
  safeptr<Scheduler> s = Make("windowed");
  TestThread thread([&] {
    SetThreadLocalScheduler(s.get());
    ASSERT_TRUE(s->SetUseWindow(true));
    EXPECT_TRUE(s->UsesWindow());
    std::atomic<int> soon{0}, later{0};
    FnClient now([&] { return ++soon < 2; }), delayed([&] {
      ++later;
      return false;
    });
    TestThread other([&] {
      now.Schedule(s.get());
      delayed.Schedule(s.get(), 0.05f);
    });
    other.Join();
    EXPECT_TRUE(LoopUntil(s.get(), [&] { return soon == 2 && later == 1; }));
    CallLog calls;
    calls.expected = 2;
    TestThread poster([&] {
      s->QueueCall(&Count, reinterpret_cast<uintptr_t>(&calls));
      s->QueueCall(&Count, reinterpret_cast<uintptr_t>(&calls));
    });
    poster.Join();
    EXPECT_TRUE(LoopUntil(s.get(), [&] { return calls.calls == 2; }));
    EXPECT_EQ(calls.thread, os::CurrentThreadId());
    s->SetUseWindow(false);
    EXPECT_EQ(s->WindowModeDescriptor(), -1);
  });
  EXPECT_TRUE(thread.Join());
}

}  // namespace
}  // namespace zel
