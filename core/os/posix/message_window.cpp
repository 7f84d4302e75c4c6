// Window mode without windows: posted messages wait in a queue behind an eventfd that the
// application's event loop watches.
#include "os/os.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <mutex>
#include <new>

namespace zel::os {

namespace {

struct Message {
  uint32_t message;
  uintptr_t wparam;
  intptr_t lparam;
};

}  // namespace

struct MessageWindow::State {
  State(Handler h, void *c) : handler(h), context(c), thread(CurrentThreadId()) {}
  ~State() { HeapFree(queue); }

  Handler handler;
  void *context;
  uint32_t thread;
  WakePort port;
  std::mutex lock;
  Message *queue = nullptr;  // lock
  int count = 0;             // lock
  int capacity = 0;          // lock

  // Appends a message; false when memory runs out. Lock held.
  bool Add(const Message &m) {
    if (count == capacity) {
      const int grown = capacity < 8 ? 8 : capacity * 2;
      void *bigger = HeapRealloc(queue, sizeof(Message) * static_cast<size_t>(grown));
      if (bigger == nullptr) return false;
      queue = static_cast<Message *>(bigger);
      capacity = grown;
    }
    queue[count++] = m;
    return true;
  }
};

bool MessageWindow::Create(Handler handler, void *context) {
  Destroy();
  void *memory = HeapAlloc(sizeof(State));
  if (memory == nullptr) return false;
  auto *state = new (memory) State(handler, context);
  if (!state->port.Open()) {
    state->~State();
    HeapFree(state);
    return false;
  }
  state_ = state;
  return true;
}

void MessageWindow::Destroy() {
  if (state_ == nullptr) return;
  state_->~State();
  HeapFree(state_);
  state_ = nullptr;
}

bool MessageWindow::Post(uint32_t message, uintptr_t wparam, intptr_t lparam) {
  {
    std::lock_guard hold(state_->lock);
    if (!state_->Add(Message{message, wparam, lparam})) {
      SetLastError(ENOMEM);
      return false;
    }
  }
  state_->port.Signal();
  return true;
}

bool MessageWindow::SetTimer(uint32_t) {
  // The loop times out by itself; a timer set from elsewhere wakes it to take the new time-out.
  if (CurrentThreadId() != state_->thread) state_->port.Signal();
  return true;
}

intptr_t MessageWindow::Descriptor() const {
  return state_ != nullptr ? state_->port.Native() : -1;
}

void MessageWindow::Dispatch() {
  state_->port.Drain();
  for (;;) {
    Message *batch;
    int count;
    {
      std::lock_guard hold(state_->lock);
      if (state_->count == 0) return;
      batch = state_->queue;
      count = state_->count;
      state_->queue = nullptr;
      state_->count = state_->capacity = 0;
    }
    // Handlers may post again (into a new queue) or destroy nothing: the batch is ours.
    for (int i = 0; i < count; ++i)
      state_->handler(state_->context, batch[i].message, batch[i].wparam, batch[i].lparam);
    HeapFree(batch);
  }
}

void PostQuitMessage(int) {}

bool PumpMessages(uint32_t ms) {
  SleepEx(ms, true);
  return true;
}

bool WaitReadable(intptr_t descriptor, int ms) {
  pollfd watched{static_cast<int>(descriptor), POLLIN, 0};
  int ready;
  do {
    ready = poll(&watched, 1, ms);
  } while (ready < 0 && errno == EINTR);
  return ready > 0;
}

}  // namespace zel::os
