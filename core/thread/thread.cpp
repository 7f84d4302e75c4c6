// Threads started by the library.
#include <zel/mem/allocator.h>
#include <zel/thread/thread.h>

#include "os/os.h"

#include <new>

namespace zel {

namespace {

// What the new thread is to call, on the heap until the thread has read it.
struct Call {
  void (*fn)(void *);
  void *arg;
};

unsigned ZEL_CALLBACK Run(void *p) {
  const Call call = *static_cast<Call *>(p);
  FreeX(p);
  try {
    call.fn(call.arg);
  } catch (...) {
    // No exception may leave a thread body: it would end the process.
  }
  return 0;
}

}  // namespace

Thread::~Thread() { Wait(-1); }

bool Thread::Start_(void (*fn)(void *), void *arg) {
  if (thread_.Handle() != nullptr) return false;
  auto *call = new (MallocX(sizeof(Call))) Call{fn, arg};
  void *handle = os::CreateThread(&Run, call, 0, /*suspended=*/true, nullptr);
  if (handle == nullptr) {
    FreeX(call);
    return false;
  }
  thread_.Attach(handle);
  os::ResumeThread(handle);
  return true;
}

bool Thread::Wait(long ms) {
  if (thread_.Handle() == nullptr) return true;
  if (!thread_.Wait(static_cast<int>(ms))) return false;
  thread_.Close();
  return true;
}

}  // namespace zel
