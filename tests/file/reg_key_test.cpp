// RegKey: string values under HKEY_LOCAL_MACHINE. On Linux the registry is a directory tree under
// $ZEL_REGISTRY, set here to a scratch directory; on Windows the tests use a key of their own.
#include <zel/file/reg_key.h>

#include "os/os.h"
#include "support/scratch_dir.h"
#include "support/strings.h"

#include <string>

namespace zel {
namespace {

using test::Str;

constexpr const char *kKey = "Software\\ZelCoreTests\\Registry";

class RegKeyTest : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(os::SetEnvironment("ZEL_REGISTRY", dir_.Path().c_str())); }
  void TearDown() override { os::SetEnvironment("ZEL_REGISTRY", nullptr); }

  test::ScratchDir dir_;
};

TEST_F(RegKeyTest, StringValuesRoundTrip) {
  RegKey key;
  ASSERT_TRUE(key.Create(kKey));
  const std::string long_value(1000, 'v');
  struct Case {
    const char *name;
    std::string value;
  } cases[] = {{"KXDATA", "C:\\Data"}, {"Empty", ""}, {"Long", long_value}, {"KXDATA", "D:/x/"}};
  for (const Case &c : cases) {
    ASSERT_TRUE(key.SetString(c.name, strptr(c.value))) << c.name;
    cstring read = "stale";
    ASSERT_TRUE(key.GetString(c.name, read)) << c.name;
    EXPECT_EQ(Str(read), c.value);
  }
  RegKey reader;
  ASSERT_TRUE(reader.Open(kKey));
  cstring value;
  ASSERT_TRUE(reader.GetString("KXDATA", value));
  EXPECT_EQ(Str(value), "D:/x/");
}

TEST_F(RegKeyTest, MissingKeysAndValuesAndReadOnlyKeysFail) {
  RegKey key;
  EXPECT_FALSE(key.Open("Software\\ZelCoreTests\\NoSuchKey"));
  EXPECT_EQ(os::LastError(), 2u);  // ENOENT, ERROR_FILE_NOT_FOUND
  EXPECT_FALSE(key.IsOpen());
  cstring value = "kept";
  EXPECT_FALSE(key.GetString("KXDATA", value));
  EXPECT_FALSE(key.SetString("KXDATA", "x"));

  ASSERT_TRUE(key.Create(kKey));
  EXPECT_FALSE(key.GetString("NoSuchValue", value));
  EXPECT_EQ(os::LastError(), 2u);
  EXPECT_EQ(Str(value), "kept");
  ASSERT_TRUE(key.Open(kKey));  // for reading only
  EXPECT_FALSE(key.SetString("KXDATA", "x"));
  EXPECT_NE(os::LastError(), 0u);
}

#if !defined(_WIN32)
TEST_F(RegKeyTest, OnLinuxAKeyIsADirectoryAndAValueAFileOfItsBytes) {
  RegKey key;
  ASSERT_TRUE(key.Create("Software\\Quendari"));
  ASSERT_TRUE(key.SetString("KXDATA", "/srv/kx"));
  const std::string file = dir_.Path("HKEY_LOCAL_MACHINE/Software/Quendari/KXDATA");
  EXPECT_EQ(test::ReadBytes(file), "/srv/kx");  // no terminator, no newline
  test::WriteBytes(file, "/opt/data/");
  RegKey reader;
  ASSERT_TRUE(reader.Open("Software\\Quendari"));
  cstring value;
  ASSERT_TRUE(reader.GetString("KXDATA", value));
  EXPECT_EQ(Str(value), "/opt/data/");
  // A subkey is not a value.
  ASSERT_TRUE(key.Create("Software\\Quendari\\Sub"));
  EXPECT_FALSE(reader.GetString("Sub", value));
}
#endif

}  // namespace
}  // namespace zel
