// Signatures: fixed bytes at the start of a binary file (or of a record in one), written raw and
// checked on reading.
#pragma once

#include <zel/stream/byte_stream.h>
#include <zel/text/strptr.h>

namespace zel {

// Writes the bytes of `signature` (no length, no terminator).
ZEL_API void WriteSignature(VirtByteDest &dest, const strptr &signature);
// Reads as many bytes as `signature` has, in pieces of at most 128 bytes, and compares each piece
// with the matching piece of `signature` as C strings (so the comparison ends at a zero byte both
// have). A mismatch throws ErrorX "Invalid signature read from file: expected <piece>, found
// '<bytes read>'" with unprintable bytes shown as blanks; a short source throws as ReadX does.
ZEL_API void ReadSignature(VirtByteSource &source, const strptr &signature);

// Writes the 4 bytes of `signature`.
ZEL_API void WriteSignature(VirtByteDest &dest, int signature);
// Reads 4 bytes; a different value throws ErrorX "Invalid signature read from file: expected <v>,
// found <value read>" (decimal, no quotes).
ZEL_API void ReadSignature(VirtByteSource &source, int signature);

// Writes the signature when `io` is writing, otherwise reads and checks it.
ZEL_API void SerializeSignature(VirtByteIO &io, const strptr &signature);
ZEL_API void SerializeSignature(VirtByteIO &io, int signature);

}  // namespace zel
