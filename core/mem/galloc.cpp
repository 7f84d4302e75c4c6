// GAlloc, GFree and GRealloc: the way in and out of the arenas.
#include <zel/mem/allocator.h>

#include "mem/allocator_state.h"
#include "mem/arena.h"
#include "mem/thread_records.h"

#include <algorithm>
#include <climits>
#include <cstring>

namespace zel {

namespace {

using mem::Arena;
using mem::ThreadRecord;

// The current shared arena's lock was taken. The collision counts against it; the thread tries
// the next two shared arenas in order, and moves to the first free one when its collision ratio
// there is lower than here by at least 2% (the factor 0.98 is intended: it keeps threads from
// wandering between arenas that are about as busy). With both busy it waits for its own arena.
// Kept out of line, so that GAlloc's fast path needs few registers.
[[gnu::noinline]] void *AllocContended(ThreadRecord &r, int k) {
  mem::AllocatorState &state = mem::State();
  int here = r.current;
  ++r.collisions[here];
  state.collisions.fetch_add(1, std::memory_order_relaxed);
  double ratio = r.collisions[here] / (r.allocs[here] + 1.0) * 0.98;
  for (int step = 1; step < mem::kSharedArenas; ++step) {
    int there = (here + step) % mem::kSharedArenas;
    Arena &other = state.shared[there];
    if (!other.lock().TryEnter()) continue;
    if (r.collisions[there] / (r.allocs[there] + 1.0) < ratio) {
      r.arena = &other;
      r.current = there;
    }
    ++r.allocs[there];
    void *block = other.Alloc(k, r.thread_id);
    other.lock().Leave();
    return block;
  }
  Arena &own = state.shared[here];
  own.lock().Enter();
  ++r.allocs[here];
  void *block = own.Alloc(k, r.thread_id);
  own.lock().Leave();
  return block;
}

}  // namespace

void *GAlloc(int size) {
  // Every size from 1 to INT_MAX has a class (the largest, 2 GiB, is bounded only by the heap).
  if (size <= 0) {
    if (size < 0) return nullptr;
    size = 1;
  }
  int k = mem::SizeClass(static_cast<uint32_t>(size));
  ThreadRecord *r = mem::CurrentRecord();
  if (r == nullptr && (r = mem::NewThreadRecord()) == nullptr) return nullptr;
  Arena *arena = r->arena;
  if (r->dedicated) return arena->Alloc(k);
  if (!arena->lock().TryEnter()) return AllocContended(*r, k);
  ++r->allocs[r->current];
  void *block = arena->Alloc(k, r->thread_id);
  arena->lock().Leave();
  return block;
}

void GFree(void *block) {
  if (block == nullptr) return;
  mem::Slot *s = mem::SlotOf(block);
  mem::Page *page = s->page;
  Arena *arena = page->arena;
  int index = page->arena_index;
  ThreadRecord *r = mem::CurrentRecord();
  if (index == mem::kDedicatedIndex) {
    // Only its owner frees into a dedicated arena directly.
    if (r != nullptr && r->arena == arena)
      arena->Free(s);
    else
      arena->PushRemote(s);
    return;
  }
  if (arena->lock().TryEnter()) {
    arena->Free(s);
    arena->lock().Leave();
  } else {
    arena->PushRemote(s);
  }
  if (r != nullptr) ++r->frees[index];
}

void *GRealloc(void *block, int size) {
  if (block == nullptr) return GAlloc(size);
  if (size < 0) return nullptr;
  mem::Page *page = mem::PageOf(block);
  if (mem::SizeClass(static_cast<uint32_t>(std::max(size, 1))) == page->size_class) return block;
  void *moved = GAlloc(size);
  if (moved == nullptr) return nullptr;
  std::memcpy(moved, block, std::min(static_cast<size_t>(size), size_t{page->block_size}));
  GFree(block);
  return moved;
}

int MemoryAllocator::BlockSize(const void *block) {
  uint32_t bytes = mem::PageOf(block)->block_size;
  return bytes > INT_MAX ? INT_MAX : static_cast<int>(bytes);
}

}  // namespace zel
