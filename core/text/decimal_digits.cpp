// Digits of a double to a number of decimals: std::to_chars gives the correctly rounded digits,
// but rounds an exact tie to even where _fcvt rounds it away from zero; ties are found from the
// value's bits and rounded up here.
#include "text/decimal_digits.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace zel {

namespace {

// Is `magnitude` exactly halfway between two multiples of 10^-decimals? A double is m * 2^e with
// m odd; for e < 0 its exact decimal expansion has -e decimals and ends in 5 (2^-k = 5^k / 10^k),
// so the tie is exactly the case -e = decimals + 1.
bool ExactTie(double magnitude, int decimals) {
  const uint64_t bits = std::bit_cast<uint64_t>(magnitude);
  const int biased = static_cast<int>(bits >> 52);
  uint64_t mantissa = bits & ((uint64_t{1} << 52) - 1);
  if (biased == 0x7FF || bits == 0) return false;
  int exponent = -1074;
  if (biased != 0) {
    mantissa |= uint64_t{1} << 52;
    exponent = biased - 1075;
  }
  return exponent + std::countr_zero(mantissa) == -(decimals + 1);
}

}  // namespace

DecimalDigits::DecimalDigits(double value, int decimals)
    : decimals_(std::clamp(decimals, 0, kMaxDecimals)), negative_(std::signbit(value)) {
  const double magnitude = std::fabs(value);
  const bool tie = ExactTie(magnitude, decimals_);
  // A tie is printed exactly, with its final 5, and rounded up below.
  char *start = buffer_ + 1;
  char *end = std::to_chars(start, buffer_ + sizeof buffer_, magnitude, std::chars_format::fixed,
                            decimals_ + (tie ? 1 : 0))
                  .ptr;
  if (*start < '0' || *start > '9') {  // "inf" or "nan"
    digits_ = start;
    length_ = point_ = static_cast<int>(end - start);
    return;
  }
  char *dot = std::find(start, end, '.');
  point_ = static_cast<int>(dot - start);
  if (dot != end) {
    std::memmove(dot, dot + 1, static_cast<size_t>(end - dot - 1));
    --end;
  }
  if (tie) {
    char *last = --end - 1;
    while (last >= start && *last == '9') *last-- = '0';
    if (last >= start) {
      ++*last;
    } else {
      *--start = '1';
      ++point_;
    }
  }
  if (*start == '0' && point_ == 1) {  // below 1: no leading zeros
    while (start < end && *start == '0') {
      ++start;
      --point_;
    }
    if (start == end) {  // zero, or a value that rounds to nothing: printed as zero, unsigned
      start = end - decimals_;
      point_ = 0;
      negative_ = false;
    }
  }
  digits_ = start;
  length_ = static_cast<int>(end - start);
}

}  // namespace zel
