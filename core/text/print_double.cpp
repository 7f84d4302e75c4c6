// Doubles in plain notation, with grouping commas, as percentages and as sizes.
#include <zel/text/print.h>

#include "text/decimal_digits.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace zel {

namespace {

char *Copy(char *to, const char *from, int n) {
  std::memcpy(to, from, static_cast<size_t>(n));
  return to + n;
}

char *Zeros(char *to, int n) {
  if (n <= 0) return to;
  std::memset(to, '0', static_cast<size_t>(n));
  return to + n;
}

// The point and the digits after it, when the digits reach beyond the point.
char *Fraction(char *to, const DecimalDigits &d) {
  if (d.length() <= d.point()) return to;
  *to++ = '.';
  return Copy(to, d.digits() + d.point(), d.length() - d.point());
}

}  // namespace

cstring &operator<<(cstring &out, const PrintDouble &p) {
  if (std::isnan(p.value)) return out << "NaN";
  DecimalDigits d(p.value, p.decimals);
  if (p.trim) d.TrimZeros();
  const int n = d.length(), point = d.point();
  char text[kMaxPrintedNumber];
  char *w = text;
  if (d.negative()) *w++ = '-';
  if (point < 1) {
    *w++ = '0';
    if (point != 0 || n != 0) *w++ = '.';
    w = Zeros(w, std::min(d.decimals(), -point));
    w = Copy(w, d.digits(), n);
  } else {
    w = Copy(w, d.digits(), point);
    w = Fraction(w, d);
  }
  return out.AddNonOverlapping(text, static_cast<int>(w - text));
}

cstring &operator<<(cstring &out, const PrintDoubleWithCommas &p) {
  if (std::isnan(p.value)) return out << "NaN";
  DecimalDigits d(p.value, p.decimals);
  d.TrimZeros();
  const int n = d.length(), point = d.point();
  char text[kMaxPrintedNumber];
  char *w = text;
  if (d.negative()) *w++ = '-';
  if (point < 1) {
    *w++ = '0';
    const int zeros = std::min(d.decimals(), -point);
    if (n > 0 || zeros > 0) {
      *w++ = '.';
      w = Copy(Zeros(w, zeros), d.digits(), n);
    }
  } else {
    const int first = point % 3;
    w = Copy(w, d.digits(), first);
    for (int i = first; i < point; i += 3) {
      if (i > 0) *w++ = ',';
      w = Copy(w, d.digits() + i, 3);
    }
    w = Fraction(w, d);
  }
  return out.AddNonOverlapping(text, static_cast<int>(w - text));
}

cstring &operator<<(cstring &out, const PrintPercent &p) {
  return out << PrintDouble(p.fraction * 100, p.decimals) << '%';
}

cstring &operator<<(cstring &out, const PrintSizeBytes &p) {
  double size = p.bytes;
  if (size < 0) {
    out << '-';
    size = -size;
  }
  if (size < 1024) return out << PrintDouble(size, 1) << " Bytes";
  if (size * (1.0 / 1024) < 1024) return out << PrintDouble(size * (1.0 / 1024), 1) << " KB";
  const double megabytes = size / 1024 / 1024;
  // A gigabyte is taken as a thousand megabytes (intended).
  if (megabytes >= 1024) return out << PrintDouble(megabytes * 0.001, 2) << " GB";
  return out << PrintDouble(megabytes, 2) << " MB";
}

cstring &operator<<(cstring &out, const PrintSizeBits &p) {
  double bits = p.bits;
  if (bits < 0) {
    out << '-';
    bits = -bits;
  }
  if (bits >= 512) return out << PrintSizeBytes(bits / 8);
  return out << PrintDouble(bits, 1) << " Bits";
}

}  // namespace zel
