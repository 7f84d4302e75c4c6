// The record checksum that guards bit-set records.
#pragma once

#include <zel/config.h>

#include <cstdint>

namespace zel {

// Continues the record checksum `crc` (0 to start) over `n` bytes at `data` and returns it. Per
// byte: crc = (crc << 8) ^ T[(crc >> 24) ^ byte], with T the table of the reflected CRC-32
// (polynomial 0xEDB88320), no final inversion. Not a standard CRC-32: it is the checksum stored
// in existing files, which must keep verifying.
ZEL_API uint32_t RecordChecksum(const void *data, int n, uint32_t crc = 0);

}  // namespace zel
