// VAPrintf, the library's own printf, and FmtFlags, the state of one of its conversions.
#pragma once

#include <zel/text/cstring.h>

#include <cstdarg>
#include <cstdint>

namespace zel {

class ParserBase;

// The flags, width and precision of one VAPrintf conversion, and the integer printers that follow
// them. Padding to the width is VAPrintf's business, not theirs.
struct ZEL_API FmtFlags {
  enum : uint32_t {
    kAlternate = 1,   // '#': "0x" before hexadecimal digits, "0" before octal ones
    kUpperCase = 2,   // upper-case hexadecimal digits and prefix
    kRightAlign = 4,  // set by default, cleared by '-'
    kPlusSign = 8,    // '+': "+" before non-negative numbers
    kBlankSign = 16,  // ' ': a blank before non-negative numbers
    kZeroPad = 32,    // '0': pad with zeros instead of blanks
  };

  uint32_t flags = kRightAlign;
  int width = 0;      // minimum field width; 0 when absent
  int precision = 0;  // digits after the point of floating conversions; 0 when absent

  // Reads what stands between "%" and the conversion letter: any of the flags ' ' (sets the blank
  // sign, clears the plus sign), '#', '+' (sets the plus sign, clears the blank sign), '-' and '0';
  // then a run of digits, the width; then "." and a run of digits, the precision. The parser error
  // "Unexpected end of text" when the text ends before the conversion letter.
  void ReadFlags(ParserBase &format);
  void Read(ParserBase &format) { ReadFlags(format); }

  // The number's digits, after "+" (plus sign) or " " (blank sign) when it is not negative.
  cstring &PrintInt(cstring &out, int value) const;
  cstring &PrintUInt(cstring &out, unsigned int value) const;
  // Hexadecimal digits without leading zeros (at least one), after "0x" ("0X" in upper case) when
  // the alternate form is set.
  cstring &PrintHex(cstring &out, unsigned int value) const;
  cstring &PrintHex(cstring &out, unsigned long long value) const;
  // `unsigned long` (uint64_t on 64-bit Linux) by its size.
  cstring &PrintHex(cstring &out, unsigned long value) const {
    if constexpr (sizeof value == sizeof(unsigned int))
      return PrintHex(out, static_cast<unsigned int>(value));
    else
      return PrintHex(out, static_cast<unsigned long long>(value));
  }
  // Octal digits of the value's 32-bit pattern, after a "0" when the alternate form is set; zero
  // prints "0".
  cstring &PrintOctal(cstring &out, int value) const;
};

// Replaces the contents of `out` with `format` filled from the arguments at `args`, which it
// advances past what it consumed. Independent of the C runtime, and identical on every platform:
//   %d %i (int), %u (unsigned int): the number, signed as the flags say;
//   %x %X (unsigned int), %o (int), %p (pointer): as FmtFlags' printers (%p without prefix);
//   %c (int): the character; %s (const char *): the text, a null pointer giving none;
//   %e %E %f %g %G (double): PrintDouble with the precision as decimals, trailing zeros of the
//     fraction dropped (so "%f" prints no fraction);
//   %%: "%"; any other letter consumes nothing and prints nothing.
// There are no size prefixes and no "*" widths. A field shorter than the width is padded, at the
// front when right-aligned and after the field when left-aligned, with blanks or, with the '0'
// flag, zeros — in both alignments and in front of a sign or "0x" ("%05d" of -3 is "000-3", "%-05d"
// of 42 is "42000"): both intended. A format that ends inside a conversion throws ParserErrorX
// "Unexpected end of text", leaving what was written so far in `out`. `format` must not lie inside
// `out`, which is emptied first.
ZEL_API cstring &VAPrintf(cstring &out, const strptr &format, va_list &args);

}  // namespace zel
