// The allocators the allocation benchmarks compare: ours in the shared arenas and in a dedicated
// arena, glibc's malloc, and mimalloc and jemalloc loaded at run time. Each has Alloc and Free,
// Available, true when it can run (else the reason is given to `state`), Begin and End around a
// benchmark's work on one thread (Begin false: the work is skipped, the reason given to `state`),
// and HeapCalls, the pages taken from and given back to the process heap so far (-1: not known).
#pragma once

#include <zel/mem/allocator.h>

#include "mem/thread_records.h"
#include "os/os.h"

#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace zel::bench {

struct Zel {
  static void *Alloc(size_t n) { return GAlloc(static_cast<int>(n)); }
  static void Free(void *p) { GFree(p); }
  static bool Available(benchmark::State &) { return true; }
  static bool Begin(benchmark::State &) { return true; }
  static void End() {}
  static int64_t HeapCalls() {
    AllocatorCounts counts = GetMemoryAllocator()->Counts();
    return counts.heap_allocs + counts.heap_frees;
  }
};

struct ZelDedicated : Zel {
  static bool Begin(benchmark::State &state) {
    GFree(GAlloc(8));  // the allocator exists from the first allocation on
    if (GetMemoryAllocator()->Dedicate()) return true;
    state.SkipWithError("no dedicated arena left");
    return false;
  }
  // Gives the arena up, as a library thread does when it ends.
  static void End() { ReleaseThreadAllocatorRecord(); }
};

struct Glibc {
  static void *Alloc(size_t n) { return std::malloc(n); }
  static void Free(void *p) { std::free(p); }
  static bool Available(benchmark::State &) { return true; }
  static bool Begin(benchmark::State &) { return true; }
  static void End() {}
  static int64_t HeapCalls() { return -1; }
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
      void *handle = os::LoadLibrary(library);
      if (handle != nullptr) {
        alloc = reinterpret_cast<void *(*)(size_t)>(os::GetProcAddress(handle, alloc_name));
        free = reinterpret_cast<void (*)(void *)>(os::GetProcAddress(handle, free_name));
      }
      seen = alloc != nullptr && free != nullptr ? 1 : 2;
      state.store(seen, std::memory_order_release);
    }
    return seen == 1;
  }
};

inline LoadedPeer g_mimalloc{"libmimalloc.so.2", "mi_malloc", "mi_free"};
inline LoadedPeer g_jemalloc{"libjemalloc.so.2", "malloc", "free"};

template <LoadedPeer &peer>
struct Loaded {
  static void *Alloc(size_t n) { return peer.alloc(n); }
  static void Free(void *p) { peer.free(p); }
  static bool Available(benchmark::State &state) {
    if (peer.Load()) return true;
    state.SkipWithError((std::string(peer.library) + " is not installed").c_str());
    return false;
  }
  static bool Begin(benchmark::State &state) { return Available(state); }
  static void End() {}
  static int64_t HeapCalls() { return -1; }
};
using Mimalloc = Loaded<g_mimalloc>;
using Jemalloc = Loaded<g_jemalloc>;

// Calls `add.template operator()<Plain, Dedicated>(impl)` for ours and for every peer, under their
// short names: a templated lambda registers one allocator's cases. A peer runs its plain form in
// the "_dedicated" cases too.
template <typename Add>
int RegisterEveryAllocator(Add add) {
  add.template operator()<Zel, ZelDedicated>("zel");
  add.template operator()<Glibc, Glibc>("glibc");
  add.template operator()<Mimalloc, Mimalloc>("mimalloc");
  add.template operator()<Jemalloc, Jemalloc>("jemalloc");
  return 0;
}

// xorshift32, so that every allocator sees the same sizes in the same order.
inline uint32_t NextRandom(uint32_t &state) {
  state ^= state << 13;
  state ^= state >> 17;
  state ^= state << 5;
  return state;
}

}  // namespace zel::bench
