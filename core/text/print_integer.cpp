// Integers with a minimum of digits, in octal and as bits, and bytes as a C initialiser.
#include <zel/text/format.h>
#include <zel/text/print.h>

#include <cstdint>

#include "text/integer_digits.h"

namespace zel {

cstring &operator<<(cstring &out, const PrintInt &p) {
  const uint32_t bits = static_cast<uint32_t>(p.value);
  const IntegerDigits<10> digits(p.value < 0 ? 0 - bits : bits);
  if (p.value < 0) out << '-';
  out.AddN(p.min_digits - digits.length(), '0');
  return digits.AppendTo(out);
}

cstring &operator<<(cstring &out, const PrintOctal &p) {
  return IntegerDigits<8>(static_cast<uint32_t>(p.value)).AppendTo(out);
}

cstring &operator<<(cstring &out, const PrintBits &p) {
  if (p.highest_bit < 0) return out;
  char *w = out.AddN(p.highest_bit + 1 + p.highest_bit / 8).writable_text();
  for (int i = p.highest_bit; i >= 0; --i) {
    *w++ = i < 32 && ((p.value >> i) & 1) != 0 ? '1' : '0';
    if (i > 0 && i % 8 == 0) *w++ = ' ';
  }
  return out;
}

cstring &operator<<(cstring &out, const PrintMemory &p) {
  const auto *bytes = static_cast<const unsigned char *>(p.data);
  out << '{';
  int line_start = out.length();
  for (int i = 0; i < p.count; ++i) {
    if (i > 0) out.AddNonOverlapping(", ", 2);
    if (out.length() - line_start > 60) {
      out.AddNonOverlapping("\r\n", 2);
      line_start = out.length();
    }
    FmtHex(out, uint32_t{bytes[i]}, 0, true);
  }
  return out << '}';
}

}  // namespace zel
