// Thread exit hooks.
#include <zel/thread/exit_hooks.h>

#include "support/test_thread.h"

#include <vector>

namespace zel {
namespace {

struct Recorder {
  std::vector<int> *calls;
  int id;
  Hook0V *add_when_called = nullptr;
  void Call() {
    calls->push_back(id);
    if (add_when_called != nullptr) AddThreadExitHook(*add_when_called);
  }
  Hook0V Hook() { return Hook0V::Of<&Recorder::Call>(this); }
};

TEST(ThreadExitHooks, CanBeRunEarlyAndRunAtTheThreadsEndNewestFirstAndOnce) {
  std::vector<int> calls;
  Recorder early{&calls, 0}, one{&calls, 1}, two{&calls, 2}, late{&calls, 3};
  Hook0V late_hook = late.Hook();
  two.add_when_called = &late_hook;  // added while the hooks run: runs too
  ASSERT_TRUE(test::RunOnThread([&] {
    AddThreadExitHook(early.Hook());
    CallThreadExitHooks();
    CallThreadExitHooks();  // nothing left to run
    AddThreadExitHook(one.Hook());
    AddThreadExitHook(two.Hook());
    AddThreadExitHook(one.Hook());  // already there
  }));
  EXPECT_EQ(calls, (std::vector<int>{0, 2, 1, 3}));
}

}  // namespace
}  // namespace zel
