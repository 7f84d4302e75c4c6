// NRCritSect: the library's non-recursive lock, for short sections.
#pragma once

#include <zel/thread/critsect.h>

namespace zel {

// A lock that a thread holds at most once: entering it again on the thread that holds it waits
// for ever (and TryEnter fails). Entering it while another thread holds it spins for a moment on
// a machine with more than one processor, where the holder may be leaving on another processor,
// and then sleeps until the lock is left. Uncontended, entering and leaving make no system call.
// The lock is not handed over in order: a thread that comes along may take it before a waiter that
// is still waking up. Not copyable or movable; use it with LockHold.
class ZEL_API NRCritSect {
 public:
  NRCritSect();
  ~NRCritSect();
  NRCritSect(const NRCritSect &) = delete;
  NRCritSect &operator=(const NRCritSect &) = delete;

  // Waits until the lock is free, then takes it.
  void Enter();
  // Takes the lock only when it is free; true when taken.
  bool TryEnter();
  // Gives the lock back; the calling thread must hold it.
  void Leave();

  // The number of processors, read from the system once as the library loads (0 before that). The
  // library's locks spin before sleeping only when it is above 1.
  static int _number_of_processors;

 private:
  // Room for the library's internal light lock; the implementation checks the size.
  alignas(void *) unsigned char lock_[sizeof(void *) == 8 ? 24 : 12];
};

using NRCritSectLock = LockHold<NRCritSect>;

}  // namespace zel
