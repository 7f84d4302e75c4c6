// Arbitrary bytes read as a bit-set record: the read either fails with ErrorX or gives a set that
// writes back to exactly the bytes it consumed.
#include <zel/diag/error.h>
#include <zel/stream/bit_set.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

// Collects what is written.
class RecordDest : public zel::VirtByteDest {
 public:
  int Write(const void *buffer, int n) override {
    bytes.append(static_cast<const char *>(buffer), static_cast<size_t>(n));
    return n;
  }
  std::string bytes;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  zel::MemoryByteSource source(data, static_cast<int>(size));
  zel::BitSet bits;
  try {
    zel::ReadBitSet(source, bits);
  } catch (const zel::ErrorX &) {
    return 0;
  }
  RecordDest dest;
  zel::WriteBitSet(dest, bits.View());
  const size_t consumed = size - static_cast<size_t>(~source);
  if (dest.bytes.size() != consumed || std::memcmp(dest.bytes.data(), data, consumed) != 0)
    std::abort();
  return 0;
}
