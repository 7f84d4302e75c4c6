// How the thread, event and handle wrappers report a failed system call: never by throwing, by a
// log line and their result.
#pragma once

namespace zel {

// When the log has a listener, logs `prefix` + the system's text for the calling thread's last
// error + "\r\n". The last error is kept.
void LogOsFailure(const char *prefix);

}  // namespace zel
