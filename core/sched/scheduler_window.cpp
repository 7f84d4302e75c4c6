// Scheduler: window mode's channel, over the operating system's message window.
#include "os/os.h"
#include "sched/scheduler_parts.h"

#include <new>

namespace zel {

namespace {

// WM_USER + 1: a wake-up.
constexpr uint32_t kWakeMessage = os::MessageWindow::kUserMessage + 1;

}  // namespace

struct SchedulerWindow {
  os::MessageWindow window;
  Scheduler *owner;

  // WM_USER runs a plain call (its routine and argument are the two parameters); WM_USER + 1 and
  // the timer run a dispatch pass, unless one is running. Nothing they throw leaves here: on
  // Windows the message loop's system code is below.
  static void Handle(void *context, uint32_t message, uintptr_t wparam, intptr_t lparam) {
    auto *self = static_cast<SchedulerWindow *>(context);
    if (message == os::MessageWindow::kUserMessage)
      SchedulerAccess::CallFromWindow(reinterpret_cast<SchedulerCall>(wparam),
                                      static_cast<uintptr_t>(lparam));
    else
      SchedulerAccess::WakeFromWindow(self->owner);
  }
};

SchedulerWindow *OpenSchedulerWindow(Scheduler *owner) {
  auto *w = new (MallocX(sizeof(SchedulerWindow))) SchedulerWindow{{}, owner};
  if (w->window.Create(&SchedulerWindow::Handle, w)) return w;
  CloseSchedulerWindow(w);
  return nullptr;
}

void CloseSchedulerWindow(SchedulerWindow *window) {
  if (window == nullptr) return;
  window->~SchedulerWindow();
  FreeX(window);
}

void PostWindowCall(SchedulerWindow *window, SchedulerCall routine, uintptr_t argument) {
  window->window.Post(os::MessageWindow::kUserMessage, reinterpret_cast<uintptr_t>(routine),
                      static_cast<intptr_t>(argument));
}

void PostWindowWake(SchedulerWindow *window) { window->window.Post(kWakeMessage, 0, 0); }

void SetWindowTimer(SchedulerWindow *window, uint32_t ms) { window->window.SetTimer(ms); }

intptr_t WindowDescriptor(SchedulerWindow *window) { return window->window.Descriptor(); }

void DispatchWindow(SchedulerWindow *window) { window->window.Dispatch(); }

}  // namespace zel
