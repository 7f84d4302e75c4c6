// Reading the clock: NanoTime::Current beside one clock_gettime call. Times as text: ParseTime
// beside strptime and mktime, PrintNanoTime beside localtime_r and strftime, on the same text and
// format.
#include <zel/time/nano_time.h>
#include <zel/time/time_text.h>

#include <benchmark/benchmark.h>

#include <time.h>

namespace {

void ZelCurrent(benchmark::State &state) {
  for (auto _ : state) benchmark::DoNotOptimize(zel::NanoTime::Current());
}
BENCHMARK(ZelCurrent)->Name("zel:time.current");

void ClockGettime(benchmark::State &state) {
  for (auto _ : state) {
    timespec ts;
    clock_gettime(CLOCK_MONOTONIC, &ts);
    benchmark::DoNotOptimize(ts);
  }
}
BENCHMARK(ClockGettime)->Name("clock_gettime:time.current");

constexpr const char *kTimeFormat = "%Y/%m/%d %H:%M:%S";
constexpr const char *kTimeText = "2007/03/05 14:02:09";

void ZelParseTime(benchmark::State &state) {
  for (auto _ : state) {
    zel::StringIter it(kTimeText);
    benchmark::DoNotOptimize(zel::ParseTime(it, kTimeFormat));
  }
}
BENCHMARK(ZelParseTime)->Name("zel:parse time");

void StrptimeParseTime(benchmark::State &state) {
  for (auto _ : state) {
    tm fields{};
    strptime(kTimeText, kTimeFormat, &fields);
    fields.tm_isdst = -1;
    benchmark::DoNotOptimize(mktime(&fields));
  }
}
BENCHMARK(StrptimeParseTime)->Name("strptime:parse time");

constexpr int64_t kPrintedSeconds = 1173103329;  // 2007-03-05 14:02:09 UTC

void ZelPrintTime(benchmark::State &state) {
  const zel::NanoTime t = zel::NanoTime().Set(zel::UnixTime(kPrintedSeconds));
  zel::cstring out;
  for (auto _ : state) {
    out.Flush();
    out << zel::PrintNanoTime(t, kTimeFormat);
    benchmark::DoNotOptimize(out.text());
  }
}
BENCHMARK(ZelPrintTime)->Name("zel:print time");

void StrftimePrintTime(benchmark::State &state) {
  const time_t t = kPrintedSeconds;
  char out[64];
  for (auto _ : state) {
    tm fields;
    localtime_r(&t, &fields);
    benchmark::DoNotOptimize(strftime(out, sizeof out, kTimeFormat, &fields));
  }
}
BENCHMARK(StrftimePrintTime)->Name("strftime:print time");

}  // namespace
