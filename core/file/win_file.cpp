// WinFile: owning the handle, reading, writing and flushing.
#include <zel/file/win_file.h>

#include <zel/text/thread_local_string.h>

#include "file/messages.h"
#include "os/os.h"

namespace zel {

namespace {

// A count as the text of a message.
struct Count {
  explicit Count(int n) { *text << n; }
  ThreadLocalString text;
};

}  // namespace

WinFile::~WinFile() { Close(); }

bool WinFile::OpenRead(const strptr &path, QFlags<FileFlags_> flags) {
  Close();
  handle_ = OpenFile(path, flags | FileRead);
  return handle_ != nullptr;
}

bool WinFile::OpenWrite(const strptr &path, QFlags<FileFlags_> flags) {
  Close();
  handle_ = OpenFile(path, flags | FileWrite);
  return handle_ != nullptr;
}

void WinFile::Attach(void *handle) {
  if (handle == handle_) return;
  Close();
  handle_ = os::IsHandle(handle) ? handle : nullptr;
}

void *WinFile::Detach() {
  void *handle = handle_;
  handle_ = nullptr;
  return handle;
}

void WinFile::StealFrom(WinFile &other) {
  if (&other != this) Attach(other.Detach());
}

void WinFile::Close() {
  if (handle_ != nullptr) os::CloseFile(handle_);
  handle_ = nullptr;
}

int WinFile::Read(void *buffer, int n) {
  int done = 0;
  return os::ReadFile(handle_, buffer, n, &done) ? done : 0;
}

bool WinFile::SurelyRead(void *buffer, int n) {
  int done = 0;
  return os::ReadFile(handle_, buffer, n, &done) && done == n;
}

void WinFile::ReadX(void *buffer, int n) {
  int done = 0;
  if (os::ReadFile(handle_, buffer, n, &done)) {
    if (done == n) return;
    file::ThrowFilled(os::LastError(), "Cannot read %1 from file (only %2 are available)",
                      Count(n).text, Count(done).text);
  }
  uint32_t code = os::LastError();
  file::ThrowFilled(code, "Cannot read %1 from file; Error: %2", Count(n).text,
                    file::ErrorText(code));
}

int WinFile::PartialReadX(void *buffer, int n) {
  int done = 0;
  if (os::ReadFile(handle_, buffer, n, &done)) return done;
  uint32_t code = os::LastError();
  file::ThrowFilled(code, "Cannot read %1 from file; Error: %2", Count(n).text,
                    file::ErrorText(code));
}

int WinFile::Write(const void *buffer, int n) {
  int done = 0;
  os::WriteFile(handle_, buffer, n, &done);
  return done;
}

void WinFile::WriteX(const void *buffer, int n) {
  int done = 0;
  if (!os::WriteFile(handle_, buffer, n, &done)) {
    uint32_t code = os::LastError();
    file::ThrowFilled(code, "Cannot write %1 to file; Error: %2", Count(n).text,
                      file::ErrorText(code));
  }
  if (done != n) file::ThrowFilled(os::LastError(), "Cannot write %1 to file.", Count(n).text);
}

bool WinFile::Sync() {
  if (os::FlushFile(handle_)) return true;
  uint32_t code = os::LastError();
  file::LogFilled(code, "Note: Failed: FlushFileBuffers(); Error: %1", file::ErrorText(code));
  return false;
}

void WinFile::SyncX() {
  if (os::FlushFile(handle_)) return;
  uint32_t code = os::LastError();
  file::ThrowFilled(code, "Cannot flush file to disk; Error: %1", file::ErrorText(code));
}

}  // namespace zel
