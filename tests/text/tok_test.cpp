// tok: splitting in place, tabs and comma-separated values.
#include <zel/text/tok.h>

#include "support/strings.h"

#include <string>
#include <tuple>
#include <vector>

namespace zel {
namespace {

using test::Str;

template <typename T>
std::vector<std::string> Strs(const TAry<T> &items) {
  std::vector<std::string> out;
  for (const T &item : items) out.push_back(Str(item));
  return out;
}

TEST(Tok, TokensShortenTheText) {
  strptr text = "k=:v=:w";
  EXPECT_EQ(Str(tok::GetToken(text, "=:")), "k");
  EXPECT_EQ(Str(text), "v=:w");
  strptr rest = "w";
  EXPECT_EQ(Str(tok::GetToken(rest, "=:")), "w");
  EXPECT_TRUE(rest.empty());

  const CharSet comma = CharSet::Literal(",");
  strptr many = "a,,b", one = "a,,b";
  EXPECT_EQ(Str(tok::GetToken(many, comma, false)), "a");
  EXPECT_EQ(Str(many), "b");
  EXPECT_EQ(Str(tok::GetToken(one, comma, true)), "a");
  EXPECT_EQ(Str(one), ",b");

  TAry<strptr> views;
  TAry<cstring> copies;
  EXPECT_EQ(tok::GetTokens(",a,,b,", comma, views), 2);
  EXPECT_EQ(tok::GetTokens(",,", comma, copies), 0);
  EXPECT_EQ(tok::GetTokens("x y", WhiteCharQ, copies), 2);
  EXPECT_EQ(Strs(views), (std::vector<std::string>{"a", "b"}));
  EXPECT_EQ(Strs(copies), (std::vector<std::string>{"x", "y"}));
}

TEST(Tok, SplitsAndRemovesAroundTheFirstSeparator) {
  strptr left, right, text = "a::b::c";
  EXPECT_TRUE(tok::SplitString(text, "::", left, right));
  EXPECT_EQ(Str(left) + "|" + Str(right), "a|b::c");
  EXPECT_FALSE(tok::SplitString(text, ";", left, right));
  EXPECT_EQ(Str(left) + "|" + Str(right), "a::b::c|");
  EXPECT_TRUE(tok::SplitString(text, "::", text, right));  // the output may be the input
  EXPECT_EQ(Str(text), "a");

  strptr path = "dir/sub/file";
  EXPECT_EQ(Str(tok::RemovePrefix(path, "/")), "dir");
  EXPECT_EQ(Str(path), "sub/file");
  EXPECT_EQ(Str(tok::RemoveSuffix(path, "/")), "file");
  EXPECT_EQ(Str(path), "sub");
  EXPECT_EQ(tok::RemovePrefix(path, "/").text(), nullptr);  // missing: null, unchanged
  EXPECT_EQ(tok::RemoveSuffix(path, "/").text(), nullptr);
  EXPECT_EQ(Str(path), "sub");
}

TEST(Tok, TabsToSpacesCountsColumnsAcrossCalls) {
  const std::tuple<const char *, int, int, const char *, int> cases[] = {
      {"a\tbc\td", 4, 0, "a   bc  d", 9},
      {"\t", 4, 2, "  ", 4},  // continues a line at column 2
      {"ab\n\tx\r\t", 3, 0, "ab\n   x\r   ", 3},
      {"a\tb", 0, 0, "a b", 3},  // a width below 1 counts as 1
      {"no tabs", 8, 5, "no tabs", 12}};
  for (const auto &[text, width, column_in, expected, column_out] : cases) {
    cstring s(text);
    int column = column_in;
    tok::TabsToSpaces(s, width, &column);
    EXPECT_EQ(Str(s), expected) << text;
    EXPECT_EQ(column, column_out) << text;
  }
}

TEST(Tok, CsvFieldsKeepQuotedSeparators) {
  using Fields = std::vector<std::string>;
  const std::tuple<const char *, Fields, Fields> cases[] = {
      {"", {}, {}},
      {"a,,b,", {"a", "", "b", ""}, {"a", "", "b", ""}},
      {" a , b", {" a ", " b"}, {" a ", " b"}},
      {"\"x,y\",\"say \"\"hi\"\"\"", {"x,y", "say \"\"hi\"\""}, {"x,y", "say \"hi\""}},
      {"\"\",q\"\"r", {"", "q\"\"r"}, {"", "q\"\"r"}},  // unquoted fields are kept as written
      {"\"ab\"cd,e", {"ab", "e"}, {"ab", "e"}},         // after the closing quote: ignored
      {"1,\"open, to the end", {"1", "open, to the end"}, {"1", "open, to the end"}},
  };
  for (const auto &[line, expected_views, expected_values] : cases) {
    TAry<strptr> views;
    TAry<cstring> values;
    EXPECT_EQ(tok::GetCSVTokens(line, views), static_cast<int>(expected_views.size())) << line;
    tok::GetCSVTokens(line, values);
    EXPECT_EQ(Strs(views), expected_views) << line;
    EXPECT_EQ(Strs(values), expected_values) << line;
  }
}

}  // namespace
}  // namespace zel
