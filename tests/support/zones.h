// Tests of local time run under UTC and under a zone with daylight saving time, set by the test
// itself so that nothing depends on the machine's zone.
#pragma once

#include <zel/time/calendar.h>

#include <gtest/gtest.h>

#include "os/os.h"

namespace zel::test {

// A test suite run once per zone: derive from it and instantiate it over kZones.
class ZonedTest : public testing::TestWithParam<const char *> {
 protected:
  void SetUp() override { os::SetTimeZone(GetParam()); }
};

// UTC, and US Eastern with its summer time (July) and without (January), which every platform's
// runtime knows, wine included.
inline const auto kZones = testing::Values("UTC0", "EST5EDT");

// The local time of that date and time of day.
inline UnixTime LocalAt(int year, int month, int day, int hour = 0, int min = 0, int sec = 0) {
  return ReplaceHourMin(ComposeDateOneBased(year, month, day), hour, min, sec);
}

}  // namespace zel::test
