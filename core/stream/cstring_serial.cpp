// The byte-stream form of a cstring.
#include <zel/diag/error.h>
#include <zel/stream/serialize.h>

#include <cstdint>
#include <cstring>

namespace zel {

namespace {
constexpr int kChunk = 4096;
}  // namespace

VirtByteDest &operator<<(VirtByteDest &dest, const cstring &s) {
  int32_t length = s.length();
  dest.WriteX(&length, sizeof length);
  dest.WriteX(s.text(), length);
  return dest;
}

VirtByteSource &operator>>(VirtByteSource &source, cstring &s) {
  int32_t length = 0;
  source.ReadX(&length, sizeof length);
  s.Flush();
  if (length < 0) ThrowErrorX("Invalid string length");
  for (int left = length; left > 0;) {
    int n = left < kChunk ? left : kChunk;
    int before = s.length();
    char *chunk = s.AddN(n).writable_text();
    try {
      source.ReadX(chunk, n);
    } catch (...) {
      s.LimitLength(before);  // keep only whole chunks
      throw;
    }
    if (std::memchr(chunk, 0, static_cast<size_t>(n)) != nullptr) ThrowErrorX("NULL in string");
    left -= n;
  }
  return source;
}

}  // namespace zel
