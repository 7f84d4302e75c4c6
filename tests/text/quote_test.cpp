// Escaped characters, quoted strings in their short and long forms, and quoted characters.
#include <zel/text/format.h>
#include <zel/text/print.h>

#include "support/strings.h"

#include <string>
#include <string_view>
#include <utility>

namespace zel {
namespace {

using test::Cat;

template <typename Write>
std::string Quoted(Write write) {
  cstring s;
  write(s);
  return test::Str(s);
}

TEST(Quote, CharactersEscapedForQuotedStrings) {
  const std::pair<char, const char *> cases[] = {
      {'a', "a"},        {' ', " "},        {'"', "\\\""},     {'\\', "\\\\"},   {'\x7F', "\x7F"},
      {'\x80', "\x80"},  {'\n', "\\012"},   {'\t', "\\011"},   {'\r', "\\015"},  {'\0', "\\000"},
      {'\x1F', "\\037"}, {'\x81', "\\601"}, {'\xE9', "\\751"}, {'\xFF', "\\777"}};
  for (const auto &[c, expected] : cases)
    EXPECT_EQ(Quoted([c = c](cstring &s) { WriteQuotedChar(s, c); }), expected)
        << static_cast<int>(c);
}

TEST(Quote, CharactersEscapedForXml) {
  const std::pair<char, const char *> cases[] = {
      {'a', "a"},      {' ', " "},        {'\t', "\\t"},     {'\n', "\\n"},     {'\r', "\\r"},
      {'"', "&quot;"}, {'&', "&amp;"},    {'\'', "&apos;"},  {'<', "&lt;"},     {'>', "&gt;"},
      {'\v', "\v"},    {'\x01', "\\001"}, {'\x7F', "\\177"}, {'\xE9', "\\751"}, {'\\', "\\"}};
  for (const auto &[c, expected] : cases)
    EXPECT_EQ(Quoted([c = c](cstring &s) { WriteQuotedCharXML(s, c); }), expected)
        << static_cast<int>(c);
}

TEST(Quote, PrintCharQuotesOneCharacter) {
  EXPECT_EQ(Quoted([](cstring &s) { s << PrintChar(-1); }), "EOF");
  EXPECT_EQ(Quoted([](cstring &s) { s << PrintChar('a'); }), "'a'");
  EXPECT_EQ(Quoted([](cstring &s) { s << PrintChar('\''); }), "'\\''");
  EXPECT_EQ(Quoted([](cstring &s) { s << PrintChar('\n'); }), "'\\012'");
  EXPECT_EQ(Quoted([](cstring &s) { s << PrintChar(0xE9); }), "'\\751'");
}

TEST(Quote, LongFormClosesWithAMarkTheTextLacks) {
  auto quoted = [](const char *text, bool long_form) {
    return Quoted([&](cstring &s) { s << PrintQuotedString(strptr(text), long_form); });
  };
  EXPECT_EQ(quoted("a\"b", true), "\"[\r\na\"b\"]");
  EXPECT_EQ(quoted("x\"]y\"", true), "\"[[\r\nx\"]y\"\"]]");
  EXPECT_EQ(quoted("one\ntwo", true), "\"\r\none\ntwo\"");
  // Without the long form, or without a reason for it, the short form.
  EXPECT_EQ(quoted("a\"b", false), "\"a\\\"b\"");
  EXPECT_EQ(quoted("one\ntwo", false), "\"one\\012two\"");
  EXPECT_EQ(quoted("plain, [text]", true), "\"plain, [text]\"");
  EXPECT_EQ(quoted("", true), "\"\"");
  const strptr pointed("a\"b");
  EXPECT_EQ(Quoted([&](cstring &s) { s << PrintQuotedString(&pointed, false); }), "\"a\\\"b\"");
}

TEST(Quote, ShortFormBreaksLongLines) {
  auto quoted = [](const std::string &text) {
    return Quoted([&](cstring &s) { s << PrintQuotedString(strptr(text), false); });
  };
  const std::string a(300, 'a');
  // Any character past 160, a blank past 130, a comma past 100; then 100 more from the break.
  const auto run = [&a](int n) { return std::string_view(a).substr(0, static_cast<size_t>(n)); };
  EXPECT_EQ(quoted(Cat({run(250)})), Cat({"\"", run(162), "\\\r\n", run(88), "\""}));
  EXPECT_EQ(quoted(Cat({run(131), " ", run(20)})), Cat({"\"", run(131), " \\\r\n", run(20), "\""}));
  EXPECT_EQ(quoted(Cat({run(101), ",", run(20)})), Cat({"\"", run(101), ",\\\r\n", run(20), "\""}));
  EXPECT_EQ(quoted(Cat({run(99), ",", run(20)})), Cat({"\"", run(99), ",", run(20), "\""}));
  // A line end in the text restarts the count.
  EXPECT_EQ(quoted(Cat({run(50), "\n", run(170)})),
            Cat({"\"", run(50), "\\012", run(161), "\\\r\n", run(9), "\""}));
}

}  // namespace
}  // namespace zel
