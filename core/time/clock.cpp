// The high-resolution clock: NanoTime::Current over the performance counter, its calibration when
// the library loads, and the thread that slews it toward the system clock.
#include <zel/time/nano_time.h>

#include <atomic>

#include "os/os.h"
#include "time/clock.h"

namespace zel {

namespace {

// How counter values map onto the clocks: value = counter × per-tick + offset.
struct Calibration {
  double seconds_per_tick;
  double units_per_tick;
  double offset_seconds;  // Unix seconds at counter 0
  double offset_units;    // NanoTime units at counter 0
};

// Double-buffered: the slewing routine writes the record readers do not see and then publishes it
// with one pointer store, so a reader always sees one consistent record. (A reader held up for a
// whole period, 1.843 s, could see its record rewritten; accepted.)
Calibration g_records[2];
std::atomic<const Calibration *> g_current{&g_records[0]};

// Statistics only: incremented without interlocking (intended), so concurrent calls may be lost.
std::atomic<uint32_t> g_calls{0};

void CountCall() {
  g_calls.store(g_calls.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
}

constexpr double kUnixEpochSeconds = 11644473600.0;

// Maps the counter onto the system clock at the edge of a system-clock tick, so that the reading
// is the start of a tick rather than somewhere inside one.
void Calibrate() {
  const double frequency = static_cast<double>(os::PerfFrequency());
  Calibration c;
  c.seconds_per_tick = 1 / frequency;
  c.units_per_tick = 1e7 / frequency;
  os::SetThreadPriority(os::kCurrentThread, os::kPriorityHighest);
  int64_t edge = os::SystemTime100ns();
  for (int64_t first = edge; edge == first;) edge = os::SystemTime100ns();
  const double counter = static_cast<double>(os::PerfCounter());
  os::SetThreadPriority(os::kCurrentThread, os::kPriorityNormal);
  c.offset_seconds =
      static_cast<double>(edge) * 1e-7 - counter * c.seconds_per_tick - kUnixEpochSeconds;
  c.offset_units = static_cast<double>(edge) - counter * c.units_per_tick;
  g_records[0] = g_records[1] = c;
}

// Pulls the clock toward the system clock by whole 15-ms steps (the system clock's granularity),
// at most 3 of them (3 ms) per call: the clock is never stepped.
void ZEL_CALLBACK Slew(void *, uint32_t, uint32_t) {
  const int64_t system = os::SystemTime100ns();
  const double counter = static_cast<double>(os::PerfCounter());
  CountCall();
  const Calibration *current = g_current.load(std::memory_order_acquire);
  const auto predicted =
      static_cast<int64_t>(counter * current->units_per_tick + current->offset_units);
  int64_t steps = (system - predicted) / 10000 / 15;
  steps = steps < -3 ? -3 : steps > 3 ? 3 : steps;
  Calibration *next = current == &g_records[0] ? &g_records[1] : &g_records[0];
  *next = *current;
  next->offset_units += static_cast<double>(steps * 10000);
  next->offset_seconds += static_cast<double>(steps) * 0.001;
  g_current.store(next, std::memory_order_release);
}

unsigned ZEL_CALLBACK SlewingThread(void *) {
  os::Handle timer = os::CreateWaitableTimer(false);
  os::SetWaitableTimer(timer, -5 * 10000000LL, 1843, Slew, nullptr);
  for (;;) os::WaitOne(timer, os::kInfinite, true);
}

// Calibrated before any other static initialiser of the library can read the clock.
struct Calibrator {
  Calibrator() { Calibrate(); }
} g_calibrator __attribute__((init_priority(101)));

struct SlewingThreadStarter {
  SlewingThreadStarter() {
    os::Handle thread = os::CreateThread(SlewingThread, nullptr, 1024, false, nullptr);
    os::SetThreadPriority(thread, os::kPriorityTimeCritical);
    os::CloseHandle(thread);
  }
} g_slewing_thread_starter;

}  // namespace

uint32_t NanoTimeCurrentCalls() { return g_calls.load(std::memory_order_relaxed); }

NanoTime NanoTime::Current() {
  CountCall();
  const Calibration *c = g_current.load(std::memory_order_acquire);
  return NanoTime(static_cast<int64_t>(static_cast<double>(os::PerfCounter()) * c->units_per_tick +
                                       c->offset_units));
}

double GetAbsTimer() {
  return static_cast<double>(os::PerfCounter()) *
         g_current.load(std::memory_order_relaxed)->seconds_per_tick;
}

double NanoTime::CurrentSecs() {
  const Calibration *c = g_current.load(std::memory_order_acquire);
  return static_cast<double>(os::PerfCounter()) * c->seconds_per_tick + c->offset_seconds;
}

}  // namespace zel
