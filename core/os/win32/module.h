// How the library learns of its load and of threads ending on Windows.
#pragma once

namespace zel::os::win32 {

// Makes sure ThreadDetaching runs when the calling thread ends. The DLL hears of every thread's end
// through DllMain and needs nothing here; a static build has no DllMain and watches the threads
// that use its per-thread state through a thread_local object, as on Linux.
void WatchThreadExit();

// Records the DLL's instance handle, at process attach.
void Attach(void *instance);

}  // namespace zel::os::win32
