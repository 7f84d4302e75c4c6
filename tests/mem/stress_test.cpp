// Several threads allocating, resizing, handing blocks to each other and freeing them at full
// speed: every block keeps its contents, and every block made is freed exactly once.
#include <zel/mem/allocator.h>

#include "mem/allocator_state.h"
#include "mem/page.h"
#include "mem/snapshot.h"
#include "mem/thread_records.h"
#include "support/test_thread.h"

#include <algorithm>
#include <atomic>
#include <memory>
#include <mutex>
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

// A block, its size, and the tag its bytes are derived from.
struct Tagged {
  unsigned char *data;
  int size;
  uint32_t tag;

  unsigned char Expected(int i) const { return static_cast<unsigned char>(tag * 31 + i); }
  void Stamp(int from) const {
    for (int i = from; i < size; ++i) data[i] = Expected(i);
  }
  bool Intact(int length) const {
    for (int i = 0; i < length; ++i)
      if (data[i] != Expected(i)) return false;
    return true;
  }
};

struct Inbox {
  std::mutex mutex;
  std::vector<Tagged> blocks;
};

// Waits until `count` threads have arrived; false after 60 s.
bool ArriveAndWait(std::atomic<int> &arrived, int count) {
  arrived.fetch_add(1);
  int64_t deadline = os::PerfCounter() + 60 * os::PerfFrequency();
  while (arrived.load() < count)
    if (os::PerfCounter() > deadline)
      return false;
    else
      os::Yield();
  return true;
}

// The blocks in use in the calling thread's dedicated arena.
int64_t ActiveInOwnArena() {
  mem::AllocatorSnapshot all;
  mem::TakeAllocatorSnapshot(all);
  for (const mem::ArenaSnapshot &a : all.arenas)
    if (a.index == mem::kDedicatedIndex && a.owner == os::CurrentThreadId()) {
      int64_t active = 0;
      for (int i = 0; i < a.class_count; ++i) active += a.classes[i].active;
      return active;
    }
  return -1;
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
  struct Worker {
    int64_t made = 0;  // blocks allocated, moves by GRealloc included
    int damaged = 0, failures = 0;
    int64_t active_at_start = -1, active_at_end = -2;  // in a dedicated arena
  } workers[kThreads];
  Inbox inboxes[kThreads];
  std::atomic<int> started{0}, loops_done{0}, all_freed{0};
  DrainSharedArenas();
  AllocatorCounts before = GetMemoryAllocator()->Counts();

  auto body = [&](int id) {
    Worker &w = workers[id];
    bool dedicated = id % 2 == 0;
    Random random{0x9E3779B9u * static_cast<uint32_t>(id + 1)};
    uint32_t next_tag = static_cast<uint32_t>(id) << 24;
    if (dedicated) {
      if (!GetMemoryAllocator()->Dedicate()) ++w.failures;
      GFree(GAlloc(8));  // takes back what a previous owner's blocks left on the remote list
      w.active_at_start = ActiveInOwnArena();
    }
    if (!ArriveAndWait(started, kThreads)) ++w.failures;
    std::vector<Tagged> live;
    auto release = [&](const Tagged &b) {
      if (!b.Intact(b.size)) ++w.damaged;
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
        Tagged b{nullptr, 8 + random.Below(2041), next_tag++};
        if ((b.data = static_cast<unsigned char *>(GAlloc(b.size))) == nullptr) {
          ++w.failures;
          continue;
        }
        ++w.made;
        b.Stamp(0);
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
        int size = 8 + random.Below(2041);
        void *resized = GRealloc(b.data, size);
        if (resized == nullptr) {
          ++w.failures;
          release(b);
          continue;
        }
        if (resized != b.data) ++w.made;
        b.data = static_cast<unsigned char *>(resized);
        if (!b.Intact(std::min(size, b.size))) ++w.damaged;
        int kept = std::min(size, b.size);
        b.size = size;
        b.Stamp(kept);
        live.push_back(b);
      }
    }
    for (const Tagged &b : live) release(b);
    if (!ArriveAndWait(loops_done, kThreads)) ++w.failures;
    empty_inbox();
    if (!ArriveAndWait(all_freed, kThreads)) ++w.failures;
    if (dedicated) {
      GFree(GAlloc(8));  // takes back what the others freed into this arena
      w.active_at_end = ActiveInOwnArena();
    }
    ReleaseThreadAllocatorRecord();
  };
  std::vector<std::unique_ptr<test::TestThread>> threads;
  for (int id = 0; id < kThreads; ++id)
    threads.push_back(std::make_unique<test::TestThread>([&body, id] { body(id); }));
  for (auto &t : threads) ASSERT_TRUE(t->Join(120000));
  DrainSharedArenas();

  int64_t made = 0;
  for (int id = 0; id < kThreads; ++id) {
    EXPECT_EQ(workers[id].failures, 0) << id;
    EXPECT_EQ(workers[id].damaged, 0) << id;
    if (id % 2 == 0) {
      EXPECT_EQ(workers[id].active_at_end, workers[id].active_at_start) << id;
    }
    made += workers[id].made;
  }
  AllocatorCounts after = GetMemoryAllocator()->Counts();
  EXPECT_GE(after.allocs - before.allocs, made);
  EXPECT_EQ(after.allocs - before.allocs, after.frees - before.frees);
}

}  // namespace
}  // namespace zel
