// shstring: shared buffers, sub-views and comparisons.
#include <zel/text/shstring.h>

#include <cstring>
#include <new>
#include <utility>

namespace zel {

namespace {

// strncmp's idea of equality over `n` characters, optionally with the ASCII letters folded. A NUL
// in both texts ends the comparison (intended).
bool SameChars(const char *a, const char *b, int n, bool case_sensitive) {
  if (n == 0) return true;  // either text may then be null
  if (case_sensitive) return std::strncmp(a, b, static_cast<size_t>(n)) == 0;
  for (int i = 0; i < n; ++i) {
    char c = ToLowerAscii(a[i]);
    if (c != ToLowerAscii(b[i])) return false;
    if (c == 0) return true;
  }
  return true;
}

}  // namespace

shstring::strbuf *shstring::NewBuffer(int count) {
  if (count < 0) count = 0;
  void *block = MallocX(static_cast<int>(sizeof(strbuf)) + count);
  return new (block) strbuf{{1}, count, count};
}

void shstring::Share(strbuf *buffer, const char *text, int length) {
  buffer->references.fetch_add(1, std::memory_order_relaxed);
  buffer_ = buffer;
  text_ = text;
  length_ = length;
}

void shstring::CopyIn(const strptr &text) {
  buffer_ = NewBuffer(text.length());
  if (text.length() > 0)
    std::memcpy(buffer_->chars(), text.text(), static_cast<size_t>(text.length()));
  text_ = buffer_->chars();
  length_ = buffer_->length;
}

shstring::shstring(const char *text) {
  if (text != nullptr && *text != 0) CopyIn(strptr(text));
}

shstring::shstring(const strptr &text) { CopyIn(text); }

shstring::shstring(int count, char c) {
  NewEmptyString(count);
  std::memset(buffer_->chars(), c, static_cast<size_t>(length_));
}

shstring::shstring(const shstring &base, const strptr &part) {
  if (part.empty()) return;
  if (base.buffer_ != nullptr && base.buffer_->Holds(part.text(), part.length()))
    Share(base.buffer_, part.text(), part.length());
  else
    CopyIn(part);
}

shstring::shstring(const shstring &base, const Range &stretch) {
  if (base.buffer_ == nullptr || stretch.end < stretch.begin) return;
  Share(base.buffer_, base.buffer_->chars() + stretch.begin, stretch.end - stretch.begin);
}

shstring &shstring::operator=(const shstring &other) {
  if (other.buffer_ != buffer_) {
    if (other.buffer_ != nullptr) other.buffer_->references.fetch_add(1, std::memory_order_relaxed);
    Release();
    buffer_ = other.buffer_;
  }
  text_ = other.text_;
  length_ = other.length_;
  return *this;
}

shstring &shstring::operator=(shstring &&other) noexcept {
  shstring taken(std::move(other));
  Swap(taken);
  return *this;
}

shstring &shstring::operator=(const strptr &text) {
  if (buffer_ != nullptr && buffer_->Holds(text.text(), text.length())) {
    text_ = text.text();
    length_ = text.length();
    return *this;
  }
  shstring copy(text);
  Swap(copy);
  return *this;
}

void shstring::Set(const shstring &base, const strptr &part) {
  // Built before the old buffer goes, which may be the base's.
  shstring made(base, part);
  Swap(made);
}

char *shstring::NewEmptyString(int count) {
  Release();
  buffer_ = NewBuffer(count);
  text_ = buffer_->chars();
  length_ = buffer_->length;
  return buffer_->chars();
}

void shstring::Sever() {
  if (buffer_ == nullptr || buffer_->RefCount() < 2) return;
  shstring copy(view());
  Swap(copy);
}

bool shstring::Equal(const strptr &other, bool case_sensitive) const {
  return length_ == other.length() && SameChars(text_, other.text(), length_, case_sensitive);
}

bool shstring::operator==(const shstring &other) const {
  return length_ == other.length_ &&
         (text_ == other.text_ || length_ == 0 ||
          std::strncmp(text_, other.text_, static_cast<size_t>(length_)) == 0);
}

Range shstring::IndexIn(const shstring &base) const {
  if (buffer_ == nullptr || buffer_ != base.buffer_) return Range{};
  int offset = static_cast<int>(text_ - buffer_->chars());
  return Range{offset, offset + length_};
}

void shstring::Swap(shstring &other) noexcept {
  std::swap(buffer_, other.buffer_);
  std::swap(text_, other.text_);
  std::swap(length_, other.length_);
}

}  // namespace zel
