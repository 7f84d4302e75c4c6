// The allocator's statistics report and its counters in the counter registry.
#include <zel/diag/counters.h>
#include <zel/mem/allocator.h>
#include <zel/text/cstring.h>

#include "mem/arena.h"
#include "mem/snapshot.h"
#include "time/clock.h"

#include <atomic>

namespace zel {

namespace {

long long Number(int64_t v) { return static_cast<long long>(v); }

template <int64_t AllocatorCounts::*kField>
int64_t ReadCount(const void *) {
  MemoryAllocator *allocator = GetMemoryAllocator();
  return allocator ? allocator->Counts().*kField : 0;
}

}  // namespace

void MemoryAllocator::PrintStats(cstring &out) {
  mem::AllocatorSnapshot snapshot;
  mem::TakeAllocatorSnapshot(snapshot);
  out << "Allocator Stats\r\n";
  for (const mem::ArenaSnapshot &arena : snapshot.arenas) {
    out << "Allocator ";
    if (arena.index == mem::kDedicatedIndex) {
      out << "dedicated";
      if (arena.owner != mem::kNoOwner) out << " to thread " << arena.owner;
    } else {
      out << arena.index;
    }
    out << "\r\n";
    for (int i = 0; i < arena.class_count; ++i) {
      const mem::ClassSnapshot &c = arena.classes[i];
      out << "\tBlocks of size " << Number(c.block_size) << ": " << Number(c.active) << " active, "
          << Number(c.unused) << " unused\r\n";
    }
    out << "Number of system blocks: " << Number(arena.system_blocks) << "\r\n"
        << "Bytes allocated to user: " << Number(arena.user_bytes) << "\r\n"
        << "Bytes allocated from system: " << Number(arena.system_bytes) << "\r\n";
  }
}

void EnableMemCounters() {
  static std::atomic<bool> enabled{false};
  if (enabled.exchange(true)) return;
  AddIntCounter("Allocs", ReadCount<&AllocatorCounts::allocs>, nullptr);
  AddIntCounter("Frees", ReadCount<&AllocatorCounts::frees>, nullptr);
  AddIntCounter("Heap Allocs", ReadCount<&AllocatorCounts::heap_allocs>, nullptr);
  AddIntCounter("Allocator Collisions", ReadCount<&AllocatorCounts::collisions>, nullptr);
  AddIntCounter(
      "NanoTime::Current calls", [](const void *) -> int64_t { return NanoTimeCurrentCalls(); },
      nullptr);
}

}  // namespace zel
