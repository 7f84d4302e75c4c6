// Time intervals on the calendar: whether a time belongs to one, and the search for its next
// instant by advancing the fields of a local time.
#include <zel/time/time_interval.h>

#include <algorithm>

#include "time/local_time.h"

using zel::UnixTime;

namespace {

using RangeList = zel::aryptr<const TimeInterval::ValueRange>;

bool In(int value, RangeList ranges) {
  for (const TimeInterval::ValueRange &r : ranges)
    if (value >= r.lo && value < r.hi) return true;
  return false;
}

// Moves a field's `value` on within [low, high): raised to the start of the first range it lies
// below, or by the `carry` within a range; past the last range it wraps to the first allowed value
// and passes the carry on. The carry is consumed otherwise. True when the value jumped or wrapped,
// so that the fields below start over; a step by the carry alone does not count.
bool Advance(int &value, RangeList ranges, int low, int high, int &carry) {
  for (int i = 0; i < ranges.count; ++i) {
    const int a = std::max(ranges[i].lo, low);
    const int b = std::min(ranges[i].hi, high);
    if (value < a) {
      value = a;
      carry = 0;
      return true;
    }
    if (value < b) {
      value += carry;
      carry = 0;
    }
    // A value inside a range that is not the last goes on to the next range and is raised to its
    // start, even without a carry (intended).
    if (value >= b && i == ranges.count - 1) {
      value = std::max(low, ranges[0].lo);
      carry = 1;
      return true;
    }
  }
  return false;
}

// The first allowed value of a field, not below `low`.
int FirstFrom(RangeList ranges, int low) {
  return ranges.empty() ? low : std::max(low, ranges[0].lo);
}

}  // namespace

bool TimeInterval::Contains(const UnixTime &t) const {
  std::tm f;
  if (!zel::BreakDown(t, f)) return false;
  // Years since 1900 and months 0-11 are compared with full years and months 1-12 (intended).
  return In(f.tm_year, Ranges(kYears)) && In(f.tm_mon, Ranges(kMonths)) &&
         In(f.tm_mday, Ranges(kDays)) && In(f.tm_hour, Ranges(kHours)) &&
         In(f.tm_min, Ranges(kMinutes)) && In(f.tm_sec, Ranges(kSeconds));
}

UnixTime TimeInterval::GetNextTime(UnixTime t) const {
  for (const Field field : {kYears, kMonths, kDays, kHours, kMinutes, kSeconds})
    if (Ranges(field).empty()) return UnixTime();  // an empty list allows nothing
  std::tm f;
  if (!zel::BreakDown(t, f)) return UnixTime();
  // The fields below the one that jumped start over at their first allowed values.
  const auto restart_below = [&](Field changed) {
    // The month is set as 1-12 into the 0-11 field: a new year starts one month late (intended).
    if (changed < kMonths) f.tm_mon = FirstFrom(Ranges(kMonths), 1);
    if (changed < kDays) f.tm_mday = FirstFrom(Ranges(kDays), 1);
    if (changed < kHours) f.tm_hour = FirstFrom(Ranges(kHours), 0);
    if (changed < kMinutes) f.tm_min = FirstFrom(Ranges(kMinutes), 0);
    if (changed < kSeconds) f.tm_sec = FirstFrom(Ranges(kSeconds), 0);
  };

  int carry = 1;
  Advance(f.tm_sec, Ranges(kSeconds), 0, 60, carry);
  if (Advance(f.tm_min, Ranges(kMinutes), 0, 60, carry)) restart_below(kMinutes);
  if (Advance(f.tm_hour, Ranges(kHours), 0, 24, carry)) restart_below(kHours);
  UnixTime previous = t;
  for (;;) {
    f.tm_isdst = -1;
    if (Advance(f.tm_mday, Ranges(kDays), 1, 32, carry)) restart_below(kDays);
    int month = f.tm_mon + 1;
    if (Advance(month, Ranges(kMonths), 1, 13, carry)) restart_below(kMonths);
    f.tm_mon = month - 1;
    int year = f.tm_year + 1900;
    // Years before 1976 are never produced (intended).
    if (Advance(year, Ranges(kYears), 1976, 2038, carry)) restart_below(kYears);
    if (carry != 0) return UnixTime();  // the years ran out
    f.tm_year = year - 1900;

    // mktime normalises impossible dates such as 31 April, and leaves the fields broken down as
    // localtime gives them for the result.
    const UnixTime next = zel::Normalize(f);
    if (next.value() == 0 || next <= previous) return UnixTime();  // no step forward
    const RangeList weekdays = Ranges(kWeekdays);
    if (weekdays.empty() || In(-f.tm_wday, weekdays)) return next;
    // The wrong weekday: on to the next day.
    previous = next;
    carry = 1;
  }
}

UnixTime TimeInterval::GetFirstTime() const { return GetNextTime(UnixTime()); }
