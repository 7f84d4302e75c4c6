// NanoTime, NanoDiff, UnixDiff: the clock, saturating arithmetic, text and byte-stream forms.
#include <zel/diag/counters.h>
#include <zel/mem/allocator.h>
#include <zel/stream/serialize.h>
#include <zel/time.h>

#include <gtest/gtest.h>

#include "os/os.h"
#include "support/memory_io.h"
#include "support/strings.h"

namespace zel {
namespace {

using test::Printed;
using test::Str;

TEST(NanoTime, SaturatingArithmeticAndConversions) {
  EXPECT_EQ(NanoDiff::Secs(1e12).value, INT64_MAX);
  EXPECT_EQ(NanoDiff::Secs(-1e12).value, -INT64_MAX);
  EXPECT_EQ(NanoDiff::Secs(1.5).value, 15000000);
  EXPECT_EQ(NanoDiff::Msecs(-2.5).value, -25000);

  const NanoTime t(1000);
  const NanoDiff huge(INT64_MAX - 10);
  EXPECT_EQ((t + huge).value, INT64_MAX);
  EXPECT_EQ((t + NanoDiff(-5000)).value, -4000);  // a negative duration is not saturated
  EXPECT_EQ((NanoTime(t) += huge).value, INT64_MAX);
  EXPECT_EQ((NanoTime(t) -= NanoDiff(5000)).value, 0);
  EXPECT_EQ((NanoTime(t) -= NanoDiff(INT64_MIN + 10)).value, INT64_MAX);
  EXPECT_EQ((t - NanoDiff(5000)).value, -4000);  // operator- never saturates (intended)

  EXPECT_EQ(NanoTime(NanoTime::kUnixEpoch).ToUnixTime().value(), 0);
  EXPECT_EQ(NanoTime(NanoTime::kUnixEpoch + 25000000).ToUnixTime().value(), 2);
  EXPECT_EQ(NanoTime().Set(UnixTime(3)).value, NanoTime::kUnixEpoch + 30000000);
  EXPECT_EQ(NanoTime().Set(2.25).value, NanoTime::kUnixEpoch + 22500000);
}

TEST(NanoTime, CurrentFollowsTheSystemClockAndIsCounted) {
  EnableMemCounters();
  double before = 0, after = 0;
  ASSERT_TRUE(ReadCounter("NanoTime::Current calls", before));
  const NanoTime now = NanoTime::Current();
  const NanoTime later = NanoTime::Current();
  ASSERT_TRUE(ReadCounter("NanoTime::Current calls", after));
  EXPECT_GE(after - before, 2);
  EXPECT_LE(now, later);
  const double abs = GetAbsTimer();
  EXPECT_LE(abs, GetAbsTimer());
  EXPECT_NEAR(
      abs, static_cast<double>(os::PerfCounter()) / static_cast<double>(os::PerfFrequency()), 0.5);
  EXPECT_NEAR(static_cast<double>(now.value), static_cast<double>(os::SystemTime100ns()), 1e7);
  EXPECT_NEAR(NanoTime::CurrentSecs(),
              static_cast<double>(later.value - NanoTime::kUnixEpoch) * 1e-7, 1.0);
}

TEST(NanoTime, DurationsAsText) {
  EXPECT_EQ(Printed(NanoTime()), "0 (zero nsecs)");
  EXPECT_EQ(Printed(NanoDiff(36000000000)), "3600");
  EXPECT_EQ(Printed(NanoDiff(36000000001)), "01:00:00.000");
  EXPECT_EQ(Printed(NanoDiff::Secs(5400.75)), "01:30:00.000");
  EXPECT_EQ(Printed(NanoDiff(-15000000)), "-1.5");
  EXPECT_EQ(Printed(UnixDiff(1)), "1 seconds");  // intended
  EXPECT_EQ(Printed(UnixDiff(-5)), "-5 seconds");
  EXPECT_EQ(Printed(UnixDiff(59)), "59 seconds");
  EXPECT_EQ(Printed(UnixDiff(60)), "01:00");
  EXPECT_EQ(Printed(UnixDiff(-90)), "-01:30");
  EXPECT_EQ(Printed(UnixDiff(3600)), "01:00:00");
  EXPECT_EQ(Printed(UnixDiff(86400)), "1 Day, 00:00");
  EXPECT_EQ(Printed(UnixDiff(90061)), "1 Day, 01:01:01");
  EXPECT_EQ(Printed(UnixDiff(400 * 86400)), "1 Year, 1 Month, 4 Days, 00:00");
  EXPECT_EQ(Printed(UnixTime()), "Invalid Time");
}

TEST(NanoTime, ByteStreamFormRejectsNegativeTimes) {
  test::MemoryIO sink;
  sink << NanoTime(0x0102030405060708) << UnixTime(77);
  ASSERT_EQ(sink.data.size(), 12u);
  EXPECT_EQ(sink.data[0], 8);  // little-endian
  MemoryByteSource source(sink.data.data(), 12);
  NanoTime t;
  UnixTime u;
  source >> t >> u;
  EXPECT_EQ(t.value, 0x0102030405060708);
  EXPECT_EQ(u.value(), 77);

  const unsigned char negative[8] = {0, 0, 0, 0, 0, 0, 0, 0x80};
  MemoryByteSource bad(negative, 8);
  EXPECT_EQ(test::FailureOf([&] { bad >> t; }), "NanoTime:input negative seconds");
  MemoryByteSource bad_unix(negative + 4, 4);
  EXPECT_EQ(test::FailureOf([&] { bad_unix >> u; }), "UnixTime:input negative seconds");
}

}  // namespace
}  // namespace zel
