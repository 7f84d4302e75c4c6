// The registry: keys under HKEY_LOCAL_MACHINE and their string values, through advapi32.
#include "os/os.h"

#include "os/win32/win.h"

#include <cstring>

namespace zel::os {

namespace {

// Reports a registry call's result as the last error, as the other calls of this layer do.
bool Succeeded(LONG result) {
  if (result == ERROR_SUCCESS) return true;
  ::SetLastError(static_cast<DWORD>(result));
  return false;
}

}  // namespace

void *RegistryOpen(const char *subkey, bool create) {
  HKEY key = nullptr;
  LONG result = create ? RegCreateKeyExA(HKEY_LOCAL_MACHINE, subkey, 0, nullptr,
                                         REG_OPTION_NON_VOLATILE, KEY_READ | KEY_WRITE, nullptr,
                                         &key, nullptr)
                       : RegOpenKeyExA(HKEY_LOCAL_MACHINE, subkey, 0, KEY_READ, &key);
  return Succeeded(result) ? key : nullptr;
}

void RegistryClose(void *key) {
  if (key != nullptr) RegCloseKey(static_cast<HKEY>(key));
}

int RegistryGetString(void *key, const char *name, char *buf, int cap) {
  HKEY hkey = static_cast<HKEY>(key);
  DWORD type = 0;
  DWORD size = 0;
  char *data = nullptr;
  LONG result;
  // The value may grow between asking its size and reading it.
  do {
    HeapFree(data);
    data = nullptr;
    result = RegQueryValueExA(hkey, name, nullptr, &type, nullptr, &size);
    if (result != ERROR_SUCCESS) break;
    data = static_cast<char *>(HeapAlloc(size));
    if (data == nullptr) {
      result = ERROR_NOT_ENOUGH_MEMORY;
      break;
    }
    result = RegQueryValueExA(hkey, name, nullptr, &type, reinterpret_cast<BYTE *>(data), &size);
  } while (result == ERROR_MORE_DATA);
  int length = -1;
  if (Succeeded(result)) {
    if (type == REG_SZ || type == REG_EXPAND_SZ) {
      length = static_cast<int>(size);
      // The stored terminator is not part of the text.
      while (length > 0 && data[length - 1] == 0) --length;
      if (cap > 0) {
        int n = length < cap - 1 ? length : cap - 1;
        if (n > 0) std::memcpy(buf, data, static_cast<size_t>(n));
        buf[n] = 0;
      }
    } else {
      ::SetLastError(ERROR_UNSUPPORTED_TYPE);
    }
  }
  HeapFree(data);
  return length;
}

bool RegistrySetString(void *key, const char *name, const char *value, int length) {
  // REG_SZ data carries its terminator.
  char *data = static_cast<char *>(HeapAlloc(static_cast<size_t>(length) + 1));
  if (data == nullptr) return Succeeded(ERROR_NOT_ENOUGH_MEMORY);
  if (length > 0) std::memcpy(data, value, static_cast<size_t>(length));
  data[length] = 0;
  bool ok = Succeeded(RegSetValueExA(static_cast<HKEY>(key), name, 0, REG_SZ,
                                     reinterpret_cast<const BYTE *>(data),
                                     static_cast<DWORD>(length) + 1));
  SavedLastError saved;
  HeapFree(data);
  return ok;
}

}  // namespace zel::os
