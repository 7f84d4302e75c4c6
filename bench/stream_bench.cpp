// The record checksum over 1 MB beside a byte-at-a-time table CRC-32 and zlib's crc32.
#include <zel/stream/checksum.h>

#include <benchmark/benchmark.h>
#include <zlib.h>

#include <array>
#include <cstdint>
#include <vector>

namespace {

constexpr int kMegabyte = 1 << 20;

const std::vector<unsigned char> &Megabyte() {
  static const std::vector<unsigned char> data = [] {
    std::vector<unsigned char> bytes(kMegabyte);
    uint32_t x = 12345;
    for (auto &b : bytes) b = static_cast<unsigned char>((x = x * 1103515245u + 12345u) >> 16);
    return bytes;
  }();
  return data;
}

// The classic CRC-32: one table look-up per byte.
uint32_t TableCrc32(const unsigned char *p, size_t n) {
  static const std::array<uint32_t, 256> table = [] {
    std::array<uint32_t, 256> t{};
    for (uint32_t i = 0; i < 256; ++i) {
      uint32_t c = i;
      for (int bit = 0; bit < 8; ++bit) c = (c & 1) != 0 ? 0xEDB88320u ^ (c >> 1) : c >> 1;
      t[i] = c;
    }
    return t;
  }();
  uint32_t crc = 0xFFFFFFFFu;
  for (size_t i = 0; i < n; ++i) crc = (crc >> 8) ^ table[(crc ^ p[i]) & 0xFF];
  return ~crc;
}

template <typename Checksum>
void RunChecksum(benchmark::State &state, Checksum checksum) {
  const auto &data = Megabyte();
  for (auto _ : state) benchmark::DoNotOptimize(checksum(data.data()));
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * kMegabyte);
}

void Zel(benchmark::State &state) {
  RunChecksum(state, [](const unsigned char *p) { return zel::RecordChecksum(p, kMegabyte); });
}
void Table(benchmark::State &state) {
  RunChecksum(state, [](const unsigned char *p) { return TableCrc32(p, kMegabyte); });
}
void Zlib(benchmark::State &state) {
  RunChecksum(state, [](const unsigned char *p) { return crc32(0, p, kMegabyte); });
}

BENCHMARK(Zel)->Name("zel:checksum 1 MB");
BENCHMARK(Table)->Name("crc32_table:checksum 1 MB");
BENCHMARK(Zlib)->Name("zlib:checksum 1 MB");

}  // namespace
