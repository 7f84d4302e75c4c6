// Threads, handles and locks for tests, on the library's own thread layer, so that the tests of
// every leg exercise it.
#pragma once

#include "os/os.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace zel::test {

// A thread that is joined when it goes.
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

// Runs `body` on a new thread; true when the thread has ended within `ms`.
inline bool RunOnThread(std::function<void()> body, uint32_t ms = 10000) {
  TestThread thread(std::move(body));
  return thread.Join(ms);
}

// `count` threads, each running `body` with its index.
class TestThreads {
 public:
  TestThreads(int count, const std::function<void(int)> &body) {
    for (int i = 0; i < count; ++i)
      threads_.push_back(std::make_unique<TestThread>([body, i] { body(i); }));
  }
  // True when every thread has ended within `ms`.
  bool JoinAll(uint32_t ms = 60000) {
    bool all = true;
    for (auto &t : threads_) all = t->Join(ms) && all;
    return all;
  }

 private:
  std::vector<std::unique_ptr<TestThread>> threads_;
};

// True when another thread can take `lock` right now.
template <typename Lock>
bool FreeForOthers(Lock &lock) {
  bool free = false;
  RunOnThread([&] {
    if ((free = lock.TryEnter())) lock.Leave();
  });
  return free;
}

// Four threads each add 20,000 to a counter, holding `lock` through a `Hold`; returns the total.
template <typename Hold, typename Lock>
int CountUnderLock(Lock &lock) {
  int counter = 0;
  TestThreads threads(4, [&](int) {
    for (int i = 0; i < 20000; ++i) {
      Hold hold(lock);
      ++counter;
    }
  });
  threads.JoinAll();
  return counter;
}

// A handle that closes itself; it converts to the handle.
class TestHandle {
 public:
  explicit TestHandle(os::Handle handle) : handle_(handle) { EXPECT_TRUE(os::IsHandle(handle)); }
  ~TestHandle() { os::CloseHandle(handle_); }
  TestHandle(const TestHandle &) = delete;
  TestHandle &operator=(const TestHandle &) = delete;
  operator os::Handle() const { return handle_; }

 private:
  os::Handle handle_;
};

// A manual-reset event that closes itself.
class TestEvent : public TestHandle {
 public:
  TestEvent() : TestHandle(os::CreateEvent(true, false)) {}
  void Set() { os::SetEvent(*this); }
  // True when the event is (or becomes) signalled within `ms`.
  bool Wait(uint32_t ms = 10000) { return os::WaitOne(*this, ms, false) == os::kWaitObject0; }
};

}  // namespace zel::test
