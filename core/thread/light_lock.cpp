// The slow paths of LightLock: waiting for and handing over the lock.
#include "thread/light_lock.h"

namespace zel {

void LightLock::Wait() {
  if (semaphore_ != nullptr) {
    os::WaitOne(semaphore_, os::kInfinite, false);
    return;
  }
  for (;;) {
    int32_t available = std::atomic_ref<int32_t>(handoffs_).load();
    if (available > 0 &&
        os::AtomicCompareExchange(handoffs_, available - 1, available) == available)
      return;
    os::Yield();
  }
}

void LightLock::Wake() {
  if (semaphore_ != nullptr)
    os::ReleaseSemaphore(semaphore_, 1, nullptr);
  else
    os::AtomicIncrement(handoffs_);
}

}  // namespace zel
