// ParserBase: digits, integers, hexadecimal numbers and ParseNumber.
#include <zel/parse/parser_base.h>
#include <zel/text/thread_local_string.h>

#include <charconv>
#include <climits>
#include <cmath>
#include <limits>

namespace zel {

namespace {

int HexValue(char c) { return c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10; }

// A double holds about 17 significant digits; fraction digits past these cannot change it.
constexpr int kFractionDigits = 19;

// The value of a decimal text ("ddd.ddde-ddd", with ".") that lies beyond the doubles: infinite
// when its decimal exponent is positive, else 0.
double OutOfRange(const strptr &decimal) {
  int mantissa_end = 0;
  while (mantissa_end < decimal.length() && ToLowerAscii(decimal[mantissa_end]) != 'e')
    ++mantissa_end;
  int point = decimal.FindFrom('.');
  if (point < 0 || point > mantissa_end) point = mantissa_end;
  int first = 0;  // the first significant digit
  while (first < mantissa_end && (decimal[first] == '0' || decimal[first] == '.')) ++first;
  if (first == mantissa_end) return 0;
  // The value is 0.<digits from first> times 10 to this.
  int64_t exponent = first < point ? point - first : point + 1 - first;
  if (mantissa_end < decimal.length()) {
    int i = mantissa_end + 1;
    const bool negative = decimal[i] == '-';
    if (decimal[i] == '-' || decimal[i] == '+') ++i;
    int64_t written = 0;
    for (; i < decimal.length(); ++i)
      if (written < 1000000000) written = written * 10 + (decimal[i] - '0');
    exponent += negative ? -written : written;
  }
  return exponent > 0 ? std::numeric_limits<double>::infinity() : 0.0;
}

// The value of a decimal text, with ".", correctly rounded.
double ToDouble(const strptr &decimal) {
  double value = 0;
  if (std::from_chars(decimal.begin(), decimal.end(), value).ec == std::errc::result_out_of_range)
    return OutOfRange(decimal);
  return value;
}

}  // namespace

void ParserBase::ExpectDigit() {
  if (AtEnd()) Error("Unexpected end of text");
  if (!DigitCharQ(text_[position_])) Error("Digit expected");
}

double ParserBase::AccumulateDigits(int significant, int &count) {
  double value = 0;
  count = 0;
  for (; DigitCharQ(Peek()); ++position_) {
    if (count == significant) continue;
    value = value * 10 + (text_[position_] - '0');
    ++count;
  }
  return value;
}

char ParserBase::GetDigit() {
  ExpectDigit();
  return text_[position_++];
}

double ParserBase::ParseDigits() {
  ExpectDigit();
  int count;
  return AccumulateDigits(INT_MAX, count);
}

double ParserBase::ParseFraction() {
  ExpectDigit();
  int count;
  const double digits = AccumulateDigits(kFractionDigits, count);
  return digits / std::pow(10.0, count);
}

double ParserBase::ReadMagnitude(double limit) {
  const int start = position_;
  if (!DigitCharQ(Peek())) Error("Number expected");
  int count;
  const double magnitude = AccumulateDigits(INT_MAX, count);
  if (magnitude > limit) ThrowAt(Range{start, position_}, "Integer out of range");
  return magnitude;
}

int ParserBase::ParseInteger() {
  const bool negative = SkipChar('-');
  if (!negative) SkipChar('+');
  // The limit applies to the magnitude, so "-2147483648" is out of range too (intended).
  const int magnitude = static_cast<int>(ReadMagnitude(2147483647.0));
  return negative ? -magnitude : magnitude;
}

uint32_t ParserBase::ParseUnsignedInteger() {
  if (Peek() == '-') Error("Non-negative number expected");
  SkipChar('+');
  return static_cast<uint32_t>(ReadMagnitude(4294967295.0));
}

uint64_t ParserBase::ReadHex(int bits, const char *too_large, const char *not_hex) {
  if (!HexCharQ(Peek())) Error(not_hex);
  const uint64_t limit = (uint64_t{1} << (bits - 4)) - 1;  // room for one more digit
  uint64_t value = 0;
  for (; HexCharQ(Peek()); ++position_) {
    if (value > limit) Error(too_large);
    value = value * 16 + static_cast<uint64_t>(HexValue(text_[position_]));
  }
  return value;
}

uint32_t ParserBase::ParseHexDigits() {
  return static_cast<uint32_t>(ReadHex(32, "Hexadecimal number too large to fit in 32 bits",
                                       "Error while parsing a hexadecimal number"));
}

BuiltinNumber ParserBase::ParseNumber() {
  const bool negative = SkipChar('-');
  if (!negative) SkipChar('+');
  if (AtEnd()) Error("Unexpected end of text");
  if (PeekStr("0x", false)) {
    position_ += 2;
    return HexNumber(negative);
  }
  const int digits = position_;
  SkipWhile(DigitCharQ);
  const bool integer_digits = position_ > digits;
  bool real = SkipChar(decimal_separator);
  if (real) SkipWhile(DigitCharQ);
  if (!integer_digits && position_ - digits < 2) {
    position_ = digits;
    Error("Number expected");
  }
  if (Peek() == 'e' || Peek() == 'E') {
    real = true;
    ++position_;
    if (!SkipChar('-')) SkipChar('+');
    if (!DigitCharQ(Peek())) Error("Expected exponent while parsing scientific notation");
    SkipWhile(DigitCharQ);
  }
  return real ? RealNumber(digits, negative) : IntegerNumber(digits, negative);
}

BuiltinNumber ParserBase::HexNumber(bool negative) {
  const uint64_t magnitude = ReadHex(64, "Hexadecimal number too large to fit in 64 bits",
                                     "Error -- this is not a good-looking hexadecimal number");
  const uint64_t bits = negative ? 0 - magnitude : magnitude;
  BuiltinNumber number;
  if (magnitude <= UINT32_MAX) {
    number.int32 = static_cast<int32_t>(static_cast<uint32_t>(bits));
  } else {
    number.width = BuiltinNumber::kWidth64;
    number.int64 = static_cast<int64_t>(bits);
  }
  return number;
}

BuiltinNumber ParserBase::IntegerNumber(int digits, bool negative) {
  const uint64_t limit = negative ? uint64_t{1} << 63 : (uint64_t{1} << 63) - 1;
  uint64_t magnitude = 0;
  for (int i = digits; i < position_; ++i) {
    const auto digit = static_cast<uint64_t>(text_[i] - '0');
    if (magnitude > (limit - digit) / 10)
      ThrowAt(Range{digits, position_}, "Decimal separator expected");
    magnitude = magnitude * 10 + digit;
  }
  const auto value = static_cast<int64_t>(negative ? 0 - magnitude : magnitude);
  BuiltinNumber number;
  if (value >= INT32_MIN && value <= INT32_MAX) {
    number.int32 = static_cast<int32_t>(value);
  } else {
    number.width = BuiltinNumber::kWidth64;
    number.int64 = value;
  }
  return number;
}

BuiltinNumber ParserBase::RealNumber(int digits, bool negative) {
  BuiltinNumber number;
  number.is_integer = false;
  number.width = BuiltinNumber::kWidth64;
  const strptr decimal = Since(digits);
  if (decimal_separator == '.') {
    number.real = ToDouble(decimal);
  } else {
    // The conversion knows only ".": the one separator is swapped for it in a copy.
    ThreadLocalString copy;
    *copy << decimal;
    const int at = decimal.FindFrom(decimal_separator);
    if (at >= 0) copy->SetAt(at, '.');
    number.real = ToDouble(*copy);
  }
  if (negative) number.real = -number.real;
  return number;
}

}  // namespace zel
