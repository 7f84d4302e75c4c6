// The growable bit set.
#include <zel/stream/bit_set.h>

namespace zel {

IBitSet::~IBitSet() = default;

uint32_t *BitSet::Resize(int count) {
  const int words = bitptr(nullptr, count).WordCount();
  words_.Reserve(words);
  while (words_.Count() < words) words_.Add(0u);
  while (words_.Count() > words) words_.RemoveAt(words_.Count() - 1);
  // Bits past the old count in its last word become clear.
  if (count_ < count && (count_ & 31) != 0) words_[count_ / 32] &= (1u << (count_ & 31)) - 1;
  count_ = count;
  return words_.begin();
}

void BitSet::Set(int i, bool on) {
  const uint32_t mask = 1u << (i & 31);
  if (on) {
    words_[i >> 5] |= mask;
  } else {
    words_[i >> 5] &= ~mask;
  }
}

}  // namespace zel
