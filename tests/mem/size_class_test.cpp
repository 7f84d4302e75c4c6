// Size classes, block sizes, and the edges of GAlloc, GFree and GRealloc.
#include <zel/mem/allocator.h>

#include "support/allocator.h"

#include <climits>
#include <cstdint>
#include <vector>

namespace zel {
namespace {

constexpr uintptr_t kAlignment = sizeof(void *) == 8 ? 16 : 8;  // what malloc gives

bool Aligned(const void *p) { return reinterpret_cast<uintptr_t>(p) % kAlignment == 0; }

TEST(SizeClass, RequestsRoundUpToPowersOfTwoFromEightAndNegativeOnesGiveNull) {
  struct Case {
    int request, block;
  } const cases[] = {{0, 8},     {1, 8},       {8, 8},       {9, 16},      {17, 32},
                     {100, 128}, {1024, 1024}, {4000, 4096}, {4097, 8192}, {65537, 131072}};
  for (const Case &c : cases) {
    void *p = GAlloc(c.request);
    ASSERT_NE(p, nullptr) << c.request;
    EXPECT_EQ(MemoryAllocator::BlockSize(p), c.block) << c.request;
    GFree(p);
  }
  for (int size : {-1, INT_MIN}) EXPECT_EQ(GAlloc(size), nullptr) << size;
  GFree(nullptr);
}

TEST(SizeClass, EveryBlockIsAlignedAsMallocsAre) {
  // Many blocks of every small class, so that every slot position of a page comes up.
  std::vector<void *> blocks;
  for (int size = 1; size <= 2048; size = size * 2 + 1)
    for (int i = 0; i < 300; ++i) blocks.push_back(MallocX(size));
  blocks.push_back(GRealloc(GAlloc(24), 40));
  blocks.push_back(ReallocX(nullptr, 5000));
  for (void *p : blocks) EXPECT_TRUE(Aligned(p)) << p << " of " << MemoryAllocator::BlockSize(p);
  for (void *p : blocks) GFree(p);
}

TEST(SizeClass, BlocksAboveOneGiBComeFromTheHeapWhenItHasThem) {
  void *p = GAlloc((1 << 30) + 1);
  if (sizeof(void *) == 4 && p == nullptr) return;  // a 32-bit heap seldom has 2 GiB in one piece
  ASSERT_NE(p, nullptr);
  EXPECT_EQ(MemoryAllocator::BlockSize(p), INT_MAX);  // 2 GiB does not fit an int
  EXPECT_TRUE(Aligned(p));
  static_cast<char *>(p)[0] = 1;
  static_cast<char *>(p)[INT_MAX - 1] = 2;  // the last byte an int size can ask for
  EXPECT_EQ(GRealloc(p, INT_MAX), p);       // the same class
  GFree(p);
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
  EXPECT_EQ(GRealloc(p, -1), nullptr);  // kept on failure
  EXPECT_TRUE(test::Intact(p, 1, 16));
  void *smaller = GRealloc(p, 8);  // the 8-byte class: a move, though it shrinks
  EXPECT_NE(smaller, p);
  EXPECT_EQ(MemoryAllocator::BlockSize(smaller), 8);
  EXPECT_TRUE(test::Intact(smaller, 1, 8));
  GFree(smaller);
}

}  // namespace
}  // namespace zel
