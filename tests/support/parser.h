// Helpers for tests of parsers: the bare message of a parser error, and what a reader made of a
// text.
#pragma once

#include <zel/parse/parser_base.h>

#include "support/strings.h"

#include <charconv>
#include <string>

namespace zel::test {

// The message of the ParserErrorX that `call` throws, without the "Line <n>: " prefix and the
// excerpt that follow it, or "no failure".
template <typename Call>
std::string ParserFailure(Call &&call) {
  try {
    call();
  } catch (const ParserErrorX &e) {
    std::string message = Str(e.Message());
    message.erase(std::min(message.find("\r\n"), message.size()));
    if (message.starts_with("Line ")) message.erase(0, message.find(": ") + 2);
    return message;
  }
  return "no failure";
}

inline std::string Shown(std::string s) { return s; }
inline std::string Shown(const strptr &s) { return Str(s); }
inline std::string Shown(bool b) { return b ? "true" : "false"; }
inline std::string Shown(char c) { return std::string(1, c); }
inline std::string Shown(int64_t v) { return std::to_string(v); }
inline std::string Shown(double v) {
  char digits[32];
  return std::string(digits, std::to_chars(digits, digits + sizeof digits, v).ptr);
}
// "int 42", "int64 4294967296" or "real 0.5".
inline std::string Shown(const BuiltinNumber &n) {
  if (!n.is_integer) return "real " + Shown(n.real);
  return n.width == BuiltinNumber::kWidth64 ? "int64 " + Shown(n.int64)
                                            : "int " + Shown(int64_t{n.int32});
}

// What `read` made of a parser over `text`: the value it returned, " @" and the position after
// it; or the message of the ParserErrorX it threw.
template <typename Read>
std::string Outcome(const char *text, Read read) {
  ParserBase p(text);
  std::string shown;
  const std::string failure = ParserFailure([&] { shown = Shown(read(p)); });
  return failure == "no failure" ? shown + " @" + std::to_string(p.position()) : failure;
}

}  // namespace zel::test
