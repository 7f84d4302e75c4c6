// Arbitrary bytes read as a bit-set record: the read either fails with ErrorX or gives a set that
// writes back to exactly the bytes it consumed.
#include <zel/diag/error.h>
#include <zel/stream/bit_set.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "byte_sink.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  zel::MemoryByteSource source(data, static_cast<int>(size));
  zel::BitSet bits;
  try {
    zel::ReadBitSet(source, bits);
  } catch (const zel::ErrorX &) {
    return 0;
  }
  fuzz::ByteSink dest;
  zel::WriteBitSet(dest, bits.View());
  const size_t consumed = size - static_cast<size_t>(~source);
  if (dest.bytes.size() != consumed || std::memcmp(dest.bytes.data(), data, consumed) != 0)
    std::abort();
  return 0;
}
