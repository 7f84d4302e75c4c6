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
#include <numeric>
#include <vector>

namespace zel {
namespace {

// xorshift32: the same sequence on every platform.
struct Random {
  uint32_t state;
  int Below(int n) {
    state ^= state << 13;
    state ^= state >> 17;
    state ^= state << 5;
    return static_cast<int>(state % static_cast<uint32_t>(n));
  }
};

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

// Lets every shared arena take back what other threads handed back to it.
void DrainSharedArenas() {
  for (mem::Arena &a : mem::State().shared) {
    a.lock().Enter();
    a.Free(mem::SlotOf(a.Alloc(mem::kMinClass)));
    a.lock().Leave();
  }
}

TEST(Stress, ThreadsHandingBlocksAroundKeepEveryBlockIntactAndCounted) {
  constexpr int kThreads = 4, kOps = 40000, kMaxLive = 200;
  int64_t made[kThreads] = {};  // blocks allocated, moves by GRealloc included
  Inbox inboxes[kThreads];
  std::atomic<int> started{0}, loops_done{0}, all_freed{0};
  DrainSharedArenas();
  AllocatorCounts before = GetMemoryAllocator()->Counts();

  auto body = [&](int id) {
    bool dedicated = id % 2 == 0;
    Random random{0x9E3779B9u * static_cast<uint32_t>(id + 1)};
    uint32_t next_tag = static_cast<uint32_t>(id) << 24;
    int64_t active_at_start = 0;  // in the thread's dedicated arena
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
      {
        std::lock_guard lock(inboxes[id].mutex);
        got.swap(inboxes[id].blocks);
      }
      for (const Tagged &b : got) release(b);
    };
    for (int op = 0; op < kOps; ++op) {
      if (op % 64 == 0) empty_inbox();
      int action = random.Below(100);
      if (live.empty() || (action < 45 && static_cast<int>(live.size()) < kMaxLive)) {
        int size = 8 + random.Below(2041);
        Tagged b{static_cast<unsigned char *>(GAlloc(size)), size, next_tag++};
        if (b.data == nullptr) {
          ADD_FAILURE() << "GAlloc (" << size << ") failed";
          continue;
        }
        ++made[id];
        test::Stamp(b.data, b.tag, 0, size);
        live.push_back(b);
        continue;
      }
      size_t pick = static_cast<size_t>(random.Below(static_cast<int>(live.size())));
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
        int size = 8 + random.Below(2041), kept = std::min(size, b.size);
        auto *resized = static_cast<unsigned char *>(GRealloc(b.data, size));
        if (resized == nullptr) {
          ADD_FAILURE() << "GRealloc (" << size << ") failed";
          release(b);
          continue;
        }
        made[id] += resized != b.data;
        b.data = resized;
        EXPECT_TRUE(test::Intact(b.data, b.tag, kept)) << "damaged by GRealloc to " << size;
        b.size = size;
        test::Stamp(b.data, b.tag, kept, size);
        live.push_back(b);
      }
    }
    for (const Tagged &b : live) release(b);
    EXPECT_TRUE(ArriveAndWait(loops_done, kThreads)) << id;
    empty_inbox();
    EXPECT_TRUE(ArriveAndWait(all_freed, kThreads)) << id;
    if (dedicated) {
      GFree(GAlloc(8));  // takes back what the others freed into this arena
      EXPECT_EQ(test::ActiveInDedicated(os::CurrentThreadId()), active_at_start) << id;
    }
    ReleaseThreadAllocatorRecord();
  };
  test::TestThreads threads(kThreads, body);
  ASSERT_TRUE(threads.JoinAll(120000));
  DrainSharedArenas();

  AllocatorCounts after = GetMemoryAllocator()->Counts();
  EXPECT_GE(after.allocs - before.allocs, std::accumulate(made, made + kThreads, int64_t{0}));
  EXPECT_EQ(after.allocs - before.allocs, after.frees - before.frees);
  // The arenas hold the pages taken from the heap and not given back.
  int64_t pages = 0;
  for (const mem::ArenaSnapshot &a : test::TakeSnapshot().arenas) pages += a.system_blocks;
  EXPECT_EQ(after.heap_allocs - after.heap_frees, pages);
}

}  // namespace
}  // namespace zel
