// The global allocator's per-thread records: which arena a thread uses, and how often it met
// other threads in each shared arena.
#pragma once

#include <zel/config.h>

#include "mem/arena.h"
#include "mem/snapshot.h"
#include "os/os.h"

#include <atomic>
#include <cstdint>

namespace zel::mem {

// Made on a thread's first allocation, from the process heap; touched only by its thread. It
// fills whole cache lines, so that threads counting their allocations never share one.
struct alignas(64) ThreadRecord {
  // Per shared arena: the thread's allocations there, its frees into it, and the allocations
  // that found its lock taken while it was the thread's current arena.
  int64_t allocs[kSharedArenas] = {};
  int64_t frees[kSharedArenas] = {};
  int64_t collisions[kSharedArenas] = {};
  Arena *arena = nullptr;  // the current arena: shared at first, or the thread's dedicated one
  int current = 0;         // the current shared arena's index, while not dedicated
  uint32_t thread_id = 0;
  bool dedicated = false;
  void *heap_block = nullptr;  // the heap block the record was aligned in
};

// The slot that holds each thread's record.
extern std::atomic<uint32_t> g_record_slot;

#if defined(_WIN32)
// MinGW emulates thread_local with a lookup of its own behind a lock: the slot is quicker.
inline ThreadRecord *CurrentRecord() {
  uint32_t slot = g_record_slot.load(std::memory_order_acquire);
  return slot == os::kNoTlsSlot ? nullptr : static_cast<ThreadRecord *>(os::TlsGet(slot));
}
#else
// A copy of the slot's value, read with one instruction (static TLS, initial-exec model).
[[gnu::tls_model("initial-exec")]] extern constinit thread_local ThreadRecord *t_record;
inline ThreadRecord *CurrentRecord() { return t_record; }
#endif

// The calling thread's record, made now (with the allocator, on the first one of all); null when
// the heap or the slot fails.
ThreadRecord *NewThreadRecord();

}  // namespace zel::mem

namespace zel {

// Frees the calling thread's record, giving up its dedicated arena if it has one: the arena's
// blocks stay valid, and its next owner takes back what other threads freed into it meanwhile.
// Called last in a thread's exit work; a thread that allocates again gets a new record.
ZEL_API void ReleaseThreadAllocatorRecord();

}  // namespace zel
