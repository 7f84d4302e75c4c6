// The user-interface thread: its id, and ExecuteInUIThread, which runs a call there.
#pragma once

#include <zel/sched/delay_client.h>
#include <zel/sched/hook.h>
#include <zel/thread/sync.h>

#include <cstdint>

namespace zel {

// The id of the user-interface thread: the thread that loaded the library, until replaced.
ZEL_API int GetUIThreadID();
ZEL_API void SetUIThreadID(int id);

// Runs a hook on the user-interface thread and lets the caller wait for it:
//
//   ExecuteInUIThread call(Hook0V::Of<&Window::Refresh>(window));
//   call.Wait(5000);
//
// Made on the user-interface thread, it runs the hook at once, in the constructor. Made on another
// thread, it schedules itself on the global Scheduler, which runs the hook when the user-interface
// thread runs its loop; with no global Scheduler nothing runs (and waits time out).
class ZEL_API ExecuteInUIThread : public DelayClient {
 public:
  // The value of `ms` that waits without limit.
  static constexpr uint32_t kNoLimit = 0x7FFFFFFF;

  explicit ExecuteInUIThread(const Hook0V &hook);
  // Off the user-interface thread, waits for the hook as Wait(0xFFFFFFFF) does; then leaves the
  // global Scheduler's queue.
  ~ExecuteInUIThread() override;

  // True once the hook has run: at once on the user-interface thread; elsewhere after waiting at
  // most `ms` milliseconds, in slices of at most 1000 ms. kNoLimit is never counted down (no
  // limit); any other value is, so that even 0xFFFFFFFF ends.
  bool Wait(uint32_t ms);

  // The scheduled call: runs the hook, signals the waiters, and asks not to run again.
  bool Callback() override;

 private:
  Hook0V hook_;
  SyncEvent done_;
};

}  // namespace zel
