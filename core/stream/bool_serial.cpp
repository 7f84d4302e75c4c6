// The byte-stream form of a bool.
#include <zel/diag/error.h>
#include <zel/stream/serialize.h>

namespace zel {

VirtByteSource &operator>>(VirtByteSource &source, bool &b) {
  unsigned char byte;
  source.ReadX(&byte, 1);
  if (byte > 1) ThrowErrorX("Bad value read from file");
  b = byte == 1;
  return source;
}

}  // namespace zel
