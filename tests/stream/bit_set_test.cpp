// The bit-set record: its layout, the checks on reading, and growth that follows the data.
#include <zel/stream/bit_set.h>
#include <zel/stream/checksum.h>

#include "support/memory_io.h"
#include "support/strings.h"

#include <string>
#include <utility>

namespace zel {
namespace {

using test::FailureOf;
using test::MemoryIO;

std::string Word(uint32_t v) {
  return {static_cast<char>(v), static_cast<char>(v >> 8), static_cast<char>(v >> 16),
          static_cast<char>(v >> 24)};
}

struct LargestResize final : IBitSet {
  BitSet set;
  int largest = 0;
  uint32_t *Resize(int count) override {
    if (count > largest) largest = count;
    return set.Resize(count);
  }
};

TEST(BitSetRecord, LayoutAndRoundTrip) {
  BitSet bits;
  bits.Resize(33);
  bits.Set(0, true);
  bits.Set(31, true);
  bits.Set(32, true);
  MemoryIO io;
  WriteBitSet(io, bits.View());
  EXPECT_EQ(io.data, "bitset" + Word(33) + Word(0x80000001) + Word(1) + Word(0x433AEA16));

  BitSet back;
  ReadBitSet(io, back);
  EXPECT_EQ(back.Count(), 33);
  EXPECT_EQ(back.View().Words()[0], 0x80000001u);
  EXPECT_EQ(back.View().Words()[1], 1u);

  // Bits past the count come in as stored, and clear once the set grows over them.
  const uint32_t words[] = {0, 0xFFFFFFFF};
  MemoryIO tail("bitset" + Word(33) + Word(0) + Word(words[1]) + Word(RecordChecksum(words, 8)));
  ReadBitSet(tail, back);
  back.Resize(64);
  EXPECT_TRUE(back.Test(32));
  EXPECT_FALSE(back.Test(33) || back.Test(63));

  MemoryIO empty;
  WriteBitSet(empty, bitptr());
  EXPECT_EQ(empty.data, "bitset" + Word(0) + Word(0));
  ReadBitSet(empty, back);
  EXPECT_EQ(back.Count(), 0);
}

TEST(BitSetRecord, RejectsBadRecordsWithoutAllocatingClaimedSizes) {
  const std::string good = "bitset" + Word(33) + Word(5) + Word(6);
  BitSet bits;
  const std::pair<std::string, std::string> bad[] = {
      {good + Word(0), "CRC check failed"},
      {"bitset" + Word(0xFFFFFFFF), "Invalid bit count"},
      {"bitsed" + Word(0) + Word(0),
       "Invalid signature read from file: expected bitset, found 'bitsed'"},
      {good, "Unexpected end of file: 4 bytes requested, 0 bytes read."}};
  for (const auto &[bytes, message] : bad) {
    MemoryIO io(bytes);
    EXPECT_EQ(FailureOf([&] { ReadBitSet(io, bits); }), message);
  }

  const std::string huge = "bitset" + Word(0x7FFFFFFF) + std::string(100, '\x55');
  LargestResize claimed;
  MemoryIO memory(huge);
  EXPECT_EQ(FailureOf([&] { ReadBitSet(memory, claimed); }),
            "Unexpected end of file: 65536 bytes requested, 100 bytes read.");
  EXPECT_LE(claimed.largest, 1 << 20);
}

}  // namespace
}  // namespace zel
