// Exact transfers of the byte-stream interfaces, the memory source and the bool form.
#include <zel/stream/serialize.h>

#include "support/memory_io.h"
#include "support/strings.h"

#include <string>

namespace zel {
namespace {

using test::FailureOf;
using test::MemoryIO;

TEST(ByteStream, ShortTransfersThrowAndConsumeAsDocumented) {
  char buffer[10];
  MemoryIO io("abcd");
  EXPECT_EQ(FailureOf([&] { io.ReadX(buffer, 10); }),
            "Unexpected end of file: 10 bytes requested, 4 bytes read.");
  EXPECT_EQ(io.next, 4u);  // what was read stays consumed

  MemoryByteSource memory("abcd", 4);
  EXPECT_EQ(FailureOf([&] { memory.ReadX(buffer, 10); }), "Unexpected EOF");
  EXPECT_EQ(FailureOf([&] { memory.SkipX(5); }), "Unexpected EOF");
  EXPECT_EQ(~memory, 4);  // checked before anything is consumed
}

TEST(ByteStream, BoolsAreOneByteZeroOrOne) {
  MemoryIO io;
  io << true << false;
  EXPECT_EQ(io.data, std::string("\x01\x00", 2));
  bool first = false, second = true;
  io >> first >> second;
  EXPECT_TRUE(first);
  EXPECT_FALSE(second);

  MemoryIO bad("\x02");
  bool kept = true;
  EXPECT_EQ(FailureOf([&] { bad >> kept; }), "Bad value read from file");
  EXPECT_TRUE(kept);
  EXPECT_EQ(bad.next, 1u);
}

}  // namespace
}  // namespace zel
