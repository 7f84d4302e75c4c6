// The layout of pages and slots.
#pragma once

#include "mem/size_class.h"

#include <cstdint>

namespace zel::mem {

class Arena;
struct Page;

// A slot's 8-byte header. Its first word names the owning page, which never changes once the
// slot was handed out. A free slot's link to the next free slot is the word after it: the
// header's second word on 32-bit builds, the block's own first bytes on 64-bit builds (every
// block has at least 8), so the header stays 8 bytes everywhere.
struct Slot {
  Page *page;
};

// The link of a free slot (on a page's free list or on an arena's remote-free list).
inline Slot *&NextFree(Slot *s) {
  return *reinterpret_cast<Slot **>(reinterpret_cast<char *>(s) + sizeof(Page *));
}
inline void *BlockOf(Slot *s) { return reinterpret_cast<char *>(s) + kSlotHeaderBytes; }
inline Slot *SlotOf(void *block) {
  return reinterpret_cast<Slot *>(static_cast<char *>(block) - kSlotHeaderBytes);
}
inline Page *PageOf(const void *block) { return SlotOf(const_cast<void *>(block))->page; }

// The header at the start of every page. Arena, sizes and class never change; the rest belongs
// to whoever holds the arena.
struct Page {
  Arena *arena;
  Slot *free_list;    // freed slots, the latest first
  char *next_unused;  // the next slot never handed out
  Page *prev;         // neighbours in the class's list of pages with free blocks
  Page *next;
  size_t slot_bytes;  // from one slot to the next
  uint32_t block_size;
  int32_t active;  // blocks handed out and not freed; the free ones are slot_count - active
  int32_t slot_count;
  int16_t size_class;
  // The owning arena's index (kDedicatedIndex for a dedicated one), kept here so that a free
  // learns it from the line it reads anyway, not from the arena's.
  int8_t arena_index;

  // The first slot: just after the header, or up to kFirstSlotSlack bytes further, where its
  // block is aligned to kBlockAlignment.
  char *FirstSlot() {
    uintptr_t block = reinterpret_cast<uintptr_t>(this) + kPageHeaderBytes + kSlotHeaderBytes;
    block = (block + kBlockAlignment - 1) & ~uintptr_t{kBlockAlignment - 1};
    return reinterpret_cast<char *>(block - kSlotHeaderBytes);
  }
};

static_assert(sizeof(Page) <= kPageHeaderBytes, "the page header fits its 64 bytes");
static_assert(sizeof(Page *) + sizeof(Slot *) <= kSlotHeaderBytes + BlockBytes(kMinClass),
              "a free slot's page and link fit its header and the smallest block");

}  // namespace zel::mem
