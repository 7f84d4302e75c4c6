// The user-interface thread's id, and calls carried to that thread.
#include <zel/sched/scheduler.h>
#include <zel/sched/ui_thread.h>

#include "os/os.h"

#include <atomic>

namespace zel {

namespace {

std::atomic<int> g_ui_thread{static_cast<int>(os::CurrentThreadId())};

bool OnUIThread() { return static_cast<int>(os::CurrentThreadId()) == GetUIThreadID(); }

}  // namespace

int GetUIThreadID() { return g_ui_thread.load(std::memory_order_relaxed); }

void SetUIThreadID(int id) { g_ui_thread.store(id, std::memory_order_relaxed); }

ExecuteInUIThread::ExecuteInUIThread(const Hook0V &hook) : hook_(hook) {
  if (OnUIThread()) {
    hook_();
    done_.Set();
  } else {
    DelayClient::Schedule(GetGlobalScheduler());
  }
}

ExecuteInUIThread::~ExecuteInUIThread() {
  if (!OnUIThread()) Wait(0xFFFFFFFF);
  Deschedule();
}

bool ExecuteInUIThread::Wait(uint32_t ms) {
  if (OnUIThread()) return true;
  uint32_t left = ms;
  do {
    const uint32_t slice = left < 1000 ? left : 1000;
    if (done_.Wait(static_cast<int>(slice))) return true;
    if (ms != kNoLimit) left -= slice;  // kNoLimit is never counted down (intended)
  } while (left > 0);
  return false;
}

bool ExecuteInUIThread::Callback() {
  hook_();
  done_.Set();
  return false;
}

}  // namespace zel
