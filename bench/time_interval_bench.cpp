// The next instant of a time interval, as a scheduler asks for it, beside the least a caller would
// do by hand to step a local time: one localtime_r and one mktime. Both run in US Eastern time.
#include <zel/time/time_interval.h>

#include <benchmark/benchmark.h>

#include <cstdint>

#include <time.h>

#include "os/os.h"

namespace {

// Daily, quarter-hourly, yearly, and a weekday with a day of the month (Friday the 13th).
constexpr const char *kIntervals[] = {"*/*/* 06:59:00", "*/* *:0,15,30,45:00", "Dec/31 23:59:00",
                                      "*/*/Fri,13 00:00:00"};
constexpr int kCount = sizeof kIntervals / sizeof kIntervals[0];
constexpr int32_t kStart = 1173103329;  // 2007-03-05 14:02:09 UTC

// Each interval steps from its last instant, starting over at the end of its instants.
void ZelNextTime(benchmark::State &state) {
  zel::os::SetTimeZone("EST5EDT");
  TimeInterval intervals[kCount];
  zel::UnixTime at[kCount];
  for (int i = 0; i < kCount; ++i) {
    intervals[i] = TimeInterval(kIntervals[i]);
    at[i] = zel::UnixTime(kStart);
  }
  int i = 0;
  for (auto _ : state) {
    const zel::UnixTime next = intervals[i].GetNextTime(at[i]);
    at[i] = next.value() == 0 ? zel::UnixTime(kStart) : next;
    i = (i + 1) % kCount;
  }
}
BENCHMARK(ZelNextTime)->Name("zel:next time");

// The next day at the same local time.
void LibcNextTime(benchmark::State &state) {
  zel::os::SetTimeZone("EST5EDT");
  time_t at = kStart;
  for (auto _ : state) {
    tm fields;
    localtime_r(&at, &fields);
    ++fields.tm_mday;
    fields.tm_isdst = -1;
    // Each result feeds the next call, so none is optimised away.
    at = mktime(&fields);
    if (at > INT32_MAX) at = kStart;
  }
}
BENCHMARK(LibcNextTime)->Name("libc:next time");

}  // namespace
