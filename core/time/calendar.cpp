// Calendar helpers: replacing and clipping parts of local times, composing dates.
#include <zel/time/calendar.h>

#include <utility>

#include "time/local_time.h"

namespace zel {

UnixTime ReplaceHourMin(UnixTime t, int hour, int min, int sec) {
  std::tm fields;
  if (!BreakDown(t, fields)) return UnixTime();
  if (hour != -1) fields.tm_hour = hour;
  if (min != -1) fields.tm_min = min;
  if (sec != -1) fields.tm_sec = sec;
  fields.tm_isdst = -1;
  return Compose(fields);
}

NanoTime ReplaceHourMin(NanoTime t, int hour, int min, int sec, int msec) {
  const NanoTime replaced = NanoTime().Set(ReplaceHourMin(t.ToUnixTime(), hour, min, sec));
  const NanoTime sum = replaced.qAdd(NanoDiff(int64_t{msec} * 10000));
  return sum < replaced && msec > 0 ? NanoTime(NanoTime::kMax) : sum;
}

UnixTime ReplaceYear(UnixTime a, UnixTime b) {
  std::tm fields, year;
  if (!BreakDown(a, fields) || !BreakDown(b, year)) return UnixTime();
  fields.tm_year = year.tm_year;
  return Compose(fields);
}

UnixTime ReplaceTime(UnixTime a, UnixTime b) {
  std::tm fields, time;
  if (!BreakDown(a, fields) || !BreakDown(b, time)) return UnixTime();
  fields.tm_hour = time.tm_hour;
  fields.tm_min = time.tm_min;
  fields.tm_sec = time.tm_sec;
  return Compose(fields);
}

UnixTime ClipHourMin(UnixTime t, int h1, int m1, int h2, int m2) {
  std::tm fields;
  if (!BreakDown(t, fields)) return UnixTime();
  const std::pair at(fields.tm_hour, fields.tm_min);
  if (at < std::pair(h1, m1)) {
    fields.tm_hour = h1;
    fields.tm_min = m1;
  } else if (at > std::pair(h2, m2)) {
    fields.tm_hour = h2;
    fields.tm_min = m2;
  } else {
    return t;
  }
  return Compose(fields);
}

UnixDiff StripDate(UnixTime t) {
  std::tm fields;
  BreakDown(t, fields);
  return UnixDiff(fields.tm_sec + (fields.tm_min + fields.tm_hour * 60) * 60);
}

UnixTime ComposeDateOneBased(int year, int month, int day) {
  std::tm fields{};
  fields.tm_year = year - 1900;
  fields.tm_mon = month - 1;
  fields.tm_mday = day;
  fields.tm_isdst = -1;
  return Compose(fields);
}

int GetDaysInMonthOneBased(int year, int month) {
  static constexpr int kDays[13] = {0, 31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return kDays[month] + (month == 2 && LeapYearQ(year) ? 1 : 0);
}

}  // namespace zel
