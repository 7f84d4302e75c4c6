// Thread-local slots.
#include "os/os.h"
#include "os/win32/module.h"

#include "os/win32/win.h"

namespace zel::os {

static_assert(TLS_OUT_OF_INDEXES == kNoTlsSlot);

uint32_t TlsAlloc() { return ::TlsAlloc(); }

bool TlsFree(uint32_t slot) { return ::TlsFree(slot) != 0; }

void *TlsGet(uint32_t slot) {
  // TlsGetValue clears the last error on success; callers expect it kept.
  SavedLastError saved;
  return ::TlsGetValue(slot);
}

bool TlsSet(uint32_t slot, void *value) {
  if (value != nullptr) win32::WatchThreadExit();
  return ::TlsSetValue(slot, value) != 0;
}

}  // namespace zel::os
