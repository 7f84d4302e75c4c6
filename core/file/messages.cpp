// The messages of file operations.
#include "file/messages.h"

#include <zel/diag/error.h>
#include <zel/diag/log.h>
#include <zel/text/thread_local_string.h>

#include "os/os.h"

namespace zel::file {

temp_cstring ErrorText(uint32_t code) { return errstr(static_cast<int>(code)); }

void Fill(cstring &out, const strptr &format, const strptr &first, const strptr &second) {
  ThreadLocalString message;
  message->Set(format);
  message->Replace("%1", first);
  message->Replace("%2", second);
  out << *message;
}

void Throw(uint32_t code, const strptr &message) {
  ErrorX error(message);
  os::SetLastError(code);
  throw error;
}

void ThrowFilled(uint32_t code, const strptr &format, const strptr &first,
                 const strptr &second) {
  ThreadLocalString message;
  Fill(*message, format, first, second);
  Throw(code, *message);
}

void LogFilled(uint32_t code, const strptr &format, const strptr &first, const strptr &second) {
  if (LogCategory::n_global_clients >= 1) {
    ThreadLocalString line;
    Fill(*line, format, first, second);
    *line << "\r\n";
    PrintLog(*line);
  }
  os::SetLastError(code);
}

}  // namespace zel::file
