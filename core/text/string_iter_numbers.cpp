// StringIter: integers, decimal numbers and hexadecimal numbers.
#include <zel/text/string_iter.h>

#include "text/char_tests.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <type_traits>

namespace zel {
namespace {

using text::DigitValue;
using text::IsWhite;

// How a scan ended: only white space left, no number (the caller moves back), or a number.
enum class Scan { kAtEnd, kNone, kNumber };

inline void SkipWhite(const char *t, int &p, int end) {
  while (p < end && IsWhite(t[p])) ++p;
}

// Takes the sign at t[p], if there is one; returns whether it was "-".
inline bool TakeSign(const char *t, int &p) {
  const bool negative = t[p] == '-';
  if (negative || t[p] == '+') ++p;
  return negative;
}

// The integer readers: white space, a sign and digits from `s` to `end`, `s` left after what was
// taken. `out` is written only for a number.
template <typename S>
inline Scan ScanInteger(const char *&s, const char *end, S &out) {
  using U = std::make_unsigned_t<S>;
  while (s < end && IsWhite(*s)) ++s;
  if (s >= end) return Scan::kAtEnd;
  const bool negative = *s == '-';
  if (negative || *s == '+') ++s;
  if (s >= end) return Scan::kAtEnd;
  unsigned d = DigitValue(*s);
  if (d > 9) return Scan::kNone;
  U v = 0;
  do {
    v = static_cast<U>(v * 10 + d);
    ++s;
    // Only a sum that turns negative is overflow; one that wraps to a positive value is kept
    // and reading goes on (intended).
    if (static_cast<S>(v) < 0) {
      v = std::numeric_limits<S>::max();
      break;
    }
  } while (s < end && (d = DigitValue(*s)) <= 9);
  out = negative ? -static_cast<S>(v) : static_cast<S>(v);
  return Scan::kNumber;
}

// Digits accumulate exactly in 32 bits while the value is below this bound (so that one more
// digit still fits in a signed 32-bit value), then in double precision up to kWideLimit; digits
// beyond that are below a double's precision and only counted.
constexpr uint32_t kExactLimit = 214748364;
constexpr double kWideLimit = 1e19;

// The powers of ten a double holds exactly.
constexpr double kPow10[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                             1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr int kMaxExactPow10 = 22;

// The digits of a number read as one integer mantissa.
struct Mantissa {
  uint32_t exact = 0;
  double wide = 0;  // the value once it passed kExactLimit
  bool is_wide = false;
  int skipped = 0;  // digits past kWideLimit, each a factor of ten

  // The mantissa times 10^scale. With an exact mantissa and a power of ten that a double holds,
  // this is one rounding, so short numbers come out exact.
  double Scaled(int64_t scale) const {
    const double v = is_wide ? wide : exact;
    scale += skipped;
    if (scale == 0 || v == 0) return v;
    if (scale < 0 && scale >= -kMaxExactPow10) return v / kPow10[-scale];
    if (scale > 0 && scale <= kMaxExactPow10) return v * kPow10[scale];
    if (scale > 0) return v * std::pow(10.0, static_cast<double>(scale));
    // Small results divide by a power of ten rather than multiply by an inexact inverse; below
    // 1e-300 the divisor is split, as a single power of ten would overflow.
    if (scale >= -300) return v / std::pow(10.0, static_cast<double>(-scale));
    return v / 1e300 / std::pow(10.0, static_cast<double>(-scale - 300));
  }
};

// Adds the digits from t[p] to `m`; returns the position after them.
inline int AddDigits(const char *t, int p, int end, Mantissa &m) {
  unsigned d;
  if (!m.is_wide) {
    uint32_t v = m.exact;
    for (; p < end && (d = DigitValue(t[p])) <= 9; ++p) {
      if (v >= kExactLimit) {
        m.is_wide = true;
        m.wide = v;
        break;
      }
      v = v * 10 + d;
    }
    m.exact = v;
    if (!m.is_wide) return p;
  }
  double w = m.wide;
  for (; p < end && (d = DigitValue(t[p])) <= 9; ++p) {
    if (w < kWideLimit)
      w = w * 10 + d;
    else
      ++m.skipped;
  }
  m.wide = w;
  return p;
}

// Whether t[p] is a comma that groups digits: exactly three digits follow it.
inline bool DigitGroupAt(const char *t, int p, int end) {
  return end - p > 3 && t[p] == ',' && DigitValue(t[p + 1]) <= 9 && DigitValue(t[p + 2]) <= 9 &&
         DigitValue(t[p + 3]) <= 9 && (p + 4 >= end || DigitValue(t[p + 4]) > 9);
}

// Adds digits grouped by commas (see the header) to `m`; returns the position after them.
inline int AddGroupedDigits(const char *t, int p, int end, Mantissa &m) {
  const int start = p;
  p = AddDigits(t, p, end, m);
  if (p == start) return p;
  while (DigitGroupAt(t, p, end)) p = AddDigits(t, p + 1, p + 4, m);
  return p;
}

// The decimal readers: white space, a sign, digits (grouped by commas when `grouped`), an
// optional fraction and, unless `grouped`, an optional exponent. `out` is written only for a
// number.
Scan ScanDecimal(const char *t, int &p, int end, bool grouped, double &out) {
  SkipWhite(t, p, end);
  if (p >= end) return Scan::kAtEnd;
  const bool negative = TakeSign(t, p);
  const int digits = p;
  Mantissa m;
  p = grouped ? AddGroupedDigits(t, p, end, m) : AddDigits(t, p, end, m);
  int64_t scale = 0;
  // "5." is a number; "." is one only with a digit after it.
  if (p < end && t[p] == '.' && (p > digits || (p + 1 < end && DigitValue(t[p + 1]) <= 9))) {
    const int fraction = ++p;
    p = AddDigits(t, p, end, m);
    scale = fraction - p;  // the fraction is divided once, at the end
  }
  if (p == digits) return Scan::kNone;
  if (!grouped && p < end && (t[p] == 'e' || t[p] == 'E')) {
    int q = p + 1;
    const bool negative_exponent = q < end && t[q] == '-';
    if (q < end && (t[q] == '-' || t[q] == '+')) ++q;
    if (q >= end || DigitValue(t[q]) > 9) return Scan::kNone;  // "1e" and "1e+" are no numbers
    int exponent = 0;
    for (unsigned d; q < end && (d = DigitValue(t[q])) <= 9; ++q)
      if (exponent < 100000) exponent = exponent * 10 + static_cast<int>(d);
    scale += negative_exponent ? -exponent : exponent;
    p = q;
  }
  const double v = m.Scaled(scale);
  out = negative ? -v : v;
  return Scan::kNumber;
}

}  // namespace

bool StringIter::MaybeParseInteger(int &value) {
  const char *s = text_ + position_;
  const Scan scan = ScanInteger(s, text_ + length_, value);
  if (scan != Scan::kNone) position_ = static_cast<int>(s - text_);
  return scan == Scan::kNumber;
}

bool StringIter::MaybeParseInteger(int &value, int max_chars) {
  value = 0;
  const char *s = text_ + position_;
  const int window = max_chars > 0 ? max_chars : 0;
  position_ = window < length_ - position_ ? position_ + window : length_;
  // The whole window is taken, number or not (intended).
  return ScanInteger(s, text_ + position_, value) == Scan::kNumber;
}

long long StringIter::ParseInteger64(long long def) {
  const char *s = text_ + position_;
  ScanInteger(s, text_ + length_, def);  // without a number `def` stays, and `s` where it stopped
  position_ = static_cast<int>(s - text_);
  return def;
}

bool StringIter::MaybeParseInteger64(long long &value) {
  const char *s = text_ + position_;
  const Scan scan = ScanInteger(s, text_ + length_, value);
  if (scan != Scan::kNone) position_ = static_cast<int>(s - text_);
  return scan == Scan::kNumber;
}

int StringIter::ParseIntegerWithCommas(int def) {
  int p = position_;
  SkipWhite(text_, p, length_);
  const bool negative = p < length_ && TakeSign(text_, p);
  const int digits = p;
  Mantissa m;
  p = AddGroupedDigits(text_, p, length_, m);
  if (p == digits) return def;
  position_ = p;
  const double magnitude = m.Scaled(0);
  const int v = magnitude < 2147483647.0 ? static_cast<int>(magnitude) : 2147483647;
  return negative ? -v : v;
}

double StringIter::ParseDigits() {
  Mantissa m;
  position_ = AddDigits(text_, position_, length_, m);
  return m.Scaled(0);
}

double StringIter::ParseFraction() {
  Mantissa m;
  const int start = position_;
  position_ = AddDigits(text_, position_, length_, m);
  return m.Scaled(start - position_);
}

double StringIter::ParseDigitsWithCommas() {
  Mantissa m;
  position_ = AddGroupedDigits(text_, position_, length_, m);
  return m.Scaled(0);
}

double StringIter::ParseDoubleWithCommas(double def) {
  int p = position_;
  if (ScanDecimal(text_, p, length_, true, def) == Scan::kNumber) position_ = p;
  return def;
}

bool StringIter::MaybeParseDouble(double &value) {
  int p = position_;
  const Scan scan = ScanDecimal(text_, p, length_, false, value);
  if (scan != Scan::kNone) position_ = p;
  return scan == Scan::kNumber;
}

int StringIter::ParseHexChar(int def) {
  if (AtEnd()) return def;
  const int d = HexCharToInt(text_[position_], -1);
  if (d < 0) return def;
  ++position_;
  return d;
}

int StringIter::ParseHexInteger(int def) {
  int p = position_;
  SkipWhite(text_, p, length_);
  position_ = p;
  uint32_t v = 0;
  int d;
  if (p >= length_ || (d = HexCharToInt(text_[p], -1)) < 0) return def;
  do {
    v = v << 4 | static_cast<uint32_t>(d);  // higher digits shift out (intended)
  } while (++p < length_ && (d = HexCharToInt(text_[p], -1)) >= 0);
  position_ = p;
  return static_cast<int>(v);
}

}  // namespace zel
