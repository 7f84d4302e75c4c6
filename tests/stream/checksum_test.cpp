// The record checksum: its known values, and the same result however the bytes are split.
#include <zel/stream/checksum.h>

#include <cstdint>
#include <vector>

namespace zel {
namespace {

TEST(RecordChecksum, MatchesKnownValuesAndTheBytewiseRule) {
  EXPECT_EQ(RecordChecksum("", 0), 0u);
  EXPECT_EQ(RecordChecksum("\x01", 1), 0x77073096u);
  // Not the CRC-32 of "123456789" (0xCBF43926): intended.
  EXPECT_EQ(RecordChecksum("123456789", 9), 0xFC9E4DC1u);

  // The bytewise rule over every length and split, against the eight-byte steps.
  std::vector<unsigned char> bytes(70);
  for (size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<unsigned char>(i * 37 + 11);
  for (int n = 0; n <= 70; ++n) {
    uint32_t bytewise = 0;
    for (int i = 0; i < n; ++i) bytewise = RecordChecksum(&bytes[i], 1, bytewise);
    EXPECT_EQ(RecordChecksum(bytes.data(), n), bytewise) << n;
    const int half = n / 3;
    EXPECT_EQ(RecordChecksum(bytes.data() + half, n - half, RecordChecksum(bytes.data(), half)),
              bytewise)
        << n;
  }
}

}  // namespace
}  // namespace zel
