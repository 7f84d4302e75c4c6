// Threads meeting in the global allocator: remote frees, dedicated arenas, collisions, moves.
#include <zel/mem/allocator.h>

#include "mem/allocator_state.h"
#include "mem/page.h"
#include "mem/thread_records.h"
#include "support/allocator.h"
#include "support/log_capture.h"
#include "support/test_thread.h"

#include <algorithm>
#include <functional>
#include <vector>

namespace zel {
namespace {

using mem::Arena;

Arena *ArenaOf(void *block) { return mem::PageOf(block)->arena; }

// Runs `body` on a new thread that gives its allocator record up at the end, as library threads do.
void OnNewThread(const std::function<void()> &body) {
  ASSERT_TRUE(test::RunOnThread([&] {
    body();
    ReleaseThreadAllocatorRecord();
  }));
}

bool AllDedicatedArenasFree() {
  for (const mem::ArenaSnapshot &a : test::TakeSnapshot().arenas)
    if (a.index == mem::kDedicatedIndex && a.owner != mem::kNoOwner) return false;
  return true;
}

TEST(RemoteFree, ABlockFreedElsewhereCountsAtOnceAndReturnsToItsArenaAtItsNextAllocation) {
  void *p = GAlloc(100);
  Arena *arena = ArenaOf(p);
  ASSERT_TRUE(arena->Shared());
  // With the lock held here, the other thread cannot free into the arena: it hands the block back.
  ASSERT_TRUE(arena->lock().TryEnter());
  int64_t frees = arena->frees(), total = GetMemoryAllocator()->Counts().frees;
  OnNewThread([&] { GFree(p); });
  EXPECT_EQ(arena->frees(), frees + 1);  // counted, though not yet taken back
  EXPECT_EQ(GetMemoryAllocator()->Counts().frees, total + 1);
  arena->lock().Leave();
  EXPECT_EQ(GAlloc(100), p);
  EXPECT_EQ(arena->frees(), frees + 1);  // taking it back counts nothing more
  GFree(p);
}

TEST(Dedicated, FreesFromOtherThreadsWaitOnTheRemoteListUntilTheOwnerAllocatesCountedAtOnce) {
  ASSERT_TRUE(AllDedicatedArenasFree());
  OnNewThread([] {
    ASSERT_TRUE(GetMemoryAllocator()->Dedicate());
    uint32_t me = os::CurrentThreadId();
    std::vector<void *> blocks(50);
    for (void *&b : blocks) b = GAlloc(64);
    ASSERT_FALSE(ArenaOf(blocks[0])->Shared());
    int64_t active = test::ActiveInDedicated(me, 64);
    AllocatorCounts counts = GetMemoryAllocator()->Counts();

    OnNewThread([&] { std::for_each(blocks.begin(), blocks.end(), GFree); });
    EXPECT_EQ(test::ActiveInDedicated(me, 64), active);
    EXPECT_EQ(GetMemoryAllocator()->Counts().frees, counts.frees + 50);  // counted at once

    void *again = GAlloc(64);  // takes them all back first
    EXPECT_EQ(test::ActiveInDedicated(me, 64), active - 50 + 1);
    EXPECT_EQ(GetMemoryAllocator()->Counts().frees, counts.frees + 50);
    GFree(again);  // the owner's own free is immediate
    EXPECT_EQ(test::ActiveInDedicated(me, 64), active - 50);
  });
}

TEST(Dedicated, AFourthThreadFindsAllGoneAndStaysOnTheSharedArenas) {
  ASSERT_TRUE(AllDedicatedArenasFree());
  constexpr int kHolders = 3;
  test::TestEvent ready[kHolders], done;
  Arena *arenas[kHolders] = {};
  test::TestThreads holders(kHolders, [&](int i) {
    EXPECT_TRUE(GetMemoryAllocator()->Dedicate()) << i;
    void *p = GAlloc(24);
    arenas[i] = ArenaOf(p);
    ready[i].Set();
    done.Wait();
    EXPECT_TRUE(GetMemoryAllocator()->Dedicate()) << i;  // asking again changes nothing
    void *q = GAlloc(24);
    EXPECT_EQ(ArenaOf(q), arenas[i]) << i;
    GFree(p);
    GFree(q);
    ReleaseThreadAllocatorRecord();
  });
  for (test::TestEvent &e : ready) ASSERT_TRUE(e.Wait());

  uint32_t fourth_id = 0;
  test::LogCapture log;
  OnNewThread([&] {
    fourth_id = os::CurrentThreadId();
    EXPECT_FALSE(GetMemoryAllocator()->Dedicate());
    void *p = GAlloc(24);
    EXPECT_TRUE(ArenaOf(p)->Shared());
    GFree(p);
  });
  done.Set();
  ASSERT_TRUE(holders.JoinAll());
  EXPECT_EQ(log.Lines(),
            std::vector<std::string>{"Thread " + std::to_string(fourth_id) +
                                     " can't use a dedicated allocator (all gone)\r\n"});
  for (int i = 0; i < kHolders; ++i) {
    EXPECT_FALSE(arenas[i]->Shared()) << i;
    for (int j = 0; j < i; ++j) EXPECT_NE(arenas[i], arenas[j]);
  }
  // Given up at the holders' end: a new thread gets one.
  EXPECT_TRUE(AllDedicatedArenasFree());
  OnNewThread([] { EXPECT_TRUE(GetMemoryAllocator()->Dedicate()); });
}

// Whether any byte of the blocks in `a` lies on a 64-byte cache line with a byte of those in `b`.
bool ShareACacheLine(const std::vector<void *> &a, const std::vector<void *> &b, int size) {
  auto lines = [size](void *p) {
    auto first = reinterpret_cast<uintptr_t>(p) / 64;
    return std::pair(first, (reinterpret_cast<uintptr_t>(p) + size - 1) / 64);
  };
  for (void *p : a)
    for (void *q : b)
      if (lines(p).first <= lines(q).second && lines(q).first <= lines(p).second) return true;
  return false;
}

TEST(SharedArena, SmallBlocksOfTwoThreadsTakingTurnsNeverShareACacheLine) {
  struct Case {
    int size, count;  // each thread takes `count` blocks of `size` bytes at its turn
  } const cases[] = {{8, 1}, {8, 3}, {16, 1}, {16, 3}, {32, 1}, {32, 3}};
  for (const Case &c : cases) {
    std::vector<void *> first, second;  // of a thread that allocates before and after the other
    auto take = [&c](std::vector<void *> &blocks) {
      for (int i = 0; i < c.count; ++i) blocks.push_back(GAlloc(c.size));
    };
    test::TestEvent allocated, other_allocated;
    test::TestThread thread([&] {
      take(first);
      allocated.Set();
      other_allocated.Wait();
      take(first);
      ReleaseThreadAllocatorRecord();
    });
    ASSERT_TRUE(allocated.Wait());
    OnNewThread([&] { take(second); });
    other_allocated.Set();
    ASSERT_TRUE(thread.Join());
    EXPECT_EQ(ArenaOf(first[0]), ArenaOf(second[0]));  // both start on shared arena 0
    EXPECT_FALSE(ShareACacheLine(first, second, c.size)) << c.size << " x " << c.count;
    EXPECT_EQ(mem::PageOf(first.front()), mem::PageOf(first.back()));  // its own page again
    for (void *p : first) GFree(p);
    for (void *p : second) GFree(p);
  }
}

// A fresh thread makes counts[i] allocations in shared arena i, then collides by holding that
// arena's lock itself: the next arena serves it and it moves there. The third collision, in arena
// 2 (ratio 1 / (counts[2] + 1) × 0.98), is served by arena 0 (ratio 1 / (counts[0] + 1)).
// Returns the arena that serves the thread's next allocation.
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
  test::TestThread thread([&] {
    void *p = GAlloc(16);
    EXPECT_EQ(ArenaOf(p), &state.shared[0]);  // a fresh thread starts in arena 0, and waits there
    allocated.Set();
    GFree(p);
    ReleaseThreadAllocatorRecord();
  });
  state.shared[0].lock().Leave();
  ASSERT_TRUE(allocated.Wait());
  state.shared[1].lock().Leave();
  state.shared[2].lock().Leave();
  ASSERT_TRUE(thread.Join());
}

}  // namespace
}  // namespace zel
