// Handles of the operating system's waitable objects: QHandle, the owned handle that can be waited
// on, SyncEvent, the manual-reset event, and the free functions that close and wait on handles.
//
// None of these throws: a failed system call is logged, when the log has a listener, as a fixed
// prefix + the system's text for the error + "\r\n", and the call reports it by its result.
// Time-outs are in milliseconds; -1 waits without limit.
#pragma once

#include <zel/config.h>

namespace zel {

// Closes `handle` unless it is 0 or all ones (the invalid handle value); a failed close logs
// "CloseHandle failed: ". `handle` becomes 0 in every case, so a second call closes nothing.
ZEL_API void CloseHandleSafe(void *&handle);

// Waits, alertably, for any one of `count` handles (at most 64), at most `ms` milliseconds.
// Returns the index of the signalled handle (the lowest when several are), also when that handle
// is an abandoned mutex; -1 when `count` is 0, when the time passes, when APCs queued to the
// calling thread ran and ended the wait, and when the wait fails (not logged).
ZEL_API int AlertableSelect(void *const *handles, int count, int ms);

// Owns one handle of a waitable object (an event, a semaphore, a timer, a thread) and closes it
// through CloseHandleSafe when it goes. Not copyable.
class ZEL_API QHandle {
 public:
  // Takes over `handle`; 0 holds none.
  explicit QHandle(void *handle = nullptr) : handle_(handle) {}
  ~QHandle() { Close(); }
  QHandle(const QHandle &) = delete;
  QHandle &operator=(const QHandle &) = delete;

  // The handle held; 0 when none.
  void *Handle() const { return handle_; }
  // Closes the handle held (see CloseHandleSafe), then takes over `handle`.
  void Attach(void *handle);
  // Closes the handle held (see CloseHandleSafe); 0 is held afterwards.
  void Close() { CloseHandleSafe(handle_); }

  // Waits at most `ms` milliseconds for the object to be signalled; queued APCs do not run. True
  // when it was signalled; false when the time passed, and when the wait failed, which logs
  // "Wait failed: " (waiting with no handle fails).
  bool Wait(int ms);
  // As Wait, but alertable: APCs queued to the calling thread run during the wait and end it,
  // which returns false. A failed wait logs "AlertableWait failed: ".
  bool AlertableWait(int ms);
  // Waits without limit, alertably, waiting again each time the wait ends because APCs ran. True
  // when the object was signalled; false when the wait failed, which logs "AlertableWait failed: ".
  bool AlertableWait();

 private:
  void *handle_;
};

// A manual-reset event: once set, it stays signalled (releasing every waiter) until it is reset.
// The destructor closes it.
class ZEL_API SyncEvent : public QHandle {
 public:
  // Creates the event, signalled when `initially_set`. On Windows a `name` makes it the event of
  // that name, shared by the processes that name it (one that exists already is opened as it is);
  // on Linux the name is ignored. When the event cannot be made, logs "Error creating event: " and
  // holds no handle, so that every other call fails.
  explicit SyncEvent(bool initially_set = false, const char *name = nullptr);

  // Signals the event. False when that fails, which logs "Error setting event: ".
  bool Set();
  // Makes the event unsignalled. False when that fails, which logs "Error resetting event: ".
  bool Reset();
  // Releases the threads that wait on the event at this moment and leaves it unsignalled. False
  // when that fails, which logs "Error pulsing event: ".
  bool Pulse();
};

}  // namespace zel
