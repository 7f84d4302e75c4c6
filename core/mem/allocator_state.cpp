// The allocator's state, made on first use in static storage.
#include "mem/allocator_state.h"

#include <zel/mem/allocator.h>

#include <new>

namespace zel::mem {

namespace {

// Both constant-initialised, so usable from any static initialiser.
alignas(AllocatorState) unsigned char g_storage[sizeof(AllocatorState)];
std::atomic<AllocatorState *> g_state{nullptr};

}  // namespace

AllocatorState &State() {
  static AllocatorState *const state = [] {
    auto *made = new (g_storage) AllocatorState;
    g_state.store(made, std::memory_order_release);
    return made;
  }();
  return *state;
}

AllocatorState *StateIfMade() { return g_state.load(std::memory_order_acquire); }

}  // namespace zel::mem

namespace zel {

MemoryAllocator *GetMemoryAllocator() {
  if (mem::StateIfMade() == nullptr) return nullptr;
  // The public face is stateless: the state above is the allocator.
  static MemoryAllocator allocator;
  return &allocator;
}

}  // namespace zel
