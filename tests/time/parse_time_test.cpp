// Reading absolute times through a format, reporting and quiet, in local time.
#include <zel/time.h>

#include <gtest/gtest.h>

#include "support/parser.h"
#include "support/zones.h"

namespace zel {
namespace {

using test::LocalAt;

class TimeReaders : public test::ZonedTest {
 protected:
  static UnixTime Quiet(const char *text, const char *format) {
    StringIter it(text);
    return ParseTime(it, format);
  }
  static int64_t QuietUnits(const char *text, const char *format) {
    StringIter it(text);
    return ParseNanoTime(it, format).value;
  }
};
INSTANTIATE_TEST_SUITE_P(Zones, TimeReaders, test::kZones);

TEST_P(TimeReaders, ReadFieldsIntoLocalTime) {
  const char *full = "%Y/%m/%d %H:%M:%S";
  EXPECT_EQ(ParseTimeX("2007/03/05 14:02:09", full), LocalAt(2007, 3, 5, 14, 2, 9));
  EXPECT_EQ(Quiet("2007/7/1 \t\r\n12:00:00", full), LocalAt(2007, 7, 1, 12));
  EXPECT_EQ(ParseTimeX("Fri sept 9, 07 02:30 PM", "%a %b %d, %y %H:%M %P"),
            LocalAt(2007, 9, 9, 14, 30));
  EXPECT_EQ(Quiet("mon, MARCH 5 1999 2:30 pm", "%a, %b %d %y %H:%M %P"),
            LocalAt(1999, 3, 5, 14, 30));
  EXPECT_EQ(ParseTimeX("2038/1/2", "%Y/%m/%d"), LocalAt(2038, 1, 2));  // %y refuses 2038
  EXPECT_EQ(ParseTimeX("70/1/2", "%y/%m/%d"), LocalAt(1970, 1, 2));
  EXPECT_EQ(ParseTimeX("69", "%y"), UnixTime());  // 2069, beyond the 32-bit seconds
  EXPECT_EQ(ParseTimeX("29 Feb 2007", "%d %b %Y"), LocalAt(2007, 3, 1));  // rolled over by mktime
  EXPECT_EQ(ParseTimeX("10 10", "%H  %M"), ParseTimeX("10\t\t10", "%H %M"));
  EXPECT_EQ(ParseTimeX("50%", "%S%%"), ParseTimeX("0:0:50", "%H:%M:%S"));
  // The year starts as the current one here, as 2000 in the quiet readers (intended).
  EXPECT_EQ(ParseTimeX("03/05", "%m/%d"), LocalAt(DateStruct::Current().year, 3, 5));
  EXPECT_EQ(Quiet("03/05", "%m/%d"), LocalAt(2000, 3, 5));
  // Only upper bounds are checked; mktime normalises the rest. Quietly, no digits are 0.
  EXPECT_EQ(Quiet("-1:00", "%H:%M"), LocalAt(1999, 12, 31, 23));
  EXPECT_EQ(Quiet(":30", "%H:%M"), LocalAt(2000, 1, 1, 0, 30));

  StringIter it("123");
  EXPECT_EQ(ParseTime(it, "%H"), LocalAt(2000, 1, 1, 12));
  EXPECT_EQ(it.position(), 2);

  // Milliseconds are taken as written: ".5" is 5 ms. ParseTimeX drops them.
  const auto at = static_cast<double>(NanoTime().Set(LocalAt(2000, 3, 5, 14, 2, 9)).value);
  const char *precise = "%m/%d %H:%M:%S.%X";
  EXPECT_NEAR(QuietUnits("03/05 14:02:09.5", precise) - at, 50000, 16);
  EXPECT_NEAR(QuietUnits("03/05 14:02:09.500", precise) - at, 5000000, 16);
  EXPECT_NEAR(QuietUnits("03/05 14:02:09.999999", precise) - at, 9999990000, 16);
  EXPECT_EQ(ParseTimeX("2000/03/05 14:02:09.999", "%Y/%m/%d %H:%M:%S.%X"),
            LocalAt(2000, 3, 5, 14, 2, 9));
  EXPECT_EQ(QuietUnits("13/05", "%m/%d"), 0);
  // 2069 is beyond what the calendar (or a UnixTime) holds: 0, not 0 plus the milliseconds.
  EXPECT_EQ(QuietUnits("69/06/01 00:00:00.500", "%y/%m/%d %H:%M:%S.%X"), 0);
  EXPECT_EQ(Quiet("69/06/01 00:00:00.500", "%y/%m/%d %H:%M:%S.%X"), UnixTime());
}

TEST_P(TimeReaders, MismatchesAreReportedOrQuietlyZero) {
  const struct {
    const char *text, *format, *message;
    bool quiet_fails;
  } cases[] = {
      {"24", "%H", "ParseTime: Invalid hour 24; Must be between 0 and 23", true},
      {"123", "%.0H", "ParseTime: Invalid hour 123; Must be between 0 and 23", true},
      {"1000000", "%.0X",
       "ParseNanoTimeX: Invalid millisecond 1000000; Must be between 0 and 1000,000", true},
      // The month shown is one less than the one read (intended).
      {"13", "%m", "ParseTime: Invalid month number 12; Must be between 1 and 12", true},
      {"1969", "%Y", "ParseTime: Invalid year 1969; Must be between 1970 and 2038.", true},
      {"2038", "%y",
       "ParseTime: Invalid Year; Must be from between 00 and 99 or between 1970 and 2038.", true},
      {"30 Feb", "%d %b", "ParseTime: Invalid month day 30 for month February", true},
      {"Sunday", "%a",
       "ParseTime: Invalid weekday name Sunday; Must be one of the following: {Sun, Mon, Tue, "
       "Wed, Thu, Fri, Sat}",
       true},
      {"10", "%Q", "ParseTime: Unknown formatting character Q; Must be one of S,M,H,Y,y,d,m,b,%.",
       true},
      {"1010", "%H %M", "ParseTime: At least one space expected", true},
      {"10-10", "%H:%M", "ParseTime: ':' expected", true},
      {"5", "%%", "ParseTime: '%' expected", true},
      {"99999999999", "%.0H", "Integer out of range", true},
      {"XM", "%P", "AM or PM expected", true},
      {"pm", "%P", "AM or PM expected", false},
      {"x", "%H", "Digit expected", false},
      {"", "%S", "Unexpected end of text", false},
      {"7", "%b", "Identifier expected", true},
  };
  for (const auto &c : cases) {
    SCOPED_TRACE(testing::Message() << c.text << " with " << c.format);
    EXPECT_EQ(test::ParserFailure([&] { ParseTimeX(c.text, c.format); }), c.message);
    EXPECT_EQ(Quiet(c.text, c.format) == UnixTime(), c.quiet_fails);
  }
  // The month list breaks its line once it has grown past 60 characters.
  EXPECT_NE(test::FailureOf([] { ParseTimeX("Foo", "%b"); })
                .find("ParseTime: Invalid month name Foo; Must be one of the following: {January, "
                      "February, March, April, May, June, July, August, September, \r\nOctober, "
                      "November, December}\r\n"),
            std::string::npos);
}

}  // namespace
}  // namespace zel
