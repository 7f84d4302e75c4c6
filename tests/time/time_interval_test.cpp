// Time intervals: reading and writing them, Contains, and the search for the next instant, under
// UTC and under a zone with daylight saving time.
#include <zel/time.h>

#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "support/log_capture.h"
#include "support/strings.h"
#include "support/zones.h"

namespace zel {
namespace {

using test::LocalAt;
using test::Printed;
using test::Str;

// The interval as it is written, "*/*/* 06:59:00", or the classic form.
std::string Written(const TimeInterval &t, bool classic = false) {
  cstring s;
  if (classic)
    t.PrintClassic(s);
  else
    s << t;
  return Str(s);
}

TEST(TimeIntervalText, ListsAreSortedMergedAndWrittenBack) {
  const struct {
    const char *text;
    const char *written;
  } cases[] = {
      {"*/*/* 06:59:00", "*/*/* 06:59:00"},
      {"*/* *:0,15,30,45:00", "*/*/* *:00,15,30,45:00"},
      {"Dec/31 *:00", "*/Dec/31 *:00:00"},
      {"*/Jan/Fri,13,11-13 00:00:00", "*/Jan/Fri,11-13 00:00:00"},
      {"*/*/fri,MON,tue 9:0", "*/*/Fri,Tue,Mon 09:00:00"},  // Tuesday -2 and Monday -1 merge
      {"*/*/0,1-3 9:0", "*/*/0-3 09:00:00"},                // Sunday 0 takes days 1-3 along
      {"*/*/2,*,Fri 9:0", "*/*/* 09:00:00"},                // "*" takes everything in
      {" */2,1,3,7-9,8,4/5 \t9:1", "*/Jan,Feb,Mar,Apr,Jul,Aug,Sep/5 09:01:00"},
      {"*/*/* 5,1-3,2,4:00", "*/*/* 01-05:00:00"},  // adjacent ranges merge
      {"*/*/* 5-3,4:00", "*/*/* 04:00:00"},         // a reversed range holds nothing
      {"*/*/* 5-3,5-8:00", "*/*/* 05-03,05-08:00:00"},
      {"*/*/* -3:00", "*/*/* -03:00:00"},
      {"*/*/* 2147483647:00", "*/*/* 2147483647-2147483646:00:00"},
      // Years: written ranges below 70 are in the 2000s, 70-99 in the 1900s, by the exclusive end.
      {"7/*/* 0:0", "07/*/* 00:00:00"},
      {"2007/*/* 0:0", "07/*/* 00:00:00"},
      {"70,98/*/* 0:0", "70,98/*/* 00:00:00"},
      {"69,99,100/*/* 0:0", "69,99-100/*/* 00:00:00"},
      {"05-68,70-98/*/* 0:0", "05-68,70-98/*/* 00:00:00"},
      {"1999,07/*/* 0:0", "07,1999/*/* 00:00:00"},  // 2007 before 1999, as read
      {"5,2005/*/* 0:0", "05,2005/*/* 00:00:00"},
      {"* * * 6 59 0", "*/*/* 06:59:00"},  // the classic form
      {"07 Dec Fri,13 23 *\n 5,6", "07/Dec/Fri,13 23:*:05-06"},
  };
  for (const auto &c : cases) {
    const TimeInterval t(c.text);
    EXPECT_EQ(Written(t), c.written) << c.text;
    EXPECT_EQ(TimeInterval(Written(t).c_str()), t) << c.text;
    const std::string classic_text = Written(t, true);
    ParserBase p(classic_text.c_str());
    TimeInterval classic;
    EXPECT_TRUE(classic.ParseClassic(p));
    EXPECT_EQ(classic, t) << classic_text;
  }
}

TEST(TimeIntervalText, WeekdaysAreSplitFromDays) {
  const TimeInterval t("*/Jan/Fri,13,Tue 00:00:00");
  ASSERT_EQ(t.Ranges(TimeInterval::kWeekdays).count, 2);
  EXPECT_EQ(t.Ranges(TimeInterval::kWeekdays)[0], (TimeInterval::ValueRange{-5, -4}));
  EXPECT_EQ(t.Ranges(TimeInterval::kWeekdays)[1], (TimeInterval::ValueRange{-2, -1}));
  ASSERT_EQ(t.Ranges(TimeInterval::kDays).count, 1);
  EXPECT_EQ(t.Ranges(TimeInterval::kDays)[0], (TimeInterval::ValueRange{13, 14}));
  EXPECT_EQ(t.Ranges(TimeInterval::kYears)[0], TimeInterval::kAny);

  const TimeInterval weekdays_only("*/*/Fri 0:0");
  EXPECT_EQ(weekdays_only.Ranges(TimeInterval::kDays)[0], TimeInterval::kAny);
  EXPECT_EQ(TimeInterval("*/*/* 0:0").Ranges(TimeInterval::kWeekdays).count, 0);
  EXPECT_FALSE(TimeInterval("*/*/Fri 0:0") == TimeInterval("*/*/Thu 0:0"));
  EXPECT_FALSE(TimeInterval("*/*/* 0:0") == TimeInterval("*/*/* 0:0,1"));
}

TEST(TimeIntervalText, ClassicFormIsRecognisedByTheBlankAfterTheFirstList) {
  ParserBase p("  */*/* 0:0");
  TimeInterval t("* * * 1 2 3");
  EXPECT_FALSE(t.ParseClassic(p));
  EXPECT_EQ(p.position(), 0);
  EXPECT_EQ(t, TimeInterval());
}

// The first message logged by reading `text`, and the interval read.
std::string FirstLogged(const char *text, const char *starting, TimeInterval &t) {
  test::LogCapture log;
  t = TimeInterval(text);
  for (const std::string &line : log.Lines())
    if (line.starts_with(starting)) return line;
  return "nothing logged";
}

TEST(TimeIntervalText, FailuresAreLoggedAndKeepWhatWasRead) {
  TimeInterval t;
  EXPECT_EQ(FirstLogged("*/*/Sunday 0:0", "%W: TimeInterval ", t),
            "%W: TimeInterval */*/Sunday 0:0: Invalid name Sunday must be one of {Sun, Mon, Tue, "
            "Wed, Thu, Fri, Sat, Jan, Feb, Mar, Apr, May, \r\nJun, Jul, Aug, Sep, Oct, Nov, Dec}"
            "\r\n1: */*/...\r\n");
  EXPECT_EQ(t.Ranges(TimeInterval::kYears).count, 1);
  EXPECT_EQ(t.Ranges(TimeInterval::kMonths).count, 1);
  EXPECT_EQ(t.Ranges(TimeInterval::kDays).count, 0);

  EXPECT_EQ(FirstLogged("*/*/* 06:", "%W: ", t),
            "%W: TimeInterval */*/* 06:: Number expected\r\n1: */*/* 06:...\r\n");
  EXPECT_EQ(t.Ranges(TimeInterval::kHours)[0], (TimeInterval::ValueRange{6, 7}));
  EXPECT_EQ(t.Ranges(TimeInterval::kMinutes).count, 0);
  EXPECT_EQ(t.Ranges(TimeInterval::kWeekdays).count, 0);  // the days are split last

  // A missing separator is reported and reading goes on.
  EXPECT_EQ(FirstLogged("5*/1 6*:00", "Parser Error: ", t),
            "Parser Error: Invalid separator\r\n1: 5...\r\n");
  EXPECT_EQ(Written(t), "05/*/1 06:*:00");
  EXPECT_EQ(FirstLogged("", "%W: ", t), "%W: TimeInterval : Number expected\r\n1: ...\r\n");
}

class TimeIntervalClock : public test::ZonedTest {};
INSTANTIATE_TEST_SUITE_P(Zones, TimeIntervalClock, test::kZones);

TEST_P(TimeIntervalClock, ContainsComparesRawYearsAndMonths) {
  const UnixTime march5 = LocalAt(2007, 3, 5, 6, 59, 0);
  const struct {
    const char *interval;
    bool contains;
  } cases[] = {
      {"*/*/* 06:59:00", true},   {"*/*/* 06:59:01", false},     {"*/*/5 6:59", true},
      {"*/*/4,6-31 6:59", false}, {"*/*/* 0-5,7-23:*:*", false}, {"*/*/* 6:58-59:*", true},
      {"*/*/Fri 06:59", true},                               // weekdays are not consulted
      {"2007/*/* *:*:*", false},                             // years count from 1900 (intended)
      {"107/*/* *:*:*", true},    {"*/Mar/* *:*:*", false},  // months count from 0 (intended)
      {"*/Feb/* *:*:*", true},
  };
  for (const auto &c : cases)
    EXPECT_EQ(TimeInterval(c.interval).Contains(march5), c.contains) << c.interval;
  EXPECT_FALSE(TimeInterval().Contains(march5));
  EXPECT_FALSE(TimeInterval("*/*/* 06:").Contains(march5));  // an empty list contains nothing
}

TEST_P(TimeIntervalClock, NextTimeAdvancesTheFields) {
  const struct {
    const char *interval;
    UnixTime from;
    UnixTime next;
  } cases[] = {
      {"*/*/* 06:59:00", LocalAt(2007, 3, 5, 7), LocalAt(2007, 3, 6, 6, 59)},
      {"*/*/* 06:59:00", LocalAt(2007, 3, 5, 6, 58, 59), LocalAt(2007, 3, 5, 6, 59)},
      {"*/* *:0,15,30,45:00", LocalAt(2007, 3, 5, 10, 7), LocalAt(2007, 3, 5, 10, 15)},
      {"*/* *:0,15,30,45:00", LocalAt(2007, 3, 5, 10, 15), LocalAt(2007, 3, 5, 10, 30)},
      {"*/* *:0,15,30,45:00", LocalAt(2007, 12, 31, 23, 45), LocalAt(2008, 1, 1)},
      // The carry raises the year without restarting month and day.
      {"Dec/31 *:00:00", LocalAt(2007, 12, 31, 23, 30), LocalAt(2008, 12, 31)},
      // A jump of the year restarts the month one too far (intended).
      {"2008/*/* 00:00:00", LocalAt(2007, 6, 1), LocalAt(2008, 2, 1)},
      // A value inside a range that is not the last moves on (intended).
      {"*/* *:0,15:30", LocalAt(2007, 3, 5, 10, 0, 10), LocalAt(2007, 3, 5, 10, 15, 30)},
      {"*/* *:0,15:30", LocalAt(2007, 3, 5, 10, 15, 10), LocalAt(2007, 3, 5, 10, 15, 30)},
      {"*/*/Fri,13 00:00:00", LocalAt(2007, 1, 1), LocalAt(2007, 4, 13)},
      {"*/*/Mon 9:00", LocalAt(2007, 3, 5, 10), LocalAt(2007, 3, 12, 9)},
      {"*/Apr/31 0:0", LocalAt(2007, 1, 1), LocalAt(2007, 5, 1)},  // mktime normalises
      {"2007/*/* 0:0", LocalAt(2008, 1, 1), UnixTime()},           // the years ran out
      {"*/*/* 06:59:00", LocalAt(2037, 12, 31, 7), UnixTime()},
      {"*/*/-10 0:0", LocalAt(2030, 1, 1), UnixTime()},  // never that weekday
      {"*/*/* 06:", LocalAt(2007, 3, 5), UnixTime()},    // no minutes at all
  };
  for (const auto &c : cases) {
    const UnixTime next = TimeInterval(c.interval).GetNextTime(c.from);
    EXPECT_EQ(Printed(next), Printed(c.next)) << c.interval << " from " << Printed(c.from);
  }
  EXPECT_EQ(Printed(TimeInterval("*/*/* 06:59:00").GetFirstTime()),
            Printed(LocalAt(1976, 2, 1, 6, 59)));  // intended
  EXPECT_EQ(TimeInterval().GetFirstTime().value(), 0);
}

// Across both changes of the clock in 2007 (and the dates of the older rules), every search ends
// later than where it began, or with 0: stepping through the instants as a scheduler does, and
// starting from any time, the repeated hour of autumn included.
TEST_P(TimeIntervalClock, NextTimeMovesForwardAcrossClockChanges) {
  const char *intervals[] = {"*/* *:0,15,30,45:00", "*/* *:00:00",  "*/*/* 02:30:00",
                             "*/*/* 01:30:00",      "*/* 1-3:*:00", "*/*/Sun 01,02:59:30"};
  int searches = 0, changes = 0;
  const auto next_after = [&searches](const TimeInterval &interval, UnixTime t) {
    const UnixTime next = interval.GetNextTime(t);
    EXPECT_TRUE(next.value() == 0 || next > t) << Printed(interval) << " from " << Printed(t);
    ++searches;
    return next;
  };
  for (const auto &[month, first_day, days] : {std::tuple(3, 1, 40), std::tuple(10, 20, 21)}) {
    for (int day = first_day; day < first_day + days; ++day)
      changes += (LocalAt(2007, month, day + 1) - LocalAt(2007, month, day)).value != 86400;
    const UnixTime begin = LocalAt(2007, month, first_day),
                   end = LocalAt(2007, month, first_day + days);
    for (const char *text : intervals) {
      const TimeInterval interval(text);
      for (UnixTime t = begin; t.value() != 0 && t < end;) t = next_after(interval, t);
      for (UnixTime t = begin; t < end; t = t + UnixDiff(7 * 60)) next_after(interval, t);
    }
  }
  EXPECT_GT(searches, 60000);
  EXPECT_EQ(changes, GetParam()[3] != '0' ? 2 : 0);
}

}  // namespace
}  // namespace zel
