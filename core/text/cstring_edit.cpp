// Editing a cstring in place: trimming, dropping characters, truncating, splitting at delimiters
// and replacing regions.
#include <zel/stream/bitptr.h>
#include <zel/text/charset.h>
#include <zel/text/cstring.h>

#include <cstring>

namespace zel {

namespace {

// Is `c` in the NUL-terminated `delimiters`? The NUL itself always is (strchr finds the list's own
// terminator). Without case sensitivity either case form of `c` may be listed.
bool IsDelimiter(char c, const char *delimiters, bool case_sensitive) {
  if (std::strchr(delimiters, c) != nullptr) return true;
  return !case_sensitive && (std::strchr(delimiters, ToUpperAscii(c)) != nullptr ||
                             std::strchr(delimiters, ToLowerAscii(c)) != nullptr);
}

}  // namespace

void cstring::TrimLeft() {
  int n = length() - view().TrimmedLeft().length();
  if (n == 0) return;
  MakeOwning();
  std::memmove(text_, text_ + n, static_cast<size_t>(stored_ - n));
  stored_ -= n;
}

void cstring::TrimRight() { LimitLength(view().TrimmedRight().length()); }

void cstring::DeleteCharSet(const CharSet &set) {
  int kept = 0;
  for (int i = 0; i < length() && text_[i] != 0; ++i) {
    if (set(text_[i])) continue;
    if (kept != i) {
      MakeOwning();
      text_[kept] = text_[i];
    }
    ++kept;
  }
  LimitLength(kept);
}

void cstring::Remove(const bitptr &bits) {
  int considered = bits.Count() < length() ? bits.Count() : length();
  int kept = 0;
  for (int i = 0; i < considered; ++i) {
    if (bits.Test(i)) continue;
    if (kept != i) {
      MakeOwning();
      text_[kept] = text_[i];
    }
    ++kept;
  }
  LimitLength(kept);
}

void cstring::Chop() {
  if (length() > 0) LimitLength(length() - 1);
}

void cstring::LimitLength(int n) {
  if (n < 0) n = 0;
  if (length() <= n) return;
  MakeOwning();
  SetLength(n);
}

cstring &cstring::MakeLength(int n, char fill) {
  int old = length();
  if (old == n || n < 0) return *this;
  GrowExact(n + 1);
  if (n > old) std::memset(text_ + old, fill, static_cast<size_t>(n - old));
  SetLength(n);
  return *this;
}

cstring &cstring::CrackOn(const char *delimiters, cstring &rest, bool case_sensitive) {
  rest.Set(strptr());
  if (delimiters == nullptr) return *this;
  for (int p = 0; p < stored_; ++p) {
    if (!IsDelimiter(text_[p], delimiters, case_sensitive)) continue;
    if (p < length()) {
      rest.Set(view().Mid(p + 1));
      LimitLength(p);
    }
    break;
  }
  return *this;
}

cstring &cstring::CrackOnRev(const char *delimiters, cstring &rest, bool case_sensitive) {
  rest.Set(strptr());
  if (delimiters == nullptr) return *this;
  for (int p = length() - 1; p >= 0; --p) {
    if (!IsDelimiter(text_[p], delimiters, case_sensitive)) continue;
    rest.Set(view().Mid(p + 1));
    LimitLength(p);
    break;
  }
  return *this;
}

cstring &cstring::CutOn(const char *delimiters, bool case_sensitive) {
  if (delimiters == nullptr) return *this;
  for (int p = 0; p < length(); ++p) {
    if (IsDelimiter(text_[p], delimiters, case_sensitive)) {
      LimitLength(p);
      break;
    }
  }
  return *this;
}

cstring &cstring::CutOnRev(const char *delimiters, bool case_sensitive) {
  if (delimiters == nullptr) return *this;
  for (int p = length() - 1; p >= 0; --p) {
    if (IsDelimiter(text_[p], delimiters, case_sensitive)) {
      LimitLength(p);
      break;
    }
  }
  return *this;
}

strptr cstring::InsertRegion(int at, int n) {
  if (n <= 0) return strptr();
  Grow(stored_ + n);
  std::memmove(text_ + at + n, text_ + at, static_cast<size_t>(stored_ - at));
  stored_ += n;
  return strptr(text_ + at, n);
}

void cstring::ReplaceRegion(int at, int n, const strptr &text) {
  if (text.length() > 0 && text.text() < text_ + stored_ && text.text() + text.length() > text_) {
    cstring copy(text);  // the replacement lies in the part that moves
    ReplaceRegion(at, n, copy);
    return;
  }
  int stored = stored_ - n + text.length();
  GrowExact(stored);
  std::memmove(text_ + at + text.length(), text_ + at + n, static_cast<size_t>(stored_ - at - n));
  if (text.length() > 0) std::memcpy(text_ + at, text.text(), static_cast<size_t>(text.length()));
  stored_ = stored;
}

}  // namespace zel
