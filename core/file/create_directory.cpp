// Creating a directory with its missing parents.
#include <zel/file/paths.h>

#include "file/messages.h"
#include "os/os.h"

namespace zel {

namespace {

bool IsSlash(char c) { return c == '\\' || c == '/'; }

// Creates `path` and its missing parents, parents first; on failure `failed` receives the
// directory that could not be made, and the last error says why.
bool MakeDirectories(const strptr &path, cstring &failed) {
  int end = path.length();
  while (end > 0 && IsSlash(path[end - 1])) --end;
  if (end == 0) return true;
  cstring directory(path.Left(end));
  if (os::IsDirectory(directory.text())) return true;
  int parent = end;
  while (parent > 0 && !IsSlash(path[parent - 1])) --parent;
  if (parent > 0 && !MakeDirectories(path.Left(parent), failed)) return false;
  // Made here, or meanwhile by someone else.
  if (os::CreateDirectory(directory.text()) || os::IsDirectory(directory.text())) return true;
  os::SavedLastError keep;
  failed.Set(directory);
  return false;
}

}  // namespace

bool CreateDirectoryRecursively(const strptr &path) {
  cstring failed;
  return MakeDirectories(path, failed);
}

void CreateDirectoryRecursivelyX(const strptr &path) {
  cstring failed;
  if (MakeDirectories(path, failed)) return;
  uint32_t code = os::LastError();
  file::ThrowFilled(code, "Cannot create directory %1; Error: %2", failed, file::ErrorText(code));
}

}  // namespace zel
