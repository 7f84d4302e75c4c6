// cstring::Format and Formatted: the C runtime's printf into a cstring.
#include <zel/text/cstring.h>

#include <cstdio>

namespace zel {

namespace {

// Most formatted texts are short: they are written on the stack and copied once, which also keeps
// arguments that point into the target intact while the runtime reads them.
constexpr int kStackText = 256;

}  // namespace

cstring &cstring::FormatV(const char *format, va_list args) {
  va_list again;
  va_copy(again, args);
  char stack[kStackText];
  const int n = std::vsnprintf(stack, sizeof stack, format, args);
  if (n < 0) {
    Flush();
  } else if (n < kStackText) {
    Set(strptr(stack, n));
  } else {
    cstring written;
    std::vsnprintf(written.GetBuffer(n), static_cast<size_t>(n) + 1, format, again);
    written.ReleaseBuffer(n);
    Swap(written);
  }
  va_end(again);
  return *this;
}

cstring &cstring::Format(const char *format, ...) {
  va_list args;
  va_start(args, format);
  FormatV(format, args);
  va_end(args);
  return *this;
}

temp_cstring Formatted(const char *format, ...) {
  cstring s;
  va_list args;
  va_start(args, format);
  s.FormatV(format, args);
  va_end(args);
  return temp_cstring(static_cast<cstring &&>(s));
}

}  // namespace zel
