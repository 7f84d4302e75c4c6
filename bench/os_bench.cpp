// The operating-system layer's hot paths beside the standard library's.
#include <zel/thread/critsect.h>

#include "os/os.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <mutex>

namespace {

void ZelClock(benchmark::State &state) {
  for (auto _ : state) benchmark::DoNotOptimize(zel::os::PerfCounter());
}
BENCHMARK(ZelClock)->Name("zel:clock.read");

void SteadyClock(benchmark::State &state) {
  for (auto _ : state) benchmark::DoNotOptimize(std::chrono::steady_clock::now());
}
BENCHMARK(SteadyClock)->Name("steady_clock:clock.read");

void ZelLock(benchmark::State &state) {
  zel::CritSect lock;
  for (auto _ : state) {
    lock.Enter();
    lock.Leave();
  }
}
BENCHMARK(ZelLock)->Name("zel:lock.enter_leave");

void StdRecursiveMutex(benchmark::State &state) {
  std::recursive_mutex lock;
  for (auto _ : state) {
    lock.lock();
    lock.unlock();
  }
}
BENCHMARK(StdRecursiveMutex)->Name("std_recursive_mutex:lock.enter_leave");

}  // namespace
