// Reading durations through a format: ParseNanoDiff and ParseUnixDiff.
#include <zel/time/time_text.h>

#include <cstdint>

#include "time/time_format.h"

namespace zel {

namespace {

// What the conversions of a duration have read so far.
struct DiffFields {
  int hours = 0, minutes = 0, seconds = 0, ms = 0;
};

// "hours:minutes:seconds", any number of hours (up to `width` digits), then optionally
// ".milliseconds".
bool ReadClock(QuietInput &in, int width, DiffFields &d) {
  if (!ReadNumber(in, width, d.hours) || !SkipLiteral(in, ':') ||
      !ReadBelow(in, 2, 60, d.minutes) || !SkipLiteral(in, ':') || !ReadBelow(in, 2, 60, d.seconds))
    return false;
  return !SkipLiteral(in, '.') || ReadBelow(in, 6, 1000000, d.ms);
}

bool ReadConversion(QuietInput &in, char letter, int width, DiffFields &d) {
  switch (letter) {
    case '%': return SkipLiteral(in, '%');
    case 'H': return ReadBelow(in, Capped(width, 2), 24, d.hours);
    case 'M': return ReadBelow(in, Capped(width, 2), 60, d.minutes);
    case 'S': return ReadBelow(in, Capped(width, 2), 60, d.seconds);
    case 'X': return ReadBelow(in, Capped(width, 6), 1000000, d.ms);
    case 'T': return ReadClock(in, width, d);
    case 'P': {
      bool pm = false;
      if (!in.ReadAmPm(pm)) return false;
      // Clamped: so many hours are past every result anyway (NanoDiff saturates, UnixDiff is 0).
      if (pm) d.hours = d.hours > INT32_MAX - 12 ? INT32_MAX : d.hours + 12;
      return true;
    }
    default: return false;
  }
}

// The duration in seconds; 0 for an empty format or at the first mismatch.
double ReadDiff(StringIter &it, const strptr &format) {
  if (format.empty()) return 0;
  QuietInput in(it);
  in.SkipWhite();
  DiffFields d;
  auto convert = [&](char letter, int width) { return ReadConversion(in, letter, width, d); };
  if (!WalkFormat(in, format, convert)) return 0;
  return (static_cast<double>(d.hours) * 60 + d.minutes) * 60 + d.seconds + d.ms * 0.001;
}

}  // namespace

NanoDiff ParseNanoDiff(StringIter &it, const strptr &format) {
  return NanoDiff::Secs(ReadDiff(it, format));
}

UnixDiff ParseUnixDiff(StringIter &it, const strptr &format) {
  const double seconds = ReadDiff(it, format);
  // Beyond the 32-bit range there are no whole seconds to give.
  if (seconds <= -2147483649.0 || seconds >= 2147483648.0) return UnixDiff();
  return UnixDiff(static_cast<int32_t>(seconds));
}

}  // namespace zel
