// StringIter, a quiet cursor over text that reads characters, lines, words, tokens and numbers.
#pragma once

#include <zel/text/charset.h>
#include <zel/text/strptr.h>

#include <cstdint>

namespace zel {

class cstring;
template <typename T>
class TAry;

// A cursor over text it does not own: the text, its length and a position (0 at the start).
// The cursor is at the end when the position is at or beyond the length.
//
// Nothing here throws: the `Maybe...` readers return false and leave their output unchanged (the
// bounded MaybeParseInteger excepted), the `Parse...` readers return a caller-given default. The
// readers that skip white space skip exactly blank, TAB, LF and CR.
//
// The position is only moved by the readers and by SkipNChars / SetPosition, which do not check
// it. A position beyond the length reads as the end (views returned there are empty); a negative
// position is the caller's error, except for GetLine and GetWindowsLine, which clamp it first.
class ZEL_API StringIter {
 public:
  constexpr StringIter() = default;
  constexpr StringIter(const strptr &text) : text_(text.text()), length_(text.length()) {}
  constexpr StringIter(const char *text, int length) : text_(text), length_(length) {}

  constexpr const char *text() const { return text_; }
  constexpr int length() const { return length_; }
  constexpr int position() const { return position_; }
  constexpr void SetPosition(int position) { position_ = position; }
  constexpr bool AtEnd() const { return position_ >= length_; }
  // The character at the position, or NUL at the end.
  constexpr char Peek() const { return AtEnd() ? '\0' : text_[position_]; }
  // The text from the position to the end (empty at the end).
  constexpr strptr Rest() const {
    return AtEnd() ? strptr(text_ + length_, 0) : strptr(text_ + position_, length_ - position_);
  }

  // --- Characters and lines ---

  // Skips one line end: CR LF, a lone CR or a lone LF (so LF CR is two line ends). False, without
  // moving, when the position is not at a line end.
  constexpr bool SkipNewLine() {
    if (AtEnd()) return false;
    if (text_[position_] == '\r') {
      ++position_;
      if (position_ < length_ && text_[position_] == '\n') ++position_;
      return true;
    }
    if (text_[position_] != '\n') return false;
    ++position_;
    return true;
  }
  // Moves the position by `n`, unchecked.
  constexpr void SkipNChars(int n) { position_ += n; }
  // Skips `n` characters when the next `n` are all `c`; otherwise returns false without moving.
  bool SkipNChars(char c, int n);
  // Skips a run of "[" and then one line end, setting `count` to the number of brackets (a bare
  // line end gives true with count 0). Without the line end: moves back, sets `count` to 0 and
  // returns false.
  bool SkipMultiLineHeader(int &count);
  // The text up to the next LF, CR or CR LF, without it; the position moves past the line end.
  // Without a line end: the rest of the text, the position at the end.
  strptr GetLine();
  // As GetLine, but only CR (optionally followed by LF) ends a line: a lone LF belongs to it.
  strptr GetWindowsLine();

  // --- Words and tokens ---

  // Skips white space, then takes the characters up to the next white character or the end (an
  // empty view at the end). The position stays on the white character after the word.
  strptr GetWord();
  // Skips separators (only one, if the next character is one, when `one` is set; the whole run
  // otherwise), then takes the characters up to the next separator, where the position stays.
  strptr GetWord(const CharSet &seps, bool one);
  // The characters up to, not including, the first member of `stop` (or the end).
  strptr GetUpTo(const CharSet &stop);
  // The characters up to the first separator; then, unless at the end, skips that separator and,
  // when `one` is false, every separator directly after it. The token excludes the separators.
  strptr GetToken(const CharSet &seps, bool one);
  // The text up to the first `sep` (case significant); the position moves past `sep`. Without
  // `sep` (or with an empty `sep`): the rest of the text, the position at the end.
  strptr GetToken(const strptr &sep);
  // As GetToken(sep), but `sep` is matched ignoring the case of A-Z when `case_sensitive` is
  // false, and without `sep` the result is an empty, null view and the position does not move.
  strptr GetTokenNoEOF(const strptr &sep, bool case_sensitive = true);

  // --- Quoted strings and command-line tokens ---

