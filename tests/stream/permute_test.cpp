// Gathering and scattering elements, and the one undoing the other.
#include <zel/stream/permute.h>

#include <string>

namespace zel {
namespace {

TEST(Permute, GatherAndScatterAreInverses) {
  const int perm[] = {2, 0, 3, 1};
  std::string data = "aa0bb1cc2dd3";  // four elements of three bytes
  auto *bytes = reinterpret_cast<unsigned char *>(data.data());
  PermuteBytes(bytes, perm, 4, 3);
  EXPECT_EQ(data, "cc2aa0dd3bb1");
  UnpermuteBytes(bytes, perm, 4, 3);
  EXPECT_EQ(data, "aa0bb1cc2dd3");
  UnpermuteBytes(bytes, perm, 4, 3);
  EXPECT_EQ(data, "bb1dd3aa0cc2");
  PermuteBytes(bytes, perm, 0, 3);  // nothing to do
  EXPECT_EQ(data, "bb1dd3aa0cc2");
}

}  // namespace
}  // namespace zel
