// The English names of weekdays and months, in one table shared by the calendar and the time text.
#pragma once

namespace zel {

// The weekday abbreviations stand directly before the full month names: GetWeekday reads on into
// them (intended).
inline constexpr const char *kDayAndMonthNames[19] = {
    "Sun",     "Mon",       "Tue",     "Wed",      "Thu",     "Fri",  "Sat",
    "January", "February",  "March",   "April",    "May",     "June", "July",
    "August",  "September", "October", "November", "December"};
inline constexpr const char *const *kWeekdayNames = kDayAndMonthNames;
inline constexpr const char *const *kMonthNames = kDayAndMonthNames + 7;

}  // namespace zel
