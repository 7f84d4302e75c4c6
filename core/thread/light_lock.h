// LightLock: the library's cheapest lock, for short sections that rarely meet.
#pragma once

#include <zel/thread/critsect.h>

#include <atomic>

#include "os/os.h"

namespace zel {

// One atomic word — a "held" bit and the number of sleeping waiters — with a semaphore behind
// it. Uncontended, entering and leaving cost one atomic operation each and no system call. A
// contended Enter spins for a moment (on a machine with more than one processor), then counts
// itself as a waiter and sleeps on the semaphore; Leave clears the bit and, when someone sleeps,
// wakes one waiter, which then competes for the lock again. The lock is not handed over: a thread
// that comes along meanwhile may take it, so short sections do not queue behind a waiter that is
// still waking up. Not recursive. NRCritSect is its exported face; the class itself is exported
// only so that the library's tests can reach it.
class ZEL_API LightLock {
 public:
  LightLock() : semaphore_(os::CreateSemaphore(0, 0x7FFFFFFF)) {}
  ~LightLock() {
    if (semaphore_ != nullptr) os::CloseHandle(semaphore_);
  }
  LightLock(const LightLock &) = delete;
  LightLock &operator=(const LightLock &) = delete;

  void Enter() {
    if (!TryEnter()) EnterContended();
  }
  // Takes the lock only when it is free and nobody sleeps (one compare-and-swap); true when taken.
  bool TryEnter() {
    uint32_t free = 0;
    return state_.compare_exchange_strong(free, kHeld, std::memory_order_acquire,
                                          std::memory_order_relaxed);
  }
  void Leave() {
    // Nobody sleeping: one atomic operation.
    uint32_t held = kHeld;
    if (!state_.compare_exchange_strong(held, 0, std::memory_order_release,
                                        std::memory_order_relaxed))
      LeaveContended();
  }

 private:
  static constexpr uint32_t kHeld = 1;
  static constexpr uint32_t kWaiter = 2;  // one sleeping waiter, counted above the held bit

  void EnterContended();
  void LeaveContended();
  void Sleep();
  void WakeOne();

  std::atomic<uint32_t> state_{0};
  os::Handle semaphore_;
  // Wake-ups when the semaphore could not be made: a waiter yields until one is there.
  std::atomic<int32_t> wakeups_{0};
};

using LightLockHold = LockHold<LightLock>;

}  // namespace zel
