// Threads: identity, start-up, priorities and APCs.
#include "os/os.h"
#include "os/win32/module.h"

#include <process.h>
#include "os/win32/win.h"

namespace zel::os {

uint32_t CurrentThreadId() { return GetCurrentThreadId(); }

void Yield() { ::Sleep(0); }

void Sleep(uint32_t ms) { ::Sleep(ms); }

int ProcessorCount() {
  SYSTEM_INFO info;
  GetSystemInfo(&info);
  return info.dwNumberOfProcessors < 1 ? 1 : static_cast<int>(info.dwNumberOfProcessors);
}

#if defined(ZEL_STATIC)
namespace {
// Without DllMain, the threads the library starts announce themselves, as on Linux.
struct Start {
  ThreadRoutine routine;
  void *arg;
};

unsigned ZEL_CALLBACK Announced(void *p) {
  Start start = *static_cast<Start *>(p);
  HeapFree(p);
  win32::WatchThreadExit();
  ThreadAttached();
  return start.routine(start.arg);
}
}  // namespace
#endif

Handle CreateThread(ThreadRoutine routine, void *arg, uint32_t stack_size, bool suspended,
                    uint32_t *thread_id) {
#if defined(ZEL_STATIC)
  auto *start = static_cast<Start *>(HeapAlloc(sizeof(Start)));
  if (start == nullptr) return nullptr;
  *start = Start{routine, arg};
  routine = Announced;
  arg = start;
#endif
  unsigned id = 0;
  uintptr_t handle =
      _beginthreadex(nullptr, stack_size, routine, arg, suspended ? CREATE_SUSPENDED : 0, &id);
  if (handle == 0) {
#if defined(ZEL_STATIC)
    HeapFree(arg);
#endif
    return nullptr;
  }
  if (thread_id != nullptr) *thread_id = id;
  return reinterpret_cast<Handle>(handle);
}

uint32_t ResumeThread(Handle thread) { return ::ResumeThread(thread); }

bool SetThreadPriority(Handle thread, int priority) {
  return ::SetThreadPriority(thread, priority) != 0;
}

int GetThreadPriority(Handle thread) {
  static_assert(THREAD_PRIORITY_ERROR_RETURN == kPriorityError);
  return ::GetThreadPriority(thread);
}

Handle DuplicateCurrentThread() {
  HANDLE process = GetCurrentProcess();
  HANDLE handle = nullptr;
  if (!DuplicateHandle(process, GetCurrentThread(), process, &handle, 0, FALSE,
                       DUPLICATE_SAME_ACCESS))
    return nullptr;
  return handle;
}

bool QueueApc(ApcRoutine routine, Handle thread, uintptr_t arg) {
  // ApcRoutine has PAPCFUNC's signature and calling convention.
  return QueueUserAPC(reinterpret_cast<PAPCFUNC>(routine), thread, arg) != 0;
}

}  // namespace zel::os
