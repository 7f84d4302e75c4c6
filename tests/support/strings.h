// Text helpers for tests.
#pragma once

#include <zel/text/strptr.h>

#include <string>

namespace zel::test {

// The characters of a view as a std::string, for comparisons with readable failure messages.
inline std::string Str(const strptr &s) {
  return std::string(s.text() ? s.text() : "", static_cast<size_t>(s.length()));
}

}  // namespace zel::test
