// CritSect as a recursive pthread mutex.
#include <zel/thread/critsect.h>

#include <pthread.h>

namespace zel {

namespace {
pthread_mutex_t *Native(unsigned char *storage) {
  return reinterpret_cast<pthread_mutex_t *>(storage);
}
}  // namespace

CritSect::CritSect() {
  static_assert(sizeof native_ >= sizeof(pthread_mutex_t));
  static_assert(alignof(CritSect) >= alignof(pthread_mutex_t));
  pthread_mutexattr_t attr;
  pthread_mutexattr_init(&attr);
  pthread_mutexattr_settype(&attr, PTHREAD_MUTEX_RECURSIVE);
  pthread_mutex_init(Native(native_), &attr);
  pthread_mutexattr_destroy(&attr);
}

CritSect::~CritSect() { pthread_mutex_destroy(Native(native_)); }

void CritSect::Enter() { pthread_mutex_lock(Native(native_)); }

bool CritSect::TryEnter() { return pthread_mutex_trylock(Native(native_)) == 0; }

void CritSect::Leave() { pthread_mutex_unlock(Native(native_)); }

}  // namespace zel
