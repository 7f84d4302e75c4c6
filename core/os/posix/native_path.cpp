// Paths as Linux takes them.
#include "os/posix/native_path.h"

#include <cerrno>

namespace zel::os::posix {

bool NativePath::Append(const char *part) {
  for (; fits_ && *part != 0; ++part) {
    if (length_ == PATH_MAX - 1) {
      fits_ = false;
      errno = ENAMETOOLONG;
      break;
    }
    text_[length_++] = *part == '\\' ? '/' : *part;
  }
  text_[length_] = 0;
  return fits_;
}

}  // namespace zel::os::posix
