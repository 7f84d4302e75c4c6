// Printing a NanoTime through a format: cstring << PrintNanoTime.
#include <zel/text/print.h>
#include <zel/time/time_text.h>

#include "time/local_time.h"
#include "time/names.h"

namespace zel {

namespace {

int Clamped(int v, int high) { return v < 0 ? 0 : v > high ? high : v; }

// One conversion of `letter` for the local time `f`, `fraction` 100-ns units into its second.
void PrintConversion(cstring &out, char letter, const std::tm &f, int fraction) {
  switch (letter) {
    case 'H': out << PrintInt(f.tm_hour, 2); break;
    // Hours up to 12 as they are, so midnight prints "00" (intended).
    case 'I': out << PrintInt(f.tm_hour > 12 ? f.tm_hour - 12 : f.tm_hour, 2); break;
    case 'M': out << PrintInt(f.tm_min, 2); break;
    case 'S': out << PrintInt(f.tm_sec, 2); break;
    case 'P': out << (f.tm_hour >= 12 ? "PM" : "AM"); break;
    case 'X': out << PrintInt(fraction / 10000, 3); break;
    case 'x': out << PrintInt(fraction / 1000000, 1); break;
    case 'Y': out << PrintInt(f.tm_year + 1900, 4); break;
    case 'y': out << PrintInt(f.tm_year < 100 ? f.tm_year : f.tm_year - 100, 2); break;
    case 'a': out << kWeekdayNames[Clamped(f.tm_wday, 6)]; break;
    case 'b': out << kMonthNames[Clamped(f.tm_mon, 11)]; break;
    case 'd': out << f.tm_mday; break;
    case 'm': out << f.tm_mon + 1; break;
    default: out << letter;  // "%%" and any other letter print the letter
  }
}

}  // namespace

cstring &operator<<(cstring &out, const PrintNanoTime &p) {
  // In whole units rather than double seconds: the same limits and truncations, without rounding
  // that depends on the floating-point unit (x87 keeps excess precision). Compared before
  // subtracting, so that no time overflows.
  constexpr int64_t kUnitsPerSecond = 10000000;
  if (p.time.value < NanoTime::kUnixEpoch) return out << "<invalid time>";
  const int64_t units = p.time.value - NanoTime::kUnixEpoch;
  if (units >= int64_t{INT32_MAX} * kUnitsPerSecond) return out << "<invalid time>";
  const auto whole = static_cast<int32_t>(units / kUnitsPerSecond);
  if (whole == 0) return out;
  std::tm f;
  BreakDown(UnixTime(whole), f);
  const auto fraction = static_cast<int>(units % kUnitsPerSecond);
  const strptr format = p.format;
  for (int i = 0; i < format.length();) {
    const int percent = format.FindFrom('%', i);
    const int end = percent < 0 ? format.length() : percent;
    out << format.Mid(i, end - i);
    // A "%" ending the format prints nothing.
    if (end + 1 < format.length()) PrintConversion(out, format[end + 1], f, fraction);
    i = end + 2;
  }
  return out;
}

}  // namespace zel
