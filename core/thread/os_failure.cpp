// The log line of a failed system call.
#include "thread/os_failure.h"

#include <zel/diag/error.h>
#include <zel/diag/log.h>
#include <zel/text/thread_local_string.h>

#include "os/os.h"

namespace zel {

void LogOsFailure(const char *prefix) {
  if (LogCategory::n_global_clients < 1) return;
  os::SavedLastError saved;
  ThreadLocalString line;
  *line << prefix << errstr(static_cast<int>(os::LastError())) << "\r\n";
  PrintLog(*line);
}

}  // namespace zel
