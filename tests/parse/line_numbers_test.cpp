// Line numbers of positions, with and without the table of line starts.
#include <zel/parse/line_numbers.h>

#include "support/strings.h"

#include <string>
#include <vector>

namespace zel {
namespace {

using test::Str;

TEST(LineNumbers, TableAndCountAgreeOnEveryLineEnd) {
  const struct {
    const char *text;
    std::vector<std::string> lines;
  } cases[] = {{"", {""}}, {"a\n", {"a", ""}}, {"a\rb\n\nc\r\n", {"a", "b", "", "c", ""}}};
  for (const auto &c : cases) {
    const strptr text(c.text);
    LineNumbers table;
    table.Set(text);
    // Asked backwards, the table grows in one jump rather than line by line.
    for (int pos = text.length() + 1; pos >= -1; --pos)
      EXPECT_EQ(table.GetLineNumber(pos), GetLineNumber(text, pos)) << c.text << " at " << pos;
    ASSERT_EQ(table.LineCount(), static_cast<int>(c.lines.size())) << c.text;
    for (int line = 0; line < table.LineCount(); ++line)
      EXPECT_EQ(Str(table.GetLine(line)), c.lines[line]) << c.text;
    EXPECT_EQ(table.GetLineStart(table.LineCount()), -1);
  }
  EXPECT_EQ(GetLineNumber("a\r\nb", 2), 0);  // the LF of a CR LF is on the line it ends
}

TEST(LineNumbers, IsBuiltOnlyAsFarAsAskedAndKeptWhenTheTextGrows) {
  LineNumbers table;
  table.Set("a\nb\nc\nd");
  EXPECT_EQ(table.GetLineNumber(0), 0);
  EXPECT_EQ(table.LineCount(), 1);
  EXPECT_EQ(table.GetLineStart(1), 2);
  EXPECT_EQ(table.LineCount(), 2);

  // A CR at the end may turn out to be the first half of a CR LF.
  const std::string grown = "a\r\nb";
  table.Set(strptr(grown.data(), 2));
  EXPECT_EQ(table.GetLineNumber(2), 1);
  table.Extend(grown.c_str());
  EXPECT_EQ(table.GetLineNumber(2), 0);
  EXPECT_EQ(table.GetLineStart(1), 3);
  EXPECT_EQ(Str(table.GetLine(1)), "b");
}

}  // namespace
}  // namespace zel
