// Strings into whole files.
#include <zel/file/paths.h>
#include <zel/file/whole_file.h>
#include <zel/file/win_file.h>

namespace zel {

void StringToFileX(const strptr &text, const strptr &path, bool create_dirs) {
  if (create_dirs) CreateDirectoryRecursivelyX(GetDirName(path));
  WinFile file;
  file.OpenWrite(path, FileLogErrors | FileThrowErrors);
  file.WriteX(text.text(), text.length());
}

bool StringToFile(const strptr &text, const strptr &path, bool create_dirs) {
  if (create_dirs && !CreateDirectoryRecursively(GetDirName(path))) return false;
  WinFile file;
  if (!file.OpenWrite(path)) return false;
  int written = file.Write(text.text(), text.length());
  return written == text.length();
}

}  // namespace zel
