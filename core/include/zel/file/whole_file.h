// Whole files to strings and back.
#pragma once

#include <zel/file/flags.h>
#include <zel/text/cstring.h>

namespace zel {

// The contents of the file `path`. Opening it throws or logs as OpenFile with FileLogErrors |
// FileThrowErrors; a short read throws as WinFile::ReadX. A text of even length that begins with
// the UTF-16LE mark FF FE and whose units are all below 256 is narrowed to one byte per unit
// without the mark, and "Note: converted Unicode text to ASCII\r\n" is logged (when the log
// listens); a UTF-16LE text with a larger unit stays as it is. One zero byte at the end of a text
// that does not begin with the mark is dropped. Throws ErrorX "Text contains invalid (zero)
// characters" when a zero byte remains.
[[nodiscard]] ZEL_API temp_cstring FileToStringX(const strptr &path);

// The contents of the file `path`, opened with `flags` (FileRead added), which decide whether a
// failure to open is logged or thrown. A failure to open or a short read gives "". UTF-16LE text
// is narrowed as FileToStringX does; no trailing zero byte is dropped. A text that holds a zero
// byte throws ErrorX "Text contains invalid (zero) characters" when `flags` has FileThrowErrors,
// and gives "" otherwise.
[[nodiscard]] ZEL_API temp_cstring FileToString(const strptr &path, QFlags<FileFlags_> flags);

// Writes `text` as the whole of the file `path`, created or emptied. With `create_dirs`, first
// creates the directory part of the path and its missing parents (CreateDirectoryRecursivelyX).
// Throws as OpenFile with FileLogErrors | FileThrowErrors and as WinFile::WriteX.
ZEL_API void StringToFileX(const strptr &text, const strptr &path, bool create_dirs = false);

// The same without throwing or logging: false, with the system's error as the thread's last
// error, when a directory or the file cannot be made or written.
ZEL_API bool StringToFile(const strptr &text, const strptr &path, bool create_dirs = false);

}  // namespace zel
