// Three workloads in the manner of the public allocator benchmarks, for ours in the shared arenas
// and in dedicated ones ("_dedicated") beside the peers. One iteration is one round of work on
// threads started for it (as a server's worker threads come and go); each case reports its time
// per round and the process's peak resident memory while it ran (the counter "peak_rss"), so that
// a case is best run in a process of its own (--benchmark_filter); ours also reports how often it
// went to the process heap for a page or gave one back, per 1,000 allocations ("heap_calls_per_k").
// "process_cpu" is the CPU time of all the process's threads per round, in seconds: on a busy
// machine it says more about the allocator's own cost than the time does.
//
//   server             two threads replace random blocks of 8 to 1,000 bytes in one shared array
//                      of 10,000; the threads of each round end and new ones carry on with the
//                      array, so most frees are of blocks another thread allocated.
//   producer_consumer  one thread allocates messages of 16 to 256 bytes and fills them; another
//                      reads and frees them.
//   false_sharing      two threads each allocate four 8-byte blocks, one after the other, then
//                      both write their own blocks hard: blocks of the two threads that share a
//                      cache line slow both down.
#include "alloc_peers.h"
#include "block_handoff.h"
#include "peak_memory.h"

#include <benchmark/benchmark.h>

#include <atomic>
#include <cstring>
#include <ctime>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace zel::bench {
namespace {

// Runs body(0 .. count-1) on `count` new threads, each between A::Begin and A::End, and joins
// them; false when a Begin failed.
template <typename A, typename Body>
bool RunThreads(benchmark::State &state, int count, Body body) {
  std::atomic<bool> began{true};
  std::vector<std::thread> threads;
  for (int i = 0; i < count; ++i)
    threads.emplace_back([&, i] {
      if (!A::Begin(state)) {
        began = false;
        return;
      }
      body(i);
      A::End();
    });
  for (std::thread &t : threads) t.join();
  return began;
}

// Measures the CPU time of the whole process over a run, reported per round as "process_cpu".
class ProcessCpu {
 public:
  ProcessCpu() : start_(std::clock()) {}
  void Report(benchmark::State &state) const {
    state.counters["process_cpu"] =
        benchmark::Counter(static_cast<double>(std::clock() - start_) / CLOCKS_PER_SEC,
                           benchmark::Counter::kAvgIterations);
  }

