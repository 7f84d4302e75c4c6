// Binary serialisation onto byte streams: native little-endian, no padding.
#pragma once

#include <zel/stream/byte_stream.h>
#include <zel/text/cstring.h>
#include <zel/time/nano_time.h>
#include <zel/time/unix_time.h>

#include <concepts>

namespace zel {

// A cstring: a 4-byte signed length L (characters, no terminator), then the L characters.
ZEL_API VirtByteDest &operator<<(VirtByteDest &dest, const cstring &s);
// Reads the form above. The string is emptied first, then filled in chunks of at most 4,096
// characters as they arrive (a huge length on a short source fails at the source's end, without
// allocating the claimed length). Throws ErrorX "Invalid string length" for a negative length and
// "NULL in string" when a chunk holds a zero byte (the string keeps what was read before).
ZEL_API VirtByteSource &operator>>(VirtByteSource &source, cstring &s);

// A bool: one byte, 0 for false and 1 for true. The writer takes nothing but a bool, so that a
// pointer or a number never turns into one on its way to a stream.
template <std::same_as<bool> Bool>
VirtByteDest &operator<<(VirtByteDest &dest, Bool b) {
  const unsigned char byte = b ? 1 : 0;
  dest.WriteX(&byte, 1);
  return dest;
}
// Reads the form above; any other byte value throws ErrorX "Bad value read from file" (the byte
// stays consumed and `b` unchanged).
ZEL_API VirtByteSource &operator>>(VirtByteSource &source, bool &b);

// Times: the 8-byte NanoTime and the 4-byte UnixTime values. Reading a negative one throws ErrorX
// "NanoTime:input negative seconds" / "UnixTime:input negative seconds" (the bytes stay consumed).
ZEL_API VirtByteDest &operator<<(VirtByteDest &dest, NanoTime t);
ZEL_API VirtByteSource &operator>>(VirtByteSource &source, NanoTime &t);
ZEL_API VirtByteDest &operator<<(VirtByteDest &dest, UnixTime t);
ZEL_API VirtByteSource &operator>>(VirtByteSource &source, UnixTime &t);

}  // namespace zel
