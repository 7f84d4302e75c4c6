// Thread-local slots as pthread keys.
#include "os/os.h"
#include "os/posix/objects.h"

#include <pthread.h>

namespace zel::os {

static_assert(sizeof(pthread_key_t) <= sizeof(uint32_t), "a pthread key must fit a slot number");

uint32_t TlsAlloc() {
  pthread_key_t key;
  int error = pthread_key_create(&key, nullptr);
  if (error != 0) {
    SetLastError(static_cast<uint32_t>(error));
    return kNoTlsSlot;
  }
  return static_cast<uint32_t>(key);
}

bool TlsFree(uint32_t slot) {
  int error = pthread_key_delete(static_cast<pthread_key_t>(slot));
  if (error != 0) SetLastError(static_cast<uint32_t>(error));
  return error == 0;
}

void *TlsGet(uint32_t slot) { return pthread_getspecific(static_cast<pthread_key_t>(slot)); }

bool TlsSet(uint32_t slot, void *value) {
  if (value != nullptr) posix::WatchThreadExit();
  int error = pthread_setspecific(static_cast<pthread_key_t>(slot), value);
  if (error != 0) SetLastError(static_cast<uint32_t>(error));
  return error == 0;
}

}  // namespace zel::os
