// The allocator's figures, read without locks: the counters and the per-arena snapshot.
#include <zel/mem/allocator.h>

#include "mem/allocator_state.h"
#include "mem/snapshot.h"

namespace zel {

AllocatorCounts MemoryAllocator::Counts() const {
  mem::AllocatorState &state = mem::State();
  AllocatorCounts counts;
  auto add = [&counts](const mem::Arena &a) {
    counts.allocs += a.allocs();
    counts.frees += a.frees();
    counts.heap_allocs += a.heap_allocs();
    counts.heap_frees += a.heap_frees();
  };
  for (const mem::Arena &a : state.shared) add(a);
  for (const mem::Arena &a : state.dedicated) add(a);
  counts.collisions = state.collisions.load(std::memory_order_relaxed);
  return counts;
}

}  // namespace zel

namespace zel::mem {

void TakeAllocatorSnapshot(AllocatorSnapshot &out) {
  out = AllocatorSnapshot{};
  AllocatorState *state = StateIfMade();
  if (state == nullptr) return;
  ArenaSnapshot *next = out.arenas;
  for (const Arena &a : state->shared) a.Snapshot(*next++);
  for (const Arena &a : state->dedicated) a.Snapshot(*next++);
}

}  // namespace zel::mem
