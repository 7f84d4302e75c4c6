// ScratchDir: a directory of a test's own under the system's temporary directory, removed with its
// contents when the test ends; and plain readers and writers of whole files that do not go through
// the library, to set up and check what the library's file functions see and leave.
#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

namespace zel::test {

class ScratchDir {
 public:
  ScratchDir() {
    static std::atomic<int> counter{0};
    const auto stamp = std::chrono::steady_clock::now().time_since_epoch().count();
    for (;;) {
      root_ = std::filesystem::temp_directory_path() /
              ("zel-file-test-" + std::to_string(stamp) + "-" + std::to_string(counter++));
      if (std::filesystem::create_directory(root_)) break;
    }
  }
  ~ScratchDir() {
    std::error_code ignored;
    std::filesystem::remove_all(root_, ignored);
  }
  ScratchDir(const ScratchDir &) = delete;
  ScratchDir &operator=(const ScratchDir &) = delete;

  // The path of `name` (which may hold "/") inside the directory, in the platform's own form.
  std::string Path(std::string_view name = {}) const {
    return (root_ / std::filesystem::path(name).make_preferred()).string();
  }

 private:
  std::filesystem::path root_;
};

// The bytes of the file at `path`; "<missing>" when it does not exist.
inline std::string ReadBytes(const std::string &path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return "<missing>";
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// Makes `bytes` the whole of the file at `path`.
inline void WriteBytes(const std::string &path, std::string_view bytes) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  ASSERT_TRUE(out.good()) << path;
}

// The number of descriptors the process has open (Linux); -1 where it cannot be counted.
inline int OpenDescriptorCount() {
#if defined(__linux__)
  int count = 0;
  for (auto it = std::filesystem::directory_iterator("/proc/self/fd");
       it != std::filesystem::directory_iterator(); ++it)
    ++count;
  return count;
#else
  return -1;
#endif
}

}  // namespace zel::test
