// The slow paths of LightLock: waiting for and handing over the lock.
#include "thread/light_lock.h"

namespace zel {

namespace {

// About a microsecond of waiting for the holder to leave.
constexpr int kSpins = 100;

}  // namespace

void LightLock::EnterContended() {
  for (int i = 0; i < kSpins; ++i) {
    os::CpuPause();
    if (std::atomic_ref<int32_t>(count_).load(std::memory_order_relaxed) == 0 && TryEnter()) return;
  }
  if (os::AtomicIncrement(count_) != 1) Wait();
}

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
