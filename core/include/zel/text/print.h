// The formatting manipulators: small records that say how a value is to be written, appended to a
// cstring with `<<`, as in `s << PrintDouble(ratio, 2) << " of " << PrintSizeBytes(size)`. Each
// `<<` appends and returns the string.
#pragma once

#include <zel/text/cstring.h>

#include <cstdint>

namespace zel {

// A signed integer with at least `min_digits` digits: "-" for a negative value, then zeros up to
// the minimum, then the digits. PrintInt(7, 3) is "007", PrintInt(-42, 4) is "-0042".
struct PrintInt {
  PrintInt(int32_t value, int32_t min_digits) : value(value), min_digits(min_digits) {}
  int32_t value;
  int32_t min_digits;
};

// A double rounded to `decimals` decimals, in plain notation (no exponent); the point is always
// ".". With `trim`, trailing zeros of the fraction are dropped, but not those of the integer part
// (2.5 to 3 decimals is "2.5", without trim "2.500"; 1000.0 stays "1000"). The digits are those
// of the exact binary value rounded to the nearest, an exact tie away from zero (0.125 to 2
// decimals is "0.13", 0.15 to 1 decimal "0.1" because the double is just below 0.15). Decimals are
// capped at 100; a negative count means 0. NaN prints "NaN", the infinities "inf" and "-inf".
// A value that rounds to zero prints exactly as 0.0 does, without a sign: -0.001 to 2 decimals is
// "0" with trim and "0.00" without, 0.03 to 0 decimals is "0".
struct PrintDouble {
  PrintDouble(double value, int32_t decimals, bool trim = true)
      : value(value), decimals(decimals), trim(trim) {}
  double value;
  int32_t decimals;
  bool trim;
};

// As PrintDouble with trim, and the integer part grouped by three with ",": 1234567.891 to 2
// decimals is "1,234,567.89", 123456.0 is "123,456". Below 1 it is as PrintDouble with trim
// (a value that rounds to zero is "0").
struct PrintDoubleWithCommas {
  PrintDoubleWithCommas(double value, int32_t decimals) : value(value), decimals(decimals) {}
  double value;
  int32_t decimals;
};

// A fraction as a percentage: PrintDouble of fraction * 100 with trim, then "%"; 0.1234 with 1
// decimal is "12.3%".
struct PrintPercent {
  PrintPercent(double fraction, int32_t decimals) : fraction(fraction), decimals(decimals) {}
  double fraction;
  int32_t decimals;
};

// A size in bytes in the unit that suits it, trimmed: below 1024 with one decimal and " Bytes";
// below 1024 KB with one decimal and " KB"; below 1024 MB with two decimals and " MB"; beyond,
// with two decimals in thousands of megabytes and " GB" (2^30 bytes is "1.02 GB": intended). A
// negative size is written as "-" and its magnitude.
struct PrintSizeBytes {
  explicit PrintSizeBytes(double bytes) : bytes(bytes) {}
  double bytes;
};

// A size in bits: from 512 bits on as PrintSizeBytes of an eighth of it ("512 Bytes"), below
// with one decimal, trimmed, and " Bits". A negative size is written as "-" and its magnitude.
struct PrintSizeBits {
  explicit PrintSizeBits(double bits) : bits(bits) {}
  double bits;
};

// The octal digits of the value's 32-bit pattern, without a prefix: 8 is "10", -1 "37777777777".
struct PrintOctal {
  explicit PrintOctal(int32_t value) : value(value) {}
  int32_t value;
};

// Bits `highest_bit` down to 0 of the value as "1" and "0", a blank after each bit whose index is
// a positive multiple of 8, so that bytes stand apart: PrintBits(511, 8) is "1 11111111". Bits
// above 31 print as "0"; a negative `highest_bit` prints nothing.
struct PrintBits {
  PrintBits(uint32_t value, int32_t highest_bit = 31) : value(value), highest_bit(highest_bit) {}
  uint32_t value;
  int32_t highest_bit;
};

// Bytes as a C initialiser: "{0x0, 0x1a, 0xff}", a CR LF before a byte when the current line has
// grown beyond 60 characters. A count below 1 prints "{}".
struct PrintMemory {
  PrintMemory(const void *data, int32_t count) : data(data), count(count) {}
  const void *data;
  int32_t count;
};

// A character between apostrophes, escaped as WriteQuotedChar does, the apostrophe itself as \';
// -1 (the end of input) prints "EOF".
struct PrintChar {
  explicit PrintChar(int32_t c) : c(c) {}
  int32_t c;
};

// Text as a quoted string of the library's text formats, which the command-line reader turns back
// into the same text.
//
// When `long_form` is allowed and the text holds a CR, an LF or a double quote, it is written
// unchanged in the long form: a double quote, N "[", CR LF, the text, a double quote and N "]",
// with the smallest N for which that closing mark does not occur in the text. Otherwise it is
// written in the short form: between double quotes, each byte through WriteQuotedChar, with long
// text broken into lines by a backslash and CR LF (after a comma beyond 100 characters since the
// last break, after white space beyond 130, after any character beyond 160; a CR or LF in the
// text restarts the count).
struct PrintQuotedString {
  PrintQuotedString(const strptr &text, bool long_form = true) : text(text), long_form(long_form) {}
  // The text that `text` points to (null is empty text).
  PrintQuotedString(const strptr *text, bool long_form = true)
      : text(text != nullptr ? *text : strptr()), long_form(long_form) {}
  strptr text;
  bool long_form;
};

// The character `count` times; nothing for a count below 1.
struct PrintNTimes {
  PrintNTimes(char c, int32_t count) : c(c), count(count) {}
  char c;
  int32_t count;
};

// The file name (no directory) of a loaded module's path, as the system reports it: `module` is a
// library's handle (os::ThisModule, LoadLibrary), null for the executable. Nothing when the
// module is unknown.
struct PrintDllName {
  explicit PrintDllName(void *module) : module(module) {}
  void *module;
};

// Two blanks per level of indentation; nothing for a negative level.
struct Indenter {
  explicit Indenter(int32_t level) : level(level) {}
  int32_t level;
};

ZEL_API cstring &operator<<(cstring &out, const PrintInt &p);
ZEL_API cstring &operator<<(cstring &out, const PrintDouble &p);
ZEL_API cstring &operator<<(cstring &out, const PrintDoubleWithCommas &p);
ZEL_API cstring &operator<<(cstring &out, const PrintPercent &p);
ZEL_API cstring &operator<<(cstring &out, const PrintSizeBytes &p);
ZEL_API cstring &operator<<(cstring &out, const PrintSizeBits &p);
ZEL_API cstring &operator<<(cstring &out, const PrintOctal &p);
ZEL_API cstring &operator<<(cstring &out, const PrintBits &p);
ZEL_API cstring &operator<<(cstring &out, const PrintMemory &p);
ZEL_API cstring &operator<<(cstring &out, const PrintChar &p);
ZEL_API cstring &operator<<(cstring &out, const PrintQuotedString &p);
ZEL_API cstring &operator<<(cstring &out, const PrintNTimes &p);
ZEL_API cstring &operator<<(cstring &out, const PrintDllName &p);
ZEL_API cstring &operator<<(cstring &out, const Indenter &p);

}  // namespace zel
