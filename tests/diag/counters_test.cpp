// The counter registry.
#include <zel/diag/counters.h>

#include <string>

namespace zel {
namespace {

TEST(Counters, ReadTheirSourcesWhenAskedAndLeaveWithThem) {
  int64_t hits = 3;
  double ratio = 0.5;
  AddIntCounter(
      "test hits", [](const void *p) { return *static_cast<const int64_t *>(p); }, &hits);
  AddFloatCounter(
      "test ratio", [](const void *p) { return *static_cast<const double *>(p); }, &ratio);
  hits = 42;
  double value = 0;
  ASSERT_TRUE(ReadCounter("test hits", value));
  EXPECT_EQ(value, 42);
  ASSERT_TRUE(ReadCounter("test ratio", value));
  EXPECT_EQ(value, 0.5);

  cstring report;
  PrintCounters(report);
  EXPECT_EQ(std::string(report.text()), "test hits: 42\r\ntest ratio: 0.5\r\n");

  RemoveCounters(&hits);
  EXPECT_FALSE(ReadCounter("test hits", value));
  EXPECT_TRUE(ReadCounter("test ratio", value));
  RemoveCounters(&ratio);
}

}  // namespace
}  // namespace zel
