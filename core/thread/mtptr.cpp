// Locked pointers.
#include <zel/thread/mtptr.h>

namespace zel {

mtptr_base::mtptr_base(void *object, CritSect *lock) : object_(object), lock_(lock) {
  if (lock_ != nullptr) lock_->Enter();
}

void mtptr_base::Set(const mtptr_base &other) {
  if (this == &other || other.object_ == object_) return;
  if (other.lock_ != nullptr) other.lock_->Enter();
  if (lock_ != nullptr) lock_->Leave();
  object_ = other.object_;
  lock_ = other.lock_;
}

void mtptr_base::SetTemp(mtptr_base &other) {
  if (this == &other) return;
  if (lock_ != nullptr) lock_->Leave();
  object_ = other.object_;
  lock_ = other.lock_;
  other.object_ = nullptr;
  other.lock_ = nullptr;
}

void mtptr_base::Reset() {
  if (lock_ != nullptr) lock_->Leave();
  object_ = nullptr;
  lock_ = nullptr;
}

}  // namespace zel
