// The directory part of a path, creating directories with their parents, the program's directory.
#include <zel/file/paths.h>

#include "os/os.h"
#include "support/scratch_dir.h"
#include "support/strings.h"

#include <filesystem>
#include <string>

namespace zel {
namespace {

using test::Cat;
using test::FailureOf;
using test::Str;

TEST(GetDirName, KeepsEverythingUpToTheLastSeparator) {
  struct Case {
    const char *path, *dir;
  } cases[] = {
      {"C:\\a\\b.txt", "C:\\a\\"}, {"a/b/c", "a/b/"},  {"a\\b/c", "a\\b/"},
      {"a/b\\c", "a/b\\"},         {"dir/", "dir/"},   {"C:file", "C:"},
      {"file", ""},                {"", ""},           {"/", "/"},
      {"\\\\server\\share\\x", "\\\\server\\share\\"},
  };
  for (const Case &c : cases) EXPECT_EQ(Str(GetDirName(c.path)), c.dir) << c.path;
}

TEST(CreateDirectoryRecursively, MakesEveryMissingParentAndAcceptsWhatExists) {
  test::ScratchDir dir;
  namespace fs = std::filesystem;
  EXPECT_TRUE(CreateDirectoryRecursively(dir.Path("a/b/c").c_str()));
  EXPECT_TRUE(fs::is_directory(dir.Path("a/b/c")));
  EXPECT_TRUE(CreateDirectoryRecursively(dir.Path("a/b/c").c_str()));  // exists already
  EXPECT_TRUE(CreateDirectoryRecursively(dir.Path("a/b").c_str()));
  EXPECT_TRUE(CreateDirectoryRecursively(""));
  // Either separator, and trailing ones.
  CreateDirectoryRecursivelyX(Cat({dir.Path(), "/x\\y/z//"}).c_str());
  EXPECT_TRUE(fs::is_directory(dir.Path("x/y/z")));
  CreateDirectoryRecursivelyX(dir.Path().c_str());
}

TEST(CreateDirectoryRecursively, FailsAtARegularFileAndNamesIt) {
  test::ScratchDir dir;
  const std::string plain = dir.Path("plain");
  test::WriteBytes(plain, "x");
  os::SetLastError(0);
  EXPECT_FALSE(CreateDirectoryRecursively(plain.c_str()));
  EXPECT_NE(os::LastError(), 0u);
  EXPECT_FALSE(CreateDirectoryRecursively(dir.Path("plain/below/more").c_str()));
  const uint32_t code = os::LastError();
  EXPECT_EQ(FailureOf([&] { CreateDirectoryRecursivelyX(dir.Path("plain/below").c_str()); }),
            Cat({"Cannot create directory ", plain, "; Error: ", Str(errstr(int(code)))}));
#if !defined(_WIN32)
  EXPECT_EQ(Str(errstr(int(code))), "File exists");
#endif
  EXPECT_EQ(test::ReadBytes(plain), "x");
}

TEST(GetModuleDir, IsTheDirectoryOfThisProgram) {
  const std::string dir = Str(GetModuleDir());
  ASSERT_FALSE(dir.empty());
  EXPECT_TRUE(dir.back() == '/' || dir.back() == '\\') << dir;
  char exe[4096];
  ASSERT_GT(os::ExecutablePath(exe, sizeof exe), 0);
  EXPECT_EQ(Str(GetDirName(exe)), dir);
  EXPECT_TRUE(std::filesystem::is_directory(dir)) << dir;
}

}  // namespace
}  // namespace zel
