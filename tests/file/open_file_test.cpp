// OpenFile: how the flags choose creation and sharing, and how a failure is reported.
#include <zel/diag/error.h>
#include <zel/file/win_file.h>

#include "os/os.h"
#include "support/log_capture.h"
#include "support/scratch_dir.h"
#include "support/strings.h"

#include <string>

namespace zel {
namespace {

using test::Cat;
using test::ReadBytes;
using test::Str;

constexpr const char *kMissing = "<missing>";

// Opens with `flags`, writes "XY" when the handle may write, and closes.
bool OpenAndWrite(const std::string &path, QFlags<FileFlags_> flags) {
  WinFile file;
  file.Attach(OpenFile(path.c_str(), flags));
  if (!file.IsOpen()) return false;
  if (flags.Has(FileWrite) || flags.Has(FileAppend)) file.WriteX("XY", 2);
  return true;
}

TEST(OpenFile, FlagsChooseHowTheFileIsCreatedAndWhereWritingStarts) {
  struct Case {
    QFlags<FileFlags_> flags;
    bool exists;  // holding "abc"
    bool opens;
    const char *after;
  } cases[] = {
      {FileRead, true, true, "abc"},
      {FileRead, false, false, kMissing},
      {FileRead | FileTruncate, true, true, "abc"},  // truncation needs write access
      {FileWrite, true, true, "XY"},
      {FileWrite, false, true, "XY"},
      {FileRead | FileWrite, true, true, "XYc"},
      {FileRead | FileWrite, false, false, kMissing},
      {FileRead | FileWrite | FileTruncate, true, true, "XY"},
      {FileRead | FileWrite | FileTruncate, false, true, "XY"},
      {FileAppend, true, true, "abcXY"},
      {FileAppend, false, true, "XY"},
      {FileAppend | FileRead, true, true, "abcXY"},
      {FileAppend | FileTruncate, true, true, "XY"},
      {FileWrite | FileSequentialScan | FileRandomAccess, true, true, "XY"},
  };
  test::ScratchDir dir;
  int i = 0;
  for (const Case &c : cases) {
    SCOPED_TRACE(testing::Message() << "case " << i << ", flags 0x" << std::hex << c.flags.Bits());
    const std::string path = dir.Path(Cat({"f", std::to_string(i++)}));
    if (c.exists) test::WriteBytes(path, "abc");
    EXPECT_EQ(OpenAndWrite(path, c.flags), c.opens);
    EXPECT_EQ(ReadBytes(path), c.after);
  }
}

TEST(OpenFile, WithoutReadWriteOrAppendReturnsNullAndReportsNothing) {
  test::ScratchDir dir;
  test::LogCapture log;
  os::SetLastError(7);
  EXPECT_EQ(OpenFile(dir.Path("x").c_str(), FileLogErrors | FileThrowErrors | FileTruncate |
                                                FileSequentialScan | FileOverlapped),
            nullptr);
  EXPECT_EQ(os::LastError(), 7u);
  EXPECT_TRUE(log.Lines().empty());
  EXPECT_EQ(ReadBytes(dir.Path("x")), kMissing);
}

// The message for a failure to open `path` with `flags`, with the system's error of a quiet open
// made first.
std::string OpenMessage(const std::string &path, QFlags<FileFlags_> flags, const char *mode) {
  EXPECT_EQ(OpenFile(path.c_str(), flags), nullptr);
  const std::string error = Str(errstr(int(os::LastError())));
  return Cat({"%W: Cannot open file ", path, mode, ": ", error});
}

TEST(OpenFile, FailureMessagesNameThePathTheModeAndTheSystemError) {
  test::ScratchDir dir;
  const std::string missing = dir.Path("missing.txt");
  const std::string in_missing_dir = dir.Path("no/such/dir.txt");
  struct Case {
    QFlags<FileFlags_> flags;
    const std::string &path;
    const char *mode;
  } cases[] = {
      {FileRead, missing, " in read mode"},
      {FileRead | FileWrite, missing, " in read/write mode"},
      {FileWrite, in_missing_dir, " in write mode"},
      {FileAppend, in_missing_dir, " in append mode"},
      {FileAppend | FileRead, in_missing_dir, " in append mode"},
  };
  for (const Case &c : cases) {
    SCOPED_TRACE(c.mode);
    const std::string expected = OpenMessage(c.path, c.flags, c.mode);
    EXPECT_EQ(test::FailureOf([&] { OpenFile(c.path.c_str(), c.flags | FileThrowErrors); }),
              expected);
  }
  // Code 2 is "file not found" on both platforms (ENOENT, ERROR_FILE_NOT_FOUND).
  const std::string expected = OpenMessage(missing, FileRead, " in read mode");
  EXPECT_EQ(os::LastError(), 2u);
#if !defined(_WIN32)
  EXPECT_EQ(expected,
            Cat({"%W: Cannot open file ", missing, " in read mode: No such file or directory"}));
#endif
}

TEST(OpenFile, FailuresAreLoggedOrThrownAsTheFlagsSayAndKeepTheSystemError) {
  test::ScratchDir dir;
  const std::string missing = dir.Path("missing.txt");
  struct Case {
    QFlags<FileFlags_> flags;
    bool logged;
    bool thrown;
  } cases[] = {
      {FileRead, false, false},
      {FileRead | FileLogErrors, true, false},
      {FileRead | FileThrowErrors, false, true},
      {FileRead | FileLogErrors | FileThrowErrors, false, true},
  };
  for (const Case &c : cases) {
    SCOPED_TRACE(testing::Message() << "flags 0x" << std::hex << c.flags.Bits());
    test::LogCapture log;
    os::SetLastError(0);
    bool thrown = false;
    void *handle = &thrown;
    try {
      handle = OpenFile(missing.c_str(), c.flags);
    } catch (const ErrorX &) {
      thrown = true;
    }
    EXPECT_EQ(os::LastError(), 2u);
    EXPECT_EQ(thrown, c.thrown);
    if (!thrown) {
      EXPECT_EQ(handle, nullptr);
    }
    auto lines = log.Lines();
    if (c.logged)
      EXPECT_EQ(lines, std::vector<std::string>{
                           Cat({OpenMessage(missing, FileRead, " in read mode"), "\r\n"})});
    else
      EXPECT_TRUE(lines.empty());
  }
}

TEST(OpenFile, PathsThroughARegularFileFail) {
  test::ScratchDir dir;
  test::WriteBytes(dir.Path("plain"), "x");
  const std::string through = dir.Path("plain/inner.txt");
  for (auto flags : {QFlags<FileFlags_>(FileRead), QFlags<FileFlags_>(FileWrite)}) {
    os::SetLastError(0);
    EXPECT_EQ(OpenFile(through.c_str(), flags), nullptr);
    EXPECT_NE(os::LastError(), 0u);
  }
#if !defined(_WIN32)
  EXPECT_EQ(test::FailureOf([&] { OpenFile(through.c_str(), FileWrite | FileThrowErrors); }),
            Cat({"%W: Cannot open file ", through, " in write mode: Not a directory"}));
#endif
  // Nor is a directory opened as a file.
  EXPECT_EQ(OpenFile(dir.Path().c_str(), FileRead), nullptr);
  EXPECT_EQ(ReadBytes(dir.Path("plain")), "x");
}

TEST(OpenFile, WritersExcludeOtherWritersAndARefusedOpenChangesNothing) {
  struct Case {
    QFlags<FileFlags_> first, second;
    bool shared;
  } cases[] = {
      {FileRead, FileRead, true},
      {FileRead, FileWrite, true},
      {FileWrite, FileRead, true},
      {FileRead | FileWrite, FileRead, true},
      {FileWrite, FileWrite, false},
      {FileWrite, FileRead | FileWrite, false},
      {FileRead | FileWrite, FileRead | FileWrite, false},
      {FileAppend, FileWrite, false},
      {FileRead, FileAppend, true},
  };
  test::ScratchDir dir;
  const std::string path = dir.Path("shared");
  for (const Case &c : cases) {
    SCOPED_TRACE(testing::Message() << std::hex << c.first.Bits() << " then " << c.second.Bits());
    test::WriteBytes(path, "abc");
    WinFile first, second;
    first.Attach(OpenFile(path.c_str(), c.first));
    ASSERT_TRUE(first.IsOpen());
    if (c.first.Has(FileWrite) || c.first.Has(FileAppend)) first.WriteX("keep", 4);
    const std::string before = ReadBytes(path);
    second.Attach(OpenFile(path.c_str(), c.second));
    EXPECT_EQ(second.IsOpen(), c.shared);
    if (!c.shared) {
      EXPECT_NE(os::LastError(), 0u);
      first.Close();
      EXPECT_EQ(ReadBytes(path), before);  // the refused writer emptied nothing
    }
  }
}

}  // namespace
}  // namespace zel
