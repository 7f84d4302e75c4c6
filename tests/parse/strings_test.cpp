// ParserBase: quoted strings, escapes, long strings and lists of strings.
#include <zel/parse/parser_base.h>

#include "support/log_capture.h"
#include "support/parser.h"

#include <string>

namespace zel {
namespace {

using test::Outcome;
using test::Str;

// ParseString, leniently or with strict escapes.
auto ReadString(bool strict) {
  return [strict](ParserBase &p) {
    p.strict_escapes = strict;
    cstring out("old");
    p.ParseString(out);
    return Str(out);
  };
}

TEST(ParserStrings, EscapesLongStringsAndFailures) {
  const struct {
    const char *text, *lenient, *strict;
  } cases[] = {
      {R"("a\qb")", R"(a\qb @6)", "Unknown escape character q"},
      {R"("\0")", "  @4", "Null character in the string"},
      {R"("\"\\\n\r\t"x)", "\"\\\n\r\t @12", "\"\\\n\r\t @12"},
      {"\"a\\\nb\\\r\nc\\\rd\"", "abcd @13", "abcd @13"},  // escaped line ends continue
      {"\"[x\"", "[x @4", "[x @4"},
      {"\"[[\na\\n\"b\"]\"]]", "a\\n\"b\"] @14", "a\\n\"b\"] @14"},  // verbatim up to quote "]]"
      {"\"\r\nx\n\"", "x\n @6", "x\n @6"},  // a quote and a line end open a long string too
      {"x", "Open quote expected", "Open quote expected"},
      {"\"abc\\", "Unterminated string", "Unterminated string"},
      {"\"[[\nabc\"]", "Unterminated string", "Unterminated string"},
  };
  for (const auto &c : cases) {
    EXPECT_EQ(Outcome(c.text, ReadString(false)), c.lenient) << c.text;
    EXPECT_EQ(Outcome(c.text, ReadString(true)), c.strict) << c.text;
  }
  ParserBase p("  \"abc");
  p.SetPosition(2);
  cstring out;
  EXPECT_THROW(p.ParseString(out), ParserErrorX);
  EXPECT_EQ(p.position(), 2);  // back at the opening quote
}

TEST(ParserStrings, ALineEndInAOneLineStringIsReportedAndLeftOut) {
  test::LogCapture log;
  ParserBase p("\"ab\r\ncd\"");
  cstring out;
  p.ParseString(out);
  EXPECT_EQ(Str(out), "abcd");
  EXPECT_EQ(log.Lines(), std::vector<std::string>{
                             "Parser Error: Line 1: Missing \" in the string\r\n1: ...\r\n"});

  test::LogCapture quiet;
  ParserBase hash("'ab\ncd'");
  hash.comment_info.SetLanguage(CommentInfo::kHash);
  hash.open_quote = hash.close_quote = '\'';
  hash.ParseString(out);
  EXPECT_EQ(Str(out), "abcd");
  EXPECT_TRUE(quiet.Lines().empty());
}

TEST(ParserStrings, OtherQuotesMaybeParsingAndArrays) {
  ParserBase p("(a\\)b) x  \"y\"");
  cstring out("<");
  p.ParseStringAppend(out, '(', ')');
  EXPECT_EQ(Str(out), "<a)b");
  EXPECT_FALSE(p.MaybeParseString(out));
  EXPECT_EQ(p.position(), 7);  // only the white space is consumed
  p.Advance();
  EXPECT_TRUE(p.MaybeParseString(out));
  EXPECT_EQ(Str(out), "y");

  ParseStringArray strings;
  ParserBase list(" { \"a\" , /* c */ \"b\" \"c\" } {}");
  list.comment_info.SetLanguage(CommentInfo::kC);
  list >> strings;
  ASSERT_EQ(strings.Count(), 3);
  EXPECT_EQ(Str(strings[2]), "c");
  list >> strings;
  EXPECT_TRUE(strings.empty());
  auto read_array = [](ParserBase &a) {
    ParseStringArray s;
    a >> s;
    return int64_t{s.Count()};
  };
  EXPECT_EQ(Outcome("x", read_array), "{ expected");
  EXPECT_EQ(Outcome("{ \"a\"", read_array), "Open quote expected");
}

}  // namespace
}  // namespace zel
