// Times and durations as text.
#include <zel/text/print.h>
#include <zel/time/nano_time.h>
#include <zel/time/unix_time.h>

#include "os/os.h"
#include "time/local_time.h"

namespace zel {

namespace {

cstring &Strftime(cstring &out, const char *format, const std::tm &fields, int room) {
  char *at = out.AddN(room).writable_text();
  const auto n = static_cast<int>(std::strftime(at, static_cast<size_t>(room), format, &fields));
  out.LimitLength(out.length() - room + n);
  return out;
}

}  // namespace

cstring &operator<<(cstring &out, NanoTime t) {
  if (t.value == 0) return out << "0 (zero nsecs)";
  // Seconds and milliseconds from the count itself, as PrintNanoTime takes them: through double
  // seconds, 14:02:09.120 would print as 09.119. Floored, so that the fraction is never negative.
  constexpr int64_t kUnitsPerSecond = 10000000;
  int64_t seconds = t.value / kUnitsPerSecond;
  int64_t fraction = t.value % kUnitsPerSecond;
  if (fraction < 0) {
    fraction += kUnitsPerSecond;
    --seconds;
  }
  seconds -= NanoTime::kUnixEpoch / kUnitsPerSecond;
  const auto ms = static_cast<int>(fraction / 10000);
  std::tm f;
  BreakDown(UnixTime(static_cast<int32_t>(seconds)), f);
  out << f.tm_year + 1900 << '/' << PrintInt(f.tm_mon + 1, 2) << '/';
  out << f.tm_mday << ' ';  // the day unpadded: intended
  out << PrintInt(f.tm_hour, 2) << ':' << PrintInt(f.tm_min, 2) << ':' << PrintInt(f.tm_sec, 2);
  return out << '.' << PrintInt(ms, 3);
}

cstring &operator<<(cstring &out, NanoDiff d) {
  constexpr int64_t kHour = 36000000000;
  if (d.value <= kHour) return out << static_cast<double>(d.value) * 1e-7;
  const int64_t seconds = d.value / 10000000;
  out << PrintInt(static_cast<int>(seconds / 3600), 2) << ':'
      << PrintInt(static_cast<int>(seconds / 60 % 60), 2) << ':';
  // Whole seconds were taken above, so the fraction is always zero (intended).
  return out << PrintInt(static_cast<int>(seconds % 60), 2) << ".000";
}

cstring &operator<<(cstring &out, UnixTime t) {
  if (t.value() == 0) return out << "Invalid Time";
  std::tm fields;
  BreakDown(t, fields);
  return Strftime(out, "%Y/%m/%d %H:%M:%S", fields, 128);
}

cstring &operator<<(cstring &out, UnixDiff d) {
  if (d.value > -60 && d.value < 60) return out << d.value << " seconds";  // "1 seconds": intended
  if (d.value < 0) out << '-';
  const int64_t magnitude = d.value < 0 ? -int64_t{d.value} : d.value;
  std::tm f;
  os::UtcTime(magnitude, f);
  const struct {
    int count;
    const char *unit;
  } parts[] = {{f.tm_year - 70, " Year"}, {f.tm_mon, " Month"}, {f.tm_mday - 1, " Day"}};
  bool any = false;
  for (const auto &part : parts) {
    if (part.count == 0) continue;
    if (any) out << ", ";
    out << part.count << part.unit;
    if (part.count != 1) out << 's';
    any = true;
  }
  if (any) out << ", ";
  return Strftime(out, f.tm_hour != 0 ? "%H:%M:%S" : "%M:%S", f, 32);
}

cstring &operator<<(cstring &out, const PrintTime &p) {
  return Strftime(out, p.format, p.fields, 512);
}

}  // namespace zel
