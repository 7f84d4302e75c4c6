// The directory part of a path, and the program's directory.
#include <zel/file/paths.h>

#include "os/os.h"

namespace zel {

namespace {

// Where the directory part of `path` ends: after its last "\", "/" or ":", or 0.
int DirectoryEnd(const strptr &path) {
  int end = path.length();
  while (end > 0 && path[end - 1] != '\\' && path[end - 1] != '/' && path[end - 1] != ':') --end;
  return end;
}

}  // namespace

strptr GetDirName(const strptr &path) { return path.Left(DirectoryEnd(path)); }

temp_cstring GetModuleDir() {
  int length = os::ExecutablePath(nullptr, 0);
  if (length <= 0) return temp_cstring();
  cstring path;
  // The length counts no NUL, which the string keeps beyond it.
  os::ExecutablePath(path.GetBuffer(length), length + 1);
  path.ReleaseBuffer(DirectoryEnd(path));
  return temp_cstring(static_cast<cstring &&>(path));
}

}  // namespace zel
