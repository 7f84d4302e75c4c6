// Debugger output, the console and the executable's path.
#include "os/os.h"

#include "os/win32/win.h"

#include <cstring>

namespace zel::os {

void DebugOutput(const char *text) {
  SavedLastError saved;
  OutputDebugStringA(text);
}

bool ConsoleWrite(const char *text, int length) {
  HANDLE out = GetStdHandle(STD_OUTPUT_HANDLE);
  while (length > 0) {
    DWORD written = 0;
    if (!::WriteFile(out, text, static_cast<DWORD>(length), &written, nullptr)) return false;
    text += written;
    length -= static_cast<int>(written);
  }
  return true;
}

bool ConsoleIsTerminal() { return GetFileType(GetStdHandle(STD_OUTPUT_HANDLE)) == FILE_TYPE_CHAR; }

int ExecutablePath(char *buf, int cap) {
  char path[32768];
  DWORD n = GetModuleFileNameA(nullptr, path, sizeof path);
  if (n == 0 || n == sizeof path) return 0;
  int length = static_cast<int>(n);
  if (cap > 0) {
    int copied = length < cap - 1 ? length : cap - 1;
    std::memcpy(buf, path, static_cast<size_t>(copied));
    buf[copied] = 0;
  }
  return length;
}

}  // namespace zel::os
