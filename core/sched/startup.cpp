// The portable half of the library's load and of thread start and end: the operating-system layer
// calls in here from DllMain, or from the ELF constructor and the thread-exit guard on Linux.
#include <zel/sched/startup.h>

#include "os/os.h"

namespace zel {

namespace {
void *g_module = nullptr;
}  // namespace

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

void *GetLibraryModule() { return g_module; }

}  // namespace zel

namespace zel::os {

void ModuleAttached(void *module) { g_module = module; }

void ThreadAttached() { ThreadListenerList::TellStart(); }

void ThreadDetaching() { ThreadListenerList::TellEnd(); }

}  // namespace zel::os
