// Whole files into strings.
#include <zel/diag/error.h>
#include <zel/file/whole_file.h>
#include <zel/file/win_file.h>

#include "file/text_checks.h"

namespace zel {

namespace {

// Makes `text` `n` characters long for reading a whole file into it; returns where they are, or
// null when there are none. (A size of 2 GiB or more reads as negative: the read then fails.)
char *MakeRoom(cstring &text, int n) {
  if (n <= 0) return nullptr;
  text.Reserve(n);
  return text.GetBuffer(n);
}

}  // namespace

temp_cstring FileToStringX(const strptr &path) {
  WinFile file;
  file.OpenRead(path, FileLogErrors | FileThrowErrors);
  cstring text;
  const int n = file.Length32();
  file.ReadX(MakeRoom(text, n), n);
  const bool marked = file::StartsWithUnicodeMark(text);
  file::NarrowUnicode(text);
  // One trailing zero byte is tolerated, except in text that begins with the UTF-16 mark.
  if (!marked && !text.empty() && text[text.length() - 1] == 0) text.Chop();
  if (file::HasZero(text)) ThrowErrorX(file::kZeroMessage);
  return temp_cstring(static_cast<cstring &&>(text));
}

temp_cstring FileToString(const strptr &path, QFlags<FileFlags_> flags) {
  WinFile file;
  if (!file.OpenRead(path, flags)) return temp_cstring();
  cstring text;
  const int n = file.Length32();
  if (file.Read(MakeRoom(text, n), n) != n) return temp_cstring();
  file::NarrowUnicode(text);
  // Unlike FileToStringX, no trailing zero byte is tolerated: intended.
  if (file::HasZero(text)) {
    if (flags.Has(FileThrowErrors)) ThrowErrorX(file::kZeroMessage);
    return temp_cstring();
  }
  return temp_cstring(static_cast<cstring &&>(text));
}

}  // namespace zel
