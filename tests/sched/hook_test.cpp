// Hooks, hook lists that change while they run, and function chains.
#include <zel/sched/hook.h>

#include <functional>
#include <string>
#include <vector>

namespace zel {
namespace {

std::vector<std::string> g_calls;

// A hook target that records its calls and can change the list that calls it.
struct Target {
  explicit Target(const char *n) : name(n) {}
  std::string name;
  Hook0VAry *list = nullptr;  // changed by `change` when set
  std::function<void(Hook0VAry &)> change;

  void Call() {
    g_calls.push_back(name);
    if (list != nullptr) change(*list);
  }
  Hook0V Hook() { return Hook0V::Of<&Target::Call>(this); }
};

TEST(Hook0VAry, InvokesInOrderAndInReverse) {
  g_calls.clear();
  Target a("a"), b("b"), c("c");
  Hook0V(a.Hook().function(), nullptr)();  // a hook without a target: nothing
  EXPECT_TRUE(Hook0V().empty());
  Hook0VAry list;
  list.Invoke();  // empty: nothing
  for (Target *t : {&a, &b, &c}) list.Add(t->Hook());
  list.Invoke();
  list.InvokeReverse();
  EXPECT_EQ(g_calls, (std::vector<std::string>{"a", "b", "c", "c", "b", "a"}));
  list.Remove(b.Hook());
  list.Remove(b.Hook());  // not there: nothing
  EXPECT_EQ(list.Count(), 2);
  EXPECT_FALSE(list.Contains(b.Hook()));
}

// The list holds a, b and c; one of them changes it when called, in the first walk only.
TEST(Hook0VAry, ChangesDuringAWalk) {
  using Calls = std::vector<std::string>;
  Target a("a"), b("b"), c("c"), d("d");
  // A hook that removes itself is gone after the walk; a later hook removed is not called; an
  // added hook waits for the next walk.
  auto remove_c_add_d = [&](Hook0VAry &l) {
    l.Remove(c.Hook());
    l.Add(d.Hook());
  };
  const struct {
    Target *changer;
    std::function<void(Hook0VAry &)> change;
    Calls first_walk;
    int count;
    Calls second_walk;
  } cases[] = {
      {&b, [&](Hook0VAry &l) { l.Remove(b.Hook()); }, {"a", "b", "c"}, 2, {"a", "c"}},
      {&a, remove_c_add_d, {"a", "b"}, 3, {"a", "b", "d"}},
      {&a, [](Hook0VAry &l) { l.Flush(); }, {"a"}, 0, {}},
  };
  for (const auto &t : cases) {
    Hook0VAry list;
    for (Target *target : {&a, &b, &c}) list.Add(target->Hook());
    t.changer->list = &list;
    t.changer->change = t.change;
    g_calls.clear();
    list.Invoke();
    EXPECT_EQ(g_calls, t.first_walk);
    EXPECT_EQ(list.Count(), t.count);
    t.changer->list = nullptr;
    g_calls.clear();
    list.Invoke();
    EXPECT_EQ(g_calls, t.second_walk);
  }
}

TEST(Hook0VAry, BorrowedStorageIsCopiedBeforeItChangesAndAssignmentCopies) {
  g_calls.clear();
  Target a("a"), b("b");
  const Hook0V fixed[] = {a.Hook(), b.Hook()};
  Hook0VAry borrowed(fixed, 2);
  borrowed.Remove(a.Hook());
  EXPECT_TRUE(fixed[0] == a.Hook());  // untouched
  EXPECT_EQ(borrowed.Count(), 1);

  Hook0VAry copy;
  copy = borrowed;
  copy.Invoke();
  EXPECT_EQ(g_calls, std::vector<std::string>{"b"});
}

std::vector<int> g_chain;

TEST(CallChain, CallsTheLastLinkFirst) {
  g_chain.clear();
  FuncChainLink c{[] { g_chain.push_back(3); }, nullptr};
  FuncChainLink b{[] { g_chain.push_back(2); }, &c};
  FuncChainLink a{[] { g_chain.push_back(1); }, &b};
  CallChain(&a);
  CallChain(nullptr);
  EXPECT_EQ(g_chain, (std::vector<int>{3, 2, 1}));
}

}  // namespace
}  // namespace zel
