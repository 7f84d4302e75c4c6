// Hardware faults as exceptions: signal handlers that call the thread's thrower.
#include "os/os.h"

#include <signal.h>

#include <mutex>

namespace zel::os {

namespace {

constexpr int kSignals[] = {SIGSEGV, SIGBUS, SIGFPE, SIGILL};
struct sigaction g_previous[sizeof kSignals / sizeof kSignals[0]];

thread_local FaultThrower t_thrower = nullptr;

// The Windows exception code of a fault.
uint32_t CodeOf(int signal, int code) {
  switch (signal) {
    case SIGFPE:
      switch (code) {
        case FPE_INTDIV: return 0xC0000094;
        case FPE_INTOVF: return 0xC0000095;
        case FPE_FLTDIV: return 0xC000008E;
        case FPE_FLTOVF: return 0xC0000091;
        case FPE_FLTUND: return 0xC0000093;
        case FPE_FLTRES: return 0xC000008F;
        case FPE_FLTSUB: return 0xC000008C;
        default: return 0xC0000090;
      }
    case SIGILL: return code == ILL_PRVOPC || code == ILL_PRVREG ? 0xC0000096 : 0xC000001D;
    case SIGBUS: return code == BUS_ADRALN ? 0x80000002 : 0xC0000005;
    default: return 0xC0000005;
  }
}

void OnFault(int signal, siginfo_t *info, void *context) {
  if (FaultThrower thrower = t_thrower) {
    thrower(CodeOf(signal, info->si_code));
    return;
  }
  // Not ours: the handler that was there before, or the default action when the fault repeats.
  for (size_t i = 0; i < sizeof kSignals / sizeof kSignals[0]; ++i) {
    if (kSignals[i] != signal) continue;
    const struct sigaction &previous = g_previous[i];
    if (previous.sa_flags & SA_SIGINFO) {
      previous.sa_sigaction(signal, info, context);
    } else if (previous.sa_handler != SIG_DFL && previous.sa_handler != SIG_IGN) {
      previous.sa_handler(signal);
    } else {
      struct sigaction fallback = {};
      fallback.sa_handler = SIG_DFL;
      sigaction(signal, &fallback, nullptr);
    }
  }
}

}  // namespace

bool EnableFaultTranslation(FaultThrower thrower) {
  static std::once_flag installed;
  std::call_once(installed, [] {
    struct sigaction action = {};
    action.sa_sigaction = OnFault;
    // No deferral: the handler is left by an exception, not by returning, and the signal must not
    // stay blocked after it.
    action.sa_flags = SA_SIGINFO | SA_NODEFER;
    sigemptyset(&action.sa_mask);
    for (size_t i = 0; i < sizeof kSignals / sizeof kSignals[0]; ++i)
      sigaction(kSignals[i], &action, &g_previous[i]);
  });
  t_thrower = thrower;
  return true;
}

}  // namespace zel::os
