// What the whole-file readers do to a text after reading it.
#include "file/text_checks.h"

#include <zel/diag/log.h>

#include <cstring>

namespace zel::file {

bool StartsWithUnicodeMark(const strptr &text) {
  return text.length() >= 2 && static_cast<unsigned char>(text[0]) == 0xFF &&
         static_cast<unsigned char>(text[1]) == 0xFE;
}

void NarrowUnicode(cstring &text) {
  if (!StartsWithUnicodeMark(text) || text.length() % 2 != 0) return;
  const int units = text.length() / 2 - 1;
  for (int i = 1; i <= units; ++i)
    if (text[2 * i + 1] != 0) return;
  char *bytes = text.GetBuffer(text.length());
  for (int i = 0; i < units; ++i) bytes[i] = bytes[2 * i + 2];
  text.ReleaseBuffer(units);
  if (LogCategory::n_global_clients >= 1) PrintLog("Note: converted Unicode text to ASCII\r\n");
}

bool HasZero(const strptr &text) {
  return text.length() > 0 &&
         std::memchr(text.text(), 0, static_cast<size_t>(text.length())) != nullptr;
}

}  // namespace zel::file
