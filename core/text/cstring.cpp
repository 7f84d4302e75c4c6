// cstring's buffer: borrowing and owning, growth, setting and appending.
#include <zel/mem/allocator.h>
#include <zel/mem/tary.h>
#include <zel/text/cstring.h>

#include <cstddef>
#include <cstring>
#include <utility>

namespace zel {

namespace {

// The text every empty string borrows. Nothing writes to borrowed text.
char g_empty[1] = "";

// Does `p` point into the stored characters (or the NUL) of the buffer?
bool Inside(const char *p, const char *text, int stored) { return p >= text && p < text + stored; }

}  // namespace

cstring::cstring() noexcept : text_(g_empty), stored_(1), capacity_(0) {}

cstring::cstring(const strptr &text) : cstring() {
  if (text.empty()) return;
  int n = text.length();
  text_ = static_cast<char *>(MallocX(n + 1));
  capacity_ = n + 1;
  std::memcpy(text_, text.text(), static_cast<size_t>(n));
  SetLength(n);
}

cstring::cstring(const strptr &a, const strptr &b) : cstring(a, b, strptr()) {}

cstring::cstring(const strptr &a, const strptr &b, const strptr &c) : cstring() {
  int n = a.length() + b.length() + c.length();
  if (n == 0) return;
  text_ = static_cast<char *>(MallocX(n + 1));
  capacity_ = n + 1;
  char *p = text_;
  for (const strptr *part : {&a, &b, &c}) {
    if (part->length() > 0) std::memcpy(p, part->text(), static_cast<size_t>(part->length()));
    p += part->length();
  }
  SetLength(n);
}

cstring::cstring(const cstring &other) : text_(other.text_), stored_(other.stored_), capacity_(0) {
  if (other.capacity_ == 0) return;  // a borrowing copy borrows the same text
  if (other.empty()) {
    text_ = g_empty;  // empty strings allocate nothing
    return;
  }
  text_ = static_cast<char *>(MallocX(stored_));
  capacity_ = stored_;
  std::memcpy(text_, other.text_, static_cast<size_t>(stored_));
}

cstring::cstring(cstring &&other) noexcept : cstring() { Swap(other); }

cstring &cstring::operator=(const cstring &other) {
  if (this == &other) return *this;
  if (other.capacity_ == 0) {
    cstring borrowing(other);
    Swap(borrowing);
    return *this;
  }
  return Set(other.view());
}

cstring &cstring::operator=(cstring &&other) noexcept {
  Swap(other);
  return *this;
}

cstring::~cstring() {
  if (capacity_ > 0) FreeX(text_);
}

cstring cstring::Borrow(const char *literal) {
  cstring s;
  s.text_ = const_cast<char *>(literal);
  s.stored_ = static_cast<int>(std::strlen(literal)) + 1;
  return s;
}

void cstring::Swap(cstring &other) noexcept {
  std::swap(text_, other.text_);
  std::swap(stored_, other.stored_);
  std::swap(capacity_, other.capacity_);
}

void cstring::Grow(int need) {
  if (need <= capacity_) return;
  if (capacity_ == 0 && text_ != nullptr) {
    TakeOwnership(need);  // a borrowing string takes a copy, without slack
    return;
  }
  int size = GrowCapacity(capacity_, 1, need);
  text_ = static_cast<char *>(ReallocX(text_, size));
  capacity_ = size;
}

void cstring::GrowExact(int need) {
  if (capacity_ == 0 && text_ != nullptr) {
    TakeOwnership(need);
  } else if (need > capacity_) {
    text_ = static_cast<char *>(ReallocX(text_, need));
    capacity_ = need;
  }
}

void cstring::TakeOwnership(int size) {
  if (size < stored_) size = stored_;
  char *owned = static_cast<char *>(MallocX(size));
  std::memcpy(owned, text_, static_cast<size_t>(stored_));
  text_ = owned;
  capacity_ = size;
}

void cstring::MakeOwning() {
  if (capacity_ == 0) TakeOwnership(stored_);
}

void cstring::Reserve(int length) { GrowExact(length + 1); }

void cstring::Compact() {
  if (capacity_ > stored_) {
    text_ = static_cast<char *>(ReallocX(text_, stored_));
    capacity_ = stored_;
  }
}

cstring &cstring::Set(const strptr &text) {
  int n = text.length();
  if (n == 0) {
    Flush();
  } else if (!Inside(text.text(), text_, stored_)) {
    if (capacity_ == 0) {
      text_ = nullptr;  // forget the borrowed text: nothing of it is kept
      stored_ = 0;
    }
    GrowExact(n + 1);
    std::memcpy(text_, text.text(), static_cast<size_t>(n));
    SetLength(n);
  } else if (capacity_ == 0) {
    cstring copy(text);
    Swap(copy);
  } else {
    std::memmove(text_, text.text(), static_cast<size_t>(n));
    SetLength(n);
  }
  return *this;
}

cstring &cstring::Add(const strptr &text) {
  int n = text.length();
  if (n == 0) return *this;
  int length = stored_ - 1;
  if (text.text() < text_ + stored_ && text.text() + n > text_) {
    // The text lies in this buffer, which may move as it grows: keep its offset.
    std::ptrdiff_t offset = text.text() - text_;
    Grow(stored_ + n);
    std::memmove(text_ + length, text_ + offset, static_cast<size_t>(n));
  } else {
    Grow(stored_ + n);
    std::memcpy(text_ + length, text.text(), static_cast<size_t>(n));
  }
  SetLength(length + n);
  return *this;
}

cstring &cstring::AddN(int n, char c) {
  const strptr gap = AddN(n);
  if (!gap.empty()) std::memset(gap.writable_text(), c, static_cast<size_t>(gap.length()));
  return *this;
}

strptr cstring::AddN(int n) {
  if (n <= 0) return strptr();
  int length = stored_ - 1;
  Grow(stored_ + n);
  SetLength(length + n);
  return strptr(text_ + length, n);
}

void cstring::SetAt(int i, char c) {
  if (i < 0 || i >= stored_ - 1) return;
  MakeOwning();
  text_[i] = c;
}

char *cstring::GetBuffer(int n) {
  if (n >= stored_) {
    Grow(n + 1);
    SetLength(n);
  } else {
    MakeOwning();
  }
  return text_;
}

void cstring::ReleaseBuffer(int n) {
  if (n == -1) {
    const void *nul = std::memchr(text_, 0, static_cast<size_t>(stored_));
    stored_ = static_cast<int>(static_cast<const char *>(nul) - text_) + 1;
    return;
  }
  // Borrowed text already ending at n is left unwritten: it may be a literal in read-only memory.
  if (text_[n] != 0) {
    MakeOwning();
    text_[n] = 0;
  }
  stored_ = n + 1;
}

void cstring::Flush() {
  if (capacity_ == 0) {
    text_ = g_empty;
    stored_ = 1;
  } else {
    SetLength(0);
  }
}

}  // namespace zel
