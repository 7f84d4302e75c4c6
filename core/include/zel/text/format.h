// Formatting into a cstring beyond the plain `<<` forms of cstring.h.
#pragma once

#include <zel/text/cstring.h>

#include <concepts>
#include <type_traits>

namespace zel {

// Appends `value` in hexadecimal: "0x" ("0X" with `upper_case`) when `prefix` is set, then the
// digits without leading zeros but at least min(`min_digits`, 8) of them and at least one. The
// 64-bit form prints every digit a wider value needs.
ZEL_API cstring &FmtHex(cstring &out, unsigned int value, int min_digits = 0, bool prefix = false,
                        bool upper_case = false);
ZEL_API cstring &FmtHex(cstring &out, unsigned long long value, int min_digits = 0,
                        bool prefix = false, bool upper_case = false);
// Any other integer (int64_t and uint64_t among them where they are `long`): its bit pattern, as
// the 32- or 64-bit form by its size.
template <std::integral T>
cstring &FmtHex(cstring &out, T value, int min_digits = 0, bool prefix = false,
                bool upper_case = false) {
  if constexpr (sizeof(T) <= 4)
    return FmtHex(out, static_cast<unsigned int>(static_cast<std::make_unsigned_t<T>>(value)),
                  min_digits, prefix, upper_case);
  else
    return FmtHex(out, static_cast<unsigned long long>(value), min_digits, prefix, upper_case);
}

// Appends byte `c` as it stands inside a double-quoted string of the library's text formats. The
// bytes 0x20 to 0x80 are written as themselves, the double quote and the backslash with a
// backslash before them. Every other byte is a backslash and three octal digits of the byte
// sign-extended to 32 bits (bits 6-8, 3-5, 0-2): LF is \012, 0x81 is \601, 0xFF is \777. There
// are no short escapes such as \n: control characters always take the octal form.
ZEL_API cstring &WriteQuotedChar(cstring &out, char c);

// Appends `c` escaped for XML-like text: TAB, LF and CR as \t, \n and \r; the double quote,
// ampersand, apostrophe, less-than and greater-than as the entities &quot; &amp; &apos; &lt; &gt;;
// any other character that is neither printable nor white space in the "C" locale (the control
// characters, DEL and every byte from 0x80) as a backslash and three octal digits as
// WriteQuotedChar writes them; everything else as itself.
ZEL_API cstring &WriteQuotedCharXML(cstring &out, char c);

// The user's decimal and thousands separators (Windows: the locale settings; Linux: the current
// numeric locale of the C library, "." and "" in the "C" locale). Both are read on the first call
// of either and kept for the life of the process. The number printers do not use them: they
// always write "." and ",".
ZEL_API const char *GetDecimalSeparator();
ZEL_API const char *GetThousandsSeparator();

}  // namespace zel
