// The printf engines: cstring::Format / Formatted over the C runtime, and the library's own
// VAPrintf.
#include <zel/parse/parser_error.h>
#include <zel/text/cstring.h>
#include <zel/text/vaprintf.h>

#include <gtest/gtest.h>

#include <string>

#include "support/strings.h"

namespace zel {
namespace {

TEST(Printf, FormatReplacesTheContentsWithTheRuntimesText) {
  cstring s("old text");
  s.Format("%d-%s-%5.2f|%-4x|%lld", 42, "ab", 3.14159, 255u, -1234567890123LL);
  EXPECT_STREQ(s.text(), "42-ab- 3.14|ff  |-1234567890123");
  s.Format("%s", "");
  EXPECT_TRUE(s.empty());

  // Longer than the stack buffer, and arguments that point into the target itself.
  const std::string long_text(1000, 'x');
  s.Format("<%s>", long_text.c_str());
  EXPECT_EQ(s.length(), 1002);
  s.Format("%s+%s", s.text(), s.text());
  EXPECT_EQ(s.length(), 2005);
  EXPECT_EQ(s.view().Mid(1001, 5).view(), ">+<xx");

  EXPECT_STREQ(Formatted("%03d:%c", 7, 'z').text(), "007:z");
}

void PrintInto(cstring &out, const char *format, ...) {
  va_list args;
  va_start(args, format);
  try {
    VAPrintf(out, format, args);
  } catch (...) {
    va_end(args);
    throw;
  }
  va_end(args);
}

template <typename... Args>
std::string Printf(const char *format, Args... args) {
  cstring out("stale");  // VAPrintf replaces the contents
  PrintInto(out, format, args...);
  return test::Str(out);
}

TEST(Printf, VAPrintfConversionsFlagsAndPadding) {
  EXPECT_EQ(Printf("%5d|%-5d|%05d|%-05d|%3d", 42, 42, -3, 42, 12345),
            "   42|42   |000-3|42000|12345");
  EXPECT_EQ(Printf("%+d|% d|%+ d|% +d|%+d|%+u|% u|%i", 5, 5, 5, 5, -5, 7u, 7u, -9),
            "+5| 5| 5|+5|-5|+7| 7|-9");
  EXPECT_EQ(Printf("%#x|%#X|%x|%X|%08x|%#06x", 255u, 255u, 0u, 0xabcu, 0x1fu, 1u),
            "0xff|0XFF|0|ABC|0000001f|0000x1");
  EXPECT_EQ(Printf("%o|%#o|%o|%#o|%o", 8, 8, 0, 0, -1), "10|010|0|0|37777777777");
  EXPECT_EQ(Printf("%c%s%s|%5s|%-5s|", 'a', "bc", static_cast<const char *>(nullptr), "x", "y"),
            "abc|    x|y    |");
  EXPECT_EQ(Printf("%p", reinterpret_cast<void *>(0x1234)), "1234");
  // Doubles print with the precision as decimals and trailing zeros dropped.
  EXPECT_EQ(Printf("%f|%.2f|%.3e|%8.1f|%g|%.4G", 2.5, 2.5, 1234.5678, -0.25, 0.1, 0.125),
            "3|2.5|1234.568|    -0.3|0|0.125");
  // "%%", and letters without a conversion, which print and consume nothing.
  EXPECT_EQ(Printf("100%% %q %lld|%d", 7), "100%  ld|7");
}

TEST(Printf, VAPrintfReportsAFormatEndingInsideAConversion) {
  for (const char *format : {"ab%", "ab%-", "ab%5", "ab%.2"}) {
    cstring out;
    try {
      PrintInto(out, format);
      ADD_FAILURE() << format;
    } catch (const ParserErrorX &e) {
      EXPECT_NE(test::Str(e.Message()).find("Unexpected end of text"), std::string::npos);
    }
    EXPECT_EQ(test::Str(out), "ab");  // what was written stays
  }
}

}  // namespace
}  // namespace zel
