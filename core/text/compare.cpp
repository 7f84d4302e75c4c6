// Orderings of texts: plain, case-folded, natural (numbers by value), and the unsigned C-string
// comparison.
#include <zel/text/strptr.h>

#include <cstdint>

namespace zel {

namespace {

int Sign(int64_t v) { return v < 0 ? -1 : (v > 0 ? 1 : 0); }

// The difference as an int, keeping its sign when it does not fit.
int Difference(int64_t a, int64_t b) {
  int64_t d = a - b;
  return d > INT32_MAX || d < INT32_MIN ? Sign(d) : static_cast<int>(d);
}

template <bool kFold>
int CompareChars(const char *a, int na, const char *b, int nb) {
  int n = na < nb ? na : nb;
  for (int i = 0; i < n; ++i) {
    signed char x = static_cast<signed char>(kFold ? ToLowerAscii(a[i]) : a[i]);
    signed char y = static_cast<signed char>(kFold ? ToLowerAscii(b[i]) : b[i]);
    if (x != y) return x - y;
  }
  return na - nb;
}

// One token of the natural ordering at `*i`: a letter folded to lower case, a run of digits as
// its decimal value (32-bit arithmetic, wrapping), or any other character as its signed code.
int64_t NaturalToken(const char *text, int length, int *i) {
  char c = text[*i];
  if (c >= '0' && c <= '9') {
    uint32_t value = 0;
    while (*i < length && text[*i] >= '0' && text[*i] <= '9')
      value = value * 10 + static_cast<uint32_t>(text[(*i)++] - '0');
    return static_cast<int32_t>(value);
  }
  ++*i;
  return static_cast<signed char>(ToLowerAscii(c));
}

}  // namespace

int strptr::CompareCase(const strptr &other) const {
  return CompareChars<false>(text_, length_, other.text_, other.length_);
}

int strptr::CompareNoCase(const strptr &other) const {
  return CompareChars<true>(text_, length_, other.text_, other.length_);
}

int strptr::CompareNoCaseNum(const strptr &other) const {
  if (length_ == 0) return length_ - other.length_;
  int i = 0, j = 0;
  while (i < length_ && j < other.length_) {
    int64_t mine = NaturalToken(text_, length_, &i);
    int64_t theirs = NaturalToken(other.text_, other.length_, &j);
    if (mine != theirs) return Difference(mine, theirs);
  }
  // The full lengths decide, not the tokens consumed: a01 > a1.
  return length_ - other.length_;
}

int CompareStringsNoCase(const char *a, const char *b) {
  for (;; ++a, ++b) {
    int x = static_cast<unsigned char>(ToLowerAscii(*a));
    int y = static_cast<unsigned char>(ToLowerAscii(*b));
    if (x != y || x == 0) return x - y;
  }
}

}  // namespace zel
