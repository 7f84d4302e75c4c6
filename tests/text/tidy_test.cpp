// Tidying the ends and line breaks of text.
#include <zel/text/cstring.h>

#include "support/strings.h"

#include <string_view>
#include <tuple>
#include <utility>

namespace zel {
namespace {

TEST(Tidy, MaybeEolAndMaybeSpaceAddOnlyWhenMissing) {
  const std::tuple<std::string_view, std::string_view, std::string_view> cases[] = {
      {"", "", ""},
      {"x", "x\r\n", "x "},
      {"x\n", "x\n", "x\n"},
      {"x\r", "x\r", "x\r"},
      {"x\t", "x\t\r\n", "x\t"},
      {"\xE9", "\xE9\r\n", "\xE9 "}};  // a top-bit byte is neither white nor a line end
  for (const auto &[text, with_eol, with_space] : cases) {
    cstring eol(text), space(text);
    EXPECT_EQ(test::Str(MaybeEOL(eol)), with_eol);
    EXPECT_EQ(test::Str(MaybeSpace(space)), with_space);
  }
}

TEST(Tidy, FixNewlinesWritesEveryLineEndAsCrLf) {
  const std::pair<std::string_view, std::string_view> cases[] = {
      {"a\nb\rc\r\nd\n\r", "a\r\nb\r\nc\r\nd\r\n\r\n"},  // LF CR is two line ends
      {"\r\r", "\r\n\r\n"},
      {"no breaks", "no breaks"}};
  for (const auto &[text, expected] : cases) {
    cstring fixed = FixNewlines(text);
    EXPECT_EQ(test::Str(fixed), expected);
    EXPECT_EQ(fixed.capacity(), fixed.length() + 1);  // shrunk to fit
  }
}

}  // namespace
}  // namespace zel
