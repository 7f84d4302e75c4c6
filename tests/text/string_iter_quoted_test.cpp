// StringIter: quoted strings and the tokens of command lines.
#include <zel/mem/tary.h>
#include <zel/text/string_iter.h>

#include "support/log_capture.h"
#include "support/strings.h"

#include <gtest/gtest.h>

#include <string>

namespace zel {
namespace {

using test::Str;

// ParseString over `text` appended to "<": the content, then "@" and the position, or "failed @"
// and the position with what `out` holds then.
std::string ReadQuoted(const std::string &text) {
  StringIter it(strptr(text.data(), static_cast<int>(text.size())));
  cstring out("<");
  const bool ok = it.ParseString(out);
  return test::Cat({ok ? "" : "failed ", Str(out), " @", std::to_string(it.position())});
}

TEST(StringIterQuoted, EscapesRawStringsAndFailures) {
  const struct {
    std::string text, read;
  } cases[] = {
      {R"("a b" c)", "<a b @5"},
      {R"('it''s')", "<it @4"},
      {R"("\"\\\n\r\t\'")", "<\"\\\n\r\t\\' @14"},  // \' in a "..." string is kept as it stands
      {R"('\'')", "<' @4"},
      // Three octal digits give a byte, modulo 256; a fourth digit is an ordinary character.
      {R"("\012\751\601\0000\101")", std::string("<\n\xE9\x81\0" "0A @23", 11)},
      {"\"a\\\nb\\\r\nc\\\rd\"", "<abcd @13"},         // escaped line ends continue the string
      {"\"[x]\"", "<[x] @5"},                          // brackets without a line end are ordinary
      {"\"[[\r\na\\n\"b\"]\"]]z", "<a\\n\"b\"] @15"},  // raw up to the quote and "]]"
      {"'[\n\"]'']", "<\"]' @8"},                      // the opening quote closes a raw string
      {"\"[\n\"", "failed < @4"},
      {R"("\0")", "failed < @4"},
      {R"("\01")", "failed < @5"},
      {"\"a\nb\"", "failed < @5"},
      {"\"a\rb\"", "failed < @5"},
      {R"("abc\)", "failed < @5"},
      {"abc", "failed < @3"},
      {"", "failed < @0"},
  };
  for (const auto &c : cases) EXPECT_EQ(ReadQuoted(c.text), c.read) << c.text;
}

TEST(StringIterQuoted, UnknownEscapesAreKeptAndReported) {
  test::LogCapture log;
  EXPECT_EQ(ReadQuoted(R"("ab\qc\8")"), "<ab\\qc\\8 @9");
  const auto lines = log.Lines();
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(lines[0], "%W: Weird escape character q, string so far: ab\r\n");
  EXPECT_EQ(lines[1], "%W: Weird escape character 8, string so far: ab\\qc\r\n");
}

// ParseCmdArg over `text`: each token with "|" after it, until an empty one, then "@" and the
// final position; tokens from the pool are marked with "*".
std::string Tokens(const std::string &text) {
  StringIter it(strptr(text.data(), static_cast<int>(text.size())));
  TAry<cstring> pool;
  std::string out;
  for (int i = 0; i < 10; ++i) {
    const strptr token = it.ParseCmdArg(pool);
    if (token.empty()) break;
    const bool in_text = token.text() >= text.data() && token.end() <= text.data() + text.size();
    out.append(in_text ? "" : "*").append(Str(token)).append("|");
    if (it.Peek() == ':') it.SkipNChars(1);
  }
  return test::Cat(
      {out, "@", std::to_string(it.position()), " pool ", std::to_string(pool.Count())});
}

TEST(StringIterQuoted, CommandLineTokens) {
  const struct {
    std::string text, tokens;
  } cases[] = {
      {" \t\r\nab cd", "ab|cd|@9 pool 0"},
      {"a:b 'c d'", "a|b|c d|@9 pool 0"},
      {"ab\"cd\"ef", "ab|cd|ef|@8 pool 0"},  // a quote inside a word starts the next token
      {R"("plain" "esc\"aped" "kept\q")", "plain|*esc\"aped|kept\\q|@28 pool 1"},
      {"\"[\r\nraw\"]", "raw|@9 pool 0"},
      {"a \"\" b", "a|@4 pool 0"},  // the empty string is an empty token
      {"a \"open", "a|@7 pool 0"},  // a failed string ends at the end of the text
      {"a #b", "a|#b|@4 pool 0"},   // comments are the command line's business
      {"   ", "@3 pool 0"},
  };
  for (const auto &c : cases) EXPECT_EQ(Tokens(c.text), c.tokens) << c.text;
}

}  // namespace
}  // namespace zel
