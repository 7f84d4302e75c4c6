// The walk over a time format shared by the time and duration readers: blanks, literal characters,
// "%" conversions with their widths, and the numbers of the conversions. The input is an adapter
// (QuietInput here, a reporting one over ParserBase in the time reader) offering AtEnd, Peek, Next,
// SkipWhite, ExpectDigit and Fail.
#pragma once

#include <zel/text/charset.h>
#include <zel/text/cstring.h>
#include <zel/text/string_iter.h>

namespace zel {

// The width of a conversion without ".<digit>".
inline constexpr int kDefaultWidth = 10;

// The digits a conversion reads: the smaller of its width and the letter's own limit; below 1,
// any number.
constexpr int Capped(int width, int cap) { return width < cap ? width : cap; }

// A StringIter whose failures are quiet: Fail returns false and builds no message.
class QuietInput {
 public:
  explicit QuietInput(StringIter &it) : it_(it) {}

  bool AtEnd() const { return it_.AtEnd(); }
  char Peek() const { return it_.Peek(); }
  void Next() { it_.SkipNChars(1); }
  // Skips blank, TAB, CR and LF; how many were skipped.
  int SkipWhite() {
    const int start = it_.position();
    while (WhiteCharQ(it_.Peek())) it_.SkipNChars(1);
    return it_.position() - start;
  }
  // A number without digits is 0 here.
  bool ExpectDigit() { return true; }
  template <typename Message>
  bool Fail(const Message &) {
    return false;
  }
  // "AM" or "PM", ignoring case; false for anything else.
  bool ReadAmPm(bool &pm) {
    const strptr rest = it_.Rest();
    pm = rest.StartsWithQ("PM", false);
    if (!pm && !rest.StartsWithQ("AM", false)) return false;
    it_.SkipNChars(2);
    return true;
  }
  // White space, then an identifier ("a-zA-Z_", then "0-9a-zA-Z_"); false when there is none.
  bool ReadName(strptr &word) {
    SkipWhite();
    const int start = it_.position();
    if (!IdentStartQ(Peek())) return false;
    while (IdentCharQ(Peek())) Next();
    word = strptr(it_.text() + start, it_.position() - start);
    return true;
  }

 private:
  StringIter &it_;
};

// Moves past `c` when it is next.
template <typename Input>
bool SkipLiteral(Input &in, char c) {
  if (in.AtEnd() || in.Peek() != c) return false;
  in.Next();
  return true;
}

// An optional "-" or "+", then decimal digits, at most `width` of them (any number when `width`
// is below 1). The value is accumulated in double and may not pass 2147483647.
template <typename Input>
bool ReadNumber(Input &in, int width, int &value) {
  const bool negative = in.Peek() == '-';
  if (negative || in.Peek() == '+') in.Next();
  if (!in.ExpectDigit()) return false;
  double magnitude = 0;
  for (int n = 0; (width < 1 || n < width) && DigitCharQ(in.Peek()); ++n) {
    magnitude = magnitude * 10 + (in.Peek() - '0');
    in.Next();
    if (magnitude > 2147483647.0) return in.Fail("Integer out of range");
  }
  value = static_cast<int>(negative ? -magnitude : magnitude);
  return true;
}

// A number of at most `digits` digits into `field` when it is below `limit` (only the upper
// bound is checked, intended: mktime normalises negative values). Otherwise the failure reads
// `what`, the number and `range`.
template <typename Input>
bool ReadBelow(Input &in, int digits, int limit, int &field, const char *what = "",
               const char *range = "") {
  int n = 0;
  if (!ReadNumber(in, digits, n)) return false;
  if (n >= limit) return in.Fail([&](cstring &m) { m << what << n << range; });
  field = n;
  return true;
}

// Walks `format` over `in`. A blank skips white space, at least one character of it unless the
// format character before was a blank too; any other character must come next in the input; "%",
// an optional ".<digit>" width and a letter make a conversion, handed to `convert(letter, width)`
// (a "%" ending the format hands over the letter NUL). False at the first failure.
template <typename Input, typename Convert>
bool WalkFormat(Input &in, const strptr &format, Convert &&convert) {
  const int length = format.length();
  for (int i = 0; i < length; ++i) {
    const char c = format[i];
    if (c == '%') {
      int width = kDefaultWidth;
      if (i + 2 < length && format[i + 1] == '.' && DigitCharQ(format[i + 2])) {
        width = format[i + 2] - '0';
        i += 2;
      }
      ++i;
      if (!convert(i < length ? format[i] : '\0', width)) return false;
    } else if (c == ' ') {
      if (in.SkipWhite() == 0 && (i == 0 || format[i - 1] != ' '))
        return in.Fail("ParseTime: At least one space expected");
    } else if (!SkipLiteral(in, c)) {
      return in.Fail([c](cstring &m) { m << "ParseTime: '" << c << "' expected"; });
    }
  }
  return true;
}

}  // namespace zel
