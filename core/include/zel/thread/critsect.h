// CritSect: the library's recursive lock, and LockHold, the scope guard of a lock.
#pragma once

#include <zel/config.h>

namespace zel {

// A recursive mutual-exclusion lock: the thread that holds it may enter it again, and must leave
// it as often as it entered. It is a Windows critical section, or a recursive pthread mutex on
// Linux, held in place without allocation. Not copyable or movable.
class ZEL_API CritSect {
 public:
  CritSect();
  ~CritSect();
  CritSect(const CritSect &) = delete;
  CritSect &operator=(const CritSect &) = delete;

  // Waits until the lock is free or already held by the calling thread, then takes it.
  void Enter();
  // Takes the lock only when that needs no waiting; true when taken.
  bool TryEnter();
  // Gives back one Enter of the calling thread, which must hold the lock.
  void Leave();

 private:
  // Room for the native lock: CRITICAL_SECTION and pthread_mutex_t are both 24 bytes on 32-bit
  // and 40 bytes on 64-bit targets; the implementation checks the size.
  alignas(void *) unsigned char native_[sizeof(void *) == 8 ? 40 : 24];
};

// Holds a lock (anything with Enter and Leave) for the lifetime of the guard.
template <typename Lock>
class LockHold {
 public:
  explicit LockHold(Lock &lock) : lock_(lock) { lock_.Enter(); }
  ~LockHold() { lock_.Leave(); }
  LockHold(const LockHold &) = delete;
  LockHold &operator=(const LockHold &) = delete;

 private:
  Lock &lock_;
};

using CritSectLock = LockHold<CritSect>;

}  // namespace zel
