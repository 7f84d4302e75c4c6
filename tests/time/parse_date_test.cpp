// Reading loose dates.
#include <zel/time.h>

#include <gtest/gtest.h>

#include "support/zones.h"

namespace zel {
namespace {

class DateReader : public test::ZonedTest {
 protected:
  static DateStruct Read(const char *text, bool relative = false, int *end = nullptr) {
    StringIter it(text);
    const DateStruct date = ParseDate(it, relative);
    if (end != nullptr) *end = it.position();
    return date;
  }
};
INSTANTIATE_TEST_SUITE_P(Zones, DateReader, test::kZones);

TEST_P(DateReader, AssignsNumbersByTheirSize) {
  const struct {
    const char *text;
    DateStruct date;
  } cases[] = {
      {"2003/Jan/03", {2003, 1, 3}},
      {"Jan 5, 07", {2007, 1, 5}},
      {"5 Jan 99", {1999, 1, 5}},
      {"Jan, 7", {2007, 1, 0}},
      {"Jan 7", {0, 1, 7}},
      {"45", {2045, 0, 0}},
      {"69/feb/1", {1969, 2, 1}},
      {"5 Ju 2007 12", {2012, 6, 5}},
      {"\t31,1999", {1999, 0, 31}},
      {"2007-03-05", {2007, 0, 0}},
      {"", {0, 0, 0}},
  };
  for (const auto &c : cases) EXPECT_EQ(Read(c.text), c.date) << c.text;

  int end = 0;
  EXPECT_EQ(Read("Jan 5 extra", false, &end), DateStruct(0, 1, 5));
  EXPECT_EQ(end, 6);  // before the word that is not a month
  EXPECT_EQ(Read(" today", false, &end), DateStruct());
  EXPECT_EQ(end, 6);
}

TEST_P(DateReader, RelativeWords) {
  for (int attempt = 0; attempt < 2; ++attempt) {  // once more if midnight passed meanwhile
    const DateStruct today = DateStruct::Current();
    const DateStruct yesterday(UnixTime::Current() - UnixDiff(86400));
    const DateStruct read_today = Read("ToDay", true), read_yesterday = Read("YESTERDAY", true);
    if (DateStruct::Current() != today) continue;
    EXPECT_EQ(read_today, today);
    EXPECT_EQ(read_yesterday, yesterday);
    break;
  }
}

}  // namespace
}  // namespace zel
