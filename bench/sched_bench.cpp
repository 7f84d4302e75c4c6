// The Scheduler beside Boost.Asio's io_context and a libuv loop, each running on a thread of its
// own (event_loops.h), all timed on the wall clock:
//
//   cross-thread calls     one thread hands plain calls to the loop, which counts them; the time
//                          runs until the last one has run.
//   post-to-start latency  one call at a time; the counter "median_ns" is the median time from
//                          posting a call to its start on the loop's thread.
//   timers                 timers due at random within 100 ms; then half of them re-armed earlier
//                          and a quarter cancelled, and the loop runs until the rest went off.
//                          "loop_cpu_ms" is the loop thread's CPU time per round.
//
// Ours alone:
//
//   deactivate tree        a tree of tracked objects whose checks run on four WorkThreads: from
//                          asking the top to deactivate until every object is inactive.
//   idle                   a Scheduler in its loop with nothing to do for a second: the dispatch
//                          passes it made meanwhile ("passes", 0 when it slept throughout) and its
//                          thread's CPU time ("loop_cpu_us").
#include "event_loops.h"
#include "timer_sets.h"

#include <zel/sched/tracked_obj.h>
#include <zel/thread/work_thread.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <vector>

namespace zel::bench {
namespace {

using Clock = std::chrono::steady_clock;

// --- Cross-thread calls ---

// Counts the calls that reached the loop; opens `done` when the count reaches the target.
struct Tally {
  static void ZEL_CALLBACK Count(uintptr_t self) {
    auto *t = reinterpret_cast<Tally *>(self);
    if (++t->count == t->target) t->done.Open();
  }

  int64_t count = 0;  // the loop's thread
  int64_t target = 0;
  Latch done;
};

template <typename Loop>
void CrossThreadCalls(benchmark::State &state) {
  const int64_t calls = state.range(0);
  Tally tally;  // outlives the loop: a call that comes late still finds it
  Loop loop;
  for (auto _ : state) {
    tally.done.Reset();
    tally.target += calls;
    for (int64_t i = 0; i < calls; ++i)
      loop.Post(&Tally::Count, reinterpret_cast<uintptr_t>(&tally));
    if (!tally.done.Wait()) {
      state.SkipWithError("calls were lost");
      return;
    }
  }
  RunOn(loop, [] {});  // a call beyond the count would have run by now
  if (tally.count != tally.target) state.SkipWithError("a call ran twice");
  state.SetItemsProcessed(state.iterations() * calls);
}

// --- Post-to-start latency ---

struct Probe {
  static void ZEL_CALLBACK Start(uintptr_t self) {
    auto *p = reinterpret_cast<Probe *>(self);
    p->started = Clock::now();
    p->done.Open();
  }

  Clock::time_point started;
  Latch done;
};

template <typename Loop>
void PostToStartLatency(benchmark::State &state) {
  Probe probe;
  Loop loop;
  RunOn(loop, [] {});  // the loop is up and waiting
  std::vector<int64_t> samples;
  samples.reserve(static_cast<size_t>(state.max_iterations));
  for (auto _ : state) {
    probe.done.Reset();
    const Clock::time_point posted = Clock::now();
    loop.Post(&Probe::Start, reinterpret_cast<uintptr_t>(&probe));
    if (!probe.done.Wait()) {
      state.SkipWithError("a call was lost");
      return;
    }
    samples.push_back(
        std::chrono::duration_cast<std::chrono::nanoseconds>(probe.started - posted).count());
  }
  auto middle = samples.begin() + static_cast<std::ptrdiff_t>(samples.size() / 2);
  std::nth_element(samples.begin(), middle, samples.end());
  state.counters["median_ns"] = static_cast<double>(*middle);
}

// --- Timers ---

constexpr int kTimerSpanMs = 100;

// Every fourth timer, from the second on, is cancelled.
bool Cancelled(int timer) { return timer % 4 == 1; }

// Random due times in whole milliseconds within the span, the same for every implementation
// (libuv's timers count whole milliseconds).
std::vector<int> DueTimes(int count) {
  std::mt19937 random(20240601);
  std::uniform_int_distribution<int> ms(0, kTimerSpanMs - 1);
  std::vector<int> due(static_cast<size_t>(count));
  for (int &d : due) d = ms(random);
  return due;
}

// What the loop's thread needs to begin a round.
template <typename Timers>
struct RoundStart {
  // Arms every timer, re-arms half of them earlier, then cancels a quarter.
  static void ZEL_CALLBACK Run(uintptr_t self) {
    auto *r = reinterpret_cast<RoundStart *>(self);
    r->round->cpu_start = ThreadCpuSeconds();
    const std::vector<int> &due = *r->due;
    const int count = static_cast<int>(due.size());
    r->timers->Begin();
    for (int i = 0; i < count; ++i) r->timers->Arm(i, due[static_cast<size_t>(i)]);
    for (int i = 0; i < count; i += 2) r->timers->Arm(i, due[static_cast<size_t>(i)] / 2);
    for (int i = 0; i < count; ++i)
      if (Cancelled(i)) r->timers->Cancel(i);
  }

