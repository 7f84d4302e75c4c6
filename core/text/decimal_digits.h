// The decimal digits of a double rounded to a number of decimals: the digit string, the position
// of the decimal point and the sign, as the C runtime's _fcvt reports them, made portably so that
// every platform prints the same text. Used by the double printers and the printf engine.
#pragma once

namespace zel {

// The most decimals produced; a request for more is served with this many.
inline constexpr int kMaxDecimals = 100;
// The most digits a result holds: 309 before the point of the largest double, one more when
// rounding carries, and the decimals.
inline constexpr int kMaxDecimalDigits = 310 + kMaxDecimals;
// Room for any number printed from such digits with a sign, a point and grouping commas.
inline constexpr int kMaxPrintedNumber = 2 * kMaxDecimalDigits;

// The digits of the exact binary value of a double, correctly rounded to `decimals` decimals (a
// negative count is taken as 0), an exact tie rounded away from zero.
//
// A nonzero value has no leading zeros in its digits; point() is the number of digits before the
// decimal point, 0 or negative when the value is below 1 (0.05 to 3 decimals is "50" with point
// -1). Zero, and a value that rounds to zero (0.03 to 0 decimals), has `decimals` zeros and
// point 0, and is not negative, whatever its sign (-0.0 and -0.001 to 2 decimals are as 0.0).
// Infinities give the letters "inf" and NaN "nan", with point 3; negative() is otherwise the sign.
class DecimalDigits {
 public:
  DecimalDigits(double value, int decimals);
  DecimalDigits(const DecimalDigits &) = delete;
  DecimalDigits &operator=(const DecimalDigits &) = delete;

  // The decimals the digits were rounded to: the request, within 0 to kMaxDecimals.
  int decimals() const { return decimals_; }
  const char *digits() const { return digits_; }
  int length() const { return length_; }
  int point() const { return point_; }
  bool negative() const { return negative_; }

  // Drops trailing zero digits, but never those before the decimal point.
  void TrimZeros() {
    int keep = point_ > 0 ? point_ : 0;
    while (length_ > keep && digits_[length_ - 1] == '0') --length_;
  }

 private:
  // std::to_chars' fixed text: the integer part, the point and one decimal more than asked for
  // (for a tie), after a place for the carry of rounding up.
  char buffer_[1 + kMaxDecimalDigits + 2];
  int decimals_;
  const char *digits_;
  int length_;
  int point_;
  bool negative_;
};

}  // namespace zel
