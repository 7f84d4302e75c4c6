// Reading durations through a format.
#include <zel/time/time_text.h>

#include <gtest/gtest.h>

namespace zel {
namespace {

int32_t Seconds(const char *text, const char *format) {
  StringIter it(text);
  return ParseUnixDiff(it, format).value;
}

TEST(DurationReader, ReadsClockReadingsAndFailsToZero) {
  EXPECT_EQ(Seconds("100:00:01.250", "%T"), 360001);
  EXPECT_EQ(Seconds(" \r\n5:07", "%M:%S"), 307);
  EXPECT_EQ(Seconds("02:30 pm", "%H:%M %P"), 52200);
  EXPECT_EQ(Seconds("1%5", "%H%%%.1M"), 3900);
  StringIter it("1:00:00.25");
  EXPECT_EQ(ParseNanoDiff(it, "%T").value, 36000250000);  // ".25" is 25 ms
  StringIter huge("2147483647:00:00");
  EXPECT_EQ(ParseNanoDiff(huge, "%T").value, INT64_MAX);  // saturated as NanoDiff::Secs

  for (const char *format : {"%H", "%Q", "", "%T"}) EXPECT_EQ(Seconds("24", format), 0) << format;
  EXPECT_EQ(Seconds("1:60", "%H:%M"), 0);
  EXPECT_EQ(Seconds("2147483647:00:00", "%T"), 0);
  EXPECT_EQ(Seconds("2147483647:00:00 PM", "%T %P"), 0);
  EXPECT_EQ(Seconds("1:00", "%H %M"), 0);
  EXPECT_EQ(Seconds("9999999999:00:00", "%T"), 0);  // more than 2147483647 hours
}

}  // namespace
}  // namespace zel
