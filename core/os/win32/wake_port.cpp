// The external-loop wake-up: a manual-reset event a message loop can wait on.
#include "os/os.h"

#include "os/win32/win.h"

namespace zel::os {

bool WakePort::Open() {
  Close();
  HANDLE event = CreateEventA(nullptr, TRUE, FALSE, nullptr);
  if (event == nullptr) return false;
  native_ = reinterpret_cast<intptr_t>(event);
  return true;
}

void WakePort::Close() {
  if (native_ != -1) ::CloseHandle(reinterpret_cast<HANDLE>(native_));
  native_ = -1;
}

void WakePort::Signal() { ::SetEvent(reinterpret_cast<HANDLE>(native_)); }

bool WakePort::Drain() {
  HANDLE event = reinterpret_cast<HANDLE>(native_);
  if (WaitForSingleObject(event, 0) != WAIT_OBJECT_0) return false;
  ::ResetEvent(event);
  return true;
}

}  // namespace zel::os
