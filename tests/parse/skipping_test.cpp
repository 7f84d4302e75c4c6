// ParserBase: white space, comments, line ends and searching.
#include <zel/parse/parser_base.h>

#include "support/parser.h"

namespace zel {
namespace {

using test::Outcome;

// SkipWs under a comment language.
auto SkipWsIn(CommentInfo::Language language) {
  return [language](ParserBase &p) {
    p.comment_info.SetLanguage(language);
    p.SkipWs();
    return true;
  };
}

TEST(ParserSkipping, WhiteSpaceAndTheCommentsOfEachLanguage) {
  using L = CommentInfo;
  EXPECT_EQ(Outcome(" \t\r\n x", SkipWsIn(L::kNone)), "true @5");
  EXPECT_EQ(Outcome("# c", SkipWsIn(L::kNone)), "true @0");
  EXPECT_EQ(Outcome(" // c\r\n /* c\n */ x", SkipWsIn(L::kC)), "true @17");
  EXPECT_EQ(Outcome("/* a /* b */ x */", SkipWsIn(L::kC)), "true @13");  // the first end closes
  EXPECT_EQ(Outcome("/* a /* b */ c */ x", SkipWsIn(L::kCNested)), "true @18");
  EXPECT_EQ(Outcome("# c\n# d\rx", SkipWsIn(L::kHash)), "true @8");
  EXPECT_EQ(Outcome("; c", SkipWsIn(L::kSemicolon)), "true @3");
  EXPECT_EQ(Outcome("\\\r\n x", SkipWsIn(L::kNone)), "true @4");  // a continuation is white space
  EXPECT_EQ(Outcome("\\\n x", SkipWsIn(L::kNone)), "true @0");    // but only with CR LF
  EXPECT_EQ(Outcome(" */", SkipWsIn(L::kC)), "End-of-comment string found outside of a comment");
  EXPECT_EQ(Outcome("/* /* */", SkipWsIn(L::kCNested)), "End of comment not found");

  ParserBase p(" \t\n x");
  p.SetLineMode(true);
  p.SkipWs();
  EXPECT_EQ(p.position(), 2);
  p.SetLineMode(false);
  p.SkipWs();
  EXPECT_EQ(p.position(), 4);
}

TEST(ParserSkipping, LineEndsForwardAndBackAndAtTheEndOfBlanks) {
  auto skip = [](ParserBase &p) { return p.SkipNewLine(); };
  EXPECT_EQ(Outcome("\r\nx", skip), "true @2");
  EXPECT_EQ(Outcome("\n\r", skip), "true @1");
  EXPECT_EQ(Outcome("x", skip), "false @0");
  ParserBase back("a\r\nb\r");
  back.SetPosition(3);
  EXPECT_TRUE(back.SkipNewLineBack());
  EXPECT_EQ(back.position(), 1);
  back.SetPosition(5);
  EXPECT_FALSE(back.SkipNewLineBack());  // only LF is stepped back over

  auto eol = [](ParserBase &p) { return p.WsEolQ(); };
  EXPECT_EQ(Outcome(" \t\\\n \\\r\n\r", eol), "true @8");
  EXPECT_EQ(Outcome("  ", eol), "true @2");
  EXPECT_EQ(Outcome(" x", eol), "false @1");
  EXPECT_EQ(Outcome("\\x", eol), "false @0");
}

TEST(ParserSkipping, LiteralsRunsAndSearches) {
  ParserBase p("Then===x");
  EXPECT_FALSE(p.PeekStr("then"));
  EXPECT_TRUE(p.SkipStr("then", false));
  EXPECT_FALSE(p.SkipNChars('=', 4));
  EXPECT_TRUE(p.SkipNChars('=', 3));
  EXPECT_FALSE(p.PeekStr("xy"));  // fewer characters remain

  EXPECT_EQ(Outcome("a end b", [](ParserBase &s) { return s.FindNext("END", false); }), "true @5");
  EXPECT_EQ(Outcome("abcd", [](ParserBase &s) { return s.FindNext("zz"); }), "false @3");
}

}  // namespace
}  // namespace zel
