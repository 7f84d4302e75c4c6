// The global allocator beside glibc's malloc, mimalloc and jemalloc on the same work: one thread
// allocating and freeing at once, many live blocks freed in random order (on one and on two
// threads), and blocks freed by another thread than the one that allocated them. The "_dedicated"
// cases run ours in a dedicated arena; the peers do the same work as in the plain cases.
#include <zel/mem/allocator.h>

#include "mem/thread_records.h"
#include "os/os.h"

#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdlib>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

// ---------------------------------------------------------------------------------------------
// The allocators. Each has Alloc and Free, and Begin and End around a benchmark's run on a thread
// (Begin false: the run is skipped).

struct Zel {
  static void *Alloc(size_t n) { return zel::GAlloc(static_cast<int>(n)); }
  static void Free(void *p) { zel::GFree(p); }
  static bool Begin(benchmark::State &) { return true; }
  static void End() {}
};

struct ZelDedicated : Zel {
  static bool Begin(benchmark::State &state) {
    zel::GFree(zel::GAlloc(8));  // the allocator exists from the first allocation on
    if (zel::GetMemoryAllocator()->Dedicate()) return true;
    state.SkipWithError("no dedicated arena left");
    return false;
  }
  // Gives the arena up, as a library thread does when it ends.
  static void End() { zel::ReleaseThreadAllocatorRecord(); }
};

struct Glibc {
  static void *Alloc(size_t n) { return std::malloc(n); }
  static void Free(void *p) { std::free(p); }
  static bool Begin(benchmark::State &) { return true; }
  static void End() {}
};

// A peer loaded at run time. The OS layer binds a loaded library's own symbols first, so its
// malloc serves only the calls made here and does not replace the process's.
struct LoadedPeer {
  const char *library;
  const char *alloc_name;
  const char *free_name;
  void *(*alloc)(size_t) = nullptr;
  void (*free)(void *) = nullptr;
  std::atomic<int> state{0};  // 0 not tried, 1 loaded, 2 missing

  bool Load() {
    int seen = state.load(std::memory_order_acquire);
    if (seen == 0) {
      void *handle = zel::os::LoadLibrary(library);
      if (handle != nullptr) {
        alloc = reinterpret_cast<void *(*)(size_t)>(zel::os::GetProcAddress(handle, alloc_name));
        free = reinterpret_cast<void (*)(void *)>(zel::os::GetProcAddress(handle, free_name));
      }
      seen = alloc != nullptr && free != nullptr ? 1 : 2;
      state.store(seen, std::memory_order_release);
    }
    return seen == 1;
  }
};

LoadedPeer g_mimalloc{"libmimalloc.so.2", "mi_malloc", "mi_free"};
LoadedPeer g_jemalloc{"libjemalloc.so.2", "malloc", "free"};

template <LoadedPeer &peer>
struct Loaded {
  static void *Alloc(size_t n) { return peer.alloc(n); }
  static void Free(void *p) { peer.free(p); }
  static bool Begin(benchmark::State &state) {
    if (peer.Load()) return true;
    state.SkipWithError((std::string(peer.library) + " is not installed").c_str());
    return false;
  }
  static void End() {}
};
using Mimalloc = Loaded<g_mimalloc>;
using Jemalloc = Loaded<g_jemalloc>;

// ---------------------------------------------------------------------------------------------
// The work, the same for every allocator.

// xorshift32, so that every allocator sees the same sizes in the same order.
uint32_t NextRandom(uint32_t &state) {
  state ^= state << 13;
  state ^= state >> 17;
  state ^= state << 5;
  return state;
}

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

// (d) Blocks go from the allocating thread to a freeing thread in batches, through a ring with
// one writer and one reader; each side yields while the ring is full or empty.
class Handoff {
 public:
  static constexpr size_t kBatch = 64;

  void Put(void *const *blocks) {
    size_t tail = tail_.load(std::memory_order_relaxed);
    while (tail + kBatch - head_.load(std::memory_order_acquire) > kCapacity) zel::os::Yield();
    for (size_t i = 0; i < kBatch; ++i) slots_[(tail + i) % kCapacity] = blocks[i];
    tail_.store(tail + kBatch, std::memory_order_release);
  }
  void Close() { closed_.store(true, std::memory_order_release); }

  // Frees every block put, until closed.
  template <typename Free>
  void Drain(Free free) {
    size_t head = head_.load(std::memory_order_relaxed);
    for (;;) {
      bool closed = closed_.load(std::memory_order_acquire);
      size_t tail = tail_.load(std::memory_order_acquire);
      if (head == tail) {
        if (closed) return;
        zel::os::Yield();
        continue;
      }
      for (; head != tail; ++head) free(slots_[head % kCapacity]);
      head_.store(head, std::memory_order_release);
    }
  }

 private:
  static constexpr size_t kCapacity = 4096;
  void *slots_[kCapacity];
  alignas(64) std::atomic<size_t> head_{0};
  alignas(64) std::atomic<size_t> tail_{0};
  alignas(64) std::atomic<bool> closed_{false};
};

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

template <typename Plain, typename Dedicated>
int RegisterAllocator(const char *impl) {
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
  return 0;
}

const int registered = RegisterAllocator<Zel, ZelDedicated>("zel") +
                       RegisterAllocator<Glibc, Glibc>("glibc") +
                       RegisterAllocator<Mimalloc, Mimalloc>("mimalloc") +
                       RegisterAllocator<Jemalloc, Jemalloc>("jemalloc");

}  // namespace