  // Reads the quoted string whose opening quote, '"' or '\'', is at the position, and appends its
  // content to `out`; the position moves past the closing quote.
  //
  // After the quote, a run of N "[" followed by a line end (CR LF, CR or LF) opens a raw string:
  // its content, taken as it stands, runs up to the first quote followed by N "]". Otherwise the
  // string runs to the next unescaped quote, and a backslash escapes: the quote itself, "\\", "n"
  // (LF), "r" (CR), "t" (TAB), three octal digits (the byte they give, taken modulo 256: "\012" is
  // LF, "\751" is 0xE9), a line end (dropped: the string continues on the next line). A backslash
  // before any other character is kept with it, and then, when the log has a listener, the warning
  // "%W: Weird escape character <c>, string so far: <content>" is logged.
  //
  // Fails when no quote opens the string, when it is not closed, when a CR or LF stands unescaped
  // in a string that is not raw, and at "\0" that does not begin three octal digits: then `out`
  // is unchanged, the position at the end, and the result false.
  bool ParseString(cstring &out);
  // Reads one token of a command line: skips blank, TAB, CR and LF, then reads a quoted string
  // (as ParseString) or else takes the characters up to the next blank, TAB, CR, LF, ":", '"' or
  // '\'' (so a quote inside a word starts the next token). The token is a view of the text when
  // its content stands there as it is (a word, a raw string, a quoted string without escapes);
  // otherwise it is a view of a copy of the unescaped content kept in `pool`, at the end of the
  // pool's last string when that string has room (strings of the pool are never grown, so views
  // into them stay valid), else in a new one.
  // Empty at the end, at a character that ends words, and when the quoted string fails (the
  // position then at the end).
  strptr ParseCmdArg(TAry<cstring> &pool);

  // --- Numbers ---
  //
  // The integer readers skip white space, take an optional "-" or "+" and then decimal digits,
  // accumulated with wrap-around; only a sum that turns negative as a signed value counts as
  // overflow, which stores the largest value and stops before the remaining digits (intended: a
  // sum that wraps to a non-negative value is kept, so 9999999999 reads as 1410065407). The sign
  // is applied after that, so "-2147483648" reads as -2147483647.

  // An integer. False when only white space remains (the position stays after it), when the
  // sign ends the text (the position stays after it), or when no digit follows (the position
  // moves back to where it was).
  bool MaybeParseInteger(int &value);
  // An integer read inside the next `max_chars` characters: sets `value` to 0 and the position to
  // min(length, position + max_chars) before reading anything, so the position always advances
  // by the whole window, number or not (intended: it reads fixed-width fields). A negative window
  // counts as 0.
  bool MaybeParseInteger(int &value, int max_chars);
  // The 64-bit forms, saturating at 9223372036854775807. ParseInteger64 returns `def` where the
  // Maybe form returns false, and does not move back.
  long long ParseInteger64(long long def);
  bool MaybeParseInteger64(long long &value);

  // Digit grouping of the comma readers: a comma belongs to the number only when a digit stands
  // before it and exactly three digits follow it (a fourth digit right after them ends the number
  // before the comma); the group before the first comma may have any length. So "1,234,567" is
  // 1234567, while "1,2" and "1,2345" are 1 followed by a comma that is not read.

  // An integer with comma-grouped digits: white space, an optional sign, the digits. Magnitudes
  // beyond 2147483647 saturate there. Without digits: `def`, the position moved back.
  int ParseIntegerWithCommas(int def);
  // Digits only: no sign, no white space; 0 (and no move) when there is none.
  double ParseDigits();
  // Digits read as a fraction after a decimal point, digits / 10^count; 0 when there is none.
  double ParseFraction();
  // Comma-grouped digits, no sign, no white space; 0 when there is none.
  double ParseDigitsWithCommas();
  // White space, an optional sign, comma-grouped digits, then optionally "." and fraction digits
  // (".5" needs no integer part); no exponent. Without digits: `def`, the position moved back.
  double ParseDoubleWithCommas(double def);
  // A decimal number: white space, an optional sign, digits with an optional "." and fraction
  // (".5" and "5." are numbers, "." is not), then optionally "e" or "E", an optional sign and at
  // least one digit. Short numbers are exact: digits accumulate in integers while they fit, and
  // the fraction is divided once at the end. False, moved back to the start, when there is no
  // number or the exponent has no digit ("1e", "1e+"); when only white space remains, false with
  // the position after it.
  bool MaybeParseDouble(double &value);

  // One hexadecimal digit at the position (no white space skipped): its value, the position past
  // it; otherwise `def`, no move.
  int ParseHexChar(int def);
  // '0'-'9' give 0-9, 'A'-'F' and 'a'-'f' give 10-15, anything else `def`.
  static constexpr int HexCharToInt(int c, int def) {
    return c >= '0' && c <= '9'   ? c - '0'
           : c >= 'A' && c <= 'F' ? c - 'A' + 10
           : c >= 'a' && c <= 'f' ? c - 'a' + 10
                                  : def;
  }
  // White space, then hexadecimal digits in unsigned 32-bit arithmetic; higher digits shift out
  // without an overflow check. Without a first digit: `def`, the position after the white space.
  int ParseHexInteger(int def);

 private:
  const char *text_ = nullptr;
  int length_ = 0;
  int position_ = 0;
};

}  // namespace zel
