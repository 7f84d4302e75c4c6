// OpenFile: the one way files are opened, steered by FileFlags_.
#include <zel/file/win_file.h>

#include <zel/diag/log.h>
#include <zel/text/format.h>
#include <zel/text/thread_local_string.h>

#include "file/messages.h"
#include "os/os.h"

namespace zel {

namespace {

LogCategory g_file_errors("WinFile Errors", true);

uint32_t Disposition(QFlags<FileFlags_> flags) {
  if (flags.Has(FileWrite | FileTruncate)) return os::kCreateAlways;
  if (flags.Has(FileAppend)) return os::kOpenAlways;
  if (flags.Has(FileRead)) return os::kOpenExisting;
  return os::kCreateAlways;
}

uint32_t ShareMode(QFlags<FileFlags_> flags) {
  uint32_t share = os::kShareRead | os::kShareDelete;
  if (flags.Has(FileRead)) share |= os::kShareWrite;
  if (flags.Has(FileWrite)) share &= ~os::kShareWrite;
  return share;
}

uint32_t Attributes(QFlags<FileFlags_> flags) {
  uint32_t attributes = 0;
  if (flags.Has(FileSequentialScan)) attributes |= os::kFlagSequentialScan;
  if (flags.Has(FileRandomAccess)) attributes |= os::kFlagRandomAccess;
  if (flags.Has(FileOverlapped)) attributes |= os::kFlagOverlapped;
  return attributes;
}

const char *ModePhrase(QFlags<FileFlags_> flags) {
  if (flags.Has(FileAppend)) return " in append mode";
  if (flags.Has(FileRead | FileWrite)) return " in read/write mode";
  if (flags.Has(FileRead)) return " in read mode";
  return " in write mode";
}

// Moves a file just opened for appending to its end; a failure is noted, not reported.
void MoveToEnd(void *handle) {
  int64_t size = os::FileSize(handle);
  if (size >= 0 && os::SeekFile(handle, size, os::kFileBegin, nullptr)) return;
  uint32_t code = os::LastError();
  if (g_file_errors.Enabled() && LogCategory::n_global_clients >= 1) {
    ThreadLocalString line;
    *line << "Note: Failed: SetFilePointer(handle: ";
    FmtHex(*line, reinterpret_cast<uintptr_t>(handle));
    *line << " Error: " << file::ErrorText(code) << "\r\n";
    PrintLog(*line);
  }
  os::SetLastError(code);
}

void ReportOpenFailure(const strptr &path, QFlags<FileFlags_> flags, uint32_t code) {
  ThreadLocalString message;
  *message << "%W: Cannot open file " << path << ModePhrase(flags) << ": "
           << file::ErrorText(code);
  if (flags.Has(FileThrowErrors)) file::Throw(code, *message);
  if (flags.Has(FileLogErrors) && LogCategory::n_global_clients >= 1) {
    *message << "\r\n";
    PrintLog(*message);
  }
}

}  // namespace

void *OpenFile(const strptr &path, QFlags<FileFlags_> flags) {
  if (flags.Has(FileAppend)) flags |= FileWrite;
  if (!flags.Has(FileRead) && !flags.Has(FileWrite)) return nullptr;
  uint32_t access = (flags.Has(FileRead) ? os::kGenericRead : 0) |
                    (flags.Has(FileWrite) ? os::kGenericWrite : 0);
  void *handle = os::OpenFile(cstring(path).text(), access, ShareMode(flags), Disposition(flags),
                              Attributes(flags));
  if (handle != nullptr) {
    if (flags.Has(FileAppend)) MoveToEnd(handle);
    return handle;
  }
  uint32_t code = os::LastError();
  if (flags.Has(FileLogErrors) || flags.Has(FileThrowErrors)) ReportOpenFailure(path, flags, code);
  os::SetLastError(code);
  return nullptr;
}

}  // namespace zel
