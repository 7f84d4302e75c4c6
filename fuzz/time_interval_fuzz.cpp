// Arbitrary text read as a time interval. The constructor never throws. An interval read without
// an error is written in both forms, and each reads back to an equal interval. From a few fixed
// times, among them the changes of the clock, the next instant is later, or 0.
#include <zel/time.h>

#include <cstdint>
#include <cstdlib>

#include "os/os.h"

namespace {

void Check(bool ok) {
  if (!ok) std::abort();
}

// Reads `text` whole, in whichever form it is; errors escape.
TimeInterval Read(const zel::strptr &text, bool classic) {
  zel::ParserBase p(text);
  TimeInterval t;
  if (classic)
    Check(t.ParseClassic(p));
  else
    t.ParseX(p);
  return t;
}

// 2007-03-05 14:02:09 UTC, 03:30 on the day the clocks go forward and 01:30 of the repeated
// hour in US Eastern time, and the last day of 2037.
constexpr int32_t kFrom[] = {0, 1173103329, 1173598200, 1194157800, 2145830400};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  static const bool zone_set = (zel::os::SetTimeZone("EST5EDT"), true);
  (void)zone_set;
  const zel::strptr text(reinterpret_cast<const char *>(data), static_cast<int>(size));
  const TimeInterval interval(text);
  for (const int32_t from : kFrom) {
    const zel::UnixTime next = interval.GetNextTime(zel::UnixTime(from));
    Check(next.value() == 0 || next.value() > from);
  }

  zel::ParserBase p(text);
  TimeInterval complete;
  try {
    complete.ParseX(p);
  } catch (const zel::ExceptionBase &) {
    return 0;  // a partial interval may have empty lists, which have no text
  }
  Check(complete == interval);
  zel::cstring written, classic;
  written << interval;
  interval.PrintClassic(classic);
  Check(Read(written.view(), false) == interval);
  Check(Read(classic.view(), true) == interval);
  return 0;
}
