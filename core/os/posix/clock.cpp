// Clocks: CLOCK_MONOTONIC in nanoseconds stands for the performance counter.
#include "os/os.h"

#include <time.h>

namespace zel::os {

namespace {
// 100-ns units between 1601-01-01 and 1970-01-01.
constexpr int64_t kUnixEpochIn100ns = 116444736000000000;
}  // namespace

int64_t PerfCounter() {
  timespec ts;
  clock_gettime(CLOCK_MONOTONIC, &ts);
  return int64_t{ts.tv_sec} * 1000000000 + ts.tv_nsec;
}

int64_t PerfFrequency() { return 1000000000; }

int64_t SystemTime100ns() {
  timespec ts;
  clock_gettime(CLOCK_REALTIME, &ts);
  return int64_t{ts.tv_sec} * 10000000 + ts.tv_nsec / 100 + kUnixEpochIn100ns;
}

}  // namespace zel::os
