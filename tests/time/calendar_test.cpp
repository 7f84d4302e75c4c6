// The calendar in local time, under UTC and under a zone with daylight saving time.
#include <zel/time.h>

#include <gtest/gtest.h>

#include "support/strings.h"
#include "support/zones.h"

namespace zel {
namespace {

using test::LocalAt;
using test::Str;

class Calendar : public test::ZonedTest {
 protected:
  bool Daylight() const { return GetParam()[3] != '0'; }
};
INSTANTIATE_TEST_SUITE_P(Zones, Calendar, test::kZones);

TEST_P(Calendar, DatesComposeToLocalMidnight) {
  const UnixTime winter = ComposeDateOneBased(2007, 1, 15);
  const UnixTime summer = ComposeDateOneBased(2007, 7, 1);
  EXPECT_EQ(winter.value() % 86400, Daylight() ? 5 * 3600 : 0);
  EXPECT_EQ(summer.value() % 86400, Daylight() ? 4 * 3600 : 0);
  EXPECT_EQ(summer.ToTimeStruct().tm_isdst > 0, Daylight());
  EXPECT_EQ(ComposeDateOneBased(2007, 2, 31), ComposeDateOneBased(2007, 3, 3));  // normalised

  const UnixTime t = LocalAt(2007, 3, 5, 14, 2, 9);
  EXPECT_EQ(t.GetDate(), ComposeDateOneBased(2007, 3, 5));
  EXPECT_EQ(t.GetStartOfYear(), ComposeDateOneBased(2007, 1, 1));
  EXPECT_EQ(t.NextYear(), LocalAt(2008, 3, 5, 14, 2, 9));
  EXPECT_EQ(t.PrevYear(), LocalAt(2006, 3, 5, 14, 2, 9));
  EXPECT_EQ(StripDate(t).value, 14 * 3600 + 2 * 60 + 9);
  EXPECT_EQ(ReplaceHourMin(t, -1, 30, -1), LocalAt(2007, 3, 5, 14, 30, 9));
  EXPECT_EQ(ReplaceYear(t, summer), LocalAt(2007, 3, 5, 14, 2, 9));
  EXPECT_EQ(ReplaceTime(summer, t), LocalAt(2007, 7, 1, 14, 2, 9));
  // Across the change to summer time a day is an hour short.
  EXPECT_EQ((summer - winter).value, 167 * 86400 - (Daylight() ? 3600 : 0));
  // The hour skipped by that change reads forward, on every platform.
  std::tm skipped{};
  skipped.tm_year = 107;
  skipped.tm_mon = 2;
  skipped.tm_mday = 11;
  skipped.tm_hour = 2;
  skipped.tm_min = 30;
  skipped.tm_isdst = -1;
  EXPECT_EQ(UnixTime(skipped), LocalAt(2007, 3, 11, Daylight() ? 3 : 2, 30));

  cstring s;
  s << t << " | " << NanoTime().Set(t).qAdd(NanoDiff::Msecs(250));
  EXPECT_EQ(Str(s), "2007/03/05 14:02:09 | 2007/03/5 14:02:09.250");  // day unpadded (intended)
  EXPECT_EQ(NanoTime().Set(t).GetDate(), NanoTime().Set(t.GetDate()));
}

TEST_P(Calendar, HourAndMinuteSpans) {
  auto march5 = [](int h, int mi, int sec) { return LocalAt(2007, 3, 5, h, mi, sec); };
  EXPECT_EQ(ClipHourMin(march5(8, 15, 30), 9, 0, 17, 0), march5(9, 0, 30));
  EXPECT_EQ(ClipHourMin(march5(17, 0, 45), 9, 0, 17, 0), march5(17, 0, 45));
  EXPECT_EQ(ClipHourMin(march5(17, 1, 0), 9, 0, 17, 0), march5(17, 0, 0));
  EXPECT_TRUE(march5(9, 0, 0).WithinHourMin(9, 0, 17, 0));
  EXPECT_FALSE(march5(17, 0, 0).WithinHourMin(9, 0, 17, 0));
  EXPECT_FALSE(march5(8, 59, 59).WithinHourMin(9, 0, 17, 0));
  EXPECT_EQ(ReplaceHourMin(NanoTime().Set(march5(8, 15, 30)), 10, 0, 0, 250),
            NanoTime().Set(march5(10, 0, 0)).qAdd(NanoDiff::Msecs(250)));
}

TEST_P(Calendar, DateStructs) {
  EXPECT_EQ(DateStruct(2040, 13, 40).ToUnixTime(), ComposeDateOneBased(2036, 12, 31));
  EXPECT_EQ(DateStruct(2007, 0, 5).ToUnixTime().value(), 0);
  const DateStruct d(LocalAt(2007, 3, 5, 23, 59, 59));
  EXPECT_EQ(d, DateStruct(2007, 3, 5));
  EXPECT_EQ(d.ToDecimal(), 20070305);
  EXPECT_EQ(DateStruct::FromDecimal(20070305), d);
  EXPECT_TRUE(DateStruct(2007, 2, 28) < d);
  EXPECT_FALSE(d < d);
  EXPECT_EQ(DateStruct::Current(), DateStruct(UnixTime::Current()));
}

TEST(CalendarNames, WeekdaysMonthsAndDays) {
  EXPECT_EQ(GetWeekday("fri"), 5);
  EXPECT_EQ(GetWeekday("SAT"), 6);
  EXPECT_EQ(GetWeekday("March"), 9);  // the search runs on into the months (intended)
  EXPECT_EQ(GetWeekday("June"), -1);
  EXPECT_EQ(GetWeekday("Saturday"), -1);
  EXPECT_EQ(Str(GetWeekdayName(0)), "Sun");
  EXPECT_EQ(Str(GetWeekdayName(5)), "Fri");
  EXPECT_TRUE(GetWeekdayName(6).empty());  // "Sat" is never returned (intended)
  EXPECT_TRUE(GetWeekdayName(-1).empty());

  EXPECT_EQ(GetMonthZeroBased(""), 0);
  EXPECT_EQ(GetMonthZeroBased("j"), 0);
  EXPECT_EQ(GetMonthZeroBased("JUN"), 5);
  EXPECT_EQ(GetMonthZeroBased("Ju"), 5);
  EXPECT_EQ(GetMonthZeroBased("Sept"), 8);
  EXPECT_EQ(GetMonthZeroBased("Septembers"), -1);
  EXPECT_EQ(Str(GetMonthNameZeroBased(11)), "Dec");
  EXPECT_TRUE(GetMonthNameZeroBased(12).empty());

  EXPECT_EQ(GetDaysInMonthOneBased(1900, 2), 28);
  EXPECT_EQ(GetDaysInMonthOneBased(2000, 2), 29);
  EXPECT_EQ(GetDaysInMonthOneBased(2007, 4), 30);
  EXPECT_EQ(GetDaysInMonthOneBased(2007, 0), 0);
}

}  // namespace
}  // namespace zel
