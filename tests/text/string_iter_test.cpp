// StringIter: lines, words, tokens and the number readers with their intended oddities.
#include <zel/text/string_iter.h>

#include "support/strings.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <tuple>

namespace zel {
namespace {

using test::Str;

TEST(StringIter, NewLinesAndLines) {
  const std::tuple<std::string_view, bool, int> newlines[] = {
      {"\r\nx", true, 2}, {"\n\r", true, 1}, {"\r", true, 1}, {"x\n", false, 0}, {"", false, 0}};
  for (const auto &[text, skipped, position] : newlines) {
    StringIter it(text);
    EXPECT_EQ(it.SkipNewLine(), skipped) << text;
    EXPECT_EQ(it.position(), position) << text;
  }

  StringIter lines("a\r\nb\nc\r\rd");
  for (const char *line : {"a", "b", "c", "", "d", ""}) EXPECT_EQ(Str(lines.GetLine()), line);
  EXPECT_EQ(lines.position(), lines.length());
  StringIter windows("a\nb\r\nc\rd");
  for (const char *line : {"a\nb", "c", "d"}) EXPECT_EQ(Str(windows.GetWindowsLine()), line);

  StringIter clamped("xy\n");
  clamped.SetPosition(-5);  // clamped to the start
  EXPECT_EQ(Str(clamped.GetLine()), "xy");
  clamped.SetPosition(50);  // clamped to the end
  EXPECT_EQ(Str(clamped.GetLine()), "");
  EXPECT_EQ(clamped.position(), 3);
}

TEST(StringIter, RunsOfCharactersAndMultiLineHeaders) {
  StringIter run("==x");
  EXPECT_FALSE(run.SkipNChars('=', 3));
  EXPECT_TRUE(run.SkipNChars('=', 2) && run.Peek() == 'x');

  const std::tuple<std::string_view, bool, int, int> headers[] = {{"[[\r\nx", true, 2, 4},
                                                                  {"[\n", true, 1, 2},
                                                                  {"\n", true, 0, 1},
                                                                  {"[[x", false, 0, 0},
                                                                  {"[[", false, 0, 0}};
  for (const auto &[text, ok, expected_count, position] : headers) {
    StringIter it(text);
    int count = -1;
    EXPECT_EQ(it.SkipMultiLineHeader(count), ok) << text;
    EXPECT_EQ(count, expected_count) << text;
    EXPECT_EQ(it.position(), position) << text;
  }
}

TEST(StringIter, WordsAndTokens) {
  StringIter words(" \tab\r\ncd ");
  for (const char *word : {"ab", "cd", ""}) EXPECT_EQ(Str(words.GetWord()), word);
  EXPECT_TRUE(words.AtEnd());

  const CharSet comma = CharSet::Literal(",");
  StringIter many("a,,b"), one("a,,b");
  EXPECT_EQ(Str(many.GetToken(comma, false)), "a");
  EXPECT_EQ(many.position(), 3);
  EXPECT_EQ(Str(one.GetToken(comma, true)), "a");
  EXPECT_EQ(one.position(), 2);
  for (const char *token : {"", "b"}) EXPECT_EQ(Str(one.GetToken(comma, true)), token);
  EXPECT_TRUE(one.AtEnd());

  StringIter separated(",,x,,y");
  EXPECT_EQ(Str(separated.GetWord(comma, true)), "");  // one separator skipped: stops at the next
  EXPECT_EQ(Str(separated.GetWord(comma, false)), "x");
  EXPECT_EQ(Str(separated.GetUpTo(DigitCharQ)), ",,y");

  StringIter keyed("k=:v=:W");
  EXPECT_EQ(Str(keyed.GetToken("=:")), "k");
  EXPECT_EQ(Str(keyed.GetTokenNoEOF("=:")), "v");
  EXPECT_EQ(keyed.GetTokenNoEOF("=:").text(), nullptr);  // missing: null, no move
  EXPECT_EQ(Str(keyed.Rest()), "W");
  EXPECT_EQ(Str(keyed.GetToken("w")), "W");  // case significant: the rest
  EXPECT_TRUE(keyed.AtEnd());
  StringIter folded("aXb");
  EXPECT_EQ(Str(folded.GetTokenNoEOF("x", false)), "a");
  EXPECT_EQ(Str(folded.Rest()), "b");
}

TEST(StringIter, IntegersKeepTheWeakOverflowCheck) {
  const std::tuple<std::string_view, bool, int, int> cases[] = {
      {"  42abc", true, 42, 4},
      {"  abc", false, -1, 0},  // no digit: back to the start
      {"  ", false, -1, 2},     // only white space: after it
      {" -", false, -1, 2},
      {"+7", true, 7, 2},
      {"2147483647", true, 2147483647, 10},
      {"2147483648", true, 2147483647, 10},     // the sum turned negative: saturated
      {"21474836480", true, 2147483647, 10},    // and the digits after it stay unread
      {"9999999999", true, 1410065407, 10},     // wrapped to a positive sum: kept (intended)
      {"-2147483648", true, -2147483647, 11}};  // saturated before the sign
  for (const auto &[text, ok, expected, position] : cases) {
    StringIter it(text);
    int value = -1;
    EXPECT_EQ(it.MaybeParseInteger(value), ok) << text;
    EXPECT_EQ(value, expected) << text;
    EXPECT_EQ(it.position(), position) << text;
  }

  // The bounded form always advances by the whole window (intended).
  StringIter fields("12345 ab");
  const std::tuple<int, bool, int, int> windows[] = {
      {3, true, 123, 3}, {2, true, 45, 5}, {2, false, 0, 7}, {100, false, 0, 8}};
  for (const auto &[window, ok, expected, position] : windows) {
    int value = -1;
    EXPECT_EQ(fields.MaybeParseInteger(value, window), ok) << window;
    EXPECT_EQ(value, expected) << window;
    EXPECT_EQ(fields.position(), position) << window;
  }

  StringIter wide("9223372036854775808 -12345678901 x");
  long long big = 0;  // as callers spell it, on every platform
  EXPECT_TRUE(wide.MaybeParseInteger64(big));
  EXPECT_EQ(big, INT64_MAX);
  EXPECT_EQ(wide.ParseInteger64(0), -12345678901);
  EXPECT_EQ(wide.ParseInteger64(-9), -9);
  EXPECT_EQ(Str(wide.Rest()), "x");  // ParseInteger64 does not move back
  wide.SetPosition(32);
  EXPECT_FALSE(wide.MaybeParseInteger64(big));
  EXPECT_EQ(wide.position(), 32);
}

TEST(StringIter, DecimalNumbers) {
  const std::tuple<std::string_view, bool, double, int> cases[] = {
      {".5", true, 0.5, 2},         {"5.", true, 5, 2},
      {"1e3", true, 1000, 3},       {" -2.5E-3x", true, -0.0025, 8},
      {"+.25e+1", true, 2.5, 7},    {"1e", false, -1, 0},
      {" 1e+", false, -1, 0},       {" .", false, -1, 0},
      {" -", false, -1, 0},         {"  ", false, -1, 2},
      {"1e400", true, HUGE_VAL, 5}, {"0e400", true, 0, 5}};
  for (const auto &[text, ok, expected, position] : cases) {
    StringIter it(text);
    double value = -1;
    EXPECT_EQ(it.MaybeParseDouble(value), ok) << text;
    EXPECT_EQ(value, expected) << text;
    EXPECT_EQ(it.position(), position) << text;
  }
  // Short numbers are exact: the same double as the C library's.
  for (const char *text : {"0.1", "3.14159", "-123.456", "1e22", "4.35", "999999999.999999",
                           "0.3e-5", "9007199254740991e-22"}) {
    double value = 0;
    EXPECT_TRUE(StringIter(text).MaybeParseDouble(value));
    EXPECT_EQ(value, std::strtod(text, nullptr)) << text;
  }
  double value = 0;  // long mantissas and fractions stay close
  EXPECT_TRUE(StringIter("123456789012345678901234567890.5e-10").MaybeParseDouble(value));
  EXPECT_DOUBLE_EQ(value, 12345678901234567890.0);
  for (const char *text : {"1.7976931348623157e308", "2.2250738585072014e-308", "4.94e-324"}) {
    EXPECT_TRUE(StringIter(text).MaybeParseDouble(value));
    EXPECT_DOUBLE_EQ(value, std::strtod(text, nullptr)) << text;
  }

  StringIter digits("0123.0625x");
  EXPECT_EQ(digits.ParseDigits(), 123);
  EXPECT_EQ(digits.ParseDigits(), 0);
  digits.SkipNChars(1);
  EXPECT_EQ(digits.ParseFraction(), 0.0625);
  EXPECT_EQ(digits.ParseFraction(), 0);
  EXPECT_EQ(Str(digits.Rest()), "x");
}

TEST(StringIter, CommaGroupedNumbers) {
  const std::tuple<std::string_view, int, int> integers[] = {{" 1,234,567", 1234567, 10},
                                                             {"1234,567", 1234567, 8},
                                                             {"1,2", 1, 1},
                                                             {"1,2345", 1, 1},
                                                             {"1,234,5", 1234, 5},
                                                             {"-2,147,483,648", -2147483647, 14},
                                                             {" x", -9, 0}};
  for (const auto &[text, integer, position] : integers) {
    StringIter it(text);
    EXPECT_EQ(it.ParseIntegerWithCommas(-9), integer) << text;
    EXPECT_EQ(it.position(), position) << text;
  }
  StringIter digits("12,345.25,5");
  EXPECT_EQ(digits.ParseDigitsWithCommas(), 12345);
  EXPECT_EQ(digits.Peek(), '.');
  StringIter decimal(" -1,234.5e3"), none(" ,5");
  EXPECT_EQ(decimal.ParseDoubleWithCommas(0), -1234.5);
  EXPECT_EQ(Str(decimal.Rest()), "e3");  // no exponent
  EXPECT_EQ(none.ParseDoubleWithCommas(7.5), 7.5);
  EXPECT_EQ(none.position(), 0);
}

TEST(StringIter, HexadecimalDigits) {
  StringIter chars("fZ");
  EXPECT_EQ(chars.ParseHexChar(-1), 15);
  EXPECT_EQ(chars.ParseHexChar(-1), -1);
  EXPECT_EQ(chars.position(), 1);

  StringIter numbers(" 1aF 123456789 g");
  EXPECT_EQ(numbers.ParseHexInteger(-1), 0x1AF);
  EXPECT_EQ(numbers.ParseHexInteger(-1), 0x23456789);  // the highest digit shifted out
  EXPECT_EQ(numbers.ParseHexInteger(-1), -1);
  EXPECT_EQ(numbers.Peek(), 'g');
}

}  // namespace
}  // namespace zel
