// The `<<` forms of cstring for characters and numbers, and hexadecimal numbers.
#include <zel/text/format.h>
#include <zel/text/vaprintf.h>

#include "support/strings.h"

#include <cstdint>
#include <functional>
#include <limits>
#include <string_view>
#include <tuple>
#include <utility>

namespace zel {
namespace {

TEST(Format, NumbersAndCharactersAppendAsPrintfWould) {
  using Int = std::numeric_limits<int>;
  using Double = std::numeric_limits<double>;
  const std::pair<std::function<void(cstring &)>, std::string_view> cases[] = {
      {[](cstring &s) { s << 'x' << static_cast<signed char>('y') << 0 << Int::min(); },
       "xy0-2147483648"},
      {[](cstring &s) { s << static_cast<short>(-7) << static_cast<unsigned short>(65535); },
       "-765535"},
      {[](cstring &s) { s << 4294967295u << ' ' << std::numeric_limits<int64_t>::min(); },
       "4294967295 -9223372036854775808"},
      {[](cstring &s) { s << std::numeric_limits<uint64_t>::max(); }, "18446744073709551615"},
      {[](cstring &s) { s << 0.1 << ' ' << -2.5 << ' ' << 0.0 << ' ' << 3.14159265; },
       "0.1 -2.5 0 3.14159"},
      {[](cstring &s) { s << 100000.0 << ' ' << 123456.7 << ' ' << 1e6 << ' ' << 1e100; },
       "100000 123457 1e+06 1e+100"},
      {[](cstring &s) { s << 0.0001 << ' ' << 0.00001 << ' ' << -1.5e-300; },
       "0.0001 1e-05 -1.5e-300"},
      {[](cstring &s) { s << 0.1f << ' ' << Double::infinity() << ' ' << -Double::infinity(); },
       "0.1 inf -inf"}};
  for (const auto &[append, expected] : cases) {
    cstring small("["), roomy("[");
    roomy.Reserve(100);  // numbers are then written in place
    append(small);
    append(roomy);
    EXPECT_EQ(test::Str(small).substr(1), expected);
    EXPECT_EQ(test::Str(roomy).substr(1), expected);
  }
  cstring s("1234567");  // capacity 8: the number grows it by the rule, to 16
  s << 42;
  EXPECT_EQ(s.capacity(), 16);
}

TEST(Format, HexadecimalDigitsPrefixAndMinimumWidth) {
  const std::tuple<uint64_t, bool, int, bool, bool, std::string_view> cases[] = {
      {255, false, 4, true, false, "0x00ff"},
      {0, false, 0, false, false, "0"},
      {0, false, -5, true, true, "0X0"},
      {0xABC, false, 2, false, true, "ABC"},
      {1, false, 12, false, false, "00000001"},  // at most 8 digits of padding
      {0x0123456789ABCDEF, true, 0, true, false, "0x123456789abcdef"},
      {5, true, 12, false, false, "00000005"}};
  for (const auto &[value, wide, min_digits, prefix, upper_case, expected] : cases) {
    cstring s("v=");
    if (wide)
      EXPECT_EQ(&FmtHex(s, value, min_digits, prefix, upper_case), &s);
    else
      FmtHex(s, static_cast<uint32_t>(value), min_digits, prefix, upper_case);
    EXPECT_EQ(test::Str(s).substr(2), expected);
  }
}

// 64-bit values as callers spell them (long long, and int64_t/uint64_t, which are `long` on 64-bit
// Linux) all reach the 64-bit forms.
TEST(Format, SixtyFourBitSpellingsPrintEveryDigit) {
  cstring s;
  FmtHex(s, 0x1ffULL) << ' ';
  FmtHex(s, uint64_t{0x1ff00000000}) << ' ';
  FmtHex(s, int64_t{-1}) << ' ';
  FmtFlags f;
  f.flags = FmtFlags::kAlternate;
  f.PrintHex(s, 0x1ff00000000ULL) << ' ';
  f.PrintHex(s, uint64_t{0x2ff00000000}) << ' ';
  f.PrintHex(s, 0xabcu);
  EXPECT_EQ(test::Str(s), "1ff 1ff00000000 ffffffffffffffff 0x1ff00000000 0x2ff00000000 0xabc");
}

}  // namespace
}  // namespace zel
