// ParserBase: the hand-written recursive-descent scanner under every text format of the library,
// with its comment conventions (CommentInfo) and the number it reads (BuiltinNumber).
#pragma once

#include <zel/mem/tary.h>
#include <zel/parse/line_numbers.h>
#include <zel/parse/parser_error.h>
#include <zel/text/charset.h>
#include <zel/text/cstring.h>

#include <cstdint>

namespace zel {

// Blank and TAB: the white space of a parser in line mode.
inline constexpr CharSet BlankCharQ = CharSet::Literal(" \t");

// The comment conventions of a text: which strings begin a line comment and delimit a block
// comment, and whether block comments nest. Empty strings mean "no such comment".
struct ZEL_API CommentInfo {
  // The comment languages. The values are stable; ParserBase starts with kNone.
  enum Language {
    kC = 0,         // "//" to the end of the line, "/*" to "*/", blocks do not nest
    kNone = 1,      // no comments
    kCNested = 2,   // as kC, with block comments nesting
    kHash = 3,      // "#" to the end of the line; one-line strings may run over line ends, which
                    // are dropped from them
    kSemicolon = 4  // ";" to the end of the line
  };

  // Sets the language and, from it, the nesting flag and the three strings.
  void SetLanguage(Language new_language);

  bool nested = false;
  Language language = kNone;
  strptr line_comment;
  strptr block_begin;
  strptr block_end;
};

// A number as ParseNumber reads it: a 32- or 64-bit integer or a double, tagged.
struct BuiltinNumber {
  // The width tags.
  static constexpr char kWidth32 = ' ';
  static constexpr char kWidth64 = '@';

  union {
    int64_t int64 = 0;  // is_integer, width kWidth64
    int32_t int32;      // is_integer, width kWidth32
    double real;        // !is_integer (ParseNumber gives doubles only, tagged kWidth64)
  };
  bool is_integer = true;
  char width = kWidth32;

  // The value as a double, whichever kind it is.
  double ToDouble() const {
    if (!is_integer) return real;
    return width == kWidth64 ? static_cast<double>(int64) : int32;
  }
};

// A cursor over one text (not owned: it must outlive the parser) with the primitives of a
// recursive-descent parser. Readers of pieces return views into the text. Errors are thrown as
// ParserErrorX from ErrorAt, and leave the position where the error was found. Constructing a
// parser allocates nothing; the line table (the LineNumbers base) is built only when an error is
// reported or a line number asked for. A parser belongs to one thread.
class ZEL_API ParserBase : public LineNumbers {
 public:
  // Empty text; the options at their defaults.
  ParserBase() = default;
  // Parses `text` from position 0.
  explicit ParserBase(const strptr &text) { Set(text); }

  // --- Setup ---

  // Replaces the text and the position, and starts the line table over.
  void Set(const strptr &text, int position = 0) {
    LineNumbers::Set(text);
    text_ = text;
    position_ = position;
  }
  // On: white space is blank and TAB only, so that line ends are significant. Off: the default
  // white space (blank, TAB, LF, CR).
  void SetLineMode(bool on) { white_space = on ? BlankCharQ : WhiteCharQ; }
  // Restores the default white space, the decimal separator "." and position 0.
  void InternalCtor() {
    white_space = WhiteCharQ;
    decimal_separator = '.';
    position_ = 0;
  }

  // --- Cheap access to the cursor ---

  const strptr &text() const { return text_; }
  // The index of the next character, 0 to the length.
  int position() const { return position_; }
  // Moves the cursor; `position` must lie within 0 to the length.
  void SetPosition(int position) { position_ = position; }
  bool AtEnd() const { return position_ >= text_.length(); }
  // The next character, or 0 at the end.
  char Peek() const { return AtEnd() ? '\0' : text_[position_]; }
  // Moves `n` characters on; they must be there.
  void Advance(int n = 1) { position_ += n; }
  // The text from the position to the end.
  strptr Rest() const { return text_.Mid(position_); }

  // --- Peeking and skipping (never throw, except SkipWs and SkipComment on a broken comment) ---

  // Whether the text at the position begins with `s`.
  bool PeekStr(const strptr &s, bool case_sensitive = true) const {
    return Rest().StartsWithQ(s, case_sensitive);
  }
  // As PeekStr, and on success moves past `s`.
  bool SkipStr(const strptr &s, bool case_sensitive = true);
  // When the next `n` characters all equal `ch`, moves past them and returns true.
  bool SkipNChars(int ch, int n);
  // Skips white space and comments, as long as there are any.
  void SkipWs();
  // Skips one comment (or a backslash-CR-LF continuation) at the position; false when there is
  // none. Throws "End of comment not found" for an unclosed block comment and "End-of-comment
  // string found outside of a comment" for a block end at the position.
  bool SkipComment();
  // Skips one line end ("\r\n", a lone "\r" or a lone "\n"); false when there is none.
  bool SkipNewLine();
  // When the character before the position is "\n", steps back over it and over a "\r" before
  // it, and returns true.
  bool SkipNewLineBack();
  // Whether the next character is "\n" or "\r".
  bool PeekNewLine() const { return NewLineCharQ(Peek()); }
  // Moves on until the text at the position begins with `s`, then past it: true. False when `s`
  // no longer fits; the position is then where the search stopped.
  bool FindNext(const strptr &s, bool case_sensitive = true);
  // Skips blanks, TABs and backslash line continuations ("\" before "\r\n", "\r" or "\n"); true
  // when a line end or the end of the text follows.
  bool WsEolQ();

