// Events and semaphores.
#include "os/posix/objects.h"

#include <cerrno>

namespace zel::os {

using posix::DispatcherLock;
using posix::Kind;

namespace {
// Runs `change` on the event under the dispatcher lock.
template <typename Change>
bool ChangeEvent(Handle h, Change change) {
  auto *e = static_cast<posix::Event *>(posix::Acquire(h, Kind::kEvent));
  if (e == nullptr) return false;
  {
    std::lock_guard lock(DispatcherLock());
    change(e);
  }
  posix::Release(e);
  return true;
}
}  // namespace

Handle CreateEvent(bool manual_reset, bool initially_set, const char * /*name*/) {
  return posix::NewObject<posix::Event>(manual_reset, initially_set);
}

bool SetEvent(Handle event) {
  return ChangeEvent(event, [](posix::Event *e) {
    e->signalled = true;
    posix::SatisfyWaits(e);
  });
}

bool ResetEvent(Handle event) {
  return ChangeEvent(event, [](posix::Event *e) { e->signalled = false; });
}

bool PulseEvent(Handle event) {
  return ChangeEvent(event, [](posix::Event *e) {
    // Releases the waits it can satisfy now (one for an auto-reset event); the event ends reset.
    e->signalled = true;
    posix::SatisfyWaits(e);
    e->signalled = false;
  });
}

Handle CreateSemaphore(int32_t initial, int32_t maximum) {
  if (maximum <= 0 || initial < 0 || initial > maximum) {
    SetLastError(EINVAL);
    return nullptr;
  }
  return posix::NewObject<posix::Semaphore>(initial, maximum);
}

bool ReleaseSemaphore(Handle semaphore, int32_t count, int32_t *previous) {
  auto *s = static_cast<posix::Semaphore *>(posix::Acquire(semaphore, Kind::kSemaphore));
  if (s == nullptr) return false;
  bool ok = count > 0;
  uint32_t error = EINVAL;
  {
    std::lock_guard lock(DispatcherLock());
    if (ok && count > s->maximum - s->count) {
      ok = false;
      error = EOVERFLOW;
    }
    if (ok) {
      if (previous != nullptr) *previous = s->count;
      s->count += count;
      posix::SatisfyWaits(s);
    }
  }
  posix::Release(s);
  if (!ok) SetLastError(error);
  return ok;
}

}  // namespace zel::os
