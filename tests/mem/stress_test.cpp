// Several threads allocating, resizing, handing blocks to each other and freeing them at full
// speed: every block keeps its contents, and every block made is freed exactly once.
#include <zel/mem/allocator.h>

#include "mem/allocator_state.h"
#include "mem/page.h"
#include "mem/thread_records.h"
#include "support/allocator.h"
#include "support/test_thread.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <random>
#include <vector>

namespace zel {
namespace {

// A block, its size, and the tag its bytes are derived from (test::Stamp).
struct Tagged {
  unsigned char *data;
  int size;
  uint32_t tag;
};

struct Inbox {
  std::mutex mutex;
  std::vector<Tagged> blocks;
};

// Waits until `count` threads have arrived; false after 60 s.
bool ArriveAndWait(std::atomic<int> &arrived, int count) {
  arrived.fetch_add(1);
  int64_t deadline = os::PerfCounter() + 60 * os::PerfFrequency();
  while (arrived.load() < count && os::PerfCounter() < deadline) os::Yield();
  return arrived.load() >= count;
}

TEST(Stress, ThreadsHandingBlocksAroundKeepEveryBlockIntactAndCounted) {
  constexpr int kThreads = 4, kOps = 40000, kMaxLive = 200;
  std::atomic<int64_t> made{0};  // blocks allocated, moves by GRealloc included
  Inbox inboxes[kThreads];
  std::atomic<int> started{0}, loops_done{0}, all_freed{0};
  AllocatorCounts before = GetMemoryAllocator()->Counts();

  test::TestThreads threads(kThreads, [&](int id) {
    bool dedicated = id % 2 == 0;
    std::minstd_rand random(static_cast<uint32_t>(id + 1));  // the same sequence everywhere
    auto below = [&](int n) { return static_cast<int>(random() % static_cast<uint32_t>(n)); };
    uint32_t next_tag = static_cast<uint32_t>(id) << 24;
    int64_t made_here = 0, active_at_start = 0;  // the latter in the thread's dedicated arena
    if (dedicated) {
      EXPECT_TRUE(GetMemoryAllocator()->Dedicate()) << id;
      GFree(GAlloc(8));  // takes back what a previous owner's blocks left on the remote list
      active_at_start = test::ActiveInDedicated(os::CurrentThreadId());
    }
    EXPECT_TRUE(ArriveAndWait(started, kThreads)) << id;
    std::vector<Tagged> live;
    auto release = [&](const Tagged &b) {
      EXPECT_TRUE(test::Intact(b.data, b.tag, b.size)) << "damaged block, size " << b.size;
      GFree(b.data);
    };
    auto empty_inbox = [&] {
      std::vector<Tagged> got;
      std::unique_lock lock(inboxes[id].mutex);
      got.swap(inboxes[id].blocks);
      lock.unlock();
      for (const Tagged &b : got) release(b);
    };
    for (int op = 0; op < kOps; ++op) {
      if (op % 64 == 0) empty_inbox();
      int action = below(100), size = 8 + below(2041);
      if (live.empty() || (action < 45 && static_cast<int>(live.size()) < kMaxLive)) {
        Tagged b{static_cast<unsigned char *>(GAlloc(size)), size, next_tag++};
        ASSERT_NE(b.data, nullptr) << "GAlloc (" << size << ") failed";
        ++made_here;
        test::Stamp(b.data, b.tag, 0, size);
        live.push_back(b);
        continue;
      }
      size_t pick = static_cast<size_t>(below(static_cast<int>(live.size())));
      Tagged b = live[pick];
      live[pick] = live.back();
      live.pop_back();
      if (action < 65) {
        release(b);
      } else if (action < 90) {
        Inbox &next = inboxes[(id + 1) % kThreads];
        std::lock_guard lock(next.mutex);
        next.blocks.push_back(b);
      } else {
        auto *resized = static_cast<unsigned char *>(GRealloc(b.data, size));
        ASSERT_NE(resized, nullptr) << "GRealloc (" << size << ") failed";
        made_here += resized != b.data;
        int kept = std::min(size, b.size);
        EXPECT_TRUE(test::Intact(resized, b.tag, kept)) << "damaged by GRealloc to " << size;
        test::Stamp(resized, b.tag, kept, size);
        live.push_back({resized, size, b.tag});
      }
    }
    for (const Tagged &b : live) release(b);
    made += made_here;
    EXPECT_TRUE(ArriveAndWait(loops_done, kThreads)) << id;
    empty_inbox();
    EXPECT_TRUE(ArriveAndWait(all_freed, kThreads)) << id;
    if (dedicated) {
      GFree(GAlloc(8));  // takes back what the others freed into this arena
      EXPECT_EQ(test::ActiveInDedicated(os::CurrentThreadId()), active_at_start) << id;
    }
    ReleaseThreadAllocatorRecord();
  });
  ASSERT_TRUE(threads.JoinAll(120000));

  AllocatorCounts after = GetMemoryAllocator()->Counts();
  EXPECT_GE(after.allocs - before.allocs, made.load());
  // Every free counts when it is made, also one still waiting on a remote-free list.
  EXPECT_EQ(after.allocs - before.allocs, after.frees - before.frees);
  // The arenas hold the pages taken from the heap and not given back.
  int64_t pages = 0;
  for (const mem::ArenaSnapshot &a : test::TakeSnapshot().arenas) pages += a.system_blocks;
  EXPECT_EQ(after.heap_allocs - after.heap_frees, pages);
}

}  // namespace
}  // namespace zel
