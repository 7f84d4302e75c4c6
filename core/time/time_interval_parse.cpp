// Reading time intervals: the field lists, the date-and-time form and the classic form, and the
// constructor that logs what it cannot read.
#include <zel/diag/log.h>
#include <zel/text/thread_local_string.h>
#include <zel/time/time_interval.h>

#include <algorithm>

#include "time/interval_years.h"
#include "time/names.h"

using zel::ParserBase;
using zel::strptr;

namespace {

// The names of values, in the order the invalid-name message lists them.
constexpr const char *kValueNames[19] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat",
                                         "Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul",
                                         "Aug", "Sep", "Oct", "Nov", "Dec"};
// The value of kValueNames[i]: weekdays count down from Sunday 0, months up from January 1.
constexpr int32_t NameValue(int i) { return i < 7 ? -i : i - 6; }

// The values lo to last, both included; a last value of the largest int gives an empty range
// rather than overflow.
constexpr TimeInterval::ValueRange Through(int32_t lo, int32_t last) {
  return {lo, last == INT32_MAX ? last : last + 1};
}

}  // namespace

class TimeInterval::Reader {
 public:
  Reader(TimeInterval &interval, ParserBase &p) : t_(interval), p_(p) {}

  // Moves past `c` when it is next.
  bool Skip(char c) {
    if (p_.Peek() != c) return false;
    p_.Advance();
    return true;
  }
  // Moves past `c`; when something else is there, reports "Invalid separator" without throwing
  // and reads on from the same place.
  void Separator(char c) {
    if (!Skip(c)) Invalid();
  }
  // White space between the lists of the classic form, reported as Separator does when missing.
  void Blank() {
    if (!p_.white_space(p_.Peek())) Invalid();
    p_.SkipWs();
  }

  // One list, its ranges appended to the interval's, sorted and merged.
  Slice List() {
    const int begin = t_.ranges_.Count();
    do {
      t_.ranges_.Add(Item());
    } while (Skip(','));
    return SortAndMerge(begin);
  }
  // A list of the one range `r`.
  Slice Add(ValueRange r) {
    t_.ranges_.Add(r);
    return Slice{t_.ranges_.Count() - 1, t_.ranges_.Count()};
  }

  void TwoDigitYears() {
    const Slice years = t_.slices_[kYears];
    for (int i = years.begin; i < years.end; ++i) t_.ranges_[i] = zel::FullYears(t_.ranges_[i]);
  }

  // The leading ranges of the day list whose lower bound is 0 or less (they sort first) are the
  // weekdays; without days left, any day. A day list of "*" has no weekdays.
  void SplitDays() {
    Slice &days = t_.slices_[kDays];
    Slice &weekdays = t_.slices_[kWeekdays];
    weekdays = Slice{days.begin, days.begin};
    if (t_.ranges_[days.begin] == kAny) return;
    while (weekdays.end < days.end && t_.ranges_[weekdays.end].lo <= 0) ++weekdays.end;
    days = weekdays.end < days.end ? Slice{weekdays.end, days.end} : Add(kAny);
  }

 private:
  // "*", a name, a number or an inclusive range "a-b".
  ValueRange Item() {
    if (Skip('*')) return kAny;
    if (zel::AlphaCharQ(p_.Peek())) return Name();
    const int32_t lo = p_.ParseInteger();
    return Through(lo, Skip('-') ? p_.ParseInteger() : lo);
  }

  ValueRange Name() {
    const int start = p_.position();
    const strptr word = p_.GetIdent();
    for (int i = 0; i < 19; ++i)
      if (word.EqualNoCase(kValueNames[i])) return Through(NameValue(i), NameValue(i));
    zel::ThreadLocalString message;
    *message << "Invalid name " << word << " must be one of ";
    zel::AppendNameList(*message, kValueNames, 19);
    p_.ThrowAt(zel::Range{start, p_.position()}, message);
  }

  // Sorts the ranges from `begin` on by their lower bounds (then by their upper ones, so that the
  // order never depends on the sort) and folds each range whose lower bound does not pass the
  // previous upper bound into that range.
  Slice SortAndMerge(int begin) {
    zel::TAry<ValueRange> &ranges = t_.ranges_;
    std::sort(ranges.begin() + begin, ranges.end(),
              [](ValueRange a, ValueRange b) { return a.lo != b.lo ? a.lo < b.lo : a.hi < b.hi; });
    int kept = begin;
    for (int i = begin + 1; i < ranges.Count(); ++i) {
      if (ranges[i].lo <= ranges[kept].hi)
        ranges[kept].hi = std::max(ranges[kept].hi, ranges[i].hi);
      else
        ranges[++kept] = ranges[i];
    }
    while (ranges.Count() > kept + 1) ranges.RemoveAt(ranges.Count() - 1);
    return Slice{begin, kept + 1};
  }

  void Invalid() {
    p_.ErrorAt(zel::Range{p_.position(), p_.position()}, "Invalid separator", false);
  }

  TimeInterval &t_;
  ParserBase &p_;
};

TimeInterval::TimeInterval(const strptr &text) {
  ParserBase p(text);
  try {
    ParseX(p);
  } catch (const zel::ExceptionBase &e) {
    if (zel::LogCategory::n_global_clients < 1) return;
    zel::ThreadLocalString line;
    *line << "%W: TimeInterval " << text << ": ";
    e.Print(*line);
    *line << "\r\n";
    zel::PrintLog(line);
  }
}

void TimeInterval::ParseX(ParserBase &p) {
  *this = TimeInterval();
  const int start = p.position();
  Reader r(*this, p);
  p.SkipWs();
  const Slice first = r.List();
  if (p.Peek() == ' ') {
    // The classic form: what was read is dropped and the text read again from the start.
    p.SetPosition(start);
    ParseClassic(p);
    return;
  }
  r.Separator('/');
  const Slice second = r.List();
  if (r.Skip('/')) {
    slices_[kYears] = first;
    slices_[kMonths] = second;
    slices_[kDays] = r.List();
  } else {
    slices_[kMonths] = first;
    slices_[kDays] = second;
    slices_[kYears] = r.Add(kAny);
  }
  r.TwoDigitYears();
  p.SkipWs();
  slices_[kHours] = r.List();
  r.Separator(':');
  slices_[kMinutes] = r.List();
  slices_[kSeconds] = r.Skip(':') ? r.List() : r.Add(ValueRange{0, 1});
  r.SplitDays();
}

bool TimeInterval::ParseClassic(ParserBase &p) {
  *this = TimeInterval();
  const int start = p.position();
  Reader r(*this, p);
  p.SkipWs();
  slices_[kYears] = r.List();
  if (p.Peek() != ' ') {
    *this = TimeInterval();
    p.SetPosition(start);
    return false;
  }
  for (const Field field : {kMonths, kDays, kHours, kMinutes, kSeconds}) {
    r.Blank();
    slices_[field] = r.List();
    if (field == kDays) r.TwoDigitYears();
  }
  r.SplitDays();
  return true;
}
