// Files: the system's own.
#include "os/os.h"

#include "os/win32/win.h"

namespace zel::os {

static_assert(GENERIC_READ == kGenericRead && GENERIC_WRITE == kGenericWrite &&
              FILE_SHARE_READ == kShareRead && FILE_SHARE_WRITE == kShareWrite &&
              FILE_SHARE_DELETE == kShareDelete && CREATE_NEW == kCreateNew &&
              CREATE_ALWAYS == kCreateAlways && OPEN_EXISTING == kOpenExisting &&
              OPEN_ALWAYS == kOpenAlways && TRUNCATE_EXISTING == kTruncateExisting &&
              FILE_FLAG_SEQUENTIAL_SCAN == kFlagSequentialScan &&
              FILE_FLAG_RANDOM_ACCESS == kFlagRandomAccess &&
              FILE_FLAG_OVERLAPPED == kFlagOverlapped && FILE_BEGIN == kFileBegin &&
              FILE_CURRENT == kFileCurrent && FILE_END == kFileEnd);

Handle OpenFile(const char *path, uint32_t access, uint32_t share, uint32_t disposition,
                uint32_t flags) {
  HANDLE h = CreateFileA(path, access, share, nullptr, disposition, flags, nullptr);
  return h == INVALID_HANDLE_VALUE ? nullptr : h;
}

bool CloseFile(Handle file) { return ::CloseHandle(file) != 0; }

bool ReadFile(Handle file, void *buf, int n, int *done) {
  DWORD count = 0;
  bool ok = ::ReadFile(file, buf, n > 0 ? static_cast<DWORD>(n) : 0, &count, nullptr) != 0;
  *done = static_cast<int>(count);
  return ok;
}

bool WriteFile(Handle file, const void *buf, int n, int *done) {
  DWORD count = 0;
  bool ok = ::WriteFile(file, buf, n > 0 ? static_cast<DWORD>(n) : 0, &count, nullptr) != 0;
  *done = static_cast<int>(count);
  return ok;
}

bool SeekFile(Handle file, int64_t distance, int origin, int64_t *position) {
  LONG high = static_cast<LONG>(distance >> 32);
  // A low word of all ones is a valid result too: only the last error tells a failure.
  DWORD before = GetLastError();
  ::SetLastError(NO_ERROR);
  DWORD low = SetFilePointer(file, static_cast<LONG>(static_cast<DWORD>(distance)), &high,
                             static_cast<DWORD>(origin));
  if (low == INVALID_SET_FILE_POINTER && GetLastError() != NO_ERROR) return false;
  ::SetLastError(before);
  if (position != nullptr)
    *position = static_cast<int64_t>((static_cast<uint64_t>(static_cast<DWORD>(high)) << 32) | low);
  return true;
}

int64_t FileSize(Handle file) {
  DWORD high = 0;
  DWORD before = GetLastError();
  ::SetLastError(NO_ERROR);
  DWORD low = GetFileSize(file, &high);
  if (low == INVALID_FILE_SIZE && GetLastError() != NO_ERROR) return -1;
  ::SetLastError(before);
  return static_cast<int64_t>((static_cast<uint64_t>(high) << 32) | low);
}

bool FlushFile(Handle file) { return FlushFileBuffers(file) != 0; }

bool CreateDirectory(const char *path) { return CreateDirectoryA(path, nullptr) != 0; }

bool IsDirectory(const char *path) {
  SavedLastError saved;
  DWORD attributes = GetFileAttributesA(path);
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

}  // namespace zel::os
