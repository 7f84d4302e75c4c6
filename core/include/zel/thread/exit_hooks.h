// Work a thread does when it ends: its exit hooks.
#pragma once

#include <zel/sched/hook.h>

namespace zel {

// Adds `hook` to the calling thread's exit hooks, unless an equal hook is already there. The hooks
// run when the thread ends (on Linux, the end of a thread that used the library's per-thread state
// or was started by it), newest first.
ZEL_API void AddThreadExitHook(const Hook0V &hook);

// Runs and forgets the calling thread's exit hooks, newest first; hooks they add meanwhile run
// too, until none is left. Called by the library when a thread ends; callable earlier.
ZEL_API void CallThreadExitHooks();

}  // namespace zel
