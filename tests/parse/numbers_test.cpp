// ParserBase: digits, integers, hexadecimal numbers and ParseNumber.
#include <zel/mem/allocator.h>
#include <zel/parse/parser_base.h>

#include "support/parser.h"

#include <string>

namespace zel {
namespace {

using test::Outcome;

TEST(ParserNumbers, IntegersKeepTheirLimits) {
  auto integer = [](ParserBase &p) { return int64_t{p.ParseInteger()}; };
  auto natural = [](ParserBase &p) { return int64_t{p.ParseUnsignedInteger()}; };
  auto hex = [](ParserBase &p) { return int64_t{p.ParseHexDigits()}; };
  EXPECT_EQ(Outcome("2147483647", integer), "2147483647 @10");
  EXPECT_EQ(Outcome("+12x", integer), "12 @3");
  EXPECT_EQ(Outcome("2147483648", integer), "Integer out of range");
  EXPECT_EQ(Outcome("-2147483648", integer), "Integer out of range");  // intended: by magnitude
  EXPECT_EQ(Outcome("-", integer), "Number expected");
  EXPECT_EQ(Outcome("4294967295", natural), "4294967295 @10");
  EXPECT_EQ(Outcome("4294967296", natural), "Integer out of range");
  EXPECT_EQ(Outcome("-1", natural), "Non-negative number expected");
  EXPECT_EQ(Outcome("FFFFFFFF", hex), "4294967295 @8");
  EXPECT_EQ(Outcome("0aBcDeF12z", hex), "2882400018 @9");  // a leading zero is not significant
  EXPECT_EQ(Outcome("100000000", hex), "Hexadecimal number too large to fit in 32 bits");
  EXPECT_EQ(Outcome("g", hex), "Error while parsing a hexadecimal number");
}

TEST(ParserNumbers, DigitsAndFractions) {
  auto digit = [](ParserBase &p) { return p.GetDigit(); };
  auto digits = [](ParserBase &p) { return p.ParseDigits(); };
  auto fraction = [](ParserBase &p) { return p.ParseFraction(); };
  EXPECT_EQ(Outcome("7", digit), "7 @1");
  EXPECT_EQ(Outcome("", digit), "Unexpected end of text");
  EXPECT_EQ(Outcome("a", digit), "Digit expected");
  EXPECT_EQ(Outcome("0123x", digits), "123 @4");
  EXPECT_EQ(Outcome("25", fraction), "0.25 @2");
  // However many digits a fraction has, it stays below 1.
  const std::string digits_400(400, '3');
  ParserBase thirds(digits_400.c_str());
  EXPECT_NEAR(thirds.ParseFraction(), 1.0 / 3, 1e-15);
  EXPECT_EQ(thirds.position(), 400);
}

TEST(ParserNumbers, ParseNumberChoosesKindAndWidth) {
  const struct {
    const char *text, *outcome;
  } cases[] = {
      {"42,", "int 42 @2"},
      {"-2147483648", "int -2147483648 @11"},
      {"2147483648", "int64 2147483648 @10"},
      {"-9223372036854775808", "int64 -9223372036854775808 @20"},
      {"9223372036854775808", "Decimal separator expected"},
      {"-0X10", "int -16 @5"},
      {"0xFFFFFFFF", "int -1 @10"},  // the 32 bits
      {"0x100000000", "int64 4294967296 @11"},
      {"0x10000000000000000", "Hexadecimal number too large to fit in 64 bits"},
      {"0xg", "Error -- this is not a good-looking hexadecimal number"},
      {"0.1", "real 0.1 @3"},
      {"+.5", "real 0.5 @3"},
      {"5.x", "real 5 @2"},
      {"-2.5E-2", "real -0.025 @7"},
      {"1e+3", "real 1000 @4"},
      {"1e400", "real inf @5"},
      {"0.0001e-400", "real 0 @11"},
      {"1e+x", "Expected exponent while parsing scientific notation"},
      {".", "Number expected"},
      {"-", "Unexpected end of text"},
  };
  for (const auto &c : cases)
    EXPECT_EQ(Outcome(c.text, [](ParserBase &p) { return p.ParseNumber(); }), c.outcome);

  ParserBase comma("1,5 1.5");
  comma.decimal_separator = ',';
  EXPECT_EQ(test::Shown(comma.ParseNumber()), "real 1.5");
  comma.SkipWs();
  EXPECT_EQ(test::Shown(comma.ParseNumber()), "int 1");  // the "." is not a separator here
}

TEST(ParserNumbers, OperatorsSkipWhiteSpaceAndAllocateNothing) {
  const int64_t before = GetMemoryAllocator()->Counts().allocs;
  int i = 0;
  unsigned u = 0;
  double d = 0;
  float f = 0;
  for (int round = 0; round < 100; ++round) {
    ParserBase p(" 12 ,\n 7 0x1F -2.5");
    p >> i >> "," >> u >> d >> f;
  }
  EXPECT_EQ(GetMemoryAllocator()->Counts().allocs, before);
  EXPECT_EQ(i, 12);
  EXPECT_EQ(u, 7u);
  EXPECT_EQ(d, 31.0);
  EXPECT_EQ(f, -2.5f);
}

}  // namespace
}  // namespace zel
