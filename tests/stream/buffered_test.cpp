// The buffering adapters: what they ask of the stream beneath, and how they report its failures.
#include <zel/stream/buffered.h>

#include "support/memory_io.h"
#include "support/strings.h"

#include <string>
#include <vector>

namespace zel {
namespace {

using test::MemoryIO;

TEST(BufferedByteSource, RefillsWithWholeBuffersUntilTheInnerSourceRunsShort) {
  const std::string text = "abcdefghijklmnopqrstuvwxy";
  MemoryIO inner(text);
  BufferedByteSource source(inner, 8);
  char buffer[32];
  EXPECT_EQ(source.Read(buffer, 0), 0);
  EXPECT_TRUE(inner.reads.empty());
  EXPECT_EQ(source.Read(buffer, 3), 3);
  EXPECT_EQ(source.Read(buffer + 3, 10), 10);  // across a refill
  EXPECT_EQ(source.Read(buffer + 13, 32), 12);
  EXPECT_EQ(std::string(buffer, 25), text);
  EXPECT_EQ(inner.reads, (std::vector<int>{8, 8, 8, 8}));  // the last one returned 1
  EXPECT_EQ(source.Read(buffer, 5), 0);
  EXPECT_EQ(inner.reads.size(), 4u);  // not asked again after a short read
}

TEST(BufferedByteDest, HandsOnFullBuffersAndReportsRefusals) {
  MemoryIO inner;
  {
    BufferedByteDest dest(inner, 4);
    EXPECT_EQ(dest.Write("abc", 0), 0);
    EXPECT_EQ(dest.Write("abc", 3), 3);
    EXPECT_EQ(dest.Write("defgh", 5), 5);  // "abcd" goes out before 'e' comes in
    EXPECT_EQ(inner.writes, (std::vector<int>{4}));
    EXPECT_EQ(dest.Write("ij", 2), 2);
    EXPECT_EQ(inner.data, "abcdefgh");
    EXPECT_TRUE(dest.WriteOut());
    EXPECT_EQ(dest.Write("k", 1), 1);
  }  // the destructor writes out 'k'
  EXPECT_EQ(inner.data, "abcdefghijk");
  EXPECT_EQ(inner.writes, (std::vector<int>{4, 4, 2, 1}));

  MemoryIO refusing;
  refusing.accept = 5;
  BufferedByteDest dest(refusing, 4);
  EXPECT_EQ(dest.Write("0123456789", 10), 8);  // the second buffer was refused in part
  EXPECT_EQ(refusing.data, "01234");
  EXPECT_EQ(dest.Write("xy", 2), 2);  // the refused bytes are gone
  EXPECT_FALSE(dest.WriteOut());
  EXPECT_EQ(test::FailureOf([&] { dest.WriteX("abcde", 5); }), "Write failed");
}

}  // namespace
}  // namespace zel
