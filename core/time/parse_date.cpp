// Reading loose dates: ParseDate.
#include <zel/time/calendar.h>
#include <zel/time/time_text.h>

namespace {

using zel::CharSet;
using zel::StringIter;
using zel::strptr;

constexpr CharSet kSeparators = CharSet::Literal(",/ \t\r\n");

// Two-digit years: below 69 in this century, 69-99 in the last; other years stand. (The %y
// conversion takes 69 as 2069: the difference is intended.)
int FullYear(int year) { return year < 69 ? year + 2000 : year < 100 ? year + 1900 : year; }

// Moves past `word` (any case) when it comes next.
bool SkipWord(StringIter &it, const char *word) {
  const strptr w(word);
  if (!it.Rest().StartsWithQ(w, false)) return false;
  it.SkipNChars(w.length());
  return true;
}

}  // namespace

DateStruct ParseDate(StringIter &it, bool allow_relative) {
  const int start = it.position();
  int numbers[2] = {0, 0}, count = 0, month = 0;
  for (;;) {
    while (zel::WhiteCharQ(it.Peek())) it.SkipNChars(1);
    if (it.AtEnd()) break;
    if (SkipWord(it, "yesterday")) {
      if (allow_relative) return DateStruct(zel::UnixTime::Current() - zel::UnixDiff(86400));
      break;
    }
    if (SkipWord(it, "today")) {
      if (allow_relative) return DateStruct::Current();
      break;
    }
    if (zel::DigitCharQ(it.Peek())) {
      // A third number overwrites the second.
      it.MaybeParseInteger(numbers[count == 0 ? 0 : 1]);
      count = count < 2 ? count + 1 : 2;
    } else {
      const int word_start = it.position();
      const int m = zel::GetMonthZeroBased(it.GetUpTo(kSeparators));
      if (m < 0) {
        it.SetPosition(word_start);
        break;
      }
      month = m + 1;
    }
    if (kSeparators(it.Peek()) && !it.AtEnd()) it.SkipNChars(1);
  }
  const bool comma = strptr(it.text() + start, it.position() - start).FindFrom(',') >= 0;

  DateStruct date;
  date.month = month;
  const int a = numbers[0], b = numbers[1];
  if (count == 1) {
    if ((month != 0 && comma) || a >= 32) {
      date.year = FullYear(a);
    } else {
      date.day = a;
    }
  } else if (count == 2) {
    date.day = a < 32 ? a : b;
    date.year = FullYear(a < 32 ? b : a);
  }
  return date;
}
