// Reading the clock: NanoTime::Current beside one clock_gettime call.
#include <zel/time/nano_time.h>

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

}  // namespace
