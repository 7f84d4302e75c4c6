// Reading the clock: NanoTime::Current beside what a caller would otherwise write,
// std::chrono::system_clock::now() converted to 100-ns units since 1601, and beside one raw
// clock_gettime call, the floor under any clock. Times as text: ParseTime beside strptime and
// mktime, PrintNanoTime beside localtime_r and strftime, on the same text and format.
#include <zel/time/nano_time.h>
#include <zel/time/time_text.h>

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdint>
#include <ratio>

#include <time.h>

namespace {

void ZelCurrent(benchmark::State &state) {
  for (auto _ : state) benchmark::DoNotOptimize(zel::NanoTime::Current());
}
BENCHMARK(ZelCurrent)->Name("zel:time.current");

void SystemClock(benchmark::State &state) {
  using Units = std::chrono::duration<int64_t, std::ratio<1, 10'000'000>>;
  for (auto _ : state) {
    const auto since_1970 = std::chrono::system_clock::now().time_since_epoch();
    benchmark::DoNotOptimize(std::chrono::duration_cast<Units>(since_1970).count() +
                             zel::NanoTime::kUnixEpoch);
  }
}
BENCHMARK(SystemClock)->Name("system_clock:time.current");

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
