// Arena: pages of every size class, used by one thread at a time.
#pragma once

#include <zel/config.h>

#include "mem/page.h"
#include "mem/size_class.h"
#include "thread/light_lock.h"

#include <atomic>
#include <cstdint>

namespace zel::mem {

struct ArenaSnapshot;

inline constexpr int kDedicatedIndex = -1;  // the index of every dedicated arena
inline constexpr uint32_t kNoOwner = ~0u;   // a dedicated arena's owner while it is free

// An arena hands out blocks from its pages. Only its holder allocates and frees into it: the
// thread that has its lock (a shared arena) or its owner (a dedicated arena, no lock). Any other
// thread gives a block back through the arena's remote-free list, a lock-free stack that the
// holder takes back whole at its next allocation.
//
// Each size class keeps a current page (allocations come from it), a list of other pages with
// free blocks, and at most one empty page; full pages are on no list until a block of theirs is
// freed, and further empty pages go back to the heap.
//
// In the classes whose slots are smaller than a cache line, a thread that allocates after another
// one makes another page current, and the other thread's page goes back among the pages with free
// blocks, whence that thread takes it again when its turn comes: the small blocks of two threads
// sharing an arena then lie on different pages, not side by side on the cache lines that both
// write.
//
// Exported only so that the library's tests can reach it.
class ZEL_API Arena {
 public:
  // A shared arena has the index 0, 1 or 2; a dedicated one has kDedicatedIndex.
  explicit Arena(int index);
  // Gives back the pages that no handed-out block is in.
  ~Arena();
  Arena(const Arena &) = delete;
  Arena &operator=(const Arena &) = delete;

  int index() const { return index_; }
  bool Shared() const { return index_ != kDedicatedIndex; }
  // The lock of a shared arena.
  LightLock &lock() { return lock_; }

  // A block of class k (kMinClass to kMaxClass) for the thread `taker`, or null when the heap has
  // no page. Holder only.
  void *Alloc(int k, uint32_t taker = 0);
  // Frees a slot of this arena, and counts the free. Holder only.
  void Free(Slot *s) {
    Release(s);
    Add<int64_t>(frees_, 1);
  }
  // Hands a slot of this arena back from any thread, without waiting; the free counts at once,
  // the slot is taken back at the holder's next allocation.
  void PushRemote(Slot *s);

  // A dedicated arena's owner thread id, kNoOwner while free.
  uint32_t owner() const { return owner_.load(std::memory_order_acquire); }
  // Makes `thread_id` the owner when the arena is free; true when it did.
  bool Claim(uint32_t thread_id);
  // Frees the arena for the next owner, who takes over its pages and its remote-free list.
  void Disown() { owner_.store(kNoOwner, std::memory_order_release); }

  // Statistics, read from any thread without locks (but for a shared arena's snapshot, which takes
  // its lock to count the blocks of its pages).
  int64_t allocs() const { return allocs_.load(std::memory_order_relaxed); }
  int64_t frees() const {
    return frees_.load(std::memory_order_relaxed) + remote_frees_.load(std::memory_order_relaxed);
  }
  int64_t heap_allocs() const { return heap_allocs_.load(std::memory_order_relaxed); }
  int64_t heap_frees() const { return heap_frees_.load(std::memory_order_relaxed); }
  void Snapshot(ArenaSnapshot &out) const;

 private:
  // The page lists of a size class. They change only when a page fills, gets a block back while
  // full, empties, or comes from or goes to the heap (and, in the small classes, when another
  // thread takes its turn): so while the arena passes from thread to thread, their cache line is
  // mostly read by each and written by none.
  struct ClassPages {
    Page *current = nullptr;
    Page *partial = nullptr;  // other pages with free blocks, in the order they are taken
    Page *partial_last = nullptr;
    Page *empty = nullptr;    // a page with no block handed out, kept for reuse
    std::atomic<intptr_t> pages{0};  // statistics: the pages of the class
    intptr_t full = 0;               // the pages on no list because they are full
    uint32_t taker = 0;              // the thread that allocated last, in the small classes
  };

