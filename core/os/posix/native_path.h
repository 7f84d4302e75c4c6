// Paths as Linux takes them: the separators of Windows paths ("\") turned into "/".
#pragma once

#include <climits>

namespace zel::os::posix {

// A NUL-terminated path of at most PATH_MAX - 1 characters, built from parts.
class NativePath {
 public:
  NativePath() = default;
  explicit NativePath(const char *path) { Append(path); }

  // Appends `part` with every "\" turned into "/". When it does not fit, the path keeps what
  // fitted, Fits() turns false for good and errno is ENAMETOOLONG.
  bool Append(const char *part);
  bool Fits() const { return fits_; }
  const char *c_str() const { return text_; }
  char *data() { return text_; }
  int length() const { return length_; }

 private:
  char text_[PATH_MAX] = {};
  int length_ = 0;
  bool fits_ = true;
};

}  // namespace zel::os::posix
