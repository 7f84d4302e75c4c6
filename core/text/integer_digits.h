// The digits of a 32-bit value in base 8 or 10, made right to left on the stack. Shared by the
// integer printers, the printf engine and the time printer.
#pragma once

#include <zel/text/cstring.h>

#include <cstdint>

namespace zel {

// The digits of `value` without leading zeros (at least one: 0 is "0").
template <uint32_t Base>
class IntegerDigits {
 public:
  explicit IntegerDigits(uint32_t value) {
    do {
      text_[sizeof text_ - ++length_] = static_cast<char>('0' + value % Base);
      value /= Base;
    } while (value != 0);
  }
  const char *text() const { return text_ + sizeof text_ - length_; }
  int length() const { return length_; }
  cstring &AppendTo(cstring &out) const { return out.AddNonOverlapping(text(), length_); }

 private:
  char text_[11];
  int length_ = 0;
};

}  // namespace zel
