// Whole files to strings and back: the text rules of the readers and the failures of both ways.
#include <zel/diag/error.h>
#include <zel/file/whole_file.h>

#include "os/os.h"
#include "support/log_capture.h"
#include "support/scratch_dir.h"
#include "support/strings.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

namespace zel {
namespace {

using namespace std::string_literals;
using test::Cat;
using test::FailureOf;
using test::Str;

constexpr const char *kZero = "Text contains invalid (zero) characters";
const std::string kNote = "Note: converted Unicode text to ASCII\r\n";

// What a reader made of a file: its text, or the message it threw; and whether it logged the note.
struct Outcome {
  std::string result;
  bool noted;
  bool operator==(const Outcome &) const = default;
  friend void PrintTo(const Outcome &o, std::ostream *out) {
    *out << testing::PrintToString(o.result) << (o.noted ? " with the note" : "");
  }
};

template <typename Read>
Outcome ReadWith(Read read) {
  test::LogCapture log;
  std::string text;
  const std::string failure = FailureOf([&] { text = Str(read()); });
  const auto lines = log.Lines();
  return {failure == "no failure" ? text : failure,
          std::find(lines.begin(), lines.end(), kNote) != lines.end()};
}

TEST(WholeFile, ReadersDropAZeroNarrowUtf16AndRefuseZeros) {
  struct Case {
    std::string bytes;
    Outcome strict;     // FileToStringX
    Outcome throwing;   // FileToString with FileThrowErrors
    std::string quiet;  // FileToString without it
  } cases[] = {
      {"abc", {"abc", false}, {"abc", false}, "abc"},
      {"", {"", false}, {"", false}, ""},
      {"abc\0"s, {"abc", false}, {kZero, false}, ""},  // one trailing zero: X form only
      {"\0"s, {"", false}, {kZero, false}, ""},
      {"abc\0\0"s, {kZero, false}, {kZero, false}, ""},
      {"a\0b"s, {kZero, false}, {kZero, false}, ""},
      {"\xFF\xFE\x41\0\x42\0"s, {"AB", true}, {"AB", true}, "AB"},
      {"\xFF\xFE"s, {"", true}, {"", true}, ""},
      {"\xFF\xFE\x41\0\xE9\0"s, {"A\xE9", true}, {"A\xE9", true}, "A\xE9"},
      // A unit of 256 or more keeps the text as bytes, and its zeros fail it.
      {"\xFF\xFE\x41\x01\x42\0"s, {kZero, false}, {kZero, false}, ""},
      {"\xFF\xFE\x41\x01\x42\x43"s,
       {"\xFF\xFE\x41\x01\x42\x43", false},
       {"\xFF\xFE\x41\x01\x42\x43", false},
       "\xFF\xFE\x41\x01\x42\x43"},
      // A zero unit narrows to a zero byte; the mark keeps a trailing zero from being dropped.
      {"\xFF\xFE\x41\0\0\0"s, {kZero, true}, {kZero, true}, ""},
      {"\xFF\xFE\x41\x42\0"s, {kZero, false}, {kZero, false}, ""},  // odd length: not UTF-16
      {"\xFF\x41\x42\0"s, {"\xFF\x41\x42", false}, {kZero, false}, ""},
      {"\xFE\xFF\0\x41"s, {kZero, false}, {kZero, false}, ""},  // big-endian is not recognised
  };
  test::ScratchDir dir;
  const std::string path = dir.Path("text");
  int i = 0;
  for (const Case &c : cases) {
    SCOPED_TRACE(testing::Message() << "case " << i++);
    test::WriteBytes(path, c.bytes);
    EXPECT_EQ(ReadWith([&] { return FileToStringX(path.c_str()); }), c.strict);
    EXPECT_EQ(ReadWith([&] { return FileToString(path.c_str(), FileThrowErrors); }), c.throwing);
    EXPECT_EQ(Str(FileToString(path.c_str(), {})), c.quiet);
  }
}

TEST(WholeFile, ReadersOfAMissingFileThrowOrLogAsAsked) {
  test::ScratchDir dir;
  const std::string missing = dir.Path("missing");
  test::LogCapture log;
  EXPECT_EQ(Str(FileToString(missing.c_str(), {})), "");
  const std::string error = Str(errstr(int(os::LastError())));
  EXPECT_TRUE(log.Lines().empty());
  const std::string thrown = FailureOf([&] { (void)FileToStringX(missing.c_str()); });
  EXPECT_EQ(thrown, Cat({"%W: Cannot open file ", missing, " in read mode: ", error}));
  EXPECT_TRUE(log.Lines().empty());  // thrown, not logged
  EXPECT_EQ(Str(FileToString(missing.c_str(), FileLogErrors)), "");
  EXPECT_EQ(log.Lines(), std::vector<std::string>{Cat({thrown, "\r\n"})});
  EXPECT_EQ(FailureOf([&] { (void)FileToString(missing.c_str(), FileThrowErrors); }), thrown);
}

TEST(WholeFile, WritersReplaceTheFileAndMakeItsDirectories) {
  test::ScratchDir dir;
  const std::string path = dir.Path("out.txt");
  test::WriteBytes(path, "a much longer old content");
  StringToFileX("new", path.c_str());
  EXPECT_EQ(test::ReadBytes(path), "new");
  EXPECT_TRUE(StringToFile("", path.c_str()));
  EXPECT_EQ(test::ReadBytes(path), "");
  const std::string binary = "\0\xFF\r\n"s;
  EXPECT_TRUE(StringToFile(strptr(binary), path.c_str()));
  EXPECT_EQ(test::ReadBytes(path), binary);

  const std::string deep = dir.Path("one/two/three.txt");
  EXPECT_FALSE(StringToFile("x", deep.c_str()));
  const std::string error = Str(errstr(int(os::LastError())));
  ASSERT_FALSE(error.empty());
  EXPECT_EQ(FailureOf([&] { StringToFileX("x", deep.c_str()); }),
            Cat({"%W: Cannot open file ", deep, " in write mode: ", error}));
  StringToFileX("deep", deep.c_str(), true);
  EXPECT_EQ(test::ReadBytes(deep), "deep");
  const std::string deeper = dir.Path("one/2/3/4.txt");
  EXPECT_TRUE(StringToFile("quiet", deeper.c_str(), true));
  EXPECT_EQ(test::ReadBytes(deeper), "quiet");
  EXPECT_TRUE(StringToFile("bare", "zel-file-test-bare.txt", true));  // no directory part
  EXPECT_EQ(test::ReadBytes("zel-file-test-bare.txt"), "bare");
  std::remove("zel-file-test-bare.txt");
}

TEST(WholeFile, WritersFailOnADirectoryThroughAFile) {
  test::ScratchDir dir;
  const std::string plain = dir.Path("plain");
  test::WriteBytes(plain, "keep");
  const std::string inside = dir.Path("plain/sub/x.txt");
  EXPECT_FALSE(StringToFile("x", inside.c_str(), true));
  const std::string error = Str(errstr(int(os::LastError())));
  ASSERT_FALSE(error.empty());
  EXPECT_EQ(FailureOf([&] { StringToFileX("x", inside.c_str(), true); }),
            Cat({"Cannot create directory ", plain, "; Error: ", error}));
  EXPECT_EQ(test::ReadBytes(plain), "keep");
}

#if !defined(_WIN32)
TEST(WholeFile, AFullDiskLosesTheWriteWithTheSystemText) {
  EXPECT_FALSE(StringToFile("abc", "/dev/full"));
  EXPECT_EQ(FailureOf([] { StringToFileX("abc", "/dev/full"); }),
            "Cannot write 3 to file; Error: No space left on device");
}
#endif

TEST(WholeFile, NoHandleOutlivesAFailure) {
  test::ScratchDir dir;
  const std::string path = dir.Path("zeros");
  test::WriteBytes(path, "a\0\0"s);
  const int before = test::OpenDescriptorCount();
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(FailureOf([&] { (void)FileToStringX(path.c_str()); }), kZero);
    EXPECT_EQ(FailureOf([&] { (void)FileToString(path.c_str(), FileThrowErrors); }), kZero);
    EXPECT_EQ(FailureOf([&] { StringToFileX("x", dir.Path("no/dir").c_str()); }).substr(0, 20),
              "%W: Cannot open file");
  }
  EXPECT_EQ(test::OpenDescriptorCount(), before);
  // A writer left open would keep this writer out.
  EXPECT_TRUE(StringToFile("free", path.c_str()));
}

}  // namespace
}  // namespace zel
