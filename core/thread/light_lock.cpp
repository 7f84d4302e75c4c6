// The slow paths of LightLock: spinning, sleeping until woken, and waking a waiter.
#include "thread/light_lock.h"

#include <zel/thread/nr_critsect.h>

namespace zel {

namespace {

// About a microsecond of waiting for the holder to leave before going to sleep.
constexpr int kSpins = 100;

}  // namespace

void LightLock::EnterContended() {
  // On one processor the holder cannot leave while this thread spins.
  const int spins = NRCritSect::_number_of_processors > 1 ? kSpins : 0;
  for (int i = 0; i < spins; ++i) {
    os::CpuPause();
    uint32_t s = state_.load(std::memory_order_relaxed);
    if ((s & kHeld) == 0 && state_.compare_exchange_weak(s, s | kHeld, std::memory_order_acquire,
                                                         std::memory_order_relaxed))
      return;
  }
  for (;;) {
    uint32_t s = state_.load(std::memory_order_relaxed);
    if ((s & kHeld) == 0) {
      if (state_.compare_exchange_weak(s, s | kHeld, std::memory_order_acquire,
                                       std::memory_order_relaxed))
        return;
    } else if (state_.compare_exchange_weak(s, s + kWaiter, std::memory_order_relaxed)) {
      Sleep();  // the waker took this waiter off the count
    }
  }
}

void LightLock::LeaveContended() {
  uint32_t s = state_.load(std::memory_order_relaxed);
  for (;;) {
    const bool wake = s >= kWaiter;
    const uint32_t next = (s & ~kHeld) - (wake ? kWaiter : 0);
    if (state_.compare_exchange_weak(s, next, std::memory_order_release,
                                     std::memory_order_relaxed)) {
      if (wake) WakeOne();
      return;
    }
  }
}

void LightLock::Sleep() {
  if (semaphore_ != nullptr) {
    os::WaitOne(semaphore_, os::kInfinite, false);
    return;
  }
  for (;;) {
    int32_t available = wakeups_.load();
    if (available > 0 && wakeups_.compare_exchange_weak(available, available - 1)) return;
    os::Yield();
  }
}

void LightLock::WakeOne() {
  if (semaphore_ != nullptr)
    os::ReleaseSemaphore(semaphore_, 1, nullptr);
  else
    wakeups_.fetch_add(1);
}

}  // namespace zel
