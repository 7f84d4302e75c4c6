// The global allocator beside glibc's malloc, mimalloc and jemalloc on the same work: one thread
// allocating and freeing at once, many live blocks freed in random order (on one and on two
// threads), and blocks freed by another thread than the one that allocated them. The "_dedicated"
// cases run ours in a dedicated arena; the peers do the same work as in the plain cases.
#include "alloc_peers.h"
#include "block_handoff.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace zel::bench {
namespace {

// `count` sizes from `low` to `high`.
std::vector<uint32_t> RandomSizes(int count, uint32_t low, uint32_t high, uint32_t seed) {
  std::vector<uint32_t> sizes(static_cast<size_t>(count));
  for (uint32_t &s : sizes) s = low + NextRandom(seed) % (high - low + 1);
  return sizes;
}

constexpr int kSmallSizes = 4096;  // a power of two
const std::vector<uint32_t> &SmallSizes() {
  static const std::vector<uint32_t> sizes = RandomSizes(kSmallSizes, 16, 256, 0x2545F491);
  return sizes;
}

// (a) An allocation freed at once, 16 to 256 bytes.
template <typename A>
void Pairs(benchmark::State &state) {
  if (!A::Begin(state)) return;
  const std::vector<uint32_t> &sizes = SmallSizes();
  size_t i = 0;
  for (auto _ : state) {
    void *p = A::Alloc(sizes[i++ & (kSmallSizes - 1)]);
    benchmark::DoNotOptimize(p);
    A::Free(p);
  }
  A::End();
}

// (b) 100,000 live blocks of 8 to 1,024 bytes, freed in a random order.
constexpr int kLiveBlocks = 100000;
struct LiveWork {
  std::vector<uint32_t> sizes = RandomSizes(kLiveBlocks, 8, 1024, 0x6A09E667);
  std::vector<int> order;
  LiveWork() {
    for (int i = 0; i < kLiveBlocks; ++i) order.push_back(i);
    uint32_t seed = 0xBB67AE85;
    for (int i = kLiveBlocks - 1; i > 0; --i)
      std::swap(order[static_cast<size_t>(i)],
                order[NextRandom(seed) % static_cast<uint32_t>(i + 1)]);
  }
};

template <typename A>
void Live100k(benchmark::State &state) {
  static const LiveWork work;
  if (!A::Begin(state)) return;
  std::vector<void *> blocks(kLiveBlocks);
  for (auto _ : state) {
    for (int i = 0; i < kLiveBlocks; ++i)
      blocks[static_cast<size_t>(i)] = A::Alloc(work.sizes[static_cast<size_t>(i)]);
    for (int i : work.order) A::Free(blocks[static_cast<size_t>(i)]);
  }
  state.SetItemsProcessed(state.iterations() * kLiveBlocks);
  A::End();
}

// (d) Blocks go from the allocating thread to a freeing thread in batches.
template <typename A>
void RemoteFree(benchmark::State &state) {
  if (!A::Begin(state)) return;
  auto handoff = std::make_unique<Handoff>();
  std::thread freer([&handoff] { handoff->Drain([](void *p) { A::Free(p); }); });
  const std::vector<uint32_t> &sizes = SmallSizes();
  void *batch[Handoff::kBatch];
  size_t i = 0, filled = 0;
  for (auto _ : state) {
    batch[filled] = A::Alloc(sizes[i++ & (kSmallSizes - 1)]);
    if (++filled == Handoff::kBatch) {
      handoff->Put(batch);
      filled = 0;
    }
  }
  for (size_t j = 0; j < filled; ++j) A::Free(batch[j]);
  handoff->Close();
  freer.join();
  A::End();
}

// ---------------------------------------------------------------------------------------------

const int registered = RegisterEveryAllocator([]<typename Plain, typename Dedicated>(
                                                   const char *impl) {
  auto add = [impl](const char *name, void (*fn)(benchmark::State &)) {
    return benchmark::RegisterBenchmark((std::string(impl) + ":alloc." + name).c_str(), fn);
  };
  add("pairs_16_256", Pairs<Plain>);
  add("pairs_16_256_dedicated", Pairs<Dedicated>);
  add("random_100k", Live100k<Plain>)->Unit(benchmark::kMicrosecond);
  add("random_100k_dedicated", Live100k<Dedicated>)->Unit(benchmark::kMicrosecond);
  add("random_100k_2threads", Live100k<Plain>)
      ->Threads(2)
      ->UseRealTime()
      ->Unit(benchmark::kMicrosecond);
  add("random_100k_2threads_dedicated", Live100k<Dedicated>)
      ->Threads(2)
      ->UseRealTime()
      ->Unit(benchmark::kMicrosecond);
  add("remote_free", RemoteFree<Plain>)->UseRealTime();
  add("remote_free_dedicated", RemoteFree<Dedicated>)->UseRealTime();
});

}  // namespace
}  // namespace zel::bench
