// Writing time intervals in both forms, so that reading the text back gives an equal interval;
// and their equality.
#include <zel/text/print.h>
#include <zel/time/calendar.h>
#include <zel/time/time_interval.h>

#include "time/interval_years.h"
#include "time/names.h"

using zel::cstring;
using zel::strptr;

namespace {

using ValueRange = TimeInterval::ValueRange;
using RangeList = zel::aryptr<const ValueRange>;

strptr NoName(int32_t) { return strptr(); }
strptr MonthName(int32_t v) {
  return v >= 1 && v <= 12 ? zel::GetMonthNameZeroBased(v - 1) : strptr();
}
strptr WeekdayName(int32_t v) {
  return v >= -6 && v <= 0 ? strptr(zel::kWeekdayNames[-v]) : strptr();
}

// How a field's values are written: numbers with at least `digits` digits, or their names when a
// whole range has them.
struct Style {
  int digits;
  strptr (*name)(int32_t);
};
constexpr Style kYearStyle{2, NoName};
constexpr Style kMonthStyle{1, MonthName};
constexpr Style kDayStyle{1, NoName};
constexpr Style kWeekdayStyle{1, WeekdayName};
constexpr Style kTimeStyle{2, NoName};

// "*", the names of all its values ("Mon,Tue"), one number, or "first-last".
void WriteRange(cstring &out, ValueRange r, const Style &style) {
  if (r == TimeInterval::kAny) {
    out << '*';
  } else if (r.lo < r.hi && !style.name(r.lo).empty() && !style.name(r.hi - 1).empty()) {
    for (int32_t v = r.lo; v < r.hi; ++v) out << (v > r.lo ? "," : "") << style.name(v);
  } else {
    out << zel::PrintInt(r.lo, style.digits);
    if (int64_t{r.hi} != int64_t{r.lo} + 1) out << '-' << zel::PrintInt(r.hi - 1, style.digits);
  }
}

void WriteList(cstring &out, RangeList ranges, const Style &style) {
  for (int i = 0; i < ranges.count; ++i) {
    if (i > 0) out << ',';
    WriteRange(out, ranges[i], style);
  }
}

// Whether `r`, written after `before`, is read back after it as a range of its own: it sorts
// after it and starts beyond it.
bool Follows(ValueRange r, ValueRange before) {
  return r.lo > before.hi && (r.lo > before.lo || (r.lo == before.lo && r.hi >= before.hi));
}

// The two-digit years may leave the full years out of order. Each is written in the shortest form
// that reads back as the same full years and keeps the written list sorted and unmerged, so that
// the list reads back in the same order.
void WriteYears(cstring &out, RangeList years) {
  ValueRange before{};
  for (int i = 0; i < years.count; ++i) {
    const ValueRange full = years[i];
    ValueRange written = full;
    for (const int32_t by : {2000, 1900}) {
      if (full.lo < INT32_MIN + by || full.hi < INT32_MIN + by) continue;
      const ValueRange shorter{full.lo - by, full.hi - by};
      if (zel::FullYears(shorter) == full && (i == 0 || Follows(shorter, before))) {
        written = shorter;
        break;
      }
    }
    if (i > 0) out << ',';
    WriteRange(out, written, kYearStyle);
    before = written;
  }
}

// The weekdays and then the days. Weekdays alone leave any day of the month, which is said by
// leaving the days out.
void WriteDays(cstring &out, const TimeInterval &t) {
  const RangeList weekdays = t.Ranges(TimeInterval::kWeekdays);
  const RangeList days = t.Ranges(TimeInterval::kDays);
  WriteList(out, weekdays, kWeekdayStyle);
  if (!weekdays.empty() && days.count == 1 && days[0] == TimeInterval::kAny) return;
  if (!weekdays.empty()) out << ',';
  WriteList(out, days, kDayStyle);
}

// The six lists with the five `separators` between them.
void Write(cstring &out, const TimeInterval &t, const char (&separators)[6]) {
  WriteYears(out, t.Ranges(TimeInterval::kYears));
  out << separators[0];
  WriteList(out, t.Ranges(TimeInterval::kMonths), kMonthStyle);
  out << separators[1];
  WriteDays(out, t);
  out << separators[2];
  WriteList(out, t.Ranges(TimeInterval::kHours), kTimeStyle);
  out << separators[3];
  WriteList(out, t.Ranges(TimeInterval::kMinutes), kTimeStyle);
  out << separators[4];
  WriteList(out, t.Ranges(TimeInterval::kSeconds), kTimeStyle);
}

}  // namespace

bool TimeInterval::operator==(const TimeInterval &other) const {
  for (int f = 0; f < kFieldCount; ++f) {
    const RangeList mine = Ranges(Field(f)), theirs = other.Ranges(Field(f));
    if (mine.count != theirs.count) return false;
    for (int i = 0; i < mine.count; ++i)
      if (!(mine[i] == theirs[i])) return false;
  }
  return true;
}

void TimeInterval::PrintClassic(cstring &out) const { Write(out, *this, "     "); }

cstring &operator<<(cstring &out, const TimeInterval &interval) {
  Write(out, interval, "// ::");
  return out;
}
