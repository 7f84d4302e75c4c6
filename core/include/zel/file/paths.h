// Paths: the directory part of a path, creating directories, the program's directory.
#pragma once

#include <zel/text/cstring.h>

namespace zel {

// The directory part of `path`: everything up to and including its last "\", "/" or ":"; "" when
// there is none. A view into `path`.
ZEL_API strptr GetDirName(const strptr &path);

// Creates the directory `path` (separated by "\" or "/", trailing separators ignored) and every
// missing parent. True when it is a directory afterwards, also when it was one before or `path`
// is empty; false, with the system's error as the thread's last error, otherwise.
ZEL_API bool CreateDirectoryRecursively(const strptr &path);

// The same, throwing ErrorX "Cannot create directory <the directory that could not be made>;
// Error: <system text>" on failure.
ZEL_API void CreateDirectoryRecursivelyX(const strptr &path);

// The running program's directory: its executable's path cut after the last "\", "/" or ":"
// (the executable's path from /proc/self/exe on Linux). "" when the system cannot tell.
[[nodiscard]] ZEL_API temp_cstring GetModuleDir();

}  // namespace zel
