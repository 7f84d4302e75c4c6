// A fast search for the first of four characters, shared by the quoted-string readers.
#pragma once

#include <cstdint>
#include <cstring>

namespace zel::text {

// The first character in [p, end) that is one of a, b, c and d, or `end`. Eight characters are
// tested at a time: a word has a byte equal to x when (word ^ x repeated) has a zero byte.
inline const char *FindAnyOf(const char *p, const char *end, char a, char b, char c, char d) {
  constexpr uint64_t kOnes = 0x0101010101010101, kHighs = 0x8080808080808080;
  auto repeated = [](char x) { return kOnes * static_cast<unsigned char>(x); };
  auto has_zero_byte = [](uint64_t w) { return (w - kOnes) & ~w & kHighs; };
  const uint64_t ma = repeated(a), mb = repeated(b), mc = repeated(c), md = repeated(d);
  for (; end - p >= 8; p += 8) {
    uint64_t w;
    std::memcpy(&w, p, 8);
    if (has_zero_byte(w ^ ma) | has_zero_byte(w ^ mb) | has_zero_byte(w ^ mc) |
        has_zero_byte(w ^ md))
      break;
  }
  while (p < end && *p != a && *p != b && *p != c && *p != d) ++p;
  return p;
}

}  // namespace zel::text
