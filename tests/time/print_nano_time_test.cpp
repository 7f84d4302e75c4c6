// Printing a NanoTime through a format, in local time.
#include <zel/time.h>

#include <gtest/gtest.h>

#include <cstdio>

#include "support/strings.h"
#include "support/zones.h"

namespace zel {
namespace {

using test::LocalAt;

class TimePrinter : public test::ZonedTest {
 protected:
  static std::string Printed(NanoTime t, const char *format) {
    cstring s;
    s << PrintNanoTime(t, format);
    return test::Str(s);
  }
  static NanoTime At(UnixTime t, int ms = 0) { return NanoTime().Set(t).qAdd(NanoDiff::Msecs(ms)); }
};
INSTANTIATE_TEST_SUITE_P(Zones, TimePrinter, test::kZones);

TEST_P(TimePrinter, PrintsEveryConversion) {
  const NanoTime monday = At(LocalAt(2007, 3, 5, 14, 2, 9), 250);
  EXPECT_EQ(Printed(monday, "%Y/%m/%d %H:%M:%S.%X"), "2007/3/5 14:02:09.250");
  EXPECT_EQ(Printed(monday, "%I %P %a %b %y %x %% %Q|%"), "02 PM Mon March 07 2 % Q|");
  EXPECT_EQ(Printed(At(LocalAt(2007, 7, 14, 13)), "%I %P %a %b %d"), "01 PM Sat July 14");
  // Midnight is "00" on the 12-hour clock (intended).
  EXPECT_EQ(Printed(At(LocalAt(1999, 12, 31, 0, 0, 1)), "%I %P %y %m %X"), "00 AM 99 12 000");
  EXPECT_EQ(Printed(At(LocalAt(2007, 3, 5), 120), "%X %x"), "120 1");
}

TEST_P(TimePrinter, BothPrintersTakeWholeMillisecondsFromTheCount) {
  cstring s;
  s << At(LocalAt(2007, 3, 5, 14, 2, 9), 120);
  EXPECT_EQ(test::Str(s), "2007/03/5 14:02:09.120");  // the day unpadded: intended
  const NanoTime second = At(LocalAt(2007, 3, 5, 14, 2, 9));
  for (int ms = 0; ms < 1000; ++ms) {
    const NanoTime t = second.qAdd(NanoDiff(ms * int64_t{10000} + 9999));
    s.Flush();
    s << t;
    char expected[8];
    std::snprintf(expected, sizeof expected, ".%03d", ms);
    ASSERT_EQ(test::Str(s).substr(18), expected) << ms;
    ASSERT_EQ(Printed(t, ".%X"), expected) << ms;
  }
}

TEST_P(TimePrinter, InvalidAndEmptyTimes) {
  for (const NanoTime t : {NanoTime(), NanoTime(NanoTime::kMax), NanoTime(INT64_MIN),
                           NanoTime().Set(UnixTime(INT32_MAX))})
    EXPECT_EQ(Printed(t, "%Y"), "<invalid time>") << t.value;
  // Within the epoch's first second nothing at all is printed.
  EXPECT_EQ(Printed(NanoTime(NanoTime::kUnixEpoch), "%Y"), "");
  EXPECT_EQ(Printed(NanoTime(NanoTime::kUnixEpoch + 9999999), "x%Y"), "");
  EXPECT_EQ(Printed(NanoTime().Set(UnixTime(INT32_MAX - 1)), "%Y"), "2038");
}

}  // namespace
}  // namespace zel
