// CritSect as a Windows critical section.
#include <zel/thread/critsect.h>

#include "os/win32/win.h"

namespace zel {

namespace {
CRITICAL_SECTION *Native(unsigned char *storage) {
  return reinterpret_cast<CRITICAL_SECTION *>(storage);
}
}  // namespace

CritSect::CritSect() {
  static_assert(sizeof native_ >= sizeof(CRITICAL_SECTION));
  static_assert(alignof(CritSect) >= alignof(CRITICAL_SECTION));
  InitializeCriticalSection(Native(native_));
}

CritSect::~CritSect() { DeleteCriticalSection(Native(native_)); }

void CritSect::Enter() { EnterCriticalSection(Native(native_)); }

bool CritSect::TryEnter() { return TryEnterCriticalSection(Native(native_)) != 0; }

void CritSect::Leave() { LeaveCriticalSection(Native(native_)); }

}  // namespace zel
