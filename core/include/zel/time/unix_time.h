// UnixTime and UnixDiff: times in whole seconds since 1970 and durations in seconds, with the
// calendar in local time; DateStruct, a plain date.
#pragma once

#include <zel/text/cstring.h>

#include <cstdint>
#include <ctime>

namespace zel {

// A duration in seconds.
struct UnixDiff {
  int32_t value = 0;

  constexpr UnixDiff() = default;
  constexpr explicit UnixDiff(int32_t seconds) : value(seconds) {}
  constexpr auto operator<=>(const UnixDiff &) const = default;
};

// Seconds since 1970-01-01 00:00 UTC; 0 means invalid or no time, and every calendar operation
// that fails gives 0. The calendar works in local time, through the C runtime.
class ZEL_API UnixTime {
 public:
  constexpr UnixTime() = default;
  constexpr explicit UnixTime(int32_t seconds) : value_(seconds) {}
  // The local time `fields` describes (normalised as mktime does); 0 when it cannot be represented.
  // With tm_isdst -1, a time in the hour skipped as clocks spring forward reads as that time after
  // the change (02:30 as 03:30) on every platform.
  explicit UnixTime(const std::tm &fields);

  // The system clock.
  static UnixTime Current();

  constexpr int32_t value() const { return value_; }
  // The local broken-down time; all zero for a time the runtime cannot break down.
  std::tm ToTimeStruct() const;
  // Local midnight of the same day.
  [[nodiscard]] UnixTime GetDate() const;
  // Local midnight of January 1 of the same year.
  [[nodiscard]] UnixTime GetStartOfYear() const;
  // The same local time one year earlier / later.
  [[nodiscard]] UnixTime PrevYear() const;
  [[nodiscard]] UnixTime NextYear() const;
  // Is the local (hour, minute) within [(h1, m1), (h2, m2))?
  bool WithinHourMin(int h1, int m1, int h2, int m2) const;

  [[nodiscard]] constexpr UnixTime operator+(UnixDiff d) const {
    return UnixTime(value_ + d.value);
  }
  [[nodiscard]] constexpr UnixTime operator-(UnixDiff d) const {
    return UnixTime(value_ - d.value);
  }
  constexpr UnixDiff operator-(UnixTime t) const { return UnixDiff(value_ - t.value_); }
  constexpr auto operator<=>(const UnixTime &) const = default;

 private:
  int32_t value_ = 0;
};

// 0 prints "Invalid Time"; any other time its local time as "%Y/%m/%d %H:%M:%S".
ZEL_API cstring &operator<<(cstring &out, UnixTime t);
// Under a minute: "<n> seconds" (intended: "1 seconds" too). Longer: "-" when negative, then the
// years, months and days of the magnitude ("1 Day", "2 Months", ...; those that are 0 left out,
// joined by ", "), then always the time of day, "%H:%M:%S" or "%M:%S" when under an hour: 90
// seconds print "01:30", 90,061 print "1 Day, 01:01:01".
ZEL_API cstring &operator<<(cstring &out, UnixDiff d);

// Prints a broken-down time through strftime with `format` (at most 511 characters of output).
struct PrintTime {
  std::tm fields;
  const char *format;
};
ZEL_API cstring &operator<<(cstring &out, const PrintTime &p);

}  // namespace zel

// A calendar date; a field of 0 means "not set".
struct ZEL_API DateStruct {
  int year = 0;   // full year, 2007
  int month = 0;  // 1-12
  int day = 0;    // 1-31

  // Today's local date.
  static DateStruct Current();
  DateStruct() = default;
  DateStruct(int y, int m, int d) : year(y), month(m), day(d) {}
  explicit DateStruct(zel::UnixTime t);

  // Local midnight of the date; 0 when a field is 0. The year is clamped to 1970-2036, the month
  // to 1-12 and the day to 0-31 first.
  [[nodiscard]] zel::UnixTime ToUnixTime() const;
  // 2007-03-05 is 20070305.
  constexpr int ToDecimal() const { return year * 10000 + month * 100 + day; }
  static constexpr DateStruct FromDecimal(int n) {
    DateStruct d;
    d.year = n / 10000;
    d.month = n / 100 % 100;
    d.day = n % 100;
    return d;
  }
  constexpr bool operator<(const DateStruct &o) const {
    return year != o.year ? year < o.year : month != o.month ? month < o.month : day < o.day;
  }
  constexpr bool operator==(const DateStruct &) const = default;
};
