// Times as text: the "%"-letter format language read into UnixTime, NanoTime and the durations,
// PrintNanoTime writing a NanoTime through the same kind of format, and ParseDate for loose dates.
//
// The format is copied character by character: a blank skips white space in the input (at least
// one character of it, unless the format character before was a blank too), any other character
// must be the next input character, and "%" starts a conversion. A conversion may carry a width,
// "%.3X" reads at most 3 digits ("%.0H" any number); numbers take an optional "-" or "+" and may
// not exceed 2147483647. The letters of the absolute-time readers:
//
//   %H hour 0-23 (at most 2 digits)         %M minute 0-59 (2)        %S second 0-59 (2)
//   %X milliseconds as written (6): ".5" is 5 ms, ".500" 500 ms, up to 999,999 ms
//   %P "AM" or "PM": "PM" adds 12 to the hour read so far
//   %Y year 1970-2038 (4)     %y year 00-69 as 2000-2069, 70-99 as 1970-1999, or 1970-2037
//   %d day of the month (2)   %m month 1-12 (2)    %b month name or any start of one ("Sep")
//   %a weekday abbreviation, required but not used     %% a "%"
//
// Fields not read start at midnight on January 1; the day is checked against the month at the
// end (February always allows the 29th), and the result is the local time (mktime), 0 when the
// calendar cannot represent it.
#pragma once

#include <zel/parse/parser_base.h>
#include <zel/text/string_iter.h>
#include <zel/time/nano_time.h>
#include <zel/time/unix_time.h>

namespace zel {

// Reads a time per `format` at the parser's position. Every mismatch is reported at the position
// where it is found (ParserErrorX), with messages such as "ParseTime: Invalid hour 24; Must be
// between 0 and 23". The year starts as the current local year. Whole seconds: a time at or
// before the Unix epoch gives 0.
ZEL_API UnixTime ParseTimeX(ParserBase &p, const strptr &format);
// The same over the whole of `text`.
ZEL_API UnixTime ParseTimeX(const strptr &text, const strptr &format);

// Quiet readers: any mismatch gives 0, the iterator left where reading stopped. Unlike
// ParseTimeX, the year starts as 2000 (intended), white space is blank, TAB, CR and LF, a number
// may have no digits at all (it is 0), and "AM"/"PM" ignore case.
// The time in whole seconds.
ZEL_API UnixTime ParseTime(StringIter &it, const strptr &format);
// The time with its milliseconds.
ZEL_API NanoTime ParseNanoTime(StringIter &it, const strptr &format);

// Duration readers: skip leading white space, then read `format` with the letters %H (< 24),
// %M, %S (< 60), %X (milliseconds, < 1,000,000), %P ("PM" adds 12 hours, ignoring case), %% and
// %T, a clock reading "hours:minutes:seconds" with any number of hours and optional
// ".milliseconds". Any mismatch, and an empty format, gives 0. "100:00:01.250" read with "%T" is
// 360,001.25 seconds.
// Saturating as NanoDiff::Secs.
ZEL_API NanoDiff ParseNanoDiff(StringIter &it, const strptr &format);
// Whole seconds, truncated.
ZEL_API UnixDiff ParseUnixDiff(StringIter &it, const strptr &format);

// Prints `time` through `format`: %H %M %S, %I (12-hour clock; midnight is "00", intended),
// %P ("AM" or "PM"), %X (milliseconds, 3 digits), %x (tenths, 1 digit), %Y, %y (2 digits),
// %a ("Sun" ... "Sat"), %b ("January" ... "December"), %d and %m (not padded), %% and "%" with
// any other character as that character. A time before the Unix epoch or from 2038-01-19 03:14:07
// UTC on prints "<invalid time>"; one within the epoch's first second prints nothing.
struct PrintNanoTime {
  PrintNanoTime(NanoTime time, const strptr &format) : time(time), format(format) {}
  NanoTime time;
  strptr format;
};
ZEL_API cstring &operator<<(cstring &out, const PrintNanoTime &p);

}  // namespace zel

// Reads a loose date such as "2003/Jan/03", "Jan 5, 07" or "5 Jan 99": numbers and month names (or
// starts of them) separated by any of ",/ \t\r\n". Of two numbers, one below 32 is the day and
// the other the year; a lone number is the year from 32 on, or when a month name and a comma were
// read, else the day. Two-digit years below 69 are 20xx, from 69 on 19xx (unlike %y, intended).
// "today" and "yesterday" (any case) give today's or yesterday's local date when `allow_relative`,
// and otherwise end the reading. Reading stops before a word that is not a month; fields not found
// stay 0. Never throws.
ZEL_API DateStruct ParseDate(zel::StringIter &it, bool allow_relative);