  // Statistics are written only by the holder: a plain load and store, no locked instruction.
  template <typename T>
  static void Add(std::atomic<T> &counter, T delta) {
    counter.store(counter.load(std::memory_order_relaxed) + delta, std::memory_order_relaxed);
  }

  ClassPages &Class(int k) { return classes_[k - kMinClass]; }
  // Makes a page with a free slot current: the kept empty one, else the first in line of those
  // with free blocks, else a new one from the heap. Null when the heap has none.
  Page *NextPage(int k);
  // Makes another page current for `taker`, a thread other than the one that allocated last in
  // class k; the page it leaves goes among those with free blocks. The page to allocate from.
  Page *SwitchPage(int k, uint32_t taker);
  // Files a page after a free made it empty or no longer full.
  void Refile(ClassPages &c, Page *p, bool was_full);
  // Puts a page among those with free blocks, first or last in line; takes one out.
  void Link(ClassPages &c, Page *p, bool first);
  void Unlink(ClassPages &c, Page *p);
  // Keeps an empty page for the class, or gives it back when one is kept already.
  void KeepOrGiveBack(ClassPages &c, Page *p);
  void GiveBack(ClassPages &c, Page *p);
  // The blocks handed out in the pages of class k, counted page by page. Holder only.
  static intptr_t ActiveInPages(const ClassPages &c, int k);
  // Puts a slot back into its page, without counting: the free was counted when it was made.
  inline void Release(Slot *s);
  void DrainRemote();

  mutable LightLock lock_;  // a snapshot takes it too
  const int index_;
  std::atomic<uint32_t> owner_{kNoOwner};
  std::atomic<int64_t> allocs_{0};
  std::atomic<int64_t> frees_{0};
  std::atomic<int64_t> heap_allocs_{0};
  std::atomic<int64_t> heap_frees_{0};
  ClassPages classes_[kClassCount];
  // Statistics of a dedicated arena, counted at every allocation and free: the blocks of each
  // class handed out (freed remotely but not yet taken back included). A shared arena's snapshot
  // counts them from its pages instead, so that the threads that pass a shared arena among them
  // do not pass this line along too at every block.
  alignas(64) std::atomic<intptr_t> active_[kClassCount] = {};
  // What freeing threads touch, on a cache line apart from what the holder writes (which also
  // aligns the whole arena to cache lines): they write the list and count their frees.
  alignas(64) std::atomic<Slot *> remote_{nullptr};
  std::atomic<int64_t> remote_frees_{0};
};

inline void *Arena::Alloc(int k, uint32_t taker) {
  if (remote_.load(std::memory_order_relaxed) != nullptr) DrainRemote();
  ClassPages &c = Class(k);
  Page *p = c.current;
  if (k <= kLastLineSharingClass && c.taker != taker) p = SwitchPage(k, taker);
  if (p == nullptr && (p = NextPage(k)) == nullptr) return nullptr;
  Slot *s = p->free_list;
  if (s != nullptr) {
    p->free_list = NextFree(s);
  } else {
    s = reinterpret_cast<Slot *>(p->next_unused);
    s->page = p;
    p->next_unused += p->slot_bytes;
  }
  if (++p->active == p->slot_count) {  // full: on no list
    c.current = nullptr;
    ++c.full;
  }
  if (!Shared()) Add<intptr_t>(active_[k - kMinClass], 1);
  Add<int64_t>(allocs_, 1);
  return BlockOf(s);
}

inline void Arena::Release(Slot *s) {
  Page *p = s->page;
  ClassPages &c = Class(p->size_class);
  NextFree(s) = p->free_list;
  p->free_list = s;
  bool was_full = p->active == p->slot_count;
  --p->active;
  if (!Shared()) Add<intptr_t>(active_[p->size_class - kMinClass], -1);
  if (was_full) --c.full;
  if (was_full || (p->active == 0 && p != c.current)) Refile(c, p, was_full);
}

}  // namespace zel::mem