  // --- Pieces (views into the text) ---

  // An identifier: a character of "a-zA-Z_" (else "Identifier expected"), then all following
  // characters of "0-9a-zA-Z_".
  strptr GetIdent();
  // The longest run of characters of `set`; may be empty.
  strptr GetSequence(const CharSet &set);
  // The run up to, not including, the first character of `stop`, which is not consumed. Reaching
  // the end is fine with `end_ok` (the rest is returned); else "Expected a character from
  // charset".
  strptr GetUpTo(const CharSet &stop, bool end_ok);
  // The run up to the first occurrence of `terminator`, which is consumed but not returned.
  // Without an occurrence: with `end_ok` the rest is returned and the position is the end; else
  // the error is the terminator followed by " expected".
  strptr GetUpTo(const strptr &terminator, bool end_ok, bool case_sensitive = true);
  // As GetUpTo, case-sensitive, but the terminator is not consumed: the position stays before it.
  strptr GetUpToExcluding(const strptr &terminator, bool end_ok);
  // Skips white space, then the run up to the next blank, TAB, LF or CR (or the end).
  strptr GetWord();
  // The run up to the next line end, which is consumed but not returned.
  strptr GetLine();
  using LineNumbers::GetLine;
  // The line that ends at the position (from the character after the previous line end); the
  // position moves back to before that line end, or to 0 on the first line.
  strptr GetLineBack();
  // Counts the "[" characters at the position into `count`; when a line end follows them,
  // consumes both and returns true. Otherwise the position is kept, `count` is 0 and false.
  bool SkipMultiLineHeader(int &count);

  // --- Numbers ---

  // One digit, returned as its character: "Unexpected end of text" at the end, "Digit expected"
  // for any other character.
  char GetDigit();
  // Hexadecimal digits (at least one, else "Error while parsing a hexadecimal number"), up to the
  // first other character. More than 32 bits: "Hexadecimal number too large to fit in 32 bits".
  uint32_t ParseHexDigits();
  // An optional "-" (else an optional "+") and decimal digits ("Number expected" if none). A
  // magnitude above 2147483647 is "Integer out of range", also for "-2147483648" (intended).
  int ParseInteger();
  // An optional "+" and decimal digits; "-" is "Non-negative number expected"; above 4294967295
  // "Integer out of range".
  uint32_t ParseUnsignedInteger();
  // Decimal digits (at least one, as GetDigit) as a double.
  double ParseDigits();
  // Decimal digits (at least one, as GetDigit) read as the fraction after a decimal separator:
  // "25" gives 0.25.
  double ParseFraction();
  // A number: an optional sign, then
  //  - "0x" or "0X" and hexadecimal digits: an integer of 32 bits when the digits fit in 32, else
  //    of 64 ("Hexadecimal number too large to fit in 64 bits"; without a digit "Error -- this
  //    is not a good-looking hexadecimal number"), negated with a "-";
  //  - decimal digits, with neither separator nor exponent: a 32-bit integer when it fits in one,
  //    else a 64-bit one; beyond 64 bits "Decimal separator expected" (write it with a fraction
  //    to read it as a double);
  //  - otherwise a double: digits, the decimal separator and fraction digits (either side may be
  //    empty, not both) and an optional exponent, "e" or "E", an optional sign and digits
  //    ("Expected exponent while parsing scientific notation" without them).
  // At the end of the text (after the sign) "Unexpected end of text"; no digit "Number expected".
  BuiltinNumber ParseNumber();

  // --- Strings ---

  // Reads a string quoted with `open` and `close` and appends its characters to `out` (which must
  // not hold the text being parsed). A quote followed by any number of "[" and a line end opens a
  // long string, which ends only at `close` followed by as many "]": it is taken verbatim, line
  // ends included. Otherwise it is a one-line string ending at `close`, in which the escape
  // character introduces: `close`; "\n" (dropped) or "\r" (dropped with a following "\n"); "0"
  // (a blank; with strict escapes "Null character in the string"); "\", "n", "r", "t" (backslash,
  // LF, CR, TAB); any other character (kept with the escape character; with strict escapes
  // "Unknown escape character " and the character). A line end in a one-line string is reported
  // ("Missing " + close + " in the string") without throwing and left out; the string goes on.
  // Throws "Open quote expected" when `open` is not next, and "Unterminated string" at the opening
  // quote (where the position returns) when the text ends first. After a failure `out` may hold
  // part of the string.
  void ParseStringAppend(cstring &out, char open, char close);
  // As above with the parser's quotes.
  void ParseStringAppend(cstring &out) { ParseStringAppend(out, open_quote, close_quote); }
  // Empties `out`, then ParseStringAppend.
  void ParseString(cstring &out);
  // Skips white space; when the open quote follows, empties `out`, reads the string and returns
  // true. Otherwise false, having consumed only the white space.
  bool MaybeParseString(cstring &out);

