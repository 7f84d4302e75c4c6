// Thread exit hooks.
#include <zel/thread/exit_hooks.h>

#include "support/test_thread.h"

#include <vector>

namespace zel {
namespace {

struct Recorder {
  Recorder(std::vector<int> *c, int i) : calls(c), id(i) {}
  std::vector<int> *calls;
  int id;
  Hook0V *add_when_called = nullptr;
  void Call() {
    calls->push_back(id);
    if (add_when_called != nullptr) AddThreadExitHook(*add_when_called);
  }
  Hook0V Hook() { return Hook0V::Of<&Recorder::Call>(this); }
};

TEST(ThreadExitHooks, RunAtTheThreadsEndNewestFirstAndOnce) {
  std::vector<int> calls;
  Recorder one(&calls, 1), two(&calls, 2), late(&calls, 3);
  Hook0V late_hook = late.Hook();
  two.add_when_called = &late_hook;  // added while the hooks run: runs too
  test::TestThread thread([&] {
    AddThreadExitHook(one.Hook());
    AddThreadExitHook(two.Hook());
    AddThreadExitHook(one.Hook());  // already there
  });
  ASSERT_TRUE(thread.Join());
  EXPECT_EQ(calls, (std::vector<int>{2, 1, 3}));
}

TEST(ThreadExitHooks, CanBeRunEarly) {
  std::vector<int> calls;
  Recorder one(&calls, 1);
  AddThreadExitHook(one.Hook());
  CallThreadExitHooks();
  CallThreadExitHooks();
  EXPECT_EQ(calls, std::vector<int>{1});
}

}  // namespace
}  // namespace zel