  Timers *timers;
  const std::vector<int> *due;
  TimerRound *round;
};

// True when every timer that was not cancelled went off once, and no other.
bool EachFiredOnce(const TimerRound &round) {
  for (size_t i = 0; i < round.fires.size(); ++i)
    if (round.fires[i] != (Cancelled(static_cast<int>(i)) ? 0 : 1)) return false;
  return true;
}

template <typename Loop, typename Timers>
void TimerWorkload(benchmark::State &state) {
  const int count = static_cast<int>(state.range(0));
  const std::vector<int> due = DueTimes(count);
  int expected = 0;
  for (int i = 0; i < count; ++i) expected += Cancelled(i) ? 0 : 1;
  TimerRound round;
  Loop loop;
  Timers timers(loop, round, count);
  RoundStart<Timers> start{&timers, &due, &round};
  double loop_cpu = 0;
  for (auto _ : state) {
    round.Reset(expected, count);
    loop.Post(&RoundStart<Timers>::Run, reinterpret_cast<uintptr_t>(&start));
    if (!round.done.Wait()) {
      state.SkipWithError("timers did not go off");
      return;
    }
    if (!EachFiredOnce(round)) {
      state.SkipWithError("a timer went off twice, or although it was cancelled");
      return;
    }
    loop_cpu += round.cpu_end - round.cpu_start;
  }
  state.counters["loop_cpu_ms"] =
      benchmark::Counter(loop_cpu * 1000, benchmark::Counter::kAvgIterations);
  state.SetItemsProcessed(state.iterations() * count);
}

// --- Deactivating a tree of tracked objects ---

constexpr int kTreeWorkers = 4;

// Opens `done` once `left` objects have arrived.
struct Countdown {
  void Arrive() {
    if (left.fetch_sub(1, std::memory_order_acq_rel) == 1) done.Open();
  }

  std::atomic<int> left{0};
  Latch done;
};

class TreeNode : public TrackedObj {
 public:
  TreeNode(TrackedObj *parent, Scheduler *scheduler, Countdown *inactive)
      : TrackedObj("node", "bench", parent, true, scheduler), inactive_(inactive) {}

  void Deactivate() override {
    TrackedObj::Deactivate();
    // The last the node does: once every node has arrived, the benchmark deletes them.
    if (GetState() == kInactive) inactive_->Arrive();
  }

