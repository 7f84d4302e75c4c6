// The English names of weekdays and months, in one table shared by the calendar and the time text,
// and the lists of names that messages show.
#pragma once

#include <zel/text/cstring.h>

namespace zel {

// The weekday abbreviations stand directly before the full month names: GetWeekday reads on into
// them (intended).
inline constexpr const char *kDayAndMonthNames[19] = {
    "Sun",     "Mon",       "Tue",     "Wed",      "Thu",     "Fri",  "Sat",
    "January", "February",  "March",   "April",    "May",     "June", "July",
    "August",  "September", "October", "November", "December"};
inline constexpr const char *const *kWeekdayNames = kDayAndMonthNames;
inline constexpr const char *const *kMonthNames = kDayAndMonthNames + 7;

// Appends "{Sun, Mon, ...}", with "\r\n" before a name once the list has grown past 60 characters
// since its start or the last break.
void AppendNameList(cstring &out, const char *const *names, int count);

}  // namespace zel
