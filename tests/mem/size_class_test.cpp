// Size classes, block sizes, and the edges of GAlloc, GFree and GRealloc.
#include <zel/mem/allocator.h>

#include "support/allocator.h"

#include <climits>
#include <cstdint>

namespace zel {
namespace {

TEST(SizeClass, RequestsRoundUpToPowersOfTwoFromEightAndImpossibleOnesGiveNull) {
  struct Case {
    int request, block;
  } const cases[] = {{0, 8},     {1, 8},       {8, 8},       {9, 16},      {17, 32},
                     {100, 128}, {1024, 1024}, {4000, 4096}, {4097, 8192}, {65537, 131072}};
  for (const Case &c : cases) {
    void *p = GAlloc(c.request);
    ASSERT_NE(p, nullptr) << c.request;
    EXPECT_EQ(MemoryAllocator::BlockSize(p), c.block) << c.request;
    EXPECT_EQ(reinterpret_cast<uintptr_t>(p) % 8, 0u) << c.request;
    GFree(p);
  }
  for (int size : {-1, INT_MIN, (1 << 30) + 1, INT_MAX}) EXPECT_EQ(GAlloc(size), nullptr) << size;
  GFree(nullptr);
}

TEST(GRealloc, MovesAcrossClassesKeepingTheContentsStaysWithinOneAndKeepsTheBlockOnFailure) {
  void *p = nullptr;  // the first resize allocates
  int size = 0;
  for (int next : {5, 20, 300, 5000, 70000, 40, 3}) {
    void *q = GRealloc(p, next);
    ASSERT_NE(q, nullptr) << next;
    EXPECT_NE(q, p) << size << " -> " << next;
    EXPECT_TRUE(test::Intact(q, 1, size < next ? size : next)) << size << " -> " << next;
    test::Stamp(q, 1, 0, next);
    p = q;
    size = next;
  }
  GFree(p);

  // Within a class the block stays; on failure it is kept.
  p = GAlloc(9);
  test::Stamp(p, 1, 0, 16);
  EXPECT_EQ(GRealloc(p, 16), p);
  EXPECT_EQ(GRealloc(p, 12), p);
  EXPECT_EQ(GRealloc(p, -1), nullptr);
  EXPECT_EQ(GRealloc(p, INT_MAX), nullptr);
  EXPECT_TRUE(test::Intact(p, 1, 16));
  void *smaller = GRealloc(p, 8);  // the 8-byte class: a move, though it shrinks
  EXPECT_NE(smaller, p);
  EXPECT_EQ(MemoryAllocator::BlockSize(smaller), 8);
  EXPECT_TRUE(test::Intact(smaller, 1, 8));
  GFree(smaller);
}

}  // namespace
}  // namespace zel
