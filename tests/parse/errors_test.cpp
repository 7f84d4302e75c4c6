// ParserBase: the report of an error, thrown or logged.
#include <zel/parse/parser_base.h>

#include "support/log_capture.h"
#include "support/parser.h"

#include <string>

namespace zel {
namespace {

using test::Str;

// The full report of "Oops" at `pos` in `text`.
std::string Report(const std::string &text, int pos) {
  ParserBase p(text.c_str());
  p.SetPosition(pos);
  try {
    p.Error("Oops");
  } catch (const ErrorX &e) {  // a ParserErrorX is an ErrorX
    return Str(e.Message());
  }
  return "no failure";
}

TEST(ParserErrors, ReportNamesTheLineAndShowsItUpToTheError) {
  EXPECT_EQ(Report("a\nbb\ncc dd", 8), "Line 3: Oops\r\n3: cc ...");
  EXPECT_EQ(Report("abc", 2), "Oops\r\n1: ab...");
  EXPECT_EQ(Report("abc\n", 2), "Line 1: Oops\r\n1: ab...");
  const std::string long_line = std::string(50, 'a') + std::string(100, 'b');
  EXPECT_EQ(Report(long_line, 150), "Oops\r\n1: " + std::string(100, 'b') + "...");

  ParserBase p("x\ny");
  try {
    p.ThrowAt(Range{2, 3}, "Bad");
  } catch (const ParserErrorX &e) {
    EXPECT_EQ(e.Where(), (Range{2, 3}));
  }
  ParserBase words("else");
  EXPECT_EQ(test::ParserFailure([&] { words >> "then"; }), "then expected");
  test::LogCapture log;
  p.ErrorAt(Range{1, 1}, "Noted", false);
  EXPECT_EQ(log.Lines(), std::vector<std::string>{"Parser Error: Line 1: Noted\r\n1: x...\r\n"});
}

}  // namespace
}  // namespace zel
