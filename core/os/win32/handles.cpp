// Handles, waits, events, semaphores and waitable timers: the system's own.
#include "os/os.h"

#include "os/win32/win.h"

namespace zel::os {

static_assert(WAIT_OBJECT_0 == kWaitObject0 && WAIT_ABANDONED_0 == kWaitAbandoned0 &&
              WAIT_IO_COMPLETION == kWaitIoCompletion && WAIT_TIMEOUT == kWaitTimeout &&
              WAIT_FAILED == kWaitFailed && INFINITE == kInfinite &&
              MAXIMUM_WAIT_OBJECTS == kMaxWaitObjects);

bool CloseHandle(Handle h) { return ::CloseHandle(h) != 0; }

uint32_t WaitOne(Handle h, uint32_t ms, bool alertable) {
  return WaitForSingleObjectEx(h, ms, alertable);
}

uint32_t WaitMany(int count, const Handle *handles, bool wait_all, uint32_t ms, bool alertable) {
  return WaitForMultipleObjectsEx(static_cast<DWORD>(count), handles, wait_all, ms, alertable);
}

uint32_t SleepEx(uint32_t ms, bool alertable) { return ::SleepEx(ms, alertable); }

Handle CreateEvent(bool manual_reset, bool initially_set, const char *name) {
  return CreateEventA(nullptr, manual_reset, initially_set, name);
}

bool SetEvent(Handle event) { return ::SetEvent(event) != 0; }

bool ResetEvent(Handle event) { return ::ResetEvent(event) != 0; }

bool PulseEvent(Handle event) { return ::PulseEvent(event) != 0; }

Handle CreateSemaphore(int32_t initial, int32_t maximum) {
  return CreateSemaphoreA(nullptr, initial, maximum, nullptr);
}

bool ReleaseSemaphore(Handle semaphore, int32_t count, int32_t *previous) {
  LONG before = 0;
  if (!::ReleaseSemaphore(semaphore, count, &before)) return false;
  if (previous != nullptr) *previous = before;
  return true;
}

Handle CreateWaitableTimer(bool manual_reset) {
  return CreateWaitableTimerA(nullptr, manual_reset, nullptr);
}

bool SetWaitableTimer(Handle timer, int64_t due, int32_t period_ms, TimerRoutine routine,
                      void *arg) {
  LARGE_INTEGER due_time;
  due_time.QuadPart = due;
  // TimerRoutine has PTIMERAPCROUTINE's signature and calling convention.
  return ::SetWaitableTimer(timer, &due_time, period_ms,
                            reinterpret_cast<PTIMERAPCROUTINE>(routine), arg, FALSE) != 0;
}

bool CancelWaitableTimer(Handle timer) { return ::CancelWaitableTimer(timer) != 0; }

}  // namespace zel::os
