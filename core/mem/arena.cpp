// The arena's slower paths: pages from and to the heap, the page lists, remote frees.
#include "mem/arena.h"

#include "mem/snapshot.h"
#include "os/os.h"

namespace zel::mem {

Arena::Arena(int index) : index_(index) {}

Arena::~Arena() {
  DrainRemote();
  for (ClassPages &c : classes_) {
    if (c.current != nullptr && c.current->active == 0) GiveBack(c, c.current);
    if (c.empty != nullptr) GiveBack(c, c.empty);
  }
}

bool Arena::Claim(uint32_t thread_id) {
  uint32_t expected = kNoOwner;
  return owner_.compare_exchange_strong(expected, thread_id, std::memory_order_acq_rel);
}

Page *Arena::NextPage(int k) {
  ClassPages &c = Class(k);
  Page *p = c.empty;
  if (p != nullptr) {
    c.empty = nullptr;
  } else if ((p = c.partial) != nullptr) {
    Unlink(c, p);
  } else {
    p = static_cast<Page *>(os::HeapAlloc(PageBytes(k)));
    if (p == nullptr) return nullptr;
    p->arena = this;
    p->free_list = nullptr;
    p->next_unused = p->FirstSlot();
    p->slot_bytes = SlotBytes(k);
    p->block_size = static_cast<uint32_t>(BlockBytes(k));
    p->size_class = static_cast<int16_t>(k);
    p->arena_index = static_cast<int8_t>(index_);
    p->slot_count = SlotsPerPage(k);
    p->active = 0;
    Add<int64_t>(heap_allocs_, 1);
    Add<intptr_t>(c.pages, 1);
  }
  c.current = p;
  return p;
}

Page *Arena::SwitchPage(int k, uint32_t taker) {
  ClassPages &c = Class(k);
  c.taker = taker;
  Page *left = c.current;
  if (left == nullptr) return nullptr;  // the caller finds a page as usual
  c.current = nullptr;
  Page *p = NextPage(k);
  if (p == nullptr) {  // no page from the heap: the threads share the page after all
    c.current = left;
    return left;
  }
  // First in line, so that the thread that left it takes it back at its next turn.
  if (left->active != 0)
    Link(c, left, true);
  else
    KeepOrGiveBack(c, left);
  return p;
}

void Arena::Refile(ClassPages &c, Page *p, bool was_full) {
  if (p->active != 0) {
    // A full page got a block back. Last in line: by its turn, more of its blocks are free, and
    // pages that empty meanwhile are the ones that go back to the heap, not ones still in use.
    Link(c, p, false);
    return;
  }
  if (!was_full) Unlink(c, p);
  KeepOrGiveBack(c, p);
}

void Arena::Link(ClassPages &c, Page *p, bool first) {
  if (first) {
    p->prev = nullptr;
    p->next = c.partial;
    (c.partial != nullptr ? c.partial->prev : c.partial_last) = p;
    c.partial = p;
  } else {
    p->prev = c.partial_last;
    p->next = nullptr;
    (c.partial_last != nullptr ? c.partial_last->next : c.partial) = p;
    c.partial_last = p;
  }
}

void Arena::Unlink(ClassPages &c, Page *p) {
  (p->prev != nullptr ? p->prev->next : c.partial) = p->next;
  (p->next != nullptr ? p->next->prev : c.partial_last) = p->prev;
}

void Arena::KeepOrGiveBack(ClassPages &c, Page *p) {
  if (c.empty == nullptr)
    c.empty = p;
  else
    GiveBack(c, p);
}

void Arena::GiveBack(ClassPages &c, Page *p) {
  os::HeapFree(p);
  Add<int64_t>(heap_frees_, 1);
  Add<intptr_t>(c.pages, -1);
}

void Arena::PushRemote(Slot *s) {
  remote_frees_.fetch_add(1, std::memory_order_relaxed);
  Slot *head = remote_.load(std::memory_order_relaxed);
  do {
    NextFree(s) = head;
  } while (!remote_.compare_exchange_weak(head, s, std::memory_order_release,
                                          std::memory_order_relaxed));
}

void Arena::DrainRemote() {
  Slot *s = remote_.exchange(nullptr, std::memory_order_acquire);
  while (s != nullptr) {
    Slot *next = NextFree(s);
    Release(s);
    s = next;
  }
}

void Arena::Snapshot(ArenaSnapshot &out) const {
  out = ArenaSnapshot{};
  out.index = index_;
  out.owner = owner();
  if (Shared()) lock_.Enter();
  for (int k = kMinClass; k <= kMaxClass; ++k) {
    const ClassPages &c = classes_[k - kMinClass];
    intptr_t pages = c.pages.load(std::memory_order_relaxed);
    if (pages == 0) continue;
    intptr_t active = Shared() ? ActiveInPages(c, k)
                               : active_[k - kMinClass].load(std::memory_order_relaxed);
    ClassSnapshot &cs = out.classes[out.class_count++];
    cs.block_size = static_cast<int64_t>(BlockBytes(k));
    cs.active = active;
    cs.unused = static_cast<int64_t>(pages) * SlotsPerPage(k) - active;
    out.system_blocks += pages;
    out.user_bytes += static_cast<int64_t>(active) * static_cast<int64_t>(BlockBytes(k));
    out.system_bytes += static_cast<int64_t>(pages) * static_cast<int64_t>(PageBytes(k));
  }
  if (Shared()) lock_.Leave();
}

intptr_t Arena::ActiveInPages(const ClassPages &c, int k) {
  intptr_t active = c.full * SlotsPerPage(k);
  if (c.current != nullptr) active += c.current->active;
  for (const Page *p = c.partial; p != nullptr; p = p->next) active += p->active;
  return active;
}

}  // namespace zel::mem
