// Tidying the ends and line breaks of text.
#include <zel/text/cstring.h>

#include <string_view>

namespace zel {
namespace {

std::string_view Tidied(const cstring &s) { return {s.text(), static_cast<size_t>(s.length())}; }

TEST(Tidy, MaybeEolAndMaybeSpaceAddOnlyWhenMissing) {
  const struct {
    std::string_view text, eol, space;
  } cases[] = {{"", "", ""},
               {"x", "x\r\n", "x "},
               {"x\n", "x\n", "x\n"},
               {"x\r", "x\r", "x\r"},
               {"x\t", "x\t\r\n", "x\t"},
               {"\xE9", "\xE9\r\n", "\xE9 "}};  // a top-bit byte is neither white nor a line end
  for (const auto &c : cases) {
    cstring eol(c.text), space(c.text);
    EXPECT_EQ(Tidied(MaybeEOL(eol)), c.eol);
    EXPECT_EQ(Tidied(MaybeSpace(space)), c.space);
  }
}

TEST(Tidy, FixNewlinesWritesEveryLineEndAsCrLf) {
  const struct {
    std::string_view text, expected;
  } cases[] = {{"a\nb\rc\r\nd\n\r", "a\r\nb\r\nc\r\nd\r\n\r\n"},  // LF CR is two line ends
               {"\r\r", "\r\n\r\n"},
               {"no breaks", "no breaks"}};
  for (const auto &c : cases) {
    cstring fixed = FixNewlines(c.text);
    EXPECT_EQ(Tidied(fixed), c.expected);
    EXPECT_EQ(fixed.capacity(), fixed.length() + 1);  // shrunk to fit
  }
}

}  // namespace
}  // namespace zel
