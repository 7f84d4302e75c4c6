// A snapshot of the global allocator's arenas: the figures its statistics report is made of.
#pragma once

#include <zel/config.h>

#include "mem/size_class.h"

#include <cstdint>

namespace zel::mem {

// One size class of an arena that has pages of it.
struct ClassSnapshot {
  int64_t block_size = 0;
  int64_t active = 0;  // blocks handed out (freed by another thread but not taken back included)
  int64_t unused = 0;  // blocks never handed out, and blocks free
};

struct ArenaSnapshot {
  int index = 0;        // 0 to 2 for a shared arena; kDedicatedIndex for a dedicated one
  uint32_t owner = 0;   // a dedicated arena's owner thread id, kNoOwner while free
  int class_count = 0;  // the classes in use, smallest first, in classes[0 .. class_count)
  ClassSnapshot classes[kClassCount];
  int64_t system_blocks = 0;  // pages taken from the process heap and kept
  int64_t user_bytes = 0;     // the block sizes of the blocks handed out
  int64_t system_bytes = 0;   // the bytes of those pages
};

inline constexpr int kSharedArenas = 3;
inline constexpr int kDedicatedArenas = 3;

// The shared arenas 0 to 2, then the dedicated ones.
struct AllocatorSnapshot {
  ArenaSnapshot arenas[kSharedArenas + kDedicatedArenas];
};

// Fills `out` from every arena; each shared arena's lock is taken for a moment, to count the
// blocks of its pages. Figures of arenas in use may be a little apart.
// All zero before the allocator is made.
ZEL_API void TakeAllocatorSnapshot(AllocatorSnapshot &out);

}  // namespace zel::mem
