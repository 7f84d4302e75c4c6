// The number forms of cstring's `<<`: the text printf's "%d", "%u", "%lld", "%llu" and "%g" give,
// made without printf.
#include <zel/text/cstring.h>

#include <charconv>

namespace zel {

namespace {

// Room for the longest number any of the forms writes: "-9223372036854775808" has 20 characters,
// "-1.23457e-308" 13.
constexpr int kLongestNumber = 24;

}  // namespace

// Writes straight into the buffer when it already has room for the longest number; otherwise
// formats on the stack and appends, so that the buffer grows by exactly what is written.
template <typename T, typename... Style>
cstring &cstring::AddNumber(T value, Style... style) {
  if (capacity_ - stored_ >= kLongestNumber) {
    char *start = text_ + stored_ - 1;
    char *end = std::to_chars(start, start + kLongestNumber, value, style...).ptr;
    SetLength(static_cast<int>(end - text_));
    return *this;
  }
  char buffer[kLongestNumber];
  char *end = std::to_chars(buffer, buffer + kLongestNumber, value, style...).ptr;
  return AddNonOverlapping(buffer, static_cast<int>(end - buffer));
}

cstring &cstring::operator<<(char c) { return AddNonOverlapping(&c, 1); }
cstring &cstring::operator<<(int v) { return AddNumber(v); }
cstring &cstring::operator<<(unsigned int v) { return AddNumber(v); }
cstring &cstring::operator<<(long long v) { return AddNumber(v); }
cstring &cstring::operator<<(unsigned long long v) { return AddNumber(v); }
// "%g": six significant digits, trailing zeros dropped, an exponent outside 1e-4 .. 1e6.
cstring &cstring::operator<<(double v) { return AddNumber(v, std::chars_format::general, 6); }

}  // namespace zel
