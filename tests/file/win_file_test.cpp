// WinFile: ownership of the handle, reading and writing with their exact failures, positions.
#include <zel/diag/error.h>
#include <zel/file/win_file.h>
#include <zel/stream/buffered.h>
#include <zel/stream/serialize.h>
#include <zel/text/format.h>

#include "os/os.h"
#include "support/log_capture.h"
#include "support/scratch_dir.h"
#include "support/strings.h"

#include <string>

namespace zel {
namespace {

using test::Cat;
using test::FailureOf;
using test::Str;

// The system's text of the thread's last error.
std::string LastErrorText() { return Str(errstr(int(os::LastError()))); }

std::string HandleHex(const WinFile &file) {
  cstring hex;
  FmtHex(hex, reinterpret_cast<uintptr_t>(file.GetHandle()));
  return Str(hex);
}

class WinFileTest : public testing::Test {
 protected:
  // A file holding "0123456789abcd" (14 bytes), open with `flags`.
  void Open(WinFile &file, QFlags<FileFlags_> flags) {
    file.Close();
    test::WriteBytes(path_, "0123456789abcd");
    file.Attach(OpenFile(path_.c_str(), flags));
    ASSERT_TRUE(file.IsOpen());
  }

  test::ScratchDir dir_;
  const std::string path_ = dir_.Path("data.bin");
};

TEST_F(WinFileTest, OwnsOneHandleAndClosesWhatItReplaces) {
  WinFile file;
  EXPECT_EQ(file.GetHandle(), nullptr);
  file.Attach(os::kInvalidHandle);
  EXPECT_FALSE(file.IsOpen());

  ASSERT_TRUE(file.OpenWrite(path_.c_str()));
  // A writer excludes other writers, so an open writer shows whether a handle was left open.
  WinFile other;
  EXPECT_FALSE(other.OpenWrite(path_.c_str()));
  other.StealFrom(file);
  EXPECT_FALSE(file.IsOpen());
  EXPECT_TRUE(other.IsOpen());
  other.StealFrom(other);  // stealing from itself keeps the handle
  EXPECT_TRUE(other.IsOpen());

  void *handle = other.Detach();
  EXPECT_FALSE(other.IsOpen());
  EXPECT_FALSE(file.OpenWrite(path_.c_str()));  // detached, not closed
  file.Attach(handle);
  file.Attach(handle);  // the same handle again is kept, not closed
  EXPECT_TRUE(file.IsOpen());
  EXPECT_TRUE(other.OpenRead(path_.c_str()));  // readers let writers in
  file.Close();
  {
    WinFile scoped;
    EXPECT_TRUE(scoped.OpenWrite(path_.c_str()));
  }
  EXPECT_TRUE(file.OpenWrite(path_.c_str()));  // the destructor closed it
}

TEST_F(WinFileTest, ReadsCountWhatTheFileHolds) {
  WinFile file;
  Open(file, FileRead);
  char buffer[20] = {};
  EXPECT_EQ(file.Read(buffer, 4), 4);
  EXPECT_EQ(std::string(buffer, 4), "0123");
  EXPECT_TRUE(file.SurelyRead(buffer, 6));
  EXPECT_FALSE(file.EofQ());
  EXPECT_FALSE(file.SurelyRead(buffer, 5));  // 4 left
  EXPECT_EQ(std::string(buffer, 4), "abcd");
  EXPECT_TRUE(file.EofQ());
  EXPECT_EQ(file.Read(buffer, 5), 0);
  EXPECT_EQ(file.PartialReadX(buffer, 5), 0);
  ASSERT_TRUE(file.SetPos(11));
  EXPECT_EQ(file.PartialReadX(buffer, 8), 3);
  ASSERT_TRUE(file.SetPos(0));
  file.ReadX(buffer, 14);
  EXPECT_EQ(std::string(buffer, 14), "0123456789abcd");
}

TEST_F(WinFileTest, ReadXAtTheEndSaysHowManyBytesWereThere) {
  WinFile file;
  Open(file, FileRead);
  ASSERT_TRUE(file.SetPos(10));
  char buffer[10];
  EXPECT_EQ(FailureOf([&] { file.ReadX(buffer, 10); }),
            "Cannot read 10 from file (only 4 are available)");
  EXPECT_TRUE(file.IsOpen());  // a throwing operation leaves the handle open
  EXPECT_EQ(FailureOf([&] { file.ReadX(buffer, 1); }),
            "Cannot read 1 from file (only 0 are available)");
}

TEST_F(WinFileTest, ReadingAHandleWithoutReadAccessFails) {
  WinFile file;
  Open(file, FileWrite);
  char buffer[4];
  EXPECT_FALSE(file.SurelyRead(buffer, 4));
  EXPECT_EQ(file.Read(buffer, 4), 0);
  const std::string error = LastErrorText();
  ASSERT_FALSE(error.empty());
  EXPECT_EQ(FailureOf([&] { file.ReadX(buffer, 4); }),
            Cat({"Cannot read 4 from file; Error: ", error}));
  EXPECT_EQ(FailureOf([&] { file.PartialReadX(buffer, 3); }),
            Cat({"Cannot read 3 from file; Error: ", error}));
#if !defined(_WIN32)
  EXPECT_EQ(error, "Bad file descriptor");
#endif
}

TEST_F(WinFileTest, WritingAHandleWithoutWriteAccessFails) {
  WinFile file;
  Open(file, FileRead);
  EXPECT_EQ(file.Write("xyz", 3), 0);
  const std::string error = LastErrorText();
  ASSERT_FALSE(error.empty());
  EXPECT_EQ(FailureOf([&] { file.WriteX("xyz", 3); }),
            Cat({"Cannot write 3 to file; Error: ", error}));
  file.Close();
  EXPECT_EQ(test::ReadBytes(path_), "0123456789abcd");
}

#if !defined(_WIN32)
TEST(WinFile, AFullDeviceFailsTheWriteWithTheSystemText) {
  WinFile file;
  ASSERT_TRUE(file.OpenWrite("/dev/full"));
  EXPECT_EQ(file.Write("abc", 3), 0);
  EXPECT_EQ(FailureOf([&] { file.WriteX("abcde", 5); }),
            "Cannot write 5 to file; Error: No space left on device");
}
#endif

TEST_F(WinFileTest, SyncNeedsWriteAccess) {
  WinFile file;
  Open(file, FileRead | FileWrite);
  file.WriteX("Z", 1);
  EXPECT_TRUE(file.Sync());
  file.SyncX();

  Open(file, FileRead);
  test::LogCapture log;
  EXPECT_FALSE(file.Sync());
  const std::string error = LastErrorText();
  ASSERT_FALSE(error.empty());
  EXPECT_EQ(log.Lines(), std::vector<std::string>{
                             Cat({"Note: Failed: FlushFileBuffers(); Error: ", error, "\r\n"})});
  EXPECT_EQ(FailureOf([&] { file.SyncX(); }),
            Cat({"Cannot flush file to disk; Error: ", error}));
}

TEST_F(WinFileTest, PositionsAreSixtyFourBitAndFailuresNameTheHandleAndThePosition) {
  WinFile file;
  Open(file, FileRead | FileWrite);
  EXPECT_EQ(~file, 14);
  EXPECT_EQ(file.Length32(), 14);
  EXPECT_EQ(file.GetPos(), 0);
  EXPECT_TRUE(file.Skip(5));
  EXPECT_TRUE(file.Skip(int64_t{-2}));
  EXPECT_TRUE(file.Skip(-1LL));
  EXPECT_EQ(file.GetPos(), 2);
  file.SkipX(3);
  file.SetPosX(20);  // past the end is allowed
  EXPECT_EQ(file.GetPos(), 20);
  EXPECT_FALSE(file.EofQ());

  // Beyond 4 GiB: the high word counts (a sparse file where the system allows).
  const int64_t far = (int64_t{1} << 32) + 16;
  ASSERT_TRUE(file.SetPos(far));
  file.WriteX("!", 1);
  EXPECT_EQ(file.GetPos(), far + 1);
  EXPECT_EQ(~file, far + 1);
  EXPECT_EQ(file.Length32(), 17);
  EXPECT_TRUE(file.EofQ());

  test::LogCapture log;
  EXPECT_FALSE(file.SetPos(-5));
  const std::string error = LastErrorText();
  ASSERT_FALSE(error.empty());
  EXPECT_EQ(file.GetPos(), far + 1);
  EXPECT_FALSE(file.Skip(-(far + 2)));
  const std::string note = Cat({"Note: Failed: SetFilePointer(handle: ", HandleHex(file)});
  EXPECT_EQ(log.Lines(), (std::vector<std::string>{
                             Cat({note, ", pos: -5; Error: ", error, "\r\n"}),
                             Cat({note, ", relative pos: -4294967314; Error: ", error, "\r\n"})}));
  EXPECT_EQ(FailureOf([&] { file.SetPosX(-1); }), Cat({note, ", pos: -1; Error: ", error}));
  EXPECT_EQ(FailureOf([&] { file.SkipX(-(far + 2)); }),
            Cat({note, ", relative pos: -4294967314; Error: ", error}));
}

TEST(WinFile, WithoutAHandleEverythingFailsQuietly) {
  WinFile file;
  char buffer[4];
  EXPECT_EQ(file.Read(buffer, 4), 0);
  EXPECT_EQ(file.Write("ab", 2), 0);
  EXPECT_EQ(~file, 0);
  EXPECT_EQ(file.Length32(), 0);
  EXPECT_EQ(file.GetPos(), -1);
  EXPECT_TRUE(file.EofQ());
  EXPECT_FALSE(FailureOf([&] { file.ReadX(buffer, 4); }).empty());
}

TEST_F(WinFileTest, SerialisersWriteThroughABufferAndReadBack) {
  {
    WinFile out;
    ASSERT_TRUE(out.OpenWrite(path_.c_str()));
    BufferedByteDest buffered(out, 16);
    for (int i = 0; i < 100; ++i) buffered << cstring(std::to_string(i).c_str());
    ASSERT_TRUE(buffered.WriteOut());
  }
  WinFile in;
  ASSERT_TRUE(in.OpenRead(path_.c_str(), FileSequentialScan));
  BufferedByteSource buffered(in, 16);
  for (int i = 0; i < 100; ++i) {
    cstring s;
    buffered >> s;
    ASSERT_EQ(Str(s), std::to_string(i));
  }
  EXPECT_TRUE(in.EofQ());
}

}  // namespace
}  // namespace zel
