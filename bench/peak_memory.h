// The process's peak resident memory, restartable, for benchmarks that report what a workload
// costs in memory as well as in time. Linux only (/proc); elsewhere the peak reads as 0.
#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <fstream>
#include <string>

namespace zel::bench {

// Restarts the peak at the present resident size (the kernel's "clear_refs" 5).
inline void RestartPeakMemory() { std::ofstream("/proc/self/clear_refs") << "5"; }

// The peak resident size since the last restart, in bytes; 0 when unknown.
inline int64_t PeakMemory() {
  std::ifstream status("/proc/self/status");
  std::string word;
  while (status >> word)
    if (word == "VmHWM:") {
      int64_t kib = 0;
      status >> kib;
      return kib * 1024;
    }
  return 0;
}

// Reports the peak since the last restart as the counter "peak_rss" (bytes).
inline void ReportPeakMemory(benchmark::State &state) {
  state.counters["peak_rss"] = benchmark::Counter(static_cast<double>(PeakMemory()),
                                                  benchmark::Counter::kDefaults,
                                                  benchmark::Counter::kIs1024);
}

}  // namespace zel::bench
