// Character sets: patterns, the predefined sets, and bytes with the top bit set.
#include <zel/text/charset.h>
#include <zel/text/hash_primes.h>

#include <string>
#include <string_view>
#include <tuple>
#include <utility>

namespace zel {
namespace {

// The members of `set` among the 256 byte values, in order.
std::string MembersOf(const CharSet &set) {
  std::string members;
  for (int c = 0; c < 256; ++c)
    if (set(static_cast<char>(c))) members += static_cast<char>(c);
  return members;
}

TEST(CharSet, PatternsMakeRangesLiteralsAndEscapes) {
  const std::pair<std::string_view, std::string_view> cases[] = {
      {"z-a", ""},  // a reversed range is empty
      {"a\\-z", "-az"},   {"-a", "-a"},         {"a-", "-a"},
      {"a-c-e", "-abce"}, {"\\\\x", "\\x"},     {"~-\xFF", "~\x7F"},
      {"9-0_", "_"},      {"\x80-\xFF\xE9", ""}};  // never members, whatever the pattern says
  for (const auto &[pattern, members] : cases) {
    CharSet reused(CharRange("0-9"));
    reused.Set(CharRange(pattern));  // clears first
    EXPECT_EQ(MembersOf(reused), members) << pattern;
  }
  CharSet literal(CharRange("xyz"));
  literal.Set(strptr("a-c\\"));  // every character taken literally
  literal.Add(CharRange("0-2"));
  EXPECT_EQ(MembersOf(literal), "-012\\ac");
}

TEST(CharSet, PredefinedSets) {
  const std::tuple<const char *, const CharSet &, std::string_view> cases[] = {
      {"White", WhiteCharQ, "\t\n\r "},
      {"NewLine", NewLineCharQ, "\n\r"},
      {"Digit", DigitCharQ, "0123456789"},
      {"Upper", UpperCharQ, "ABCDEFGHIJKLMNOPQRSTUVWXYZ"},
      {"Lower", LowerCharQ, "abcdefghijklmnopqrstuvwxyz"},
      {"Alpha", AlphaCharQ, "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"},
      {"Ident", IdentCharQ, "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ_abcdefghijklmnopqrstuvwxyz"},
      {"IdentStart", IdentStartQ, "ABCDEFGHIJKLMNOPQRSTUVWXYZ_abcdefghijklmnopqrstuvwxyz"},
      {"Hex", HexCharQ, "0123456789ABCDEFabcdef"},
      {"NumberStart", NumberStartQ, ".0123456789"},
      // Plus, hyphen and slash read as the range from plus to slash, which takes in the comma
      // and the full stop as well (intended).
      {"WordSeparator", WordSeparatorQ, "\t\n\r !\"#$%&'()*+,-./;=?@[]^`{|}~"},
  };
  for (const auto &[name, set, members] : cases) EXPECT_EQ(MembersOf(set), members) << name;
}

TEST(HashPrimes, FindsThePrimeOfTheSequence) {
  const std::tuple<int, int, int> cases[] = {
      {-5, 7, 7},
      {0, 7, 7},
      {7, 7, 17},
      {8, 17, 17},
      {1021, 1021, 2039},
      {1073741790, 2147483647, 2147483647},
      {2147483647, 2147483647, 31}};  // none above the last: 31 (intended)
  for (const auto &[n, prime, next] : cases) {
    EXPECT_EQ(FindHashPrime(n), prime) << n;
    EXPECT_EQ(FindNextHashPrime(n), next) << n;
  }
}

}  // namespace
}  // namespace zel
