// The byte-stream interfaces' exact transfers, and the memory source.
#include <zel/diag/error.h>
#include <zel/stream/byte_stream.h>
#include <zel/text/thread_local_string.h>

#include <cstring>

namespace zel {

VirtByteSource::~VirtByteSource() = default;

void VirtByteSource::ReadX(void *buffer, int n) {
  int got = Read(buffer, n);
  if (got == n) return;
  ThreadLocalString message;
  *message << "Unexpected end of file: " << n << " bytes requested, " << got << " bytes read.";
  ThrowErrorX(*message);
}

VirtByteDest::~VirtByteDest() = default;

void VirtByteDest::WriteX(const void *buffer, int n) {
  if (Write(buffer, n) != n) ThrowErrorX("Write failed");
}

int MemoryByteSource::Read(void *buffer, int n) {
  int taken = n < remaining_ ? (n > 0 ? n : 0) : remaining_;
  if (taken == 0) return 0;
  std::memcpy(buffer, next_, static_cast<size_t>(taken));
  next_ += taken;
  remaining_ -= taken;
  return taken;
}

void MemoryByteSource::ReadX(void *buffer, int n) {
  if (n > remaining_) ThrowErrorX("Unexpected EOF");
  Read(buffer, n);
}

int MemoryByteSource::Skip(int n) {
  int skipped = n < remaining_ ? (n > 0 ? n : 0) : remaining_;
  next_ += skipped;
  remaining_ -= skipped;
  return skipped;
}

void MemoryByteSource::SkipX(int n) {
  if (n > remaining_) ThrowErrorX("Unexpected EOF");
  Skip(n);
}

}  // namespace zel
