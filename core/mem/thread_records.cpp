// Making and releasing the per-thread records.
#include "mem/thread_records.h"

#include "mem/allocator_state.h"

#include <new>

namespace zel::mem {

std::atomic<uint32_t> g_record_slot{os::kNoTlsSlot};
#if !defined(_WIN32)
constinit thread_local ThreadRecord *t_record = nullptr;
#endif

namespace {

// Stores the record in the slot (on Linux that also has the thread's end reported) and its copy.
bool SetRecord(uint32_t slot, ThreadRecord *r) {
  if (!os::TlsSet(slot, r)) return false;
#if !defined(_WIN32)
  t_record = r;
#endif
  return true;
}

}  // namespace

ThreadRecord *NewThreadRecord() {
  AllocatorState &state = State();
  static const uint32_t slot = [] {
    uint32_t made = os::TlsAlloc();
    g_record_slot.store(made, std::memory_order_release);
    return made;
  }();
  if (slot == os::kNoTlsSlot) return nullptr;

  void *block = os::HeapAlloc(sizeof(ThreadRecord) + alignof(ThreadRecord) - 1);
  if (block == nullptr) return nullptr;
  uintptr_t at = (reinterpret_cast<uintptr_t>(block) + alignof(ThreadRecord) - 1) &
                 ~uintptr_t{alignof(ThreadRecord) - 1};
  auto *r = new (reinterpret_cast<void *>(at)) ThreadRecord;
  r->heap_block = block;
  r->arena = &state.shared[0];
  r->thread_id = os::CurrentThreadId();
  if (!SetRecord(slot, r)) {
    os::HeapFree(block);
    return nullptr;
  }
  return r;
}

}  // namespace zel::mem

namespace zel {

void ReleaseThreadAllocatorRecord() {
  mem::ThreadRecord *r = mem::CurrentRecord();
  if (r == nullptr) return;
  if (r->dedicated) r->arena->Disown();
  mem::SetRecord(mem::g_record_slot.load(std::memory_order_acquire), nullptr);
  os::HeapFree(r->heap_block);
}

}  // namespace zel
