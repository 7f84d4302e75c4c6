// Hexadecimal numbers.
#include <zel/text/format.h>

namespace zel {

cstring &FmtHex(cstring &out, unsigned long long value, int min_digits, bool prefix,
                bool upper_case) {
  const char *digits = upper_case ? "0123456789ABCDEF" : "0123456789abcdef";
  if (prefix) out.AddNonOverlapping(upper_case ? "0X" : "0x", 2);
  if (min_digits > 8) min_digits = 8;
  char buffer[16];
  int n = 0;
  do {
    buffer[15 - n++] = digits[value & 15];
    value >>= 4;
  } while (value != 0 || n < min_digits);
  return out.AddNonOverlapping(buffer + 16 - n, n);
}

cstring &FmtHex(cstring &out, unsigned int value, int min_digits, bool prefix, bool upper_case) {
  return FmtHex(out, static_cast<unsigned long long>(value), min_digits, prefix, upper_case);
}

}  // namespace zel
