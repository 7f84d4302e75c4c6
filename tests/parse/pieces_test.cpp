// ParserBase: identifiers, runs, words and lines.
#include <zel/parse/parser_base.h>

#include "support/parser.h"

namespace zel {
namespace {

using test::Outcome;
using test::Str;

TEST(ParserPieces, IdentifiersAndRunsUpToACharacterOrAString) {
  ParserBase p("_a1 b;c-->d");
  EXPECT_EQ(Str(p.GetIdent()), "_a1");
  EXPECT_EQ(Str(p.GetSequence(DigitCharQ)), "");
  EXPECT_EQ(Str(p.GetUpTo(CharSet::Literal(";"), false)), " b");
  EXPECT_EQ(Str(p.GetUpToExcluding("-->", false)), ";c");
  EXPECT_EQ(Str(p.GetUpTo("-->", false)), "");
  EXPECT_EQ(Str(p.GetUpTo("END", true)), "d");
  EXPECT_TRUE(p.AtEnd());

  EXPECT_EQ(Outcome("xEnd", [](ParserBase &s) { return s.GetUpTo("end", false, false); }), "x @4");
  EXPECT_EQ(Outcome("1a", [](ParserBase &s) { return s.GetIdent(); }), "Identifier expected");
  EXPECT_EQ(Outcome("abc", [](ParserBase &s) { return s.GetUpTo(CharSet::Literal(";"), false); }),
            "Expected a character from charset");
  EXPECT_EQ(Outcome("abc", [](ParserBase &s) { return s.GetUpToExcluding("-->", false); }),
            "--> expected");
}

TEST(ParserPieces, WordsLinesAndLongStringHeaders) {
  ParserBase words("  ab\tc");
  for (const char *word : {"ab", "c", ""}) EXPECT_EQ(Str(words.GetWord()), word);

  ParserBase lines("a\r\nb\rc\n");
  for (const char *line : {"a", "b", "c", ""}) EXPECT_EQ(Str(lines.GetLine()), line);
  for (const char *line : {"", "c", "b", "a", ""}) EXPECT_EQ(Str(lines.GetLineBack()), line);
  EXPECT_EQ(lines.position(), 0);
  EXPECT_EQ(Str(lines.GetLine(1)), "b");  // the line table's reader is still there

  auto header = [](ParserBase &p) {
    int count = -1;
    const bool found = p.SkipMultiLineHeader(count);
    return (found ? "header " : "none ") + std::to_string(count);
  };
  EXPECT_EQ(Outcome("[[\nx", header), "header 2 @3");
  EXPECT_EQ(Outcome("\r\nx", header), "header 0 @2");
  EXPECT_EQ(Outcome("[[x", header), "none 0 @0");
}

}  // namespace
}  // namespace zel
