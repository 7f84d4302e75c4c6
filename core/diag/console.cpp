// The system console and prerr_end.
#include <zel/diag/log.h>

#include "os/os.h"

#include <atomic>

namespace zel {

namespace {
std::atomic<bool> g_console_on{false};
}  // namespace

bool SysConsole::IsOn() { return g_console_on.load(); }

void SysConsole::TurnOn(bool on) { g_console_on.store(on); }

void SysConsole::Write(const strptr &text) {
  if (IsOn()) os::ConsoleWrite(text.text(), text.length());
}

bool SysConsole::IsTerminal() { return os::ConsoleIsTerminal(); }

void prerr_end(cstring &text) {
  SysConsole::Write(text);
  BetterOutputDebugString(text);
}

}  // namespace zel
