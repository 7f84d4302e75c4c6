// Threads meeting in the global allocator: remote frees, dedicated arenas, collisions and moves
// between shared arenas, and the counters.
#include <zel/mem/allocator.h>

#include "mem/allocator_state.h"
#include "mem/page.h"
#include "mem/snapshot.h"
#include "mem/thread_records.h"
#include "support/log_capture.h"
#include "support/test_thread.h"

#include <functional>
#include <memory>
#include <vector>

namespace zel {
namespace {

using mem::Arena;

Arena *ArenaOf(void *block) { return mem::PageOf(block)->arena; }

// Runs `body` on a new thread that gives its allocator record up at the end, as the exit work of
// the library's threads does.
void OnNewThread(const std::function<void()> &body) {
  test::TestThread thread([&] {
    body();
    ReleaseThreadAllocatorRecord();
  });
  ASSERT_TRUE(thread.Join());
}

mem::AllocatorSnapshot TakeSnapshot() {
  mem::AllocatorSnapshot all;
  mem::TakeAllocatorSnapshot(all);
  return all;
}
// The dedicated arena that `owner` owns; all zero when there is none.
mem::ArenaSnapshot DedicatedArena(uint32_t owner) {
  for (const mem::ArenaSnapshot &a : TakeSnapshot().arenas)
    if (a.index == mem::kDedicatedIndex && a.owner == owner) return a;
  return {};
}
bool AllDedicatedArenasFree() {
  for (const mem::ArenaSnapshot &a : TakeSnapshot().arenas)
    if (a.index == mem::kDedicatedIndex && a.owner != mem::kNoOwner) return false;
  return true;
}
int64_t ActiveOfSize(const mem::ArenaSnapshot &a, int block_size) {
  for (int i = 0; i < a.class_count; ++i)
    if (a.classes[i].block_size == block_size) return a.classes[i].active;
  return 0;
}

TEST(RemoteFree, ABlockFreedElsewhereReturnsToItsSharedArenaAtItsNextAllocation) {
  void *p = GAlloc(100);
  Arena *arena = ArenaOf(p);
  ASSERT_TRUE(arena->Shared());
  // With the lock held here, the other thread cannot free into the arena: it hands the block back.
  ASSERT_TRUE(arena->lock().TryEnter());
  int64_t frees = arena->frees();
  OnNewThread([&] { GFree(p); });
  arena->lock().Leave();
  EXPECT_EQ(arena->frees(), frees);  // not yet taken back
  EXPECT_EQ(GAlloc(100), p);
  EXPECT_EQ(arena->frees(), frees + 1);
  GFree(p);
}

TEST(Dedicated, FreesFromOtherThreadsWaitOnTheRemoteListUntilTheOwnerAllocates) {
  ASSERT_TRUE(AllDedicatedArenasFree());
  OnNewThread([] {
    ASSERT_TRUE(GetMemoryAllocator()->Dedicate());
    uint32_t me = os::CurrentThreadId();
    std::vector<void *> blocks;
    for (int i = 0; i < 50; ++i) blocks.push_back(GAlloc(64));
    ASSERT_FALSE(ArenaOf(blocks[0])->Shared());
    int64_t active = ActiveOfSize(DedicatedArena(me), 64);
    AllocatorCounts counts = GetMemoryAllocator()->Counts();

    OnNewThread([&] {
      for (void *b : blocks) GFree(b);
    });
    EXPECT_EQ(ActiveOfSize(DedicatedArena(me), 64), active);
    EXPECT_EQ(GetMemoryAllocator()->Counts().frees, counts.frees);

    void *again = GAlloc(64);          // takes them all back first
    EXPECT_EQ(again, blocks.front());  // pushed first, so freed last: on top of the free list
    EXPECT_EQ(ActiveOfSize(DedicatedArena(me), 64), active - 50 + 1);
    EXPECT_EQ(GetMemoryAllocator()->Counts().frees, counts.frees + 50);
    GFree(again);  // the owner's own free is immediate
    EXPECT_EQ(ActiveOfSize(DedicatedArena(me), 64), active - 50);
  });
}

TEST(Dedicated, AFourthThreadFindsAllGoneAndStaysOnTheSharedArenas) {
  ASSERT_TRUE(AllDedicatedArenasFree());
  constexpr int kHolders = 3;
  test::TestEvent ready[kHolders], done;
  Arena *arenas[kHolders] = {};
  bool dedicated[kHolders] = {};
  std::vector<std::unique_ptr<test::TestThread>> holders;
  for (int i = 0; i < kHolders; ++i)
    holders.push_back(std::make_unique<test::TestThread>([&, i] {
      dedicated[i] = GetMemoryAllocator()->Dedicate();
      void *p = GAlloc(24);
      ready[i].Set();
      done.Wait();
      // Asking again changes nothing.
      void *q = GetMemoryAllocator()->Dedicate() ? GAlloc(24) : nullptr;
      if (q != nullptr && ArenaOf(q) == ArenaOf(p)) arenas[i] = ArenaOf(p);
      GFree(p);
      GFree(q);
      ReleaseThreadAllocatorRecord();
    }));
  for (test::TestEvent &e : ready) ASSERT_TRUE(e.Wait());

  bool fourth_dedicated = true, fourth_shared = false;
  uint32_t fourth_id = 0;
  test::LogCapture log;
  OnNewThread([&] {
    fourth_id = os::CurrentThreadId();
    fourth_dedicated = GetMemoryAllocator()->Dedicate();
    void *p = GAlloc(24);
    fourth_shared = ArenaOf(p)->Shared();
    GFree(p);
  });
  done.Set();
  for (auto &h : holders) ASSERT_TRUE(h->Join());

  EXPECT_FALSE(fourth_dedicated);
  EXPECT_TRUE(fourth_shared);
  EXPECT_EQ(log.Text(), "Thread " + std::to_string(fourth_id) +
                            " can't use a dedicated allocator (all gone)\r\n");
  for (int i = 0; i < kHolders; ++i) {
    EXPECT_TRUE(dedicated[i]) << i;
    ASSERT_NE(arenas[i], nullptr) << i;
    EXPECT_FALSE(arenas[i]->Shared()) << i;
    for (int j = 0; j < i; ++j) EXPECT_NE(arenas[i], arenas[j]);
  }
  // Given up at the holders' end: a new thread gets one.
  EXPECT_TRUE(AllDedicatedArenasFree());
  bool later = false;
  OnNewThread([&] { later = GetMemoryAllocator()->Dedicate(); });
  EXPECT_TRUE(later);
}

// A fresh thread makes counts[i] allocations in shared arena i, each time moving on by colliding:
// it holds its current arena's lock itself, so its next allocation counts a collision and is
// served by the next arena, where it has no collisions yet, and the thread moves there. The third
// collision, in arena 2 (ratio 1 / (counts[2] + 1) × 0.98), is served by arena 0 (ratio 1 /
// (counts[0] + 1)). Returns the arena that serves the thread's next allocation.
int ArenaAfterThreeCollisions(const int counts[3]) {
  mem::AllocatorState &state = mem::State();
  int where = -1;
  OnNewThread([&] {
    std::vector<void *> blocks;
    for (int i = 0; i < 3; ++i) {
      // The allocation that brought the thread here counts as its first one in the arena.
      for (int n = i == 0 ? 0 : 1; n < counts[i]; ++n) blocks.push_back(GAlloc(16));
      ASSERT_TRUE(state.shared[i].lock().TryEnter());
      blocks.push_back(GAlloc(16));
      state.shared[i].lock().Leave();
      EXPECT_EQ(ArenaOf(blocks.back()), &state.shared[(i + 1) % 3]);
    }
    blocks.push_back(GAlloc(16));
    where = ArenaOf(blocks.back())->index();
    for (void *b : blocks) GFree(b);
  });
  return where;
}

TEST(Collisions, AThreadMovesOnlyToAnArenaAtLeastTwoPercentBetter) {
  AllocatorCounts before = GetMemoryAllocator()->Counts();
  // Arena 0's ratio is 1/101: below 1/98 × 0.98 (the thread moves), above 1/99 × 0.98 although
  // below 1/99 (it stays).
  const int moves[3] = {100, 100, 97}, stays[3] = {100, 100, 98};
  EXPECT_EQ(ArenaAfterThreeCollisions(moves), 0);
  EXPECT_EQ(ArenaAfterThreeCollisions(stays), 2);
  EXPECT_EQ(GetMemoryAllocator()->Counts().collisions - before.collisions, 6);
}

TEST(Collisions, WithEverySharedArenaBusyAThreadWaitsForItsOwn) {
  mem::AllocatorState &state = mem::State();
  for (Arena &a : state.shared) ASSERT_TRUE(a.lock().TryEnter());
  test::TestEvent allocated;
  Arena *served = nullptr;
  test::TestThread thread([&] {
    void *p = GAlloc(16);  // a fresh thread starts in arena 0
    served = ArenaOf(p);
    allocated.Set();
    GFree(p);
    ReleaseThreadAllocatorRecord();
  });
  state.shared[0].lock().Leave();
  ASSERT_TRUE(allocated.Wait());
  EXPECT_EQ(served, &state.shared[0]);
  state.shared[1].lock().Leave();
  state.shared[2].lock().Leave();
  ASSERT_TRUE(thread.Join());
}

TEST(Counters, CountBlocksAndThePagesTheArenasHold) {
  ASSERT_TRUE(AllDedicatedArenasFree());
  OnNewThread([] {
    ASSERT_TRUE(GetMemoryAllocator()->Dedicate());
    uint32_t me = os::CurrentThreadId();
    mem::ArenaSnapshot start = DedicatedArena(me);
    AllocatorCounts before = GetMemoryAllocator()->Counts();
    std::vector<void *> blocks;
    for (int i = 0; i < 300; ++i) blocks.push_back(GAlloc(i % 2 == 0 ? 40 : 3000));
    AllocatorCounts during = GetMemoryAllocator()->Counts();
    for (void *b : blocks) GFree(b);
    AllocatorCounts after = GetMemoryAllocator()->Counts();
    mem::ArenaSnapshot end = DedicatedArena(me);
    EXPECT_EQ(during.allocs - before.allocs, 300);
    EXPECT_EQ(during.frees, before.frees);
    EXPECT_EQ(after.frees - before.frees, 300);
    EXPECT_EQ(after.collisions, before.collisions);
    EXPECT_GE(during.heap_allocs - before.heap_allocs, 149);  // 150 pages of one 4 KiB block
    EXPECT_EQ((after.heap_allocs - after.heap_frees) - (before.heap_allocs - before.heap_frees),
              end.system_blocks - start.system_blocks);
    EXPECT_EQ(end.user_bytes, start.user_bytes);
  });
}

}  // namespace
}  // namespace zel
