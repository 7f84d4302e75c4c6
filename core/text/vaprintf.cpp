// VAPrintf, the library's own printf, and FmtFlags' printers.
#include <zel/parse/parser_base.h>
#include <zel/text/format.h>
#include <zel/text/print.h>
#include <zel/text/vaprintf.h>

#include <climits>
#include <cstring>

#include "text/integer_digits.h"

namespace zel {

namespace {

constexpr char kEndOfText[] = "Unexpected end of text";

// Applies one flag character; false when `c` is not one.
bool ApplyFlag(uint32_t &flags, char c) {
  switch (c) {
    case ' ': flags = (flags | FmtFlags::kBlankSign) & ~FmtFlags::kPlusSign; return true;
    case '#': flags |= FmtFlags::kAlternate; return true;
    case '+': flags = (flags | FmtFlags::kPlusSign) & ~FmtFlags::kBlankSign; return true;
    case '-': flags &= ~FmtFlags::kRightAlign; return true;
    case '0': flags |= FmtFlags::kZeroPad; return true;
    default: return false;
  }
}

// A run of digits as a number that stops growing at INT_MAX.
int ReadCount(ParserBase &format) {
  int n = 0;
  for (char c = format.Peek(); DigitCharQ(c); c = format.Peek()) {
    const int digit = c - '0';
    n = n > (INT_MAX - digit) / 10 ? INT_MAX : n * 10 + digit;
    format.Advance();
  }
  return n;
}

void PutSign(cstring &out, uint32_t flags) {
  if (flags & FmtFlags::kPlusSign)
    out << '+';
  else if (flags & FmtFlags::kBlankSign)
    out << ' ';
}

// Pads the field that starts at `start` to the width: in front when right-aligned, after it
// otherwise; with zeros when asked, whatever the alignment (intended).
void Pad(cstring &out, int start, const FmtFlags &f) {
  const int n = f.width - (out.length() - start);
  if (n <= 0) return;
  const char fill = f.flags & FmtFlags::kZeroPad ? '0' : ' ';
  if (f.flags & FmtFlags::kRightAlign)
    std::memset(out.InsertRegion(start, n).writable_text(), fill, static_cast<size_t>(n));
  else
    out.AddN(n, fill);
}

// One conversion, its letter already read.
void Convert(cstring &out, char letter, FmtFlags &f, va_list &args) {
  switch (letter) {
    case 'd':
    case 'i': f.PrintInt(out, va_arg(args, int)); break;
    case 'u': f.PrintUInt(out, va_arg(args, unsigned int)); break;
    case 'X': f.flags |= FmtFlags::kUpperCase; [[fallthrough]];
    case 'x': f.PrintHex(out, va_arg(args, unsigned int)); break;
    case 'o': f.PrintOctal(out, va_arg(args, int)); break;
    case 'p':
      f.PrintHex(
          out, static_cast<unsigned long long>(reinterpret_cast<uintptr_t>(va_arg(args, void *))));
      break;
    case 'c': out << static_cast<char>(va_arg(args, int)); break;
    case 's': out << va_arg(args, const char *); break;  // null adds nothing
    case 'e':
    case 'E':
    case 'f':
    case 'g':
    case 'G': out << PrintDouble(va_arg(args, double), f.precision, true); break;
    default: break;
  }
}

}  // namespace

void FmtFlags::ReadFlags(ParserBase &format) {
  while (!format.AtEnd() && ApplyFlag(flags, format.Peek())) format.Advance();
  if (format.AtEnd()) format.Error(kEndOfText);
  width = ReadCount(format);
  if (format.Peek() == '.') {
    format.Advance();
    precision = ReadCount(format);
  }
}

cstring &FmtFlags::PrintInt(cstring &out, int value) const {
  if (value >= 0) PutSign(out, flags);
  return out << value;
}

cstring &FmtFlags::PrintUInt(cstring &out, unsigned int value) const {
  PutSign(out, flags);
  return out << value;
}

cstring &FmtFlags::PrintHex(cstring &out, unsigned long long value) const {
  const bool upper = flags & kUpperCase;
  if (flags & kAlternate) out.AddNonOverlapping(upper ? "0X" : "0x", 2);
  return FmtHex(out, value, 0, false, upper);
}

cstring &FmtFlags::PrintHex(cstring &out, unsigned int value) const {
  return PrintHex(out, static_cast<unsigned long long>(value));
}

cstring &FmtFlags::PrintOctal(cstring &out, int value) const {
  if ((flags & kAlternate) && value != 0) out << '0';  // zero is "0", not "00"
  return IntegerDigits<8>(static_cast<uint32_t>(value)).AppendTo(out);
}

cstring &VAPrintf(cstring &out, const strptr &format, va_list &args) {
  out.Flush();
  ParserBase parser(format);
  const char *text = format.text();
  const int length = format.length();
  while (!parser.AtEnd()) {
    const int at = parser.position();
    const auto *percent =
        static_cast<const char *>(std::memchr(text + at, '%', static_cast<size_t>(length - at)));
    const int run_end = percent != nullptr ? static_cast<int>(percent - text) : length;
    out.AddNonOverlapping(text + at, run_end - at);
    if (percent == nullptr) break;
    parser.SetPosition(run_end + 1);
    if (parser.Peek() == '%') {
      out << '%';
      parser.Advance();
      continue;
    }
    FmtFlags f;
    f.ReadFlags(parser);
    if (parser.AtEnd()) parser.Error(kEndOfText);
    const char letter = parser.Peek();
    parser.Advance();
    const int start = out.length();
    Convert(out, letter, f, args);
    Pad(out, start, f);
  }
  return out;
}

}  // namespace zel
