// Text helpers for tests: views as std::string, and the messages of exceptions.
#pragma once

#include <zel/diag/error.h>
#include <zel/text/strptr.h>

#include <string>

namespace zel::test {

// The characters of a view as a std::string, for comparisons with readable failure messages.
inline std::string Str(const strptr &s) {
  return std::string(s.text() ? s.text() : "", static_cast<size_t>(s.length()));
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
