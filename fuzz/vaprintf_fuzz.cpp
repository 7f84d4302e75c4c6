// Feeds fuzzed formats to VAPrintf with arguments that match their conversions: the format is cut
// into pieces of at most one conversion each, and each piece is printed with an argument of the
// type its letter takes. Checks that nothing crashes or reads past the format and that every field
// is at least as wide as asked.
#include <zel/parse/parser_error.h>
#include <zel/text/vaprintf.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

using zel::cstring;

void Print(cstring &out, const char *format, int length, ...) {
  va_list args;
  va_start(args, length);
  try {
    zel::VAPrintf(out, zel::strptr(format, length), args);
  } catch (const zel::ParserErrorX &) {
    // A format that ends inside a conversion.
  }
  va_end(args);
}

bool IsFlag(char c) { return c == ' ' || c == '#' || c == '+' || c == '-' || c == '0'; }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  if (size > 512) return 0;
  const char *text = reinterpret_cast<const char *>(data);
  const int length = static_cast<int>(size);
  cstring out;
  int i = 0;
  while (i < length) {
    const int begin = i;
    while (i < length && text[i] != '%') ++i;
    if (i == length) {
      Print(out, text + begin, i - begin);
      break;
    }
    ++i;  // past "%"
    while (i < length && IsFlag(text[i])) ++i;
    int width = 0, digits = 0;
    for (; i < length && IsDigit(text[i]); ++i, ++digits)
      if (digits < 4) width = width * 10 + (text[i] - '0');
    if (i < length && text[i] == '.') {
      ++i;
      for (; i < length && IsDigit(text[i]); ++i) ++digits;
    }
    if (digits > 3) return 0;  // keep fields small: a width of millions only tests the allocator
    const char letter = i < length ? text[i] : 0;
    i = i < length ? i + 1 : i;
    const char *piece = text + begin;
    const int piece_length = i - begin;
    const double fraction = static_cast<double>(size) / 7.0 - 13.25;
    switch (letter) {
      case 'd':
      case 'i':
      case 'u':
      case 'x':
      case 'X':
      case 'o':
      case 'c': Print(out, piece, piece_length, static_cast<int>(size * 2654435761u)); break;
      case 'e':
      case 'E':
      case 'f':
      case 'g':
      case 'G': Print(out, piece, piece_length, fraction * (size % 2 ? 1e12 : 1e-9)); break;
      case 's': Print(out, piece, piece_length, size % 3 ? "fuzzed text" : nullptr); break;
      case 'p': Print(out, piece, piece_length, static_cast<const void *>(text)); break;
      default: Print(out, piece, piece_length); break;
    }
    if (letter != 0 && letter != '%' && out.length() < width) std::abort();
  }
  return 0;
}
