// Handoff: blocks going from one thread to another in batches, through a ring with one writer
// and one reader; each side yields while the ring is full or empty.
#pragma once

#include "os/os.h"

#include <atomic>
#include <cstddef>

namespace zel::bench {

class Handoff {
 public:
  static constexpr size_t kBatch = 64;

  // Puts kBatch blocks, waiting for room.
  void Put(void *const *blocks) {
    size_t tail = tail_.load(std::memory_order_relaxed);
    while (tail + kBatch - head_.load(std::memory_order_acquire) > kCapacity) os::Yield();
    for (size_t i = 0; i < kBatch; ++i) slots_[(tail + i) % kCapacity] = blocks[i];
    tail_.store(tail + kBatch, std::memory_order_release);
  }
  // No more puts: Drain returns once it has taken everything.
  void Close() { closed_.store(true, std::memory_order_release); }

  // Calls `take` with every block put, until closed.
  template <typename Take>
  void Drain(Take take) {
    size_t head = head_.load(std::memory_order_relaxed);
    for (;;) {
      bool closed = closed_.load(std::memory_order_acquire);
      size_t tail = tail_.load(std::memory_order_acquire);
      if (head == tail) {
        if (closed) return;
        os::Yield();
        continue;
      }
      for (; head != tail; ++head) take(slots_[head % kCapacity]);
      head_.store(head, std::memory_order_release);
    }
  }

 private:
  static constexpr size_t kCapacity = 4096;
  void *slots_[kCapacity];
  alignas(64) std::atomic<size_t> head_{0};
  alignas(64) std::atomic<size_t> tail_{0};
  alignas(64) std::atomic<bool> closed_{false};
};

}  // namespace zel::bench
