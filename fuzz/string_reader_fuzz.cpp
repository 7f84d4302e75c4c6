// Arbitrary bytes read as a sequence of serialised strings: every read either gives a string no
// longer than the input, which writes back to the same bytes, or fails with ErrorX.
#include <zel/diag/error.h>
#include <zel/stream/serialize.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "byte_sink.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  zel::MemoryByteSource source(data, static_cast<int>(size));
  while (~source > 0) {
    int before = ~source;
    zel::cstring s;
    try {
      source >> s;
    } catch (const zel::ErrorX &) {
      return 0;
    }
    if (s.length() > before - 4 || s.text()[s.length()] != 0) std::abort();
    fuzz::ByteSink dest;
    dest << s;
    const char *consumed =
        reinterpret_cast<const char *>(data) + (size - static_cast<size_t>(before));
    if (dest.bytes.size() != static_cast<size_t>(before - ~source) ||
        std::memcmp(dest.bytes.data(), consumed, dest.bytes.size()) != 0)
      std::abort();
  }
  return 0;
}
