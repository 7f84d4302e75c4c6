// TimeInterval: a recurring set of local calendar instants, one list of allowed values per field,
// such as "*/*/* 06:59:00" (every day at 06:59:00) or "*/* *:0,15,30,45:00" (every quarter hour).
//
// The text is "years/months/days hours:minutes:seconds". The years may be left out, meaning any
// year ("Dec/31 *:00:00": every hour of New Year's Eve), and so may the seconds, meaning second 0.
// Each field is a list of items separated by ",":
//   "*"          any value;
//   7            one value;
//   11-13        an inclusive range;
//   Fri, Dec     a name (any case): "Sun" 0, "Mon" -1 ... "Sat" -6, "Jan" 1 ... "Dec" 12.
// Years are full years, except that a range within 0-68 is moved into the 2000s and one within
// 70-98 into the 1900s (the exclusive end of a range is tested, so 69 and 99 stay as written). The
// days may name weekdays beside days of the month: after sorting and merging, the leading ranges
// of the day list that start at 0 or below are weekdays (Sunday 0, Monday -1 ... Saturday -6), and
// an instant must match both, so "*/Jan/Fri,13 00:00:00" is midnight of every Friday the 13th of
// January (but "0,1-3" merges into one range of weekdays).
//
// The classic form is the six lists separated by blanks: "* * * 06 59 00".
//
// All calendar work is in local time.
#pragma once

#include <zel/mem/tary.h>
#include <zel/parse/parser_base.h>
#include <zel/time/unix_time.h>

#include <cstdint>
#include <utility>

class TimeInterval {
 public:
  // The values [lo, hi) of a field.
  struct ValueRange {
    int32_t lo;
    int32_t hi;
    constexpr bool operator==(const ValueRange &) const = default;
  };
  // Any value at all ("*").
  static constexpr ValueRange kAny{INT32_MIN, INT32_MAX};

  // The fields; the day list of the text holds both kDays and kWeekdays.
  enum Field { kYears, kMonths, kDays, kWeekdays, kHours, kMinutes, kSeconds, kFieldCount };

  // The empty interval: every list is empty, it contains no time and has no next time.
  TimeInterval() = default;
  // Reads `text` with ParseX. Never throws: a failure is logged (when the log listens) as
  // "%W: TimeInterval " + text + ": " + the error's message + "\r\n", and the interval keeps the
  // fields read before it; the others stay empty.
  ZEL_API explicit TimeInterval(const zel::strptr &text);
  // Moving swaps the two intervals.
  TimeInterval(TimeInterval &&other) noexcept { *this = std::move(other); }
  TimeInterval &operator=(TimeInterval &&other) noexcept {
    ranges_.Swap(other.ranges_);
    std::swap(slices_, other.slices_);
    return *this;
  }

  // Replaces the interval with the one written at the parser's position, in the form above or,
  // when the first list is followed by a blank, in the classic form; the parser is left after it.
  // A missing "/" or ":" is reported as "Invalid separator" without throwing, and reading goes on
  // at the same place; an unknown name throws "Invalid name <word> must be one of {Sun, Mon, ...}"
  // (with line breaks in the list); numbers are read and reported by ParserBase::ParseInteger.
  // Each list is sorted by its lower bounds and overlapping or adjacent ranges are merged;
  // two-digit years are made full after that, and may then stand out of order.
  ZEL_API void ParseX(zel::ParserBase &p);
  // Reads the classic form, six lists separated by white space, at the parser's position,
  // replacing the interval. False when the first list is not followed by a blank (the text is not
  // in this form): the interval is then empty and the parser back where it was. Errors as ParseX.
  ZEL_API bool ParseClassic(zel::ParserBase &p);

  // Whether every field of the local time `t` is in its list; the weekdays are not consulted, and
  // an empty list contains nothing. The years are compared as years since 1900 and the months as
  // 0-11 (intended), so only intervals with "*" years and months answer as the calendar reads.
  ZEL_API bool Contains(const zel::UnixTime &t) const;
  // The first instant of the interval after `t`, found by advancing the fields of `t` from the
  // seconds upwards, or 0 when there is none before 2038 (a list is empty, or the years ran out)
  // or the search does not move forward.
  // Years before 1976 are never produced (intended), and a change of year lands one month after
  // the first allowed one (intended): from 2007-06-01, "2008/*/* 00:00:00" gives 2008-02-01.
  // A value inside a range that is not the last of its list moves on to the next range (intended):
  // with minutes 0,15 and second 30, 10:00:10 gives 10:15:30. The result is always later than
  // `t`, or 0. Impossible dates are normalised by the C library: "*/Apr/31 0:0" gives May 1.
  ZEL_API zel::UnixTime GetNextTime(zel::UnixTime t) const;
  // GetNextTime(0): for "*/*/* 06:59:00", 1976-02-01 06:59:00 (intended).
  ZEL_API zel::UnixTime GetFirstTime() const;

  // The ranges of one field, in the order described at ParseX.
  zel::aryptr<const ValueRange> Ranges(Field field) const {
    return zel::aryptr<const ValueRange>(ranges_.begin() + slices_[field].begin,
                                         slices_[field].end - slices_[field].begin);
  }
  // Equal when every field has the same ranges in the same order.
  ZEL_API bool operator==(const TimeInterval &other) const;

  // Appends the classic form, "* * * 06 59 00"; ParseClassic reads it back to an equal interval
  // when no list is empty.
  ZEL_API void PrintClassic(zel::cstring &out) const;

 private:
  // A field's ranges within ranges_: [begin, end).
  struct Slice {
    int begin = 0;
    int end = 0;
  };
  // The reading steps (time_interval_parse.cpp).
  class Reader;

  zel::TAry<ValueRange> ranges_;
  Slice slices_[kFieldCount];
};

// Appends the interval as "*/*/* 06:59:00": years, months and days, then hours, minutes and
// seconds, each list written out; ParseX reads it back to an equal interval when no list is empty.
ZEL_API zel::cstring &operator<<(zel::cstring &out, const TimeInterval &interval);
