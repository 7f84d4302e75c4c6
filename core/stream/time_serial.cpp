// NanoTime and UnixTime in byte streams: their values, which may not be negative.
#include <zel/diag/error.h>
#include <zel/stream/serialize.h>

namespace zel {

VirtByteDest &operator<<(VirtByteDest &dest, NanoTime t) {
  dest.WriteX(&t.value, sizeof t.value);
  return dest;
}

VirtByteSource &operator>>(VirtByteSource &source, NanoTime &t) {
  source.ReadX(&t.value, sizeof t.value);
  if (t.value < 0) ThrowErrorX("NanoTime:input negative seconds");
  return source;
}

VirtByteDest &operator<<(VirtByteDest &dest, UnixTime t) {
  const int32_t value = t.value();
  dest.WriteX(&value, sizeof value);
  return dest;
}

VirtByteSource &operator>>(VirtByteSource &source, UnixTime &t) {
  int32_t value;
  source.ReadX(&value, sizeof value);
  if (value < 0) ThrowErrorX("UnixTime:input negative seconds");
  t = UnixTime(value);
  return source;
}

}  // namespace zel
