// Hook0VAry: a list of hooks that its own hooks may change while it calls them.
#include <zel/mem/allocator.h>
#include <zel/mem/tary.h>
#include <zel/sched/hook.h>

#include "os/os.h"

#include <cstring>

namespace zel {

Hook0VAry::Hook0VAry(const Hook0V *hooks, int count)
    : hooks_(const_cast<Hook0V *>(hooks)), count_(count) {}

Hook0VAry::~Hook0VAry() {
  if (capacity_ > 0) FreeX(hooks_);
}

void Hook0VAry::MakeOwned(int capacity) {
  if (capacity <= capacity_) return;
  if (capacity_ == 0 && hooks_ != nullptr) {
    // Borrowed storage is copied before its first change.
    auto *owned = static_cast<Hook0V *>(MallocX(capacity * static_cast<int>(sizeof(Hook0V))));
    std::memcpy(static_cast<void *>(owned), hooks_, sizeof(Hook0V) * static_cast<size_t>(count_));
    hooks_ = owned;
  } else {
    hooks_ = static_cast<Hook0V *>(ReallocX(hooks_, capacity * static_cast<int>(sizeof(Hook0V))));
  }
  capacity_ = capacity;
}

bool Hook0VAry::Contains(const Hook0V &hook) const {
  for (int i = 0; i < count_; ++i)
    if (hooks_[i] == hook) return true;
  return false;
}

void Hook0VAry::Add(const Hook0V &hook) {
  Hook0V copy = hook;  // `hook` may be an entry of this list, which may move
  if (count_ == capacity_ || capacity_ == 0)
    MakeOwned(GrowCapacity(capacity_, sizeof(Hook0V), count_ + 1));
  hooks_[count_++] = copy;
}

void Hook0VAry::Blank(int i) {
  MakeOwned(count_);
  hooks_[i] = Hook0V();
  blanked_ = true;
}

void Hook0VAry::Remove(const Hook0V &hook) {
  for (int i = 0; i < count_; ++i) {
    if (!(hooks_[i] == hook)) continue;
    if (std::atomic_ref<int32_t>(depth_).load() > 0) {
      Blank(i);
    } else {
      MakeOwned(count_);
      std::memmove(static_cast<void *>(hooks_ + i), hooks_ + i + 1,
                   sizeof(Hook0V) * static_cast<size_t>(count_ - i - 1));
      --count_;
    }
    return;
  }
}

void Hook0VAry::Flush() {
  if (std::atomic_ref<int32_t>(depth_).load() > 0) {
    for (int i = 0; i < count_; ++i) Blank(i);
  } else {
    count_ = 0;
  }
}

Hook0VAry &Hook0VAry::operator=(const Hook0VAry &other) {
  if (this == &other) return *this;
  Flush();
  for (int i = 0; i < other.count_; ++i) Add(other.hooks_[i]);
  return *this;
}

void Hook0VAry::Compact() {
  int kept = 0;
  for (int i = 0; i < count_; ++i)
    if (hooks_[i].function() != nullptr || hooks_[i].target() != nullptr)
      hooks_[kept++] = hooks_[i];
  count_ = kept;
}

template <bool kReverse>
void Hook0VAry::Walk() {
  os::AtomicIncrement(depth_);
  const int count = count_;  // hooks appended by the walk are not called by it
  for (int n = 0; n < count; ++n) {
    int i = kReverse ? count - 1 - n : n;
    Hook0V hook = hooks_[i];  // a copy: the array may move while the hook runs
    if (hook.empty())
      blanked_ = true;  // a hole: compact when the walk is over
    else
      hook();
  }
  if (os::AtomicDecrement(depth_) == 0 && blanked_) {
    blanked_ = false;
    MakeOwned(count_);
    Compact();
  }
}

void Hook0VAry::Invoke() { Walk<false>(); }

void Hook0VAry::InvokeReverse() { Walk<true>(); }

}  // namespace zel
