// The portable half of thread start and end: the operating-system layer calls in here from
// DllMain, or from its thread start-up and thread-exit guard on Linux.
#include <zel/diag/error.h>
#include <zel/sched/startup.h>
#include <zel/thread/exit_hooks.h>

#include "mem/thread_records.h"
#include "os/os.h"

namespace zel {

struct ThreadListenerList {
  static inline ThreadListener *head = nullptr;

  static void TellStart() {
    for (ThreadListener *l = head; l != nullptr; l = l->next_) l->OnThreadStart();
  }
  static void TellEnd() {
    for (ThreadListener *l = head; l != nullptr; l = l->next_) l->OnThreadEnd();
  }
};

void AddThreadListener(ThreadListener *listener) {
  listener->next_ = ThreadListenerList::head;
  ThreadListenerList::head = listener;
}

void *GetLibraryModule() { return os::ThisModule(); }

}  // namespace zel

namespace zel::os {

void ThreadAttached() {
  InstallSETranslator();
  ThreadListenerList::TellStart();
}

void ThreadDetaching() {
  ThreadListenerList::TellEnd();
  CallThreadExitHooks();
  ReleaseThreadAllocatorRecord();  // last: the exit work above may still allocate and free
}

}  // namespace zel::os
