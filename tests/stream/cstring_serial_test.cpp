// The byte-stream form of a cstring: a 4-byte little-endian length, then the characters.
#include <zel/stream/serialize.h>

#include "support/memory_io.h"
#include "support/strings.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace zel {
namespace {

using test::FailureOf;
using test::MemoryIO;  // reads through the default ReadX, which reports a short read with counts

std::string WithLength(int32_t n, std::string_view text) {
  const auto u = static_cast<uint32_t>(n);
  const char word[] = {static_cast<char>(u), static_cast<char>(u >> 8), static_cast<char>(u >> 16),
                       static_cast<char>(u >> 24)};
  return std::string(word, 4).append(text);
}

TEST(CStringSerial, WritesLengthThenCharactersAndReadsThemBack) {
  MemoryIO out;
  out << cstring("abc") << cstring();
  EXPECT_EQ(out.data, std::string("\x03\0\0\0abc\0\0\0\0", 11));

  std::string long_text(10000, 'a');  // three chunks
  for (size_t i = 0; i < long_text.size(); i += 7) long_text[i] = static_cast<char>(0x80 + i % 128);
  for (std::string_view text :
       {std::string_view("\x01\x7F\x80\xFF"), std::string_view(long_text)}) {
    MemoryIO bytes;
    bytes << cstring(text);
    cstring back("previous contents");
    bytes >> back;
    EXPECT_EQ(test::Str(back), text);
    EXPECT_EQ(bytes.next, text.size() + 4);
  }
  const std::string empty = WithLength(0, "");
  MemoryByteSource source(empty.data(), 4);
  cstring borrowed = cstring::Borrow("borrowed");
  source >> borrowed;
  EXPECT_EQ(borrowed.text(), cstring().text());  // the static empty text: nothing allocated
}

TEST(CStringSerial, RejectsNegativeLengthsZeroBytesAndHugeLengthsOnShortSources) {
  const std::string negative = WithLength(-1, "abc"), zero = WithLength(3, std::string("a\0c", 3));
  MemoryByteSource negative_source(negative.data(), static_cast<int>(negative.size()));
  MemoryByteSource zero_source(zero.data(), static_cast<int>(zero.size()));
  cstring target("old");
  EXPECT_EQ(FailureOf([&] { negative_source >> target; }), "Invalid string length");
  EXPECT_TRUE(target.empty());
  EXPECT_EQ(FailureOf([&] { zero_source >> target; }), "NULL in string");

  // A zero in the second chunk: the target keeps the characters read.
  MemoryIO late(WithLength(5000, std::string(4500, 'x') + '\0' + std::string(499, 'y')));
  EXPECT_EQ(FailureOf([&] { late >> target; }), "NULL in string");
  EXPECT_EQ(std::string_view(target.text(), 4096), std::string(4096, 'x'));

  // A huge length on a short source fails at its end, without allocating the length.
  const std::string claim = WithLength(0x7FFFFFF0, "abc");
  MemoryByteSource memory(claim.data(), static_cast<int>(claim.size()));
  MemoryIO bytes(claim);
  cstring from_memory, from_bytes;
  EXPECT_EQ(FailureOf([&] { memory >> from_memory; }), "Unexpected EOF");
  EXPECT_EQ(FailureOf([&] { bytes >> from_bytes; }),
            "Unexpected end of file: 4096 bytes requested, 3 bytes read.");
  EXPECT_LT(from_memory.capacity(), 1 << 16);
  EXPECT_LT(from_bytes.capacity(), 1 << 16);
}

}  // namespace
}  // namespace zel
