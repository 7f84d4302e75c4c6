// The record checksum, eight bytes per step. The update shifts left like an MSB-first CRC but
// looks up the reflected CRC-32 table; the mix is intended (files written with it must verify).
// Every step is linear, so eight byte steps fold into eight table look-ups: table k holds the
// effect of a byte followed by k more bytes.
#include <zel/stream/checksum.h>

#include <array>

namespace zel {

namespace {

using Table = std::array<uint32_t, 256>;

constexpr Table ReflectedCrc32Table() {
  Table t{};
  for (uint32_t i = 0; i < 256; ++i) {
    uint32_t c = i;
    for (int bit = 0; bit < 8; ++bit) c = (c & 1) != 0 ? 0xEDB88320u ^ (c >> 1) : c >> 1;
    t[i] = c;
  }
  return t;
}

constexpr std::array<Table, 8> SlicedTables() {
  std::array<Table, 8> tables{};
  tables[0] = ReflectedCrc32Table();
  for (int k = 1; k < 8; ++k)
    for (int i = 0; i < 256; ++i) {
      const uint32_t c = tables[k - 1][i];
      tables[k][i] = (c << 8) ^ tables[0][c >> 24];  // one more zero byte
    }
  return tables;
}

constexpr std::array<Table, 8> kTables = SlicedTables();
static_assert(kTables[0][1] == 0x77073096u);

}  // namespace

uint32_t RecordChecksum(const void *data, int n, uint32_t crc) {
  const auto *p = static_cast<const unsigned char *>(data);
  const Table &t0 = kTables[0];
  for (; n >= 8; n -= 8, p += 8) {
    crc = kTables[7][(crc >> 24) ^ p[0]] ^ kTables[6][((crc >> 16) & 0xFF) ^ p[1]] ^
          kTables[5][((crc >> 8) & 0xFF) ^ p[2]] ^ kTables[4][(crc & 0xFF) ^ p[3]] ^
          kTables[3][p[4]] ^ kTables[2][p[5]] ^ kTables[1][p[6]] ^ t0[p[7]];
  }
  for (; n > 0; --n, ++p) crc = (crc << 8) ^ t0[(crc >> 24) ^ *p];
  return crc;
}

}  // namespace zel
