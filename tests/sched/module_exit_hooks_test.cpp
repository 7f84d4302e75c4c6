// Module exit hooks and the library's cleanup chain.
#include <zel/sched/module_exit_hooks.h>

#include "support/test_thread.h"

#include <cstdint>
#include <vector>

namespace zel {
namespace {

// The registry lives as long as the process: every test uses module handles of its own.
void *FakeModule(uintptr_t n) { return reinterpret_cast<void *>(n); }

// A hook target that notes its id in a shared list, and may change a module's hooks when called.
struct ExitHookTarget {
  std::vector<int> *calls;
  int id;
  void *module = nullptr;  // with `remove`: the module whose hook it removes when called
  ExitHookTarget *remove = nullptr;

  void Call() {
    calls->push_back(id);
    if (remove != nullptr) RemoveDllExitHook(module, remove->Hook());
  }
  Hook0V Hook() { return Hook0V::Of<&ExitHookTarget::Call>(this); }
};

TEST(ModuleExitHooks, RunOncePerAddInOrderAndOnlyForTheirModule) {
  using Calls = std::vector<int>;
  Calls calls;
  ExitHookTarget a{&calls, 1}, b{&calls, 2}, c{&calls, 3};
  void *const m1 = FakeModule(0x1000), *const m2 = FakeModule(0x1001);
  AddDllExitHook(m1, a.Hook());
  AddDllExitHook(m1, b.Hook());
  AddDllExitHook(m1, a.Hook());  // there already
  AddDllExitHook(m2, c.Hook());
  RemoveDllExitHook(FakeModule(0x1002), a.Hook());  // a module without hooks: nothing

  CallDllExitHooks(FakeModule(0x1003));  // never registered: nothing
  EXPECT_EQ(calls, Calls{});
  CallDllExitHooks(m1);
  EXPECT_EQ(calls, (Calls{1, 2}));
  CallDllExitHooks(m1);  // forgotten after the call
  EXPECT_EQ(calls, (Calls{1, 2}));
  CallDllExitHooks(m2);
  EXPECT_EQ(calls, (Calls{1, 2, 3}));

  // The module's emptied list takes hooks again; Remove takes out the first equal one.
  calls.clear();
  AddDllExitHook(m1, a.Hook());
  AddDllExitHook(m1, b.Hook());
  AddDllExitHook(m1, c.Hook());
  RemoveDllExitHook(m1, a.Hook());
  RemoveDllExitHook(m2, b.Hook());  // not m2's
  CallDllExitHooks(m1);
  EXPECT_EQ(calls, (Calls{2, 3}));
}

TEST(ModuleExitHooks, AHookMayRemoveALaterOne) {
  std::vector<int> calls;
  void *const m = FakeModule(0x2000);
  ExitHookTarget a{&calls, 1}, b{&calls, 2};
  a.module = m;
  a.remove = &b;
  AddDllExitHook(m, a.Hook());
  AddDllExitHook(m, b.Hook());
  CallDllExitHooks(m);  // re-enters the registry's lock on the same thread
  EXPECT_EQ(calls, std::vector<int>{1});
}

// Threads add hooks for many modules at once, making the table grow several times; every
// module keeps its own hook.
TEST(ModuleExitHooks, GrowthKeepsEveryModulesHooks) {
  constexpr int kThreads = 4, kPerThread = 400;
  constexpr uintptr_t kFirst = 0x30000;
  std::vector<int> calls[kThreads * kPerThread];
  std::vector<ExitHookTarget> targets;
  for (int i = 0; i < kThreads * kPerThread; ++i) targets.push_back({&calls[i], i});
  test::TestThreads threads(kThreads, [&](int t) {
    for (int i = t * kPerThread; i < (t + 1) * kPerThread; ++i)
      AddDllExitHook(FakeModule(kFirst + i), targets[i].Hook());
  });
  ASSERT_TRUE(threads.JoinAll());
  for (int i = 0; i < kThreads * kPerThread; ++i) {
    CallDllExitHooks(FakeModule(kFirst + i));
    EXPECT_EQ(calls[i], std::vector<int>{i}) << "module " << i;
  }
}

std::vector<int> g_cleanup_calls;

TEST(ZelCoreCleanupFuncs, CallersLinkInFrontAndTheChainRunsFromItsFarEnd) {
  FuncChainLink *&head = GetZelCoreCleanupFuncs();
  EXPECT_EQ(head, nullptr);  // the library links nothing of its own
  FuncChainLink first{[] { g_cleanup_calls.push_back(1); }, head};
  head = &first;
  FuncChainLink second{[] { g_cleanup_calls.push_back(2); }, head};
  head = &second;
  EXPECT_EQ(GetZelCoreCleanupFuncs(), &second);
  CallChain(GetZelCoreCleanupFuncs());
  EXPECT_EQ(g_cleanup_calls, (std::vector<int>{1, 2}));
  head = nullptr;
}

}  // namespace
}  // namespace zel
