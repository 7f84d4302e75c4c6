// Work a module does when it is unloaded: its exit hooks, and the library's cleanup chain.
#pragma once

#include <zel/sched/hook.h>

namespace zel {

// Adds `hook` to the exit hooks of `module` (a module handle: what the module's entry point
// received, or GetLibraryModule for this library), unless an equal hook is already there. Any
// thread.
ZEL_API void AddDllExitHook(void *module, const Hook0V &hook);

// Removes the first hook of `module` equal to `hook`; nothing when there is none. Any thread.
ZEL_API void RemoveDllExitHook(void *module, const Hook0V &hook);

// Calls the exit hooks of `module`, first added first, and forgets them, so that a second call
// calls nothing; nothing for a module that never added one. The library never calls it by itself:
// a module calls it for itself, typically as it is unloaded. The hooks run under the registry's
// lock, so they must not wait for another thread that adds or removes module exit hooks; they may
// add and remove hooks themselves, but a hook added to this module meanwhile is forgotten uncalled.
ZEL_API void CallDllExitHooks(void *module);

// The head of the library's cleanup chain, initially null, by reference: link your own
// FuncChainLink in front of it (link.next = head; head = &link). The application runs the chain
// with CallChain at its shutdown, which starts at the far end: the link made first runs first. The
// library links nothing of its own. No lock: change it only while no other thread uses it.
ZEL_API FuncChainLink *&GetZelCoreCleanupFuncs();

}  // namespace zel
