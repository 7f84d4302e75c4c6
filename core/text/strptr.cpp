// Searching, trimming and changing the case of views.
#include <zel/text/strptr.h>

#include <cstring>

#include "text/char_tests.h"

namespace zel {

namespace {

using text::IsWhite;

bool SameChars(const char *a, const char *b, int n, bool case_sensitive) {
  if (n == 0) return true;  // an empty view's text may be null, which memcmp must not get
  if (case_sensitive) return std::memcmp(a, b, static_cast<size_t>(n)) == 0;
  for (int i = 0; i < n; ++i)
    if (ToLowerAscii(a[i]) != ToLowerAscii(b[i])) return false;
  return true;
}

}  // namespace

int strptr::FindFrom(const strptr &what, int from, bool case_sensitive) const {
  int n = what.length_;
  if (n == 0 || n > length_) return -1;
  if (from < 0) from = 0;
  if (case_sensitive) {
    // memchr finds candidates for the first character much faster than a byte loop.
    const char first = what.text_[0];
    for (int i = from; i <= length_ - n;) {
      const void *hit = std::memchr(text_ + i, first, static_cast<size_t>(length_ - n - i + 1));
      if (hit == nullptr) return -1;
      i = static_cast<int>(static_cast<const char *>(hit) - text_);
      if (std::memcmp(text_ + i, what.text_, static_cast<size_t>(n)) == 0) return i;
      ++i;
    }
    return -1;
  }
  for (int i = from; i <= length_ - n; ++i)
    if (SameChars(text_ + i, what.text_, n, false)) return i;
  return -1;
}

int strptr::FindFrom(char c, int from, bool case_sensitive) const {
  if (from < 0) from = 0;
  if (case_sensitive) {
    if (from >= length_) return -1;
    const void *hit = std::memchr(text_ + from, c, static_cast<size_t>(length_ - from));
    return hit ? static_cast<int>(static_cast<const char *>(hit) - text_) : -1;
  }
  const char folded = ToLowerAscii(c);
  for (int i = from; i < length_; ++i)
    if (ToLowerAscii(text_[i]) == folded) return i;
  return -1;
}

int strptr::ReverseFindFrom(char c, int before, bool case_sensitive) const {
  if (before > length_) before = length_;
  const char wanted = case_sensitive ? c : ToLowerAscii(c);
  for (int i = before - 1; i >= 0; --i)
    if ((case_sensitive ? text_[i] : ToLowerAscii(text_[i])) == wanted) return i;
  return -1;
}

strptr strptr::Trimmed() const {
  int begin = 0, end = length_;
  while (begin < end && IsWhite(text_[begin])) ++begin;
  while (end > begin && IsWhite(text_[end - 1])) --end;
  return strptr(text_ + begin, end - begin);
}

strptr strptr::TrimmedLeft() const {
  int begin = 0;
  while (begin < length_ && IsWhite(text_[begin])) ++begin;
  return strptr(text_ + begin, length_ - begin);
}

strptr strptr::TrimmedRight() const {
  int end = length_;
  while (end > 0 && IsWhite(text_[end - 1])) --end;
  return strptr(text_, end);
}

bool strptr::Equal(const strptr &other, bool case_sensitive) const {
  return length_ == other.length_ && SameChars(text_, other.text_, length_, case_sensitive);
}

bool strptr::StartsWithQ(const strptr &prefix, bool case_sensitive) const {
  return prefix.length_ <= length_ &&
         SameChars(text_, prefix.text_, prefix.length_, case_sensitive);
}

bool strptr::EndsWithQ(const strptr &suffix, bool case_sensitive) const {
  return suffix.length_ <= length_ && Right(suffix.length_).Equal(suffix, case_sensitive);
}

void strptr::MakeUpper() const {
  char *p = const_cast<char *>(text_);
  for (int i = 0; i < length_; ++i) p[i] = ToUpperAscii(p[i]);
}

void strptr::MakeLower() const {
  char *p = const_cast<char *>(text_);
  for (int i = 0; i < length_; ++i) p[i] = ToLowerAscii(p[i]);
}

}  // namespace zel
