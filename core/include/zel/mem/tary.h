// The library's growable arrays: TAry<T>, PtrTAry<T> (an array of pointers) and aryptr<T>, the
// view of either. Their memory comes from the global allocator.
#pragma once

#include <zel/mem/allocator.h>

#include <cstring>
#include <new>
#include <type_traits>
#include <utility>

namespace zel {

// The growth rule shared by every growable buffer of the library: a capacity of at most 8
// elements grows by 8; one below 2 MiB (2,097,152 bytes) doubles; one below 50 MiB (52,428,800
// bytes) grows by half; a larger one by a quarter (halves and quarters rounded down). The result
// is never less than `needed`. `element_size` is the size of one element in bytes.
constexpr int GrowCapacity(int capacity, int element_size, int needed) {
  int64_t bytes = int64_t{capacity} * element_size;
  int64_t proposal = capacity <= 8       ? capacity + 8
                     : bytes < 0x200000  ? int64_t{capacity} * 2
                     : bytes < 0x3200000 ? capacity + capacity / 2
                                         : capacity + capacity / 4;
  if (proposal > 0x7FFFFFFF) proposal = 0x7FFFFFFF;
  return proposal < needed ? needed : static_cast<int>(proposal);
}

// A view of `count` elements at `data`; it owns nothing.
template <typename T>
struct aryptr {
  T *data = nullptr;
  int count = 0;

  constexpr aryptr() = default;
  constexpr aryptr(T *d, int n) : data(d), count(n) {}

  T &operator[](int i) const { return data[i]; }
  T *begin() const { return data; }
  T *end() const { return data + count; }
  bool empty() const { return count == 0; }
};

// A growable array of T. Elements are moved when the array grows; references into it are valid
// until the next change of its size. Not copyable; movable.
template <typename T>
class TAry {
 public:
  TAry() = default;
  ~TAry() {
    Flush();
    FreeX(data_);
  }
  TAry(TAry &&other) noexcept { Swap(other); }
  TAry &operator=(TAry &&other) noexcept {
    Swap(other);
    return *this;
  }
  TAry(const TAry &) = delete;
  TAry &operator=(const TAry &) = delete;

  int Count() const { return count_; }
  int Capacity() const { return capacity_; }
  bool empty() const { return count_ == 0; }
  T &operator[](int i) { return data_[i]; }
  const T &operator[](int i) const { return data_[i]; }
  T *begin() { return data_; }
  T *end() { return data_ + count_; }
  const T *begin() const { return data_; }
  const T *end() const { return data_ + count_; }
  T &Last() { return data_[count_ - 1]; }
  aryptr<T> View() { return aryptr<T>(data_, count_); }
  aryptr<const T> View() const { return aryptr<const T>(data_, count_); }

  // Makes room for at least `n` elements (by the growth rule when it has to grow).
  void Reserve(int n) {
    if (n <= capacity_) return;
    Relocate(GrowCapacity(capacity_, sizeof(T), n));
  }

  // Appends an element made from `args` (which may refer to an element of this array); returns
  // it.
  template <typename... Args>
  T &Add(Args &&...args) {
    if (count_ == capacity_) {
      T value(std::forward<Args>(args)...);
      Reserve(count_ + 1);
      return *new (data_ + count_++) T(std::move(value));
    }
    return *new (data_ + count_++) T(std::forward<Args>(args)...);
  }

  // Inserts an element made from `args` before position `at` (0 to Count()).
  template <typename... Args>
  T &Insert(int at, Args &&...args) {
    T value(std::forward<Args>(args)...);
    if (at == count_) return Add(std::move(value));
    Reserve(count_ + 1);
    new (data_ + count_) T(std::move(data_[count_ - 1]));
    for (int i = count_ - 1; i > at; --i) data_[i] = std::move(data_[i - 1]);
    ++count_;
    data_[at] = std::move(value);
    return data_[at];
  }

  // Removes the element at `at`, moving the later ones down.
  void RemoveAt(int at) {
    for (int i = at; i + 1 < count_; ++i) data_[i] = std::move(data_[i + 1]);
    data_[--count_].~T();
  }

  // Removes every element; the memory is kept.
  void Flush() {
    for (int i = 0; i < count_; ++i) data_[i].~T();
    count_ = 0;
  }

  void Swap(TAry &other) noexcept {
    std::swap(data_, other.data_);
    std::swap(count_, other.count_);
    std::swap(capacity_, other.capacity_);
  }

 private:
  void Relocate(int capacity) {
    if constexpr (std::is_trivially_copyable_v<T>) {
      data_ = static_cast<T *>(ReallocX(data_, capacity * static_cast<int>(sizeof(T))));
    } else {
      T *moved = static_cast<T *>(MallocX(capacity * static_cast<int>(sizeof(T))));
      for (int i = 0; i < count_; ++i) {
        new (moved + i) T(std::move(data_[i]));
        data_[i].~T();
      }
      FreeX(data_);
      data_ = moved;
    }
    capacity_ = capacity;
  }

  T *data_ = nullptr;
  int count_ = 0;
  int capacity_ = 0;
};

// An array of pointers to T; it does not own what they point to.
template <typename T>
class PtrTAry : public TAry<T *> {
 public:
  // The index of `p`, or -1.
  int Find(const T *p) const {
    for (int i = 0; i < this->Count(); ++i)
      if ((*this)[i] == p) return i;
    return -1;
  }
};

}  // namespace zel
