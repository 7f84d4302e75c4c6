// StringIter: characters, lines, words and tokens.
#include <zel/text/string_iter.h>

#include "text/char_tests.h"

#include <cstring>

namespace zel {

using text::IsWhite;

bool StringIter::SkipNChars(char c, int n) {
  if (n < 0 || n > length_ - position_) return false;
  for (int i = 0; i < n; ++i)
    if (text_[position_ + i] != c) return false;
  position_ += n;
  return true;
}

bool StringIter::SkipMultiLineHeader(int &count) {
  const int start = position_;
  while (position_ < length_ && text_[position_] == '[') ++position_;
  count = position_ - start;
  if (SkipNewLine()) return true;
  position_ = start;
  count = 0;
  return false;
}

strptr StringIter::GetLine() {
  if (position_ < 0) position_ = 0;
  if (position_ > length_) position_ = length_;
  const int start = position_;
  int p = start;
  while (p < length_ && text_[p] != '\n' && text_[p] != '\r') ++p;
  position_ = p;
  SkipNewLine();
  return strptr(text_ + start, p - start);
}

strptr StringIter::GetWindowsLine() {
  if (position_ < 0) position_ = 0;
  if (position_ > length_) position_ = length_;
  const int start = position_;
  const void *cr = start < length_
                       ? std::memchr(text_ + start, '\r', static_cast<size_t>(length_ - start))
                       : nullptr;
  const int p = cr ? static_cast<int>(static_cast<const char *>(cr) - text_) : length_;
  position_ = p;
  SkipNewLine();
  return strptr(text_ + start, p - start);
}

strptr StringIter::GetWord() {
  int p = position_;
  while (p < length_ && IsWhite(text_[p])) ++p;
  const int start = p;
  while (p < length_ && !IsWhite(text_[p])) ++p;
  position_ = p;
  return strptr(text_ + start, p - start);
}

strptr StringIter::GetWord(const CharSet &seps, bool one) {
  if (one) {
    if (position_ < length_ && seps(text_[position_])) ++position_;
  } else {
    while (position_ < length_ && seps(text_[position_])) ++position_;
  }
  return GetUpTo(seps);
}

strptr StringIter::GetUpTo(const CharSet &stop) {
  const int start = position_;
  int p = start;
  while (p < length_ && !stop(text_[p])) ++p;
  position_ = p;
  return strptr(text_ + start, p - start);
}

strptr StringIter::GetToken(const CharSet &seps, bool one) {
  const strptr token = GetUpTo(seps);
  if (position_ < length_) {
    ++position_;
    if (!one)
      while (position_ < length_ && seps(text_[position_])) ++position_;
  }
  return token;
}

strptr StringIter::GetToken(const strptr &sep) {
  const strptr token = GetTokenNoEOF(sep);
  if (token.text() != nullptr) return token;  // only a missing separator gives a null view
  const strptr rest = Rest();
  if (position_ < length_) position_ = length_;
  return rest;
}

strptr StringIter::GetTokenNoEOF(const strptr &sep, bool case_sensitive) {
  const int hit = strptr(text_, length_).FindFrom(sep, position_, case_sensitive);
  if (hit < 0) return strptr();
  const strptr token(text_ + position_, hit - position_);
  position_ = hit + sep.length();
  return token;
}

}  // namespace zel
