// Text helpers for tests: views as std::string, and the messages of exceptions.
#pragma once

#include <zel/diag/error.h>
#include <zel/text/strptr.h>

#include <initializer_list>
#include <string>
#include <string_view>

namespace zel::test {

// The characters of a view as a std::string, for comparisons with readable failure messages.
inline std::string Str(const strptr &s) {
  return std::string(s.text() ? s.text() : "", static_cast<size_t>(s.length()));
}

// The texts joined. Long expected texts are built with it rather than with chains of `+` on
// temporaries, about which g++ 12 warns falsely at -O3 (out-of-bounds copies inside std::string).
inline std::string Cat(std::initializer_list<std::string_view> parts) {
  std::string joined;
  for (std::string_view part : parts) joined.append(part);
  return joined;
}

// What `cstring << value` writes.
template <typename T>
std::string Printed(const T &value) {
  cstring s;
  s << value;
  return Str(s);
}

// The message of the ErrorX that `call` throws, or "no failure".
template <typename Call>
std::string FailureOf(Call &&call) {
  try {
    call();
  } catch (const ErrorX &e) {
    return Str(e.Message());
  }
  return "no failure";
}

}  // namespace zel::test
