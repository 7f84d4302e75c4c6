// Thread: a thread started by the library, and its handle until the thread is reaped.
#pragma once

#include <zel/thread/sync.h>

namespace zel {

// Starts one thread at a time and keeps its handle, which becomes signalled when the thread ends;
// Wait reaps it. Not copyable.
class ZEL_API Thread {
 public:
  Thread() = default;
  // When a handle is held, waits without limit for the thread to end and closes the handle.
  ~Thread();
  Thread(const Thread &) = delete;
  Thread &operator=(const Thread &) = delete;

  // Starts a thread with the default stack size that calls fn(arg); an exception leaving fn is
  // dropped there. True when it started; false, starting nothing, when a handle is held already
  // (reap the earlier thread with Wait first) or the system could not start a thread. Throws
  // ErrorX when memory runs out.
  bool Start_(void (*fn)(void *), void *arg);

  // Waits at most `ms` milliseconds (-1: without limit) for the thread to end. True at once when
  // no handle is held. True when the thread has ended: its handle is then closed and 0 is held.
  // False when the time passed, and when the wait failed (logged as QHandle::Wait does).
  bool Wait(long ms);

  // The thread's handle: 0 before the first start and once the thread has been reaped.
  void *Handle() const { return thread_.Handle(); }

 private:
  QHandle thread_;
};

}  // namespace zel
