// The two-digit years of time intervals, shared by their reader and their printer.
#pragma once

#include <zel/time/time_interval.h>

namespace zel {

// A year range as written, made full: [lo, hi) with lo >= 0 and hi < 70 is shifted into the 2000s,
// else one with lo >= 70 and hi < 100 into the 1900s. The exclusive bound is tested, so "05-68"
// becomes 2005-2068 while "05-69" stays as written. A reversed range's huge lower bound stops at
// the largest int.
constexpr TimeInterval::ValueRange FullYears(TimeInterval::ValueRange r) {
  const int32_t by = r.lo >= 0 && r.hi < 70 ? 2000 : r.lo >= 70 && r.hi < 100 ? 1900 : 0;
  return {r.lo > INT32_MAX - by ? INT32_MAX : r.lo + by, r.hi + by};
}

}  // namespace zel
