// Views: searching, trimming, the orderings and the prefix tests.
#include <zel/text/strptr.h>

#include <string_view>
#include <tuple>

namespace zel {
namespace {

TEST(StrPtr, FindsTextAndCharacters) {
  const std::tuple<const char *, const char *, int, bool, int> cases[] = {
      {"abcabc", "bc", 2, true, 4},    {"abcabc", "bc", 4, true, 4},  {"abcabc", "bc", 5, true, -1},
      {"abcabc", "bc", -3, true, 1},   {"abcabc", "", 0, true, -1},   {"ab", "abc", 0, true, -1},
      {"ABCabc", "bC", 2, false, 4},   {"ABCabc", "bC", 0, true, -1}, {"aaab", "aab", 0, true, 1},
      {"x\xE9y", "\xC9", 0, false, -1}};
  for (const auto &[text, what, from, case_sensitive, expected] : cases)
    EXPECT_EQ(strptr(text).FindFrom(what, from, case_sensitive), expected)
        << text << " / " << what << " from " << from;

  const strptr s("abcabc");
  EXPECT_EQ(s.FindFrom('c', 3), 5);
  EXPECT_EQ(s.FindFrom('C', 0), -1);
  EXPECT_EQ(s.FindFrom('C', 0, false), 2);
  EXPECT_EQ(s.ReverseFindFrom('a', 3), 0);  // strictly before the position
  EXPECT_EQ(s.ReverseFindFrom('A', 100, false), 3);
  EXPECT_EQ(s.ReverseFindFrom('a', 0), -1);
}

TEST(StrPtr, TrimsOnlyBlankTabLineFeedAndReturn) {
  const strptr s(" \t\r\n a b \v\xA0 \n");
  EXPECT_EQ(s.Trimmed().view(), "a b \v\xA0");
  EXPECT_EQ(s.TrimmedLeft().view(), "a b \v\xA0 \n");
  EXPECT_EQ(s.TrimmedRight().view(), " \t\r\n a b \v\xA0");
  EXPECT_TRUE(strptr("  \t ").Trimmed().empty());
}

TEST(StrPtr, ComparesSignedCharactersFoldingOnlyAsciiLetters) {
  const std::tuple<std::string_view, std::string_view, int, int> cases[] = {
      {"abc", "abc", 0, 0},
      {"B", "a", 'B' - 'a', 1},
      {"abc", "ABD", 'a' - 'A', 'c' - 'd'},
      {"ab", "abc", -1, -1},  // a prefix: the difference of the lengths
      {"", "", 0, 0},
      {"\xE9", "e", -23 - 'e', -23 - 'e'},  // 0xE9 is negative as a signed character
      {"\xC9", "\xE9", -32, -32}};          // no folding beyond A-Z
  for (const auto &[text_a, text_b, with_case, without_case] : cases) {
    const strptr a(text_a), b(text_b);
    EXPECT_EQ(a.Compare(b, true), with_case) << text_a << " / " << text_b;
    EXPECT_EQ(a.Compare(b, false), without_case) << text_a << " / " << text_b;
    EXPECT_EQ(a.Equal(b), with_case == 0) << text_a << " / " << text_b;
    EXPECT_EQ(a.EqualNoCase(b), without_case == 0) << text_a << " / " << text_b;
  }
  // The NUL-terminated comparison works on unsigned bytes (intended).
  EXPECT_EQ(CompareStringsNoCase("\xE9", "e"), 0xE9 - 'e');
  EXPECT_EQ(CompareStringsNoCase("Hello", "hELLO"), 0);
  EXPECT_EQ(CompareStringsNoCase("ab", "ABC"), -'c');
}

TEST(StrPtr, NaturalOrderComparesDigitRunsByValue) {
  const std::tuple<const char *, const char *, int> cases[] = {
      {"file9", "file10", -1}, {"A2", "a2", 0},    {"a01", "a1", 1},
      {"a5", "a!", 5 - '!'},   {"x10", "x9", 1},   {"", "abc", -3},
      {"abc", "", 3},          {"a10b", "a10", 1}, {"Z", "a", 'z' - 'a'}};
  for (const auto &[a, b, expected] : cases)
    EXPECT_EQ(strptr(a).CompareNoCaseNum(b), expected) << a << " / " << b;
}

TEST(StrPtr, PrefixAndSuffixTests) {
  const strptr s("abcd");
  EXPECT_FALSE(s.StartsWithQ("AB"));
  EXPECT_TRUE(s.StartsWithQ("AB", false));
  EXPECT_FALSE(s.EndsWithQ("CD"));
  EXPECT_TRUE(s.EndsWithQ("CD", false));
  EXPECT_FALSE(strptr("ab").StartsWithQ("abc", false));
  EXPECT_FALSE(strptr("ab").EndsWithQ("abc", false));
  EXPECT_TRUE(s.StartsWithQ(strptr()));  // a null view of length 0
  EXPECT_TRUE(s.EndsWithQ(strptr()));
  EXPECT_TRUE(strptr() == strptr(""));
}

}  // namespace
}  // namespace zel
