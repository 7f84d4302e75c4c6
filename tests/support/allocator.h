// Blocks with recognisable contents, and the global allocator's arenas, for tests.
#pragma once

#include "mem/snapshot.h"

#include <cstdint>

namespace zel::test {

// Byte i of a block tagged `tag` holds tag * 31 + i (truncated).
inline void Stamp(void *block, uint32_t tag, int from, int to) {
  for (int i = from; i < to; ++i)
    static_cast<unsigned char *>(block)[i] = static_cast<unsigned char>(tag * 31 + i);
}
// True when the first `length` bytes of `block` hold what Stamp wrote for `tag`.
inline bool Intact(const void *block, uint32_t tag, int length) {
  for (int i = 0; i < length; ++i)
    if (static_cast<const unsigned char *>(block)[i] != static_cast<unsigned char>(tag * 31 + i))
      return false;
  return true;
}

inline mem::AllocatorSnapshot TakeSnapshot() {
  mem::AllocatorSnapshot all;
  mem::TakeAllocatorSnapshot(all);
  return all;
}

// The blocks in use in the dedicated arena of thread `owner`, of one block size or (with 0) of
// all; -1 when the thread has none.
inline int64_t ActiveInDedicated(uint32_t owner, int block_size = 0) {
  for (const mem::ArenaSnapshot &a : TakeSnapshot().arenas) {
    if (a.index != mem::kDedicatedIndex || a.owner != owner) continue;
    int64_t active = 0;
    for (int i = 0; i < a.class_count; ++i)
      if (block_size == 0 || a.classes[i].block_size == block_size) active += a.classes[i].active;
    return active;
  }
  return -1;
}

}  // namespace zel::test
