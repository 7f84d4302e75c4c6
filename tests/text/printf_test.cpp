// The printf engines: cstring::Format / Formatted over the C runtime.
#include <zel/text/cstring.h>

#include <gtest/gtest.h>

#include <string>

namespace zel {
namespace {

TEST(Printf, FormatReplacesTheContentsWithTheRuntimesText) {
  cstring s("old text");
  s.Format("%d-%s-%5.2f|%-4x|%lld", 42, "ab", 3.14159, 255u, -1234567890123LL);
  EXPECT_STREQ(s.text(), "42-ab- 3.14|ff  |-1234567890123");
  s.Format("%s", "");
  EXPECT_TRUE(s.empty());

  // Longer than the stack buffer, and arguments that point into the target itself.
  const std::string long_text(1000, 'x');
  s.Format("<%s>", long_text.c_str());
  EXPECT_EQ(s.length(), 1002);
  s.Format("%s+%s", s.text(), s.text());
  EXPECT_EQ(s.length(), 2005);
  EXPECT_EQ(s.view().Mid(1001, 5).view(), ">+<xx");

  EXPECT_STREQ(Formatted("%03d:%c", 7, 'z').text(), "007:z");
}

}  // namespace
}  // namespace zel
