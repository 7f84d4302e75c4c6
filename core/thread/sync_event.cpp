// Manual-reset events.
#include <zel/thread/sync.h>

#include "os/os.h"
#include "thread/os_failure.h"

namespace zel {

namespace {

// The result of a change to an event; a failure logs `failure`.
bool Changed(bool ok, const char *failure) {
  if (!ok) LogOsFailure(failure);
  return ok;
}

}  // namespace

SyncEvent::SyncEvent(bool initially_set, const char *name)
    : QHandle(os::CreateEvent(true, initially_set, name)) {
  if (Handle() == nullptr) LogOsFailure("Error creating event: ");
}

bool SyncEvent::Set() { return Changed(os::SetEvent(Handle()), "Error setting event: "); }

bool SyncEvent::Reset() { return Changed(os::ResetEvent(Handle()), "Error resetting event: "); }

bool SyncEvent::Pulse() { return Changed(os::PulseEvent(Handle()), "Error pulsing event: "); }

}  // namespace zel