 private:
  Countdown *inactive_;
};

// Where each node of the tree goes: the node it depends on (an earlier one; -1 for the top,
// which depends on the root) and the worker its checks run on.
struct TreePlace {
  int parent;
  int worker;
};

std::vector<TreePlace> TreeShape(int count) {
  std::mt19937 random(7);
  std::vector<TreePlace> shape;
  for (int i = 0; i < count; ++i)
    shape.push_back({i == 0 ? -1 : static_cast<int>(random() % static_cast<unsigned>(i)),
                     static_cast<int>(random() % kTreeWorkers)});
  return shape;
}

void DeactivateTree(benchmark::State &state) {
  const int count = static_cast<int>(state.range(0));
  const std::vector<TreePlace> shape = TreeShape(count);
  std::vector<std::unique_ptr<WorkThread>> workers;
  for (int i = 0; i < kTreeWorkers; ++i) {
    workers.push_back(std::make_unique<WorkThread>(("tree worker " + std::to_string(i)).c_str()));
    // Nothing runs the global Scheduler in this program, where a worker's Scheduler would be
    // deleted: the WorkThread keeps it instead.
    workers.back()->GetScheduler()->SetAutoDeleteFlag(false);
    if (!workers.back()->Start()) {
      state.SkipWithError("a worker thread did not start");
      return;
    }
  }
  Countdown countdown;
  std::vector<std::unique_ptr<TreeNode>> nodes;
  for (auto _ : state) {
    state.PauseTiming();
    countdown.left.store(count);
    countdown.done.Reset();
    for (const TreePlace &place : shape)
      nodes.push_back(std::make_unique<TreeNode>(
          place.parent < 0 ? nullptr : nodes[static_cast<size_t>(place.parent)].get(),
          workers[static_cast<size_t>(place.worker)]->GetScheduler(), &countdown));
    state.ResumeTiming();

    nodes[0]->RequestDeactivate();
    const bool finished = countdown.done.Wait();

    state.PauseTiming();
    const bool all_inactive = std::all_of(nodes.begin(), nodes.end(), [](const auto &node) {
      return node->GetState() == TrackedObj::kInactive;
    });
    if (!finished || !all_inactive || countdown.left.load() != 0) {
      // Checks may still be under way on the workers: the nodes are left alone.
      for (auto &node : nodes) node.release();
      state.SkipWithError("the tree did not deactivate, or a node deactivated twice");
      return;
    }
    nodes.clear();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * count);
}

// --- Idle ---

void Idle(benchmark::State &state) {
  ZelLoop loop;
  for (auto _ : state) {
    double cpu_before = 0;
    double cpu_after = 0;
    RunOn(loop, [&] { cpu_before = ThreadCpuSeconds(); });
    const int64_t passes = loop.scheduler()->PassCount();
    std::this_thread::sleep_for(std::chrono::seconds(1));
    state.counters["passes"] = static_cast<double>(loop.scheduler()->PassCount() - passes);
    // Answering proves that the loop slept rather than got stuck.
    RunOn(loop, [&] { cpu_after = ThreadCpuSeconds(); });
    state.counters["loop_cpu_us"] = (cpu_after - cpu_before) * 1e6;
  }
}

// --- Registration ---

// The cases every implementation runs, named "<implementation>:<case>".
template <typename Loop, typename Timers>
int RegisterLoop(const std::string &implementation) {
  benchmark::RegisterBenchmark((implementation + ":cross-thread calls").c_str(),
                               CrossThreadCalls<Loop>)
      ->Arg(1000000)
      ->Unit(benchmark::kMillisecond)
      ->UseRealTime();
  benchmark::RegisterBenchmark((implementation + ":post-to-start latency").c_str(),
                               PostToStartLatency<Loop>)
      ->Unit(benchmark::kMicrosecond)
      ->UseRealTime();
  benchmark::RegisterBenchmark((implementation + ":timers").c_str(), TimerWorkload<Loop, Timers>)
      ->Arg(100000)
      ->Unit(benchmark::kMillisecond)
      ->UseRealTime();
  return 0;
}

const int registered = RegisterLoop<ZelLoop, ZelTimers>("zel") +
                       RegisterLoop<AsioLoop, AsioTimers>("asio") +
                       RegisterLoop<UvLoop, UvTimers>("libuv");

}  // namespace
}  // namespace zel::bench

BENCHMARK(zel::bench::DeactivateTree)
    ->Name("zel:deactivate tree")
    ->Arg(1000)
    ->Unit(benchmark::kMicrosecond)
    ->UseRealTime();
BENCHMARK(zel::bench::Idle)
    ->Name("zel:idle")
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
