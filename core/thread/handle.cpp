// Owned handles, closing and waiting.
#include <zel/thread/sync.h>

#include "os/os.h"
#include "thread/os_failure.h"

namespace zel {

namespace {

// Waits on `h`; with `alertable`, APCs run and end the wait. A failed wait logs `failure`.
bool WaitOn(void *h, int ms, bool alertable, const char *failure) {
  const uint32_t result = os::WaitOne(h, static_cast<uint32_t>(ms), alertable);
  if (result == os::kWaitFailed) LogOsFailure(failure);
  return result == os::kWaitObject0;
}

}  // namespace

void CloseHandleSafe(void *&handle) {
  if (os::IsHandle(handle) && !os::CloseHandle(handle)) LogOsFailure("CloseHandle failed: ");
  handle = nullptr;
}

int AlertableSelect(void *const *handles, int count, int ms) {
  if (count <= 0) return -1;
  const uint32_t result = os::WaitMany(count, handles, false, static_cast<uint32_t>(ms), true);
  const uint32_t n = static_cast<uint32_t>(count);
  if (result - os::kWaitObject0 < n) return static_cast<int>(result - os::kWaitObject0);
  if (result - os::kWaitAbandoned0 < n) return static_cast<int>(result - os::kWaitAbandoned0);
  return -1;
}

void QHandle::Attach(void *handle) {
  Close();
  handle_ = handle;
}

bool QHandle::Wait(int ms) { return WaitOn(handle_, ms, false, "Wait failed: "); }

bool QHandle::AlertableWait(int ms) { return WaitOn(handle_, ms, true, "AlertableWait failed: "); }

bool QHandle::AlertableWait() {
  for (;;) {
    const uint32_t result = os::WaitOne(handle_, os::kInfinite, true);
    if (result == os::kWaitIoCompletion) continue;
    if (result == os::kWaitFailed) LogOsFailure("AlertableWait failed: ");
    return result == os::kWaitObject0;
  }
}

}  // namespace zel
