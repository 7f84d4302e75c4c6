// One arena on its own: page geometry, the page lists and the snapshot's figures.
#include "mem/arena.h"
#include "mem/snapshot.h"

#include <vector>

namespace zel::mem {
namespace {

// 64-bit builds align blocks to 16 bytes: slots of 16-byte blocks and up take 8 bytes more, and the
// first slot may sit 8 bytes after the page header.
constexpr bool k64 = sizeof(void *) == 8;

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
  const int per_page = k64 ? 251 : 252;  // (4032 - 8) / 16 : 4032 / (8 + 8)
  std::vector<void *> blocks = Take(arena, 3, per_page);
  for (size_t i = 1; i < blocks.size(); ++i)
    ASSERT_EQ(static_cast<char *>(blocks[i]) - static_cast<char *>(blocks[i - 1]), 16) << i;
  ptrdiff_t first = static_cast<char *>(blocks[0]) - reinterpret_cast<char *>(PageOf(blocks[0]));
  if (k64)
    EXPECT_TRUE(first == 72 || first == 80) << first;  // after the header, 16-aligned
  else
    EXPECT_EQ(first, 72);
  EXPECT_EQ(PageOf(blocks.back()), PageOf(blocks[0]));
  EXPECT_EQ(PageOf(blocks[0])->arena, &arena);
  ArenaSnapshot full = SnapshotOf(arena);
  EXPECT_EQ(full.system_bytes, k64 ? 4088 : 4096);
  EXPECT_EQ(full.classes[0].unused, 0);

  blocks.push_back(arena.Alloc(3));  // the next starts a second page
  EXPECT_NE(PageOf(blocks.back()), PageOf(blocks[0]));
  GiveAll(arena, blocks);
  ArenaSnapshot freed = SnapshotOf(arena);
  EXPECT_EQ(freed.system_blocks, 2);  // one kept empty, the other still current
  EXPECT_EQ(freed.classes[0].active, 0);
  EXPECT_EQ(freed.classes[0].unused, 2 * per_page);
  EXPECT_EQ(arena.heap_allocs(), 2);
  EXPECT_EQ(arena.heap_frees(), 0);
  EXPECT_EQ(arena.allocs(), per_page + 1);
  EXPECT_EQ(arena.frees(), per_page + 1);
}

TEST(Arena, TheFirstSlotIsPlacedForAnAlignedBlockWhateverThePagesAlignment) {
  struct Case {
    int page_offset;  // from a 16-byte boundary
    int slot_offset;  // from the page
  } const cases[] = {{0, k64 ? 72 : 64}, {8, 64}};
  alignas(16) static char room[4096 + 16];
  for (const Case &c : cases) {
    auto *page = reinterpret_cast<Page *>(room + c.page_offset);
    char *slot = page->FirstSlot();
    EXPECT_EQ(slot - reinterpret_cast<char *>(page), c.slot_offset) << c.page_offset;
    EXPECT_EQ(reinterpret_cast<uintptr_t>(BlockOf(reinterpret_cast<Slot *>(slot))) %
                  (k64 ? 16 : 8),
              0u)
        << c.page_offset;
  }
}

TEST(Arena, ABlockTooBigToShareAPageGetsOneOfItsOwn) {
  Arena arena(0);
  std::vector<void *> blocks = Take(arena, SizeClass(4000), 2);  // 4032 / 4104 is 0, raised to 1
  EXPECT_NE(PageOf(blocks[0]), PageOf(blocks[1]));
  ArenaSnapshot s = SnapshotOf(arena);
  EXPECT_EQ(s.system_bytes, 2 * (64 + (k64 ? 8 : 0) + 4096 + 8));
  EXPECT_EQ(s.classes[0].unused, 0);
  GiveAll(arena, blocks);
  EXPECT_EQ(arena.heap_frees(), 1);  // the first page freed is kept empty, the second goes back
}

TEST(Arena, ReusesFreedBlocksAndKeepsOneEmptyPagePerClass) {
  Arena arena(1);
  const int k = 5;  // blocks of 32 bytes, in slots of 48 (64-bit) or 40 bytes
  const int per_page = k64 ? 84 : 100;
  // Two full pages and a current one.
  std::vector<void *> blocks = Take(arena, k, 2 * per_page + 1);
  void *second = PageOf(blocks.back())->FirstSlot() + (k64 ? 48 : 40) + 8;
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

  blocks = Take(arena, k, 2 * per_page - 1);
  EXPECT_EQ(arena.heap_allocs(), 3);  // the kept page was used before the heap
  blocks.push_back(second);
  blocks.push_back(arena.Alloc(k));
  EXPECT_EQ(arena.heap_allocs(), 4);
  GiveAll(arena, blocks);
}

TEST(Arena, TheKeptEmptyPageIsUsedFirstSoThatTheNextOneToEmptyNeedNotGoBack) {
  Arena arena(0);
  const int k = 5, per_page = k64 ? 84 : 100;
  std::vector<void *> blocks = Take(arena, k, 3 * per_page);  // three full pages
  auto page = [&](int i) {
    return std::vector<void *>(blocks.begin() + i * per_page, blocks.begin() + (i + 1) * per_page);
  };
  GiveAll(arena, page(0));            // kept empty
  arena.Free(SlotOf(page(1).back()));  // one block free
  void *next = arena.Alloc(k);
  EXPECT_EQ(PageOf(next), PageOf(blocks[0]));  // from the empty page, not the other
  std::vector<void *> rest = page(1);
  rest.pop_back();
  GiveAll(arena, rest);  // the second page empties too, and is kept in turn
  EXPECT_EQ(arena.heap_frees(), 0);
  GiveAll(arena, page(2));
  arena.Free(SlotOf(next));
}

TEST(Arena, PagesThatGetBlocksBackAreTakenInTheOrderTheyGotThem) {
  Arena arena(0);
  const int k = 4, per_page = k64 ? 126 : 168;
  std::vector<void *> blocks = Take(arena, k, 3 * per_page);  // three full pages
  // The oldest in line has had the longest time to get more blocks back.
  for (int page : {1, 0, 2}) arena.Free(SlotOf(blocks[page * per_page]));
  for (int page : {1, 0, 2}) {
    void *next = arena.Alloc(k);
    EXPECT_EQ(next, blocks[page * per_page]) << page;
    blocks[page * per_page] = next;
  }
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
  EXPECT_EQ(s.classes[0].unused, (k64 ? 84 : 100) - 3);  // 4032 / 40 on 32-bit builds
  EXPECT_EQ(s.classes[1].block_size, 128);
  EXPECT_EQ(s.classes[1].active, 1);
  EXPECT_EQ(s.classes[1].unused, (k64 ? 28 : 29) - 1);  // 4032 / 136
  EXPECT_EQ(s.system_blocks, 2);
  EXPECT_EQ(s.user_bytes, 3 * 32 + 128);
  // On 64-bit builds: 8 bytes kept for the first slot's place, 83 slots of 48 bytes and a last
  // of 40; 27 of 144 and a last of 136.
  EXPECT_EQ(s.system_bytes, k64 ? 4096 + 4096 : (64 + 100 * 40) + (64 + 29 * 136));
  GiveAll(arena, blocks);
}

}  // namespace
}  // namespace zel::mem
