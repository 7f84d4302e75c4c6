// The library's entry point: DllMain, or its stand-ins in a static build.
#include "os/win32/module.h"

#include "os/os.h"

#include "os/win32/win.h"

namespace zel::os {

namespace {
HINSTANCE g_instance = nullptr;

#if defined(ZEL_STATIC)
struct ExitGuard {
  bool armed = false;
  ~ExitGuard() {
    if (armed) ThreadDetaching();
  }
};
thread_local ExitGuard t_exit_guard;

const bool g_attached = [] {
  g_instance = GetModuleHandleA(nullptr);
  ModuleAttached(g_instance);
  return true;
}();
#endif
}  // namespace

void *ThisModule() { return g_instance; }

#if defined(ZEL_STATIC)
void win32::WatchThreadExit() { t_exit_guard.armed = true; }
#else
void win32::WatchThreadExit() {}

namespace win32 {
void Attach(HINSTANCE instance) {
  g_instance = instance;
  ModuleAttached(instance);
}
}  // namespace win32
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
