// The warning log.
#include <zel/diag/error.h>
#include <zel/diag/warnings.h>
#include <zel/text/charset.h>

#include <new>

namespace zel {

namespace {

struct WarningLog {
  CritSect lock;
  cstring text;
};

// Made on first use and kept until the process ends.
WarningLog &Warnings() {
  alignas(WarningLog) static unsigned char storage[sizeof(WarningLog)];
  static WarningLog *const log = new (storage) WarningLog();
  return *log;
}

}  // namespace

void AddWarning(const strptr &text, bool with_prefix) {
  if (text.empty()) return;
  WarningLog &log = Warnings();
  CritSectLock hold(log.lock);
  if (!log.text.empty() && !NewLineCharQ(log.text[log.text.length() - 1])) log.text << "\r\n";
  if (with_prefix) log.text << GetErrorPrefix();
  log.text << text;
}

temp_mtptr<cstring> GetWarningLog() {
  WarningLog &log = Warnings();
  return temp_mtptr<cstring>(&log.text, &log.lock);
}

temp_cstring DetachWarningLog() {
  WarningLog &log = Warnings();
  CritSectLock hold(log.lock);
  cstring copy(log.text);
  log.text.Flush();
  return temp_cstring(static_cast<cstring &&>(copy));
}

}  // namespace zel
