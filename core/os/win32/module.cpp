// The library's entry point: DllMain, or its stand-ins in a static build.
#include "os/win32/module.h"

#include "os/os.h"
#include "os/win32/win.h"

namespace zel::os {

#if defined(ZEL_STATIC)

namespace {
struct ExitGuard {
  bool armed = false;
  ~ExitGuard() {
    if (armed) ThreadDetaching();
  }
};
thread_local ExitGuard t_exit_guard;
}  // namespace

void *ThisModule() { return GetModuleHandleA(nullptr); }

void win32::WatchThreadExit() { t_exit_guard.armed = true; }

#else

namespace {
HINSTANCE g_instance = nullptr;
}  // namespace

void *ThisModule() { return g_instance; }

void win32::WatchThreadExit() {}

void win32::Attach(void *instance) { g_instance = static_cast<HINSTANCE>(instance); }

#endif

}  // namespace zel::os

#if !defined(ZEL_STATIC)
extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
  switch (reason) {
    case DLL_PROCESS_ATTACH: zel::os::win32::Attach(instance); break;
    case DLL_THREAD_ATTACH: zel::os::ThreadAttached(); break;
    case DLL_THREAD_DETACH: zel::os::ThreadDetaching(); break;
    default: break;  // process detach: the static destructors do what is needed
  }
  return TRUE;
}
#endif