 private:
  std::clock_t start_;
};

// Reports A's heap calls since `before` per 1,000 of the run's `allocations`, when A counts them.
template <typename A>
void ReportHeapCalls(benchmark::State &state, int64_t before, int64_t allocations) {
  if (before < 0 || allocations == 0) return;
  state.counters["heap_calls_per_k"] =
      static_cast<double>(A::HeapCalls() - before) * 1000.0 / static_cast<double>(allocations);
}

// Spins until `count` threads have arrived.
void Meet(std::atomic<int> &arrived, int count) {
  arrived.fetch_add(1);
  while (arrived.load() < count) os::Yield();
}

// Writes a block's first and last bytes, as a user of it would.
void Touch(void *block, uint32_t size) {
  static_cast<char *>(block)[0] = static_cast<char>(size);
  static_cast<char *>(block)[size - 1] = static_cast<char>(size);
}

// ---------------------------------------------------------------------------------------------

constexpr int kServerThreads = 2;
constexpr int kServerSlots = 10000;
constexpr int kServerOpsPerThread = 10000;  // a round replaces each slot about twice

template <typename A>
void Server(benchmark::State &state) {
  if (!A::Available(state)) return;
  RestartPeakMemory();
  ProcessCpu cpu;
  auto slots = std::make_unique<std::atomic<void *>[]>(kServerSlots);
  uint32_t seed = 0x9E3779B9;
  auto random_size = [](uint32_t &s) { return 8 + NextRandom(s) % 993; };
  for (int i = 0; i < kServerSlots; ++i) {
    uint32_t size = random_size(seed);
    slots[i] = A::Alloc(size);
    Touch(slots[i], size);
  }
  uint32_t round = 0;
  int64_t heap_calls = A::HeapCalls();
  for (auto _ : state) {
    ++round;
    bool ran = RunThreads<A>(state, kServerThreads, [&](int id) {
      uint32_t s = round * 7919 + static_cast<uint32_t>(id) * 104729 + 1;
      for (int op = 0; op < kServerOpsPerThread; ++op) {
        uint32_t size = random_size(s);
        void *block = A::Alloc(size);
        Touch(block, size);
        A::Free(slots[NextRandom(s) % kServerSlots].exchange(block, std::memory_order_acq_rel));
      }
    });
    if (!ran) break;
  }
  ReportPeakMemory(state);
  cpu.Report(state);
  ReportHeapCalls<A>(state, heap_calls, state.iterations() * kServerThreads * kServerOpsPerThread);
  for (int i = 0; i < kServerSlots; ++i) A::Free(slots[i].load());
  state.SetItemsProcessed(state.iterations() * kServerThreads * kServerOpsPerThread);
}

// ---------------------------------------------------------------------------------------------

constexpr int kMessages = 20000;  // a multiple of Handoff::kBatch

template <typename A>
void ProducerConsumer(benchmark::State &state) {
  if (!A::Available(state)) return;
  RestartPeakMemory();
  ProcessCpu cpu;
  uint32_t round = 0;
  int64_t heap_calls = A::HeapCalls();
  for (auto _ : state) {
    ++round;
    Handoff handoff;
    bool ran = RunThreads<A>(state, 2, [&](int id) {
      if (id == 1) {
        uint32_t sum = 0;
        handoff.Drain([&sum](void *message) {
          sum += static_cast<unsigned char *>(message)[0];
          A::Free(message);
        });
        benchmark::DoNotOptimize(sum);
        return;
      }
      uint32_t s = round * 7919 + 1;
      void *batch[Handoff::kBatch];
      for (int i = 0; i < kMessages; ++i) {
        uint32_t size = 16 + NextRandom(s) % 241;
        void *message = A::Alloc(size);
        std::memset(message, static_cast<int>(i), size);
        batch[i % Handoff::kBatch] = message;
        if ((i + 1) % Handoff::kBatch == 0) handoff.Put(batch);
      }
      handoff.Close();
    });
    if (!ran) break;
  }
  ReportPeakMemory(state);
  cpu.Report(state);
  ReportHeapCalls<A>(state, heap_calls, state.iterations() * kMessages);
  state.SetItemsProcessed(state.iterations() * kMessages);
}

// ---------------------------------------------------------------------------------------------

constexpr int kProbeBlocks = 4;
constexpr int kProbeWrites = 250000;  // to each block

template <typename A>
void FalseSharing(benchmark::State &state) {
  if (!A::Available(state)) return;
  RestartPeakMemory();
  ProcessCpu cpu;
  for (auto _ : state) {
    std::atomic<int> allocated{0};
    bool ran = RunThreads<A>(state, 2, [&](int) {
      volatile int64_t *blocks[kProbeBlocks];
      for (auto &b : blocks) b = static_cast<volatile int64_t *>(A::Alloc(8));
      Meet(allocated, 2);  // both write at once
      for (int i = 0; i < kProbeWrites; ++i)
        for (volatile int64_t *b : blocks) *b = *b + 1;
      for (volatile int64_t *b : blocks) A::Free(const_cast<int64_t *>(b));
    });
    if (!ran) break;
  }
  ReportPeakMemory(state);
  cpu.Report(state);
}

// ---------------------------------------------------------------------------------------------

const int registered = RegisterEveryAllocator([]<typename Plain, typename Dedicated>(
                                                   const char *impl) {
  auto add = [impl](const char *name, void (*fn)(benchmark::State &)) {
    return benchmark::RegisterBenchmark((std::string(impl) + ":alloc." + name).c_str(), fn)
        ->UseRealTime()
        ->Unit(benchmark::kMillisecond);
  };
  add("server", Server<Plain>);
  add("server_dedicated", Server<Dedicated>);
  add("producer_consumer", ProducerConsumer<Plain>);
  add("producer_consumer_dedicated", ProducerConsumer<Dedicated>);
  add("false_sharing", FalseSharing<Plain>);
  add("false_sharing_dedicated", FalseSharing<Dedicated>);
});

}  // namespace
}  // namespace zel::bench
