// UnixTime and DateStruct: the clock in seconds and the calendar in local time.
#include <zel/time/unix_time.h>

#include <utility>

#include "os/os.h"
#include "time/local_time.h"

namespace zel {

bool BreakDown(UnixTime t, std::tm &out) {
  if (os::LocalTime(t.value(), out)) return true;
  out = std::tm{};
  return false;
}

namespace {

// Seconds into the month of the wall-clock time `f` shows.
int64_t WallSeconds(const std::tm &f) {
  return ((int64_t{f.tm_mday} * 24 + f.tm_hour) * 60 + f.tm_min) * 60 + f.tm_sec;
}

}  // namespace

UnixTime Normalize(std::tm &fields) {
  const std::tm asked = fields;
  std::time_t t = std::mktime(&fields);
  // A time in the hour skipped as clocks spring forward: the C library on Linux reads 02:30 as
  // 03:30, after the change, but Windows' runtime as 01:30, before it. Every platform reads it
  // forward, so that a time asked for never comes out earlier than what the clock showed.
  if (t != -1 && asked.tm_isdst < 0 && fields.tm_year == asked.tm_year &&
      fields.tm_mon == asked.tm_mon && WallSeconds(fields) < WallSeconds(asked)) {
    t += static_cast<std::time_t>(WallSeconds(asked) - WallSeconds(fields));
    os::LocalTime(t, fields);
  }
  // mktime fails with -1; a time before 1970 or after 2038, which a UnixTime cannot hold, likewise.
  if (t < 0 || t > INT32_MAX) return UnixTime();
  return UnixTime(static_cast<int32_t>(t));
}

UnixTime Compose(std::tm fields) { return Normalize(fields); }

UnixTime::UnixTime(const std::tm &fields) : value_(Compose(fields).value_) {}

UnixTime UnixTime::Current() { return UnixTime(static_cast<int32_t>(std::time(nullptr))); }

std::tm UnixTime::ToTimeStruct() const {
  std::tm fields;
  BreakDown(*this, fields);
  return fields;
}

UnixTime UnixTime::GetDate() const {
  std::tm fields;
  if (!BreakDown(*this, fields)) return UnixTime();
  fields.tm_sec = fields.tm_min = fields.tm_hour = 0;
  fields.tm_isdst = -1;
  return Compose(fields);
}

UnixTime UnixTime::GetStartOfYear() const {
  std::tm fields;
  if (!BreakDown(*this, fields)) return UnixTime();
  fields.tm_sec = fields.tm_min = fields.tm_hour = 0;
  fields.tm_mday = 1;
  fields.tm_mon = fields.tm_yday = 0;
  fields.tm_isdst = -1;
  return Compose(fields);
}

UnixTime UnixTime::PrevYear() const {
  std::tm fields;
  if (!BreakDown(*this, fields)) return UnixTime();
  --fields.tm_year;  // the daylight flag is kept
  return Compose(fields);
}

UnixTime UnixTime::NextYear() const {
  std::tm fields;
  if (!BreakDown(*this, fields)) return UnixTime();
  ++fields.tm_year;  // the daylight flag is kept
  return Compose(fields);
}

bool UnixTime::WithinHourMin(int h1, int m1, int h2, int m2) const {
  std::tm fields;
  BreakDown(*this, fields);
  const std::pair at(fields.tm_hour, fields.tm_min);
  return at >= std::pair(h1, m1) && at < std::pair(h2, m2);
}

}  // namespace zel

DateStruct::DateStruct(zel::UnixTime t) {
  std::tm fields;
  zel::BreakDown(t, fields);
  year = fields.tm_year + 1900;
  month = fields.tm_mon + 1;
  day = fields.tm_mday;
}

DateStruct DateStruct::Current() { return DateStruct(zel::UnixTime::Current()); }

zel::UnixTime DateStruct::ToUnixTime() const {
  if (year == 0 || month == 0 || day == 0) return zel::UnixTime();
  auto clamp = [](int v, int low, int high) { return v < low ? low : v > high ? high : v; };
  std::tm fields{};
  fields.tm_year = clamp(year - 1900, 70, 136);
  fields.tm_mon = clamp(month - 1, 0, 11);
  fields.tm_mday = clamp(day, 0, 31);
  fields.tm_isdst = -1;
  return zel::Compose(fields);
}
