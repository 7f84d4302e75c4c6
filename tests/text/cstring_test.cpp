// cstring's buffer: borrowing and copy on first write, the growth rule, overlapping sources and the
// in-place edits.
#include <zel/stream/bitptr.h>
#include <zel/text/charset.h>
#include <zel/text/cstring.h>

#include "support/strings.h"

#include <cstring>
#include <functional>
#include <string_view>
#include <tuple>
#include <utility>

namespace zel {
namespace {

TEST(CString, EmptyStringsAllocateNothing) {
  cstring flushed = cstring::Borrow("xyz"), set_empty = cstring::Borrow("abc");
  flushed.Flush();
  set_empty.Set("");
  const cstring cases[] = {cstring(),          cstring(""),     cstring(nullptr),
                           cstring("", ""),    flushed,         set_empty,
                           cstring(cstring()), FixNewlines(""), cstring().Replaced("a", "b")};
  for (const cstring &s : cases) {
    EXPECT_EQ(s.capacity(), 0);
    EXPECT_EQ(s.text(), cstring().text());  // the one static empty text
  }
  cstring owning("abc");
  owning.Flush();  // an owned buffer is kept
  EXPECT_EQ(owning.capacity(), 4);
  EXPECT_EQ(test::Str(owning), "");
}

// Every edit of a borrowed literal works on a private copy: the literal, in read-only memory, is
// never written (a write would fault), and copies keep borrowing it.
TEST(CString, BorrowedTextIsCopiedOnFirstWrite) {
  static const char kLiteral[] = " a,b \t";
  cstring rest;
  const std::pair<std::function<void(cstring &)>, std::string_view> cases[] = {
      {[](cstring &s) { s.SetAt(0, 'X'); }, "Xa,b \t"},
      {[](cstring &s) { s.GetBuffer(2)[1] = 'Y'; }, " Y,b \t"},
      {[](cstring &s) { s.ReleaseBuffer(2); }, " a"},
      {[](cstring &s) { s.TrimLeft(); }, "a,b \t"},
      {[](cstring &s) { s.TrimRight(); }, " a,b"},
      {[](cstring &s) { s.DeleteCharSet(CharSet::Literal(",")); }, " ab \t"},
      {[](cstring &s) { s.Chop(); }, " a,b "},
      {[](cstring &s) { s.MakeLength(8, '.'); }, " a,b \t.."},
      {[](cstring &s) { s.ReplaceRegion(1, 1, "A"); }, " A,b \t"},
      {[](cstring &s) { *s.InsertRegion(0, 1).writable_text() = '>'; }, "> a,b \t"},
      {[&](cstring &s) { s.CrackOn(",", rest); }, " a"},
      {[](cstring &s) { s.CutOnRev("a"); }, " "}};
  for (const auto &[edit, expected] : cases) {
    cstring s = cstring::Borrow(kLiteral), copy = s;
    ASSERT_EQ(s.capacity(), 0);
    edit(s);
    EXPECT_EQ(test::Str(s), expected);
    EXPECT_GT(s.capacity(), 0);
    EXPECT_EQ(copy.text(), kLiteral);
  }
  cstring unchanged = cstring::Borrow(kLiteral);
  unchanged.SetAt(6, 'x');  // not below the length: ignored
  unchanged.LimitLength(6);
  unchanged.MakeLength(6);
  unchanged.ReleaseBuffer(6);  // already ends there: nothing to write
  EXPECT_EQ(unchanged.text(), kLiteral);
}

// The rule itself is GrowCapacity's (tary_test): here, that cstring follows it.
TEST(CString, GrowthRule) {
  cstring eight("1234567"), nine("12345678"), big, jump("ab"), borrowed = cstring::Borrow("abc");
  eight << '8';
  nine << '9';
  big.AddN(0x1FFFFF, 'a');  // one request from nothing: exactly that
  ASSERT_EQ(big.capacity(), 0x200000);
  big << 'b';
  jump.AddN(100, 'c');  // more than the proposal: exactly the request
  borrowed << 'd';      // a borrowed text is copied without slack
  EXPECT_EQ(eight.capacity(), 16);
  EXPECT_EQ(nine.capacity(), 18);
  EXPECT_EQ(big.capacity(), 0x300000);
  EXPECT_EQ(jump.capacity(), 103);
  EXPECT_EQ(borrowed.capacity(), 5);
  EXPECT_EQ(cstring(eight).capacity(), 9);  // copies and Set are exact
  EXPECT_EQ(cstring("ab").Set("a longer text").capacity(), 14);
}

TEST(CString, SourcesInsideTheString) {
  cstring owning("abcdef"), borrowed = cstring::Borrow("abcdef");
  owning.Set(owning.view().Mid(2));
  borrowed.Set(borrowed.view().Mid(1, 3));
  EXPECT_EQ(test::Str(owning), "cdef");
  EXPECT_EQ(test::Str(borrowed), "bcd");

  cstring doubled("0123456789");  // exactly full: appending moves the buffer
  doubled.Add(doubled);
  doubled.Add(doubled.view().Mid(18));
  EXPECT_EQ(test::Str(doubled), "0123456789012345678989");
  cstring borrowed_twice = cstring::Borrow("xyz");
  borrowed_twice << borrowed_twice;
  EXPECT_EQ(test::Str(borrowed_twice), "xyzxyz");

  cstring growing("abcdef"), shrinking("abcdef");
  growing.ReplaceRegion(1, 1, growing.view().Mid(3));
  shrinking.ReplaceRegion(0, 3, shrinking.view().Mid(4, 2));
  EXPECT_EQ(test::Str(growing), "adefcdef");
  EXPECT_EQ(test::Str(shrinking), "efdef");
}

TEST(CString, BuffersRegionsAndLengths) {
  cstring s("abc");
  char *p = s.GetBuffer(10);
  EXPECT_EQ(s.length(), 10);
  std::memcpy(p + 3, "de\0zz", 5);
  s.ReleaseBuffer();  // up to the first NUL
  EXPECT_EQ(test::Str(s), "abcde");
  s.GetBuffer(2);  // below the length: nothing changes
  s.ReleaseBuffer(4);
  EXPECT_TRUE(s.InsertRegion(1, 0).empty());
  // The gap is a view of exactly the new characters, not of the shifted tail behind them.
  const strptr gap = s.InsertRegion(1, 2);
  ASSERT_EQ(gap.length(), 2);
  std::memcpy(gap.writable_text(), "XY", 2);
  EXPECT_TRUE(s.AddN(0).empty());
  s.AddN(-3, 'z');
  const strptr tail = s.AddN(2);
  EXPECT_EQ(tail.text(), s.text() + 6);
  EXPECT_EQ(tail.length(), 2);
  s.LimitLength(6);
  EXPECT_EQ(test::Str(s.MakeLength(8, '-')), "aXYbcd--");
  EXPECT_EQ(test::Str(s.MakeLength(1)), "a");
  s.Chop();
  s.Chop();
  EXPECT_EQ(test::Str(s), "");
}

TEST(CString, DroppingCharacters) {
  cstring digits("a1b2\xE9z3"), with_nul("a1b\0c2d", 7);
  digits.DeleteCharSet(CharSet(CharRange("0-9\x80-\xFF")));  // top-bit bytes are never members
  with_nul.DeleteCharSet(DigitCharQ);                        // stops at the first NUL
  EXPECT_EQ(test::Str(digits), "ab\xE9z");
  EXPECT_EQ(test::Str(with_nul), "ab");

  const uint32_t bits = 0b100101;  // drop positions 0, 2 and 5
  cstring all("abcdefgh"), beyond("abcdefgh");
  all.Remove(bitptr(&bits, 8));
  beyond.Remove(bitptr(&bits, 4));  // characters past the bit set are dropped too
  EXPECT_EQ(test::Str(all), "bdegh");
  EXPECT_EQ(test::Str(beyond), "bd");
}

TEST(CString, CrackingAndCuttingAtDelimiters) {
  // Each result: CrackOn's string and rest, CrackOnRev's string and rest, CutOn, CutOnRev.
  const std::tuple<std::string_view, const char *, bool, std::string_view> cases[] = {
      {"a,b,c", ",", true, "a|b,c|a,b|c|a|a,b"},
      {"abc", ",", true, "abc||abc||abc|abc"},
      {"abxcd", "X", false, "ab|cd|ab|cd|ab|ab"},
      {"abxcd", "X", true, "abxcd||abxcd||abxcd|abxcd"},
      {"aBcBd", "b", false, "a|cBd|aBc|d|a|aBc"},
      {"k=v;w", "=;", true, "k|v;w|k=v|w|k|k=v"},
      {",", ",", true, "|||||"},
      {std::string_view("ab\0cd", 5), ";", true, "ab|cd|ab|cd|ab|ab"}};  // NUL matches
  for (const auto &[text, delimiters, case_sensitive, expected] : cases) {
    cstring on(text), rest("old"), rev(text), rev_rest("old"), cut(text), cut_rev(text);
    EXPECT_EQ(&on.CrackOn(delimiters, rest, case_sensitive), &on);
    rev.CrackOnRev(delimiters, rev_rest, case_sensitive);
    cut.CutOn(delimiters, case_sensitive);
    cut_rev.CutOnRev(delimiters, case_sensitive);
    cstring results;
    for (const cstring *r : {&on, &rest, &rev, &rev_rest, &cut}) results << *r << '|';
    EXPECT_EQ(test::Str(results << cut_rev), expected) << text << " / " << delimiters;
  }
  cstring s("a,b"), rest("old");
  s.CrackOn(nullptr, rest);
  EXPECT_EQ(test::Str(s << '|' << rest), "a,b|");
}

}  // namespace
}  // namespace zel
