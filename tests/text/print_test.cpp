// The manipulators: doubles (rounding, trimming, commas, percentages, sizes), integers, octal,
// bits, memory, runs, indentation, module names and the locale separators.
#include <zel/text/format.h>
#include <zel/text/print.h>

#include "os/os.h"
#include "support/strings.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <tuple>

namespace zel {
namespace {

// What the manipulators print, one after the other, separated by '|'.
template <typename... Manipulators>
std::string Printed(const Manipulators &...m) {
  cstring s;
  ((s << m << '|'), ...);
  s.Chop();
  return test::Str(s);
}

TEST(PrintDouble, RoundsTheExactValueAndTiesAwayFromZero) {
  const double inf = std::numeric_limits<double>::infinity();
  const std::tuple<double, int, bool, const char *> cases[] = {
      {2.5, 3, true, "2.5"},
      {2.5, 3, false, "2.500"},
      {0.05, 1, true, "0.1"},
      {-1234.0, 0, true, "-1234"},
      {1000.0, 2, true, "1000"},  // the integer part keeps its zeros
      // Exact ties go away from zero, also across a carry and behind leading zeros.
      {0.5, 0, true, "1"},
      {2.5, 0, true, "3"},
      {-2.5, 0, true, "-3"},
      {0.125, 2, true, "0.13"},
      {99.5, 0, true, "100"},
      {0.0625, 3, false, "0.063"},
      // Not ties: the double lies below or above the decimal halfway point.
      {0.15, 1, true, "0.1"},
      {2.675, 2, true, "2.67"},
      {1.005, 2, false, "1.00"},
      {0.1, 20, false, "0.10000000000000000555"},
      {1e22, 0, true, "10000000000000000000000"},
      {1e23, 0, true, "99999999999999991611392"},
      {0.0, 2, false, "0.00"},
      {0.0, 2, true, "0"},
      // Values that round to zero print as 0.0 does, without a sign.
      {-0.0, 0, true, "0"},
      {0.001, 2, true, "0"},
      {0.001, 2, false, "0.00"},
      {-0.001, 2, false, "0.00"},
      {-0.004, 2, true, "0"},
      {-0.005, 2, true, "-0.01"},
      {1e-300, 3, true, "0"},
      {0.3, 0, true, "0"},
      {0.03, 0, true, "0"},
      {0.005, 2, true, "0.01"},
      {2.4, -3, false, "2"},  // a negative count means no decimals
      {std::nan(""), 2, true, "NaN"},
      {inf, 2, false, "inf"},
      {-inf, 0, true, "-inf"}};
  for (const auto &[value, decimals, trim, expected] : cases)
    EXPECT_EQ(Printed(PrintDouble(value, decimals, trim)), expected) << value << " to " << decimals;

  // Decimals are capped at 100; the largest double prints all 309 of its digits.
  EXPECT_EQ(Printed(PrintDouble(1.0 / 3, 500, false)),
            test::Cat({"0.333333333333333314829616256247390992939472198486328125",
                       std::string(46, '0')}));
  std::string largest = Printed(PrintDouble(std::numeric_limits<double>::max(), 1, false));
  EXPECT_EQ(largest.substr(0, 10), "1797693134");
  EXPECT_EQ(largest.size(), 311u);
}

TEST(PrintDouble, CommasPercentagesAndSizes) {
  using Commas = PrintDoubleWithCommas;
  EXPECT_EQ(Printed(Commas(1234567.891, 2), Commas(123456.0, 2), Commas(0.5, 2), Commas(-1234.5, 0),
                    Commas(12.0, 1), Commas(-0.001, 2), Commas(std::nan(""), 2)),
            "1,234,567.89|123,456|0.5|-1,235|12|0|NaN");
  EXPECT_EQ(Printed(PrintPercent(0.1234, 1), PrintPercent(1, 2), PrintPercent(-0.00001, 2)),
            "12.3%|100%|0%");

  using Bytes = PrintSizeBytes;
  using Bits = PrintSizeBits;
  // A thousand megabytes a gigabyte.
  EXPECT_EQ(Printed(Bytes(1000), Bytes(1023.96), Bytes(1536), Bytes(-1536), Bytes(1048576),
                    Bytes(1073741823), Bytes(1073741824), Bytes(std::nan(""))),
            "1000 Bytes|1024 Bytes|1.5 KB|-1.5 KB|1 MB|1024 MB|1.02 GB|NaN MB");
  EXPECT_EQ(Printed(Bits(100), Bits(-100), Bits(4096)), "100 Bits|-100 Bits|512 Bytes");
}

TEST(PrintInteger, MinimumDigitsOctalAndBits) {
  EXPECT_EQ(Printed(PrintInt(7, 3), PrintInt(-42, 5), PrintInt(12345, 2),
                    PrintInt(std::numeric_limits<int32_t>::min(), 0)),
            "007|-00042|12345|-2147483648");
  EXPECT_EQ(Printed(PrintOctal(0), PrintOctal(8), PrintOctal(-1)), "0|10|37777777777");
  EXPECT_EQ(Printed(PrintBits(511, 8), PrintBits(0x80000001u), PrintBits(5, 2), PrintBits(1, 33),
                    PrintBits(1, -1)),
            "1 11111111|10000000 00000000 00000000 00000001|101|"
            "00 00000000 00000000 00000000 00000001|");
}

TEST(PrintMemory, BytesInHexWithLineBreaksAfterSixtyCharacters) {
  const unsigned char few[] = {0x00, 0x1A, 0xFF};
  EXPECT_EQ(Printed(PrintMemory(few, 3), PrintMemory(few, 0)), "{0x0, 0x1a, 0xff}|{}");
  // Each "0xff, " is six characters: the line passes 60 after eleven bytes.
  const std::string eleven = "0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, ";
  unsigned char many[23];
  std::memset(many, 0xFF, sizeof many);
  EXPECT_EQ(Printed(PrintMemory(many, 23)), "{" + eleven + "\r\n" + eleven + "\r\n0xff}");
}

TEST(PrintRuns, RepeatedCharactersAndIndentation) {
  EXPECT_EQ(Printed(PrintNTimes('x', 45)), std::string(45, 'x'));
  EXPECT_EQ(Printed(PrintNTimes('x', 0), PrintNTimes('x', -3)), "|");
  EXPECT_EQ(Printed(Indenter(3), Indenter(-1), Indenter(200)),
            test::Cat({"      ||", std::string(400, ' ')}));
}

TEST(PrintDllName, FileNameOfTheExecutableAndTheLibrary) {
  char path[4096];
  int length = os::ExecutablePath(path, sizeof path);
  ASSERT_GT(length, 0);
  const std::string executable(path, static_cast<size_t>(length));
  EXPECT_EQ(Printed(PrintDllName(nullptr)), executable.substr(executable.find_last_of("/\\") + 1));

  std::string library = Printed(PrintDllName(os::ThisModule()));
#if defined(ZEL_STATIC)
  EXPECT_EQ(library, Printed(PrintDllName(nullptr)));
#else
  EXPECT_NE(library.find("zelcore"), std::string::npos) << library;
  EXPECT_EQ(library.find_first_of("/\\"), std::string::npos) << library;
#endif
}

TEST(PrintDllName, FileNameOfALoadedLibrary) {
#if defined(_WIN32)
  const char *loadable = "kernel32.dll";
#else
  const char *loadable = "libm.so.6";
#endif
  void *module = os::LoadLibrary(loadable);
  ASSERT_NE(module, nullptr);
  cstring name;
  name << PrintDllName(module);
  EXPECT_TRUE(name.view().EqualNoCase(loadable)) << name.text();
  os::FreeLibrary(module);
}

TEST(LocaleSeparators, ReadOnceAndKept) {
  const char *decimal = GetDecimalSeparator();
  const char *thousands = GetThousandsSeparator();
  ASSERT_NE(decimal, nullptr);
  ASSERT_NE(thousands, nullptr);
  EXPECT_EQ(GetDecimalSeparator(), decimal);
  EXPECT_EQ(GetThousandsSeparator(), thousands);
  EXPECT_STRNE(decimal, "");
#if !defined(_WIN32)
  // The tests run in the "C" locale.
  EXPECT_STREQ(decimal, ".");
  EXPECT_STREQ(thousands, "");
#endif
}

}  // namespace
}  // namespace zel
