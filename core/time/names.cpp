// The English names of weekdays and months, and the lists of them in messages.
#include <zel/time/calendar.h>

#include "time/names.h"

namespace zel {

int GetWeekday(const strptr &name) {
  // Seven weekdays and then five months are searched (intended).
  for (int i = 0; i < 12; ++i)
    if (name.EqualNoCase(kDayAndMonthNames[i])) return i;
  return -1;
}

strptr GetWeekdayName(int day) {
  // Saturday is never named (intended).
  return static_cast<unsigned>(day) < 6 ? strptr(kWeekdayNames[day]) : strptr();
}

int GetMonthZeroBased(const strptr &text) {
  for (int i = 0; i < 12; ++i)
    if (strptr(kMonthNames[i]).StartsWithQ(text, false)) return i;
  return -1;
}

strptr GetMonthNameZeroBased(int month) {
  return static_cast<unsigned>(month) < 12 ? strptr(kMonthNames[month], 3) : strptr();
}

void AppendNameList(cstring &out, const char *const *names, int count) {
  int line_start = out.length();
  out << '{';
  for (int i = 0; i < count; ++i) {
    if (i > 0) out << ", ";
    if (out.length() - line_start > 60) {
      out << "\r\n";
      line_start = out.length();
    }
    out << names[i];
  }
  out << '}';
}

}  // namespace zel