  // --- Errors ---

  // Reports `message` at `where`. The report is, when the text has more than one line,
  // "Line <n>: ", then the message, "\r\n", "<n>: " and the line of where.begin up to that
  // position (at most its last 100 characters), then "..." (n counts from 1). With `throw_it` it
  // is thrown as ParserErrorX; otherwise, when the log has a listener, it is logged as
  // "Parser Error: " + report + "\r\n".
  void ErrorAt(const Range &where, const strptr &message, bool throw_it);
  // ErrorAt with throw_it.
  [[noreturn]] void ThrowAt(const Range &where, const strptr &message);
  // ErrorAt at the position, thrown.
  [[noreturn]] void Error(const strptr &message) { ThrowAt(Range{position_, position_}, message); }
  // Error with `what` followed by " expected".
  [[noreturn]] void ErrorExpected(const strptr &what);

  // --- Options (set them directly) ---

  // What SkipWs skips.
  CharSet white_space = WhiteCharQ;
  CommentInfo comment_info;
  char escape_char = '\\';
  char open_quote = '"';
  char close_quote = '"';
  // A second quote character, for the formats built on this parser; the base does not use it.
  char alt_quote = '\'';
  // Unknown escapes and escaped "0" are errors.
  bool strict_escapes = false;
  char decimal_separator = '.';

 protected:
  strptr text_;
  int position_ = 0;

 private:
  // Moves past `c` when it is next.
  bool SkipChar(char c) {
    if (AtEnd() || text_[position_] != c) return false;
    ++position_;
    return true;
  }
  void SkipWhile(const CharSet &set) {
    while (!AtEnd() && set(text_[position_])) ++position_;
  }
  // The text from `start` to the position.
  strptr Since(int start) const { return strptr(text_.text() + start, position_ - start); }

  // The block comment at the position.
  void SkipBlockComment();
  // Where `terminator` next begins; when it does not occur, the end if `end_ok` (the position
  // moves there), else an error.
  int FindTerminator(const strptr &terminator, bool end_ok, bool case_sensitive);

  // "Unexpected end of text" or "Digit expected" unless a digit is next.
  void ExpectDigit();
  // Reads the decimal digits at the position (maybe none); the first `significant` of them make
  // the value, and `count` tells how many did.
  double AccumulateDigits(int significant, int &count);
  // The digits of ParseInteger and ParseUnsignedInteger: "Number expected" without one,
  // "Integer out of range" when the magnitude passes `limit`.
  double ReadMagnitude(double limit);
  // Hexadecimal digits of at most `bits` bits: `not_hex` without a digit, `too_large` beyond.
  uint64_t ReadHex(int bits, const char *too_large, const char *not_hex);
  // The kinds of ParseNumber, from the position after "0x" or the first digit (`digits`).
  BuiltinNumber HexNumber(bool negative);
  BuiltinNumber IntegerNumber(int digits, bool negative);
  BuiltinNumber RealNumber(int digits, bool negative);

  // The parts of ParseStringAppend, from the position after the quote (and the long header).
  void AppendLongString(cstring &out, char close, int brackets, int start);
  void AppendOneLineString(cstring &out, char close, int start);
  // The escape at the position, in a one-line string.
  void AppendEscape(cstring &out, char close);
  [[noreturn]] void FailEscape(int at, const strptr &message);
  // Reports the line end at the position inside the one-line string opened at `start`.
  void MissingClose(char close, int start);
  [[noreturn]] void Unterminated(int start);

  // Writes the report of ErrorAt.
  void ComposeError(cstring &out, const Range &where, const strptr &message);
};

// The operators skip white space first, then read with the named primitive.
// ParseInteger.
ZEL_API ParserBase &operator>>(ParserBase &p, int &value);
// ParseUnsignedInteger.
ZEL_API ParserBase &operator>>(ParserBase &p, unsigned &value);
// ParseNumber, converted.
ZEL_API ParserBase &operator>>(ParserBase &p, float &value);
ZEL_API ParserBase &operator>>(ParserBase &p, double &value);
// Expects `literal` (case-sensitive) and moves past it; else the error is the literal followed
// by " expected".
ZEL_API ParserBase &operator>>(ParserBase &p, const strptr &literal);

// A list of strings as the parser reads it: "{", then quoted strings separated by ",", then "}".
class ParseStringArray : public TAry<cstring> {};

// Empties the array, then reads "{" (else "{ expected"), strings separated by "," (white space
// and comments anywhere between) and "}".
ZEL_API ParserBase &operator>>(ParserBase &p, ParseStringArray &strings);

}  // namespace zel
