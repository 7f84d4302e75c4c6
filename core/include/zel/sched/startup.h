// What the library does when it is loaded and when threads start and end, and the listeners that
// hear of threads starting and ending.
#pragma once

#include <zel/config.h>

namespace zel {

// Told of threads that start and end in the process. On Windows that is every thread; on Linux it
// is every thread started through the library (a `Thread`, a `WorkThread`), since Linux has no
// notification for threads started elsewhere, and the end of any thread that used the library's
// per-thread state. The thread that ends the process is not told of its own end.
class ZEL_API ThreadListener {
 public:
  // Called on the new thread before it runs its own code.
  virtual void OnThreadStart() = 0;
  // Called on the ending thread, before its thread exit hooks run.
  virtual void OnThreadEnd() = 0;
  virtual ~ThreadListener() = default;

 private:
  friend void AddThreadListener(ThreadListener *);
  friend struct ThreadListenerList;
  ThreadListener *next_ = nullptr;
};

// Puts `listener` at the head of the list, so the newest is told first. There is no lock and no
// removal: add listeners during start-up, before other threads start or end, and keep them alive.
ZEL_API void AddThreadListener(ThreadListener *listener);

// The library's own module handle: its HINSTANCE on Windows, stored when the library was loaded;
// on Linux the base address of the shared object. In a static build, the executable's.
ZEL_API void *GetLibraryModule();

}  // namespace zel
