// NanoTime and NanoDiff: high-resolution absolute times and durations in 100-ns units.
#pragma once

#include <zel/text/cstring.h>

#include <cstdint>

namespace zel {

class UnixTime;

// A duration in 100-ns units (10,000,000 per second, 10,000 per millisecond).
struct NanoDiff {
  int64_t value = 0;

  constexpr NanoDiff() = default;
  constexpr explicit NanoDiff(int64_t units) : value(units) {}

  // `seconds` × 1e7, truncated; a product beyond ±2^63 saturates at 2^63 − 1 for positive input
  // and at −(2^63 − 1) otherwise.
  ZEL_API static NanoDiff Secs(double seconds);
  // `ms` × 1e4, truncated and saturated as Secs.
  ZEL_API static NanoDiff Msecs(double ms);

  constexpr auto operator<=>(const NanoDiff &) const = default;
};

// An absolute time: 100-ns units since 1601-01-01 00:00 UTC (the Windows FILETIME scale); 0 means
// no time. The current time comes from the performance counter, mapped onto the system clock by a
// calibration taken when the library loads and gently slewed toward the system clock afterwards
// (at most 3 ms every 1.843 s, and only once it is 15 ms off), so it never jumps.
struct NanoTime {
  // The Unix epoch, 1970-01-01 00:00 UTC.
  static constexpr int64_t kUnixEpoch = 116444736000000000;
  static constexpr int64_t kMax = INT64_MAX;

  int64_t value = 0;

  constexpr NanoTime() = default;
  constexpr explicit NanoTime(int64_t units) : value(units) {}

  // The current time: one counter read and one multiply-add; lock-free, any thread. Counted in
  // "NanoTime::Current calls" (see EnableMemCounters).
  ZEL_API static NanoTime Current();
  // The current time as Unix seconds; not counted.
  ZEL_API static double CurrentSecs();
  // Today's local midnight, from the system clock.
  ZEL_API static NanoTime CurrentDate();

  // Local midnight of the day holding this time.
  [[nodiscard]] ZEL_API NanoTime GetDate() const;
  // Whole seconds since the Unix epoch; 0 for a time at or before it.
  [[nodiscard]] ZEL_API UnixTime ToUnixTime() const;
  ZEL_API NanoTime &Set(UnixTime t);
  // From Unix seconds: whole seconds (truncated) and the fraction's 100-ns units (truncated).
  ZEL_API NanoTime &Set(double unix_seconds);

  // A sum that overflows from a positive duration saturates at kMax; a negative sum from a
  // negative duration is returned as it is.
  [[nodiscard]] constexpr NanoTime operator+(NanoDiff d) const {
    const int64_t sum = Wrap(value, d.value);
    return NanoTime(sum < 0 && d.value > 0 ? kMax : sum);
  }
  // Plain subtraction, without saturation (intended: unlike operator+).
  [[nodiscard]] constexpr NanoTime operator-(NanoDiff d) const {
    return NanoTime(Subtract(value, d.value));
  }
  // A negative sum becomes kMax for a positive duration and 0 otherwise.
  constexpr NanoTime &operator+=(NanoDiff d) {
    const int64_t sum = Wrap(value, d.value);
    value = sum >= 0 ? sum : d.value > 0 ? kMax : 0;
    return *this;
  }
  // A negative difference becomes 0 for a positive duration and kMax otherwise.
  constexpr NanoTime &operator-=(NanoDiff d) {
    const int64_t difference = Subtract(value, d.value);
    value = difference >= 0 ? difference : d.value > 0 ? 0 : kMax;
    return *this;
  }
  // Plain, unchecked forms; they return the new time and leave this one as it is.
  [[nodiscard]] constexpr NanoTime qAdd(NanoDiff d) const { return NanoTime(Wrap(value, d.value)); }
  [[nodiscard]] constexpr NanoTime qSub(NanoDiff d) const {
    return NanoTime(Subtract(value, d.value));
  }
  constexpr NanoDiff operator-(NanoTime t) const { return NanoDiff(Subtract(value, t.value)); }

  constexpr auto operator<=>(const NanoTime &) const = default;

 private:
  // Two's-complement arithmetic that wraps instead of overflowing.
  static constexpr int64_t Wrap(int64_t a, int64_t b) {
    return static_cast<int64_t>(static_cast<uint64_t>(a) + static_cast<uint64_t>(b));
  }
  static constexpr int64_t Subtract(int64_t a, int64_t b) {
    return static_cast<int64_t>(static_cast<uint64_t>(a) - static_cast<uint64_t>(b));
  }
};

// The Scheduler's time base: monotonic seconds, the performance counter over its frequency.
ZEL_API double GetAbsTimer();

// 0 prints "0 (zero nsecs)"; any other time its local time as "2007/03/5 14:02:09.120": the day
// of the month is not padded (intended).
ZEL_API cstring &operator<<(cstring &out, NanoTime t);
// Up to one hour (and every negative duration): seconds through `<< double`. Longer:
// "01:30:00.000", hours, minutes and seconds; the fraction is always "000" (intended: whole seconds
// are taken first).
ZEL_API cstring &operator<<(cstring &out, NanoDiff d);

}  // namespace zel
