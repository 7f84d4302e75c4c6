// Values in command lines: how a text is written as one token, so that the reader gives it back,
// and how numbers are read from values.
#pragma once

#include <zel/text/charset.h>
#include <zel/text/cstring.h>
#include <zel/text/print.h>
#include <zel/text/string_iter.h>

namespace zel {

// The characters of a token that can stand without quotes.
inline constexpr CharSet PlainTokenCharQ{CharRange("a-zA-Z0-9_;&*^%$@.!\\-")};

// True when `text` can be written as it stands: not empty, and every character plain.
inline bool PlainTokenQ(const strptr &text) {
  if (text.empty()) return false;
  for (char c : text)
    if (!PlainTokenCharQ(c)) return false;
  return true;
}

// Writes `text` as it stands when it is a plain token, else in PrintQuotedString's short form. Not
// the long form: for a text with a line end but no double quote it writes no "[", and a quote
// followed by a line end fails the command-line reader's string.
inline cstring &AppendCmdToken(cstring &out, const strptr &text) {
  if (PlainTokenQ(text)) return out << text;
  return out << PrintQuotedString(text, false);
}

// A number at the start of `text`, as the typed getters read it; `value` changes only when there is
// one.
inline bool ReadNumber(const strptr &text, int &value) {
  StringIter it(text);
  return it.MaybeParseInteger(value);
}
inline bool ReadNumber(const strptr &text, double &value) {
  StringIter it(text);
  return it.MaybeParseDouble(value);
}

}  // namespace zel
