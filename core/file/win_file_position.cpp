// WinFile: the position and the size.
#include <zel/file/win_file.h>

#include <zel/diag/log.h>
#include <zel/text/format.h>
#include <zel/text/thread_local_string.h>

#include "file/messages.h"
#include "os/os.h"

namespace zel {

int64_t WinFile::GetPos() const {
  int64_t position = -1;
  return os::SeekFile(handle_, 0, os::kFileCurrent, &position) ? position : -1;
}

bool WinFile::SetPos(int64_t pos) { return Seek(pos, os::kFileBegin, ", pos: ", false); }

void WinFile::SetPosX(int64_t pos) { Seek(pos, os::kFileBegin, ", pos: ", true); }

bool WinFile::Skip(int64_t distance) {
  return Seek(distance, os::kFileCurrent, ", relative pos: ", false);
}

void WinFile::SkipX(int64_t distance) {
  Seek(distance, os::kFileCurrent, ", relative pos: ", true);
}

bool WinFile::Seek(int64_t distance, int origin, const char *what, bool throw_errors) {
  if (os::SeekFile(handle_, distance, origin, nullptr)) return true;
  uint32_t code = os::LastError();
  if (!throw_errors && LogCategory::n_global_clients < 1) return false;
  ThreadLocalString text;
  *text << "Note: Failed: SetFilePointer(handle: ";
  FmtHex(*text, reinterpret_cast<uintptr_t>(handle_));
  *text << what << distance << "; Error: " << file::ErrorText(code);
  if (throw_errors) file::Throw(code, *text);
  *text << "\r\n";
  PrintLog(*text);
  os::SetLastError(code);
  return false;
}

bool WinFile::EofQ() const { return handle_ == nullptr || GetPos() == ~*this; }

int64_t WinFile::operator~() const {
  if (handle_ == nullptr) return 0;
  int64_t size = os::FileSize(handle_);
  return size < 0 ? 0 : size;
}

int WinFile::Length32() const { return static_cast<int>(static_cast<uint32_t>(~*this)); }

}  // namespace zel
