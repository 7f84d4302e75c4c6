// Creating directories and asking whether a path is one.
#include "os/os.h"
#include "os/posix/native_path.h"

#include <sys/stat.h>

namespace zel::os {

bool CreateDirectory(const char *path) {
  posix::NativePath native(path);
  return native.Fits() && mkdir(native.c_str(), 0777) == 0;
}

bool IsDirectory(const char *path) {
  SavedLastError saved;
  posix::NativePath native(path);
  struct stat64 status;
  return native.Fits() && stat64(native.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

}  // namespace zel::os
