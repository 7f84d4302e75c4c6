// Size classes: blocks of 2^k bytes from 8 bytes to 2 GiB, and the geometry of the pages that
// hold them.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

namespace zel::mem {

inline constexpr int kMinClass = 3;   // 8-byte blocks
inline constexpr int kMaxClass = 31;  // 2 GiB blocks: the class of the largest int request
inline constexpr int kClassCount = kMaxClass - kMinClass + 1;

// A page is a header followed by slots; a slot is a header followed by the caller's block.
inline constexpr int kPageHeaderBytes = 64;
inline constexpr int kSlotHeaderBytes = 8;
// The room for slots in a page of small blocks, which is then at most 4 KiB in all.
inline constexpr int kPageSlotRoom = 4096 - kPageHeaderBytes;

// Every block's alignment: 16 bytes on 64-bit builds, what malloc promises there (SSE vectors,
// long double), and 8 on 32-bit builds.
inline constexpr int kBlockAlignment = sizeof(void *) == 8 ? 16 : 8;
// Room kept in every page so that its first slot can be placed for an aligned block whatever the
// heap's alignment of the page (at least 8): 8 bytes on 64-bit builds, none on 32-bit ones.
inline constexpr int kFirstSlotSlack = kBlockAlignment - kSlotHeaderBytes;

// The last class whose slots are smaller than a 64-byte cache line, so that several share one.
inline constexpr int kLastLineSharingClass = 5;

// The class of a request of 1 to 2^31 bytes: the smallest k >= kMinClass with 2^k >= size. One
// bit scan, no branch.
inline int SizeClass(uint32_t size) {
  return static_cast<int>(std::bit_width((size - 1) | ((uint32_t{1} << kMinClass) - 1)));
}

constexpr size_t BlockBytes(int k) { return size_t{1} << k; }

// The distance from one slot of class k to the next: header and block, rounded up so that every
// block of the page keeps the first one's alignment.
constexpr size_t SlotBytes(int k) {
  return (BlockBytes(k) + kSlotHeaderBytes + kBlockAlignment - 1) & ~size_t{kBlockAlignment - 1};
}

// Slots in a page of class k: as many as fit the room (the last needs no rounding), and at least
// one (a big block gets a page of its own).
constexpr int32_t SlotsPerPage(int k) {
  constexpr size_t room = kPageSlotRoom - kFirstSlotSlack;
  size_t last = BlockBytes(k) + kSlotHeaderBytes;
  return last > room ? 1 : static_cast<int32_t>((room - last) / SlotBytes(k) + 1);
}

// The bytes of one page of class k, as taken from the heap.
constexpr size_t PageBytes(int k) {
  return kPageHeaderBytes + kFirstSlotSlack +
         static_cast<size_t>(SlotsPerPage(k) - 1) * SlotBytes(k) + BlockBytes(k) +
         kSlotHeaderBytes;
}

static_assert(SlotBytes(kLastLineSharingClass) < 64 && SlotBytes(kLastLineSharingClass + 1) >= 64,
              "the classes of slots smaller than a cache line");
static_assert(sizeof(void *) == 8 || (PageBytes(3) == 4096 && PageBytes(4) == 4096),
              "on 32-bit builds small blocks fill a 4 KiB page");
static_assert(PageBytes(3) <= 4096 && PageBytes(4) == 4096 && PageBytes(11) <= 4096,
              "a page of small blocks stays within 4 KiB");

}  // namespace zel::mem
