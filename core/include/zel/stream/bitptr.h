// bitptr: a read-only view of a set of bits kept in 32-bit words.
#pragma once

#include <cstdint>

namespace zel {

// A view of `count` bits at `words`: bit i is bit i mod 32 of words[i / 32]. It owns nothing.
class bitptr {
 public:
  constexpr bitptr() = default;
  constexpr bitptr(const uint32_t *words, int count) : words_(words), count_(count) {}

  constexpr int Count() const { return count_; }
  constexpr const uint32_t *Words() const { return words_; }
  // Number of 32-bit words that hold the bits (a partly used last word included).
  constexpr int WordCount() const { return (count_ >> 5) + ((count_ & 31) != 0 ? 1 : 0); }
  // Bit i (0 <= i < Count()).
  constexpr bool Test(int i) const { return ((words_[i >> 5] >> (i & 31)) & 1) != 0; }

 private:
  const uint32_t *words_ = nullptr;
  int count_ = 0;
};

}  // namespace zel
