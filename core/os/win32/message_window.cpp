// Window mode: a hidden window whose messages the thread's message loop delivers.
#include "os/os.h"

#include <new>

#include "os/win32/win.h"

namespace zel::os {

struct MessageWindow::State {
  Handler handler;
  void *context;
  HWND window = nullptr;
  WNDPROC own_procedure = nullptr;
};

namespace {

constexpr UINT kTimerId = 1;

LRESULT CALLBACK Route(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  auto *state = reinterpret_cast<MessageWindow::State *>(GetWindowLongPtrA(window, GWLP_USERDATA));
  if (state == nullptr) return DefWindowProcA(window, message, wparam, lparam);
  const bool ours = message == MessageWindow::kUserMessage ||
                    message == MessageWindow::kUserMessage + 1 ||
                    (message == MessageWindow::kTimerMessage && wparam == kTimerId);
  if (ours) state->handler(state->context, message, wparam, lparam);
  return CallWindowProcA(state->own_procedure, window, message, wparam, lparam);
}

}  // namespace

bool MessageWindow::Create(Handler handler, void *context) {
  Destroy();
  HWND window = nullptr;
  // A hidden top-level window; where no display can be had (a service, wine without X), a
  // message-only window, which receives posted messages and timers all the same.
  for (HWND parent : {HWND(nullptr), HWND_MESSAGE}) {
    window = CreateWindowExA(0, "static", "", 0, 0, 0, 1, 1, parent, nullptr,
                             GetModuleHandleA(nullptr), nullptr);
    if (window != nullptr) break;
  }
  if (window == nullptr) return false;
  void *memory = HeapAlloc(sizeof(State));
  if (memory == nullptr) {
    DestroyWindow(window);
    return false;
  }
  auto *state = new (memory) State{handler, context, window};
  SetWindowLongPtrA(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(state));
  state->own_procedure = reinterpret_cast<WNDPROC>(
      SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Route)));
  state_ = state;
  return true;
}

void MessageWindow::Destroy() {
  if (state_ == nullptr) return;
  HWND window = state_->window;
  // Messages still on their way find no handler.
  SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(state_->own_procedure));
  SetWindowLongPtrA(window, GWLP_USERDATA, 0);
  if (GetWindowThreadProcessId(window, nullptr) == GetCurrentThreadId())
    DestroyWindow(window);
  else
    PostMessageA(window, WM_CLOSE, 0, 0);  // only its own thread may destroy it
  HeapFree(state_);
  state_ = nullptr;
}

bool MessageWindow::Post(uint32_t message, uintptr_t wparam, intptr_t lparam) {
  return PostMessageA(state_->window, message, wparam, lparam) != 0;
}

bool MessageWindow::SetTimer(uint32_t ms) {
  return ::SetTimer(state_->window, kTimerId, ms, nullptr) != 0;
}

intptr_t MessageWindow::Descriptor() const { return -1; }

void MessageWindow::Dispatch() {}

void PostQuitMessage(int code) { ::PostQuitMessage(code); }

bool PumpMessages(uint32_t ms) {
  const ULONGLONG deadline = GetTickCount64() + ms;
  for (;;) {
    MSG message;
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
      if (message.message == WM_QUIT) return false;
      TranslateMessage(&message);
      DispatchMessageA(&message);
    }
    const ULONGLONG now = GetTickCount64();
    if (now >= deadline) return true;
    MsgWaitForMultipleObjectsEx(0, nullptr, static_cast<DWORD>(deadline - now), QS_ALLINPUT,
                                MWMO_ALERTABLE | MWMO_INPUTAVAILABLE);
  }
}

bool WaitReadable(intptr_t, int) { return false; }

}  // namespace zel::os
