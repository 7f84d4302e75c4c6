// Text and integer signatures: the raw bytes, the 128-byte pieces and the mismatch messages.
#include <zel/stream/signature.h>

#include "support/memory_io.h"
#include "support/strings.h"

#include <string>
#include <vector>

namespace zel {
namespace {

using test::FailureOf;
using test::MemoryIO;

template <typename Signature>
std::string SignatureFailure(std::string bytes, const Signature &signature) {
  MemoryIO io(std::move(bytes));
  return FailureOf([&] { ReadSignature(io, signature); });
}

TEST(Signature, TextSignaturesAreRawBytesComparedAsCStrings) {
  MemoryIO io({}, true);
  SerializeSignature(io, "ZelFile1");
  EXPECT_EQ(io.data, "ZelFile1");
  io.SetWriting(false);
  SerializeSignature(io, "ZelFile1");
  EXPECT_EQ(io.next, 8u);

  EXPECT_EQ(SignatureFailure(std::string("Zel\x01\xFFle2", 8), strptr("ZelFile1")),
            "Invalid signature read from file: expected ZelFile1, found 'Zel  le2'");
  // Bytes after a zero byte in both are not compared (intended).
  EXPECT_EQ(SignatureFailure(std::string("ab\0xy", 5), strptr("ab\0cd", 5)), "no failure");
  EXPECT_EQ(SignatureFailure("Zel", strptr("ZelFile1")),
            "Unexpected end of file: 8 bytes requested, 3 bytes read.");
}

TEST(Signature, LongTextSignaturesAreCheckedIn128BytePieces) {
  const std::string expected = std::string(128, 'a') + std::string(72, 'b');
  MemoryIO io(expected);
  ReadSignature(io, strptr(expected));
  EXPECT_EQ(io.reads, (std::vector<int>{128, 72}));

  std::string found = expected;
  found[150] = 'c';
  EXPECT_EQ(SignatureFailure(found, strptr(expected)),
            "Invalid signature read from file: expected " + expected.substr(128) + ", found '" +
                found.substr(128) + "'");
}

TEST(Signature, IntegerSignaturesAreFourBytesAndUnquotedInMessages) {
  MemoryIO io({}, true);
  SerializeSignature(io, -2);
  EXPECT_EQ(io.data, "\xFE\xFF\xFF\xFF");
  io.SetWriting(false);
  SerializeSignature(io, -2);
  EXPECT_EQ(SignatureFailure(std::string("\x07\x00\x00\x00", 4), 8),
            "Invalid signature read from file: expected 8, found 7");
}

}  // namespace
}  // namespace zel
