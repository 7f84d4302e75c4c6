// The global allocator: all of the library's memory passes through it.
//
// Blocks come in power-of-two size classes from 8 bytes up, carved from pages of about 4 KiB taken
// from the process heap. Threads share three arenas, each behind a light lock; a thread that
// collides too often with others moves to a less contended arena. Up to three threads may own a
// dedicated arena that they use without any lock. A block freed by a thread that cannot take its
// arena's lock at once goes onto that arena's lock-free list of remote frees, which the arena's
// next allocation drains. Any thread may free any block.
#pragma once

#include <zel/config.h>

#include <cstdint>

namespace zel {

class cstring;

// A block of at least `size` bytes (8 at least), or null when `size` is negative or the heap has
// no more memory. Every block is aligned as malloc's are: to 16 bytes on 64-bit builds (SSE
// vectors and long double may live in it) and to 8 bytes on 32-bit builds. A size above 1 GiB
// gets a 2 GiB block, when the heap can give one.
ZEL_API void *GAlloc(int size);
// Frees a block from GAlloc, GRealloc, MallocX or ReallocX; null is ignored. Any thread.
ZEL_API void GFree(void *block);
// Resizes a block, keeping its contents up to the smaller of the two sizes. Stays in place while
// the size class is unchanged, else moves. A null `block` allocates. On failure returns null and
// leaves `block` as it was (as for a negative size). Aligned as GAlloc's blocks are.
ZEL_API void *GRealloc(void *block, int size);

// As GAlloc, but never null: throws ErrorX "Malloc (<size>) failed".
ZEL_API void *MallocX(int size);
// As GRealloc, but never null: throws ErrorX "Realloc (<size>) failed" (the block is kept).
ZEL_API void *ReallocX(void *block, int size);
// As GFree.
ZEL_API void FreeX(void *block);

// Registers the allocator's counters ("Allocs", "Frees", "Heap Allocs", "Allocator Collisions"
// and "NanoTime::Current calls") with the counter registry.
ZEL_API void EnableMemCounters();

// The allocator's counters, read without locks: statistics, not exact while threads allocate, but
// at any quiet moment they agree with the calls made.
struct AllocatorCounts {
  int64_t allocs = 0;        // blocks handed out
  int64_t frees = 0;         // blocks given back: every GFree, also one handed to another arena's
                             // remote-free list and not yet taken back
  int64_t collisions = 0;    // allocations that found their arena's lock taken
  int64_t heap_allocs = 0;   // pages taken from the process heap
  int64_t heap_frees = 0;    // pages given back to it
};

class ZEL_API MemoryAllocator {
 public:
  // Gives the calling thread one of the three dedicated arenas, which it then uses without locks.
  // True when the thread has one (already, or now). When all three are taken, logs
  // "Thread <id> can't use a dedicated allocator (all gone)" and the thread goes on with the
  // shared arenas; false.
  bool Dedicate();

  // Appends the statistics report: "Allocator Stats", then per arena "Allocator " and, for each
  // size class in use, "\tBlocks of size <n>: <a> active, <u> unused" (unused counts blocks never
  // handed out and blocks free), then "Number of system blocks: ", "Bytes allocated to user: " and
  // "Bytes allocated from system: ", each followed by its number. Lines end in CR LF.
  void PrintStats(cstring &out);

  // The counters.
  AllocatorCounts Counts() const;

  // The usable size of a block from GAlloc: its size class (8, 16, 32, ...); INT_MAX for a block
  // of the 2 GiB class, whose size an int cannot hold.
  static int BlockSize(const void *block);

  MemoryAllocator(const MemoryAllocator &) = delete;
  MemoryAllocator &operator=(const MemoryAllocator &) = delete;

 private:
  MemoryAllocator() = default;
  friend MemoryAllocator *GetMemoryAllocator();
};

// The process-wide allocator, or null before its first use has made it. (Declared after the
// class: MinGW rejects a friend redeclaration of a function already declared dllimport.)
ZEL_API MemoryAllocator *GetMemoryAllocator();

}  // namespace zel
