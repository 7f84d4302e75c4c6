// Locked pointers: a pointer that holds the lock guarding what it points to.
#pragma once

#include <zel/thread/critsect.h>

namespace zel {

// A pointer together with the lock that guards the object pointed to. While it holds a pointer it
// holds that lock: copying one enters the lock before the old one is left, so a holder is never
// unlocked in between; moving passes the lock over without releasing it.
class ZEL_API mtptr_base {
 public:
  mtptr_base() = default;
  // Points to `object` and enters `lock` (when not null).
  mtptr_base(void *object, CritSect *lock);
  mtptr_base(const mtptr_base &other) { Set(other); }
  mtptr_base(mtptr_base &&other) noexcept { SetTemp(other); }
  mtptr_base &operator=(const mtptr_base &other) {
    Set(other);
    return *this;
  }
  mtptr_base &operator=(mtptr_base &&other) noexcept {
    SetTemp(other);
    return *this;
  }
  ~mtptr_base() { Reset(); }

  // When `other` points elsewhere: enters its lock, leaves this one's, then takes its pointer and
  // lock.
  void Set(const mtptr_base &other);
  // Leaves this one's lock, takes `other`'s pointer and lock, and empties `other`.
  void SetTemp(mtptr_base &other);
  // Leaves the lock and points nowhere.
  void Reset();

 protected:
  void *object_ = nullptr;
  CritSect *lock_ = nullptr;
};

// A locked pointer to a T, typically returned by a function that hands out locked access to a
// shared object: the object stays locked while the holder lives.
template <typename T>
class temp_mtptr : public mtptr_base {
 public:
  temp_mtptr() = default;
  temp_mtptr(T *object, CritSect *lock) : mtptr_base(object, lock) {}

  T *get() const { return static_cast<T *>(object_); }
  T *operator->() const { return get(); }
  T &operator*() const { return *get(); }
};

}  // namespace zel
