// The global allocator's state: its arenas and the counters that are not kept per arena.
#pragma once

#include <zel/config.h>

#include "mem/arena.h"
#include "mem/snapshot.h"

#include <atomic>
#include <cstdint>

namespace zel::mem {

struct AllocatorState {
  Arena shared[kSharedArenas]{Arena(0), Arena(1), Arena(2)};
  Arena dedicated[kDedicatedArenas]{Arena(kDedicatedIndex), Arena(kDedicatedIndex),
                                    Arena(kDedicatedIndex)};
  // Allocations that found their arena's lock taken: rare, so one process-wide counter.
  std::atomic<int64_t> collisions{0};
};

// The state, made on the first call (whatever the order of static initialisation) and never
// destroyed: blocks may still be freed by static destructors and by threads ending late.
// Exported only so that the library's tests can reach it.
ZEL_API AllocatorState &State();
// The state, or null before the first call of State.
AllocatorState *StateIfMade();

}  // namespace zel::mem
