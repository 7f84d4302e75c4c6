// One arena on its own: page geometry, the page lists and the snapshot's figures.
#include "mem/arena.h"
#include "mem/snapshot.h"

#include <vector>

namespace zel::mem {
namespace {

// Blocks of class k from an arena that the test holds alone.
std::vector<void *> Take(Arena &arena, int k, int count) {
  std::vector<void *> blocks;
  for (int i = 0; i < count; ++i) blocks.push_back(arena.Alloc(k));
  return blocks;
}
void GiveAll(Arena &arena, const std::vector<void *> &blocks) {
  for (void *b : blocks) arena.Free(SlotOf(b));
}
ArenaSnapshot SnapshotOf(const Arena &arena) {
  ArenaSnapshot s;
  arena.Snapshot(s);
  return s;
}

TEST(Arena, SmallBlocksShare4KiBPages) {
  Arena arena(0);
  std::vector<void *> blocks = Take(arena, 3, 252);  // 4032 / (8 + 8)
  for (size_t i = 1; i < blocks.size(); ++i)
    ASSERT_EQ(static_cast<char *>(blocks[i]) - static_cast<char *>(blocks[i - 1]), 16) << i;
  EXPECT_EQ(static_cast<char *>(blocks[0]) - reinterpret_cast<char *>(PageOf(blocks[0])), 72);
  EXPECT_EQ(PageOf(blocks[251]), PageOf(blocks[0]));
  EXPECT_EQ(PageOf(blocks[0])->arena, &arena);
  ArenaSnapshot full = SnapshotOf(arena);
  EXPECT_EQ(full.system_bytes, 4096);
  EXPECT_EQ(full.classes[0].unused, 0);

  blocks.push_back(arena.Alloc(3));  // the 253rd starts a second page
  EXPECT_NE(PageOf(blocks.back()), PageOf(blocks[0]));
  GiveAll(arena, blocks);
  ArenaSnapshot freed = SnapshotOf(arena);
  EXPECT_EQ(freed.system_blocks, 2);  // one kept empty, the other still current
  EXPECT_EQ(freed.classes[0].active, 0);
  EXPECT_EQ(freed.classes[0].unused, 504);
  EXPECT_EQ(arena.heap_allocs(), 2);
  EXPECT_EQ(arena.heap_frees(), 0);
  EXPECT_EQ(arena.allocs(), 253);
  EXPECT_EQ(arena.frees(), 253);
}

TEST(Arena, ABlockTooBigToShareAPageGetsOneOfItsOwn) {
  Arena arena(0);
  std::vector<void *> blocks = Take(arena, SizeClass(4000), 2);  // 4032 / 4104 is 0, raised to 1
  EXPECT_NE(PageOf(blocks[0]), PageOf(blocks[1]));
  ArenaSnapshot s = SnapshotOf(arena);
  EXPECT_EQ(s.system_bytes, 2 * (64 + 4096 + 8));
  EXPECT_EQ(s.classes[0].unused, 0);
  GiveAll(arena, blocks);
  EXPECT_EQ(arena.heap_frees(), 1);  // the first page freed is kept empty, the second goes back
}

TEST(Arena, ReusesFreedBlocksAndKeepsOneEmptyPagePerClass) {
  Arena arena(1);
  const int k = 5;                                   // 100 blocks of 32 bytes a page
  std::vector<void *> blocks = Take(arena, k, 201);  // two full pages and a current one
  void *second = PageOf(blocks[200])->FirstSlot() + 40 + 8;
  // A block freed into a full page waits there while the current page has room.
  arena.Free(SlotOf(blocks[7]));
  EXPECT_EQ(arena.Alloc(k), second);
  GiveAll(arena, std::vector<void *>(blocks.begin() + 8, blocks.end()));
  GiveAll(arena, std::vector<void *>(blocks.begin(), blocks.begin() + 7));
  arena.Free(SlotOf(second));
  // Of the three pages, the one emptied first is kept, the next goes back, the current stays.
  EXPECT_EQ(arena.heap_frees(), 1);
  EXPECT_EQ(SnapshotOf(arena).system_blocks, 2);
  EXPECT_EQ(arena.Alloc(k), second);  // the latest freed first

  blocks = Take(arena, k, 199);
  EXPECT_EQ(arena.heap_allocs(), 3);  // the kept page was used before the heap
  blocks.push_back(second);
  blocks.push_back(arena.Alloc(k));
  EXPECT_EQ(arena.heap_allocs(), 4);
  GiveAll(arena, blocks);
}

TEST(Arena, SnapshotReportsEachClassInUse) {
  Arena arena(kDedicatedIndex);
  ASSERT_TRUE(arena.Claim(42));
  std::vector<void *> blocks = Take(arena, SizeClass(24), 3);
  blocks.push_back(arena.Alloc(SizeClass(100)));
  ArenaSnapshot s = SnapshotOf(arena);
  EXPECT_EQ(s.owner, 42u);
  ASSERT_EQ(s.class_count, 2);
  EXPECT_EQ(s.classes[0].block_size, 32);
  EXPECT_EQ(s.classes[0].active, 3);
  EXPECT_EQ(s.classes[0].unused, 100 - 3);  // 4032 / 40
  EXPECT_EQ(s.classes[1].block_size, 128);
  EXPECT_EQ(s.classes[1].active, 1);
  EXPECT_EQ(s.classes[1].unused, 29 - 1);  // 4032 / 136
  EXPECT_EQ(s.system_blocks, 2);
  EXPECT_EQ(s.user_bytes, 3 * 32 + 128);
  EXPECT_EQ(s.system_bytes, (64 + 100 * 40) + (64 + 29 * 136));
  GiveAll(arena, blocks);
}

}  // namespace
}  // namespace zel::mem
