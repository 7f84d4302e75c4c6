// The per-thread lists of exit hooks.
#include <zel/mem/allocator.h>
#include <zel/thread/exit_hooks.h>

#include "os/os.h"

#include <new>

namespace zel {

namespace {

uint32_t Slot() {
  static const uint32_t slot = os::TlsAlloc();
  return slot;
}

// The loading thread's list exists from the start.
[[maybe_unused]] const bool g_loading_thread_list = [] {
  AddThreadExitHook(Hook0V());
  return true;
}();

}  // namespace

void AddThreadExitHook(const Hook0V &hook) {
  auto *hooks = static_cast<Hook0VAry *>(os::TlsGet(Slot()));
  if (hooks == nullptr) {
    hooks = new (MallocX(sizeof(Hook0VAry))) Hook0VAry();
    os::TlsSet(Slot(), hooks);
  }
  if (!hook.empty() && !hooks->Contains(hook)) hooks->Add(hook);
}

void CallThreadExitHooks() {
  while (auto *hooks = static_cast<Hook0VAry *>(os::TlsGet(Slot()))) {
    os::TlsSet(Slot(), nullptr);
    hooks->InvokeReverse();
    hooks->~Hook0VAry();
    FreeX(hooks);
  }
}

}  // namespace zel
