// TestThread: a thread for tests, on the library's own thread layer (so the same test runs on
// every leg, MinGW's Win32 thread model included).
#pragma once

#include "os/os.h"

#include <functional>
#include <utility>

namespace zel::test {

class TestThread {
 public:
  // Starts `body` on a new thread; with `suspended`, only after Resume.
  explicit TestThread(std::function<void()> body, bool suspended = false) : body_(std::move(body)) {
    handle_ = os::CreateThread(&Run, this, 0, suspended, &id_);
  }
  ~TestThread() { Join(); }
  TestThread(const TestThread &) = delete;
  TestThread &operator=(const TestThread &) = delete;

  bool Started() const { return handle_ != nullptr; }
  os::Handle handle() const { return handle_; }
  uint32_t id() const { return id_; }
  void Resume() { os::ResumeThread(handle_); }

  // Waits up to `ms` for the thread to end; true when it has ended (the handle is then closed).
  bool Join(uint32_t ms = 10000) {
    if (handle_ == nullptr) return true;
    if (os::WaitOne(handle_, ms, false) != os::kWaitObject0) return false;
    os::CloseHandle(handle_);
    handle_ = nullptr;
    return true;
  }

 private:
  static unsigned ZEL_CALLBACK Run(void *self) {
    static_cast<TestThread *>(self)->body_();
    return 0;
  }

  std::function<void()> body_;
  os::Handle handle_ = nullptr;
  uint32_t id_ = 0;
};

// A manual-reset event that closes itself.
class TestEvent {
 public:
  explicit TestEvent(bool manual_reset = true, bool set = false)
      : handle_(os::CreateEvent(manual_reset, set)) {}
  ~TestEvent() { os::CloseHandle(handle_); }
  TestEvent(const TestEvent &) = delete;
  TestEvent &operator=(const TestEvent &) = delete;

  os::Handle handle() const { return handle_; }
  void Set() { os::SetEvent(handle_); }
  void Reset() { os::ResetEvent(handle_); }
  // True when the event is (or becomes) signalled within `ms`.
  bool Wait(uint32_t ms = 10000) { return os::WaitOne(handle_, ms, false) == os::kWaitObject0; }

 private:
  os::Handle handle_;
};

}  // namespace zel::test
