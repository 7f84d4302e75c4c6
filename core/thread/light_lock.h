// LightLock: the library's cheapest lock, for short sections that rarely meet.
#pragma once

#include <zel/thread/critsect.h>

#include "os/os.h"

namespace zel {

// An atomic counter with a semaphore behind it. Enter increments the counter and waits on the
// semaphore unless the result is 1; Leave decrements it and releases one waiter while the result
// is still above 0. Uncontended, entering and leaving cost one atomic operation each and no system
// call. A contended Enter first spins for a moment, taking the lock if it comes free, so that short
// sections rarely pay for a hand-over through the semaphore. Not recursive. Exported only so that
// the library's tests can reach it.
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
  // Takes the lock only when it is free (one compare-and-swap of 0 to 1); true when taken.
  bool TryEnter() { return os::AtomicCompareExchange(count_, 1, 0) == 0; }
  void Leave() {
    if (os::AtomicDecrement(count_) > 0) Wake();
  }

 private:
  // Spins briefly, since holders leave quickly, then queues on the semaphore.
  void EnterContended();
  void Wait();
  void Wake();

  int32_t count_ = 0;
  os::Handle semaphore_;
  // Hand-overs when the semaphore could not be made: the waiter yields until one is there.
  int32_t handoffs_ = 0;
};

using LightLockHold = LockHold<LightLock>;

}  // namespace zel
