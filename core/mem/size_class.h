// Size classes: blocks of 2^k bytes from 8 bytes to 1 GiB, and the geometry of the pages that
// hold them.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

namespace zel::mem {

inline constexpr int kMinClass = 3;   // 8-byte blocks
inline constexpr int kMaxClass = 30;  // 1 GiB blocks: the largest whose size is still an int
inline constexpr int kClassCount = kMaxClass - kMinClass + 1;
inline constexpr uint32_t kMaxBlockBytes = uint32_t{1} << kMaxClass;

// A page is a header followed by slots; a slot is a header followed by the caller's block.
inline constexpr int kPageHeaderBytes = 64;
inline constexpr int kSlotHeaderBytes = 8;
// The room for slots in a page of small blocks, which is then 4 KiB in all.
inline constexpr int kPageSlotRoom = 4096 - kPageHeaderBytes;

// The class of a request of 1 to kMaxBlockBytes bytes: the smallest k >= kMinClass with
// 2^k >= size. One bit scan, no branch.
inline int SizeClass(uint32_t size) {
  return static_cast<int>(std::bit_width((size - 1) | ((uint32_t{1} << kMinClass) - 1)));
}

constexpr int32_t BlockBytes(int k) { return int32_t{1} << k; }

// Slots in a page of class k: as many as fit the room, and at least one (a big block gets a page
// of its own).
constexpr int32_t SlotsPerPage(int k) {
  int32_t n = kPageSlotRoom / (BlockBytes(k) + kSlotHeaderBytes);
  return n > 0 ? n : 1;
}

// The bytes of one page of class k, as taken from the heap.
constexpr size_t PageBytes(int k) {
  return kPageHeaderBytes + static_cast<size_t>(SlotsPerPage(k)) *
                                (static_cast<size_t>(BlockBytes(k)) + kSlotHeaderBytes);
}

static_assert(PageBytes(3) == 4096 && PageBytes(4) == 4096, "small blocks fill a 4 KiB page");

}  // namespace zel::mem
