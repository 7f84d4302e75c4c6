// Calendar helpers over UnixTime and NanoTime (local time), and the English day and month names.
#pragma once

#include <zel/time/nano_time.h>
#include <zel/time/unix_time.h>

namespace zel {

// `t` with its local hour, minute and second replaced, except where an argument is -1 (that field
// is kept); 0 when the result cannot be represented.
ZEL_API UnixTime ReplaceHourMin(UnixTime t, int hour, int min, int sec = 0);
// The same on the whole seconds of `t`, then `msec` milliseconds added; saturates at
// NanoTime::kMax when positive milliseconds overflow.
ZEL_API NanoTime ReplaceHourMin(NanoTime t, int hour, int min, int sec, int msec);
// `a` in the local year of `b`.
ZEL_API UnixTime ReplaceYear(UnixTime a, UnixTime b);
// The local date of `a` at the local time of day of `b`.
ZEL_API UnixTime ReplaceTime(UnixTime a, UnixTime b);
// `t` with its local (hour, minute) moved into [(h1, m1), (h2, m2)] — the span is closed at both
// ends; seconds are kept.
ZEL_API UnixTime ClipHourMin(UnixTime t, int h1, int m1, int h2, int m2);
// Seconds since local midnight.
ZEL_API UnixDiff StripDate(UnixTime t);
// Local midnight of the date (out-of-range fields normalised as mktime does).
ZEL_API UnixTime ComposeDateOneBased(int year, int month, int day);

// The Gregorian rule.
constexpr bool LeapYearQ(int year) { return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0; }
// Days in `month` (1-12) of `year`; 0 for month 0. Other months are the caller's fault.
ZEL_API int GetDaysInMonthOneBased(int year, int month);

// The index 0-6 of the weekday abbreviation ("Sun" ... "Sat") equal to `name` ignoring ASCII case,
// or -1. The search runs on into the month names "January" ... "May", which give 7-11 (intended).
ZEL_API int GetWeekday(const strptr &name);
// "Sun" ... "Fri" for 0-5; empty for anything else — "Sat" is never returned (intended).
ZEL_API strptr GetWeekdayName(int day);
// The first month (0-11) whose English name starts with `text` ignoring ASCII case ("Ju" is June,
// the empty text January), or -1.
ZEL_API int GetMonthZeroBased(const strptr &text);
// "Jan" ... "Dec" for 0-11, else empty.
ZEL_API strptr GetMonthNameZeroBased(int month);

}  // namespace zel
