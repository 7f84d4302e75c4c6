// Hooks, hook lists that change while they run, and function chains.
#include <zel/sched/hook.h>

#include <string>
#include <vector>

namespace zel {
namespace {

std::vector<std::string> g_calls;

// A hook target that records its calls and can change the list that calls it.
struct Target {
  explicit Target(const char *n) : name(n) {}
  std::string name;
  Hook0VAry *list = nullptr;
  Hook0V remove_on_call;
  Hook0V add_on_call;
  bool flush_on_call = false;

  void Call() {
    g_calls.push_back(name);
    if (list != nullptr) {
      if (!remove_on_call.empty()) list->Remove(remove_on_call);
      if (!add_on_call.empty()) list->Add(add_on_call);
      if (flush_on_call) list->Flush();
    }
  }
  Hook0V Hook() { return Hook0V::Of<&Target::Call>(this); }
};

TEST(Hook0V, CallsItsTargetAndIsEmptyWithoutOne) {
  g_calls.clear();
  Target a("a");
  Hook0V hook = a.Hook();
  hook();
  Hook0V(hook.function(), nullptr)();  // no target: nothing
  EXPECT_EQ(g_calls, std::vector<std::string>{"a"});
  EXPECT_TRUE(Hook0V().empty());
  Target b("b");
  EXPECT_TRUE(hook == a.Hook());
  EXPECT_FALSE(hook == b.Hook());
}

TEST(Hook0VAry, InvokesInOrderAndInReverse) {
  g_calls.clear();
  Target a("a"), b("b"), c("c");
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

TEST(Hook0VAry, AHookRemovingItselfIsGoneAfterTheWalkAndOthersRunOnce) {
  g_calls.clear();
  Hook0VAry list;
  Target a("a"), b("b"), c("c");
  for (Target *t : {&a, &b, &c}) list.Add(t->Hook());
  b.list = &list;
  b.remove_on_call = b.Hook();
  list.Invoke();
  EXPECT_EQ(g_calls, (std::vector<std::string>{"a", "b", "c"}));
  EXPECT_EQ(list.Count(), 2);
  g_calls.clear();
  list.Invoke();
  EXPECT_EQ(g_calls, (std::vector<std::string>{"a", "c"}));
}

TEST(Hook0VAry, ChangesDuringAWalk) {
  g_calls.clear();
  Hook0VAry list;
  Target a("a"), b("b"), c("c"), d("d");
  for (Target *t : {&a, &b, &c}) list.Add(t->Hook());
  a.list = &list;
  a.remove_on_call = c.Hook();  // removing a later hook: it is not called
  a.add_on_call = d.Hook();     // an added hook waits for the next walk
  list.Invoke();
  EXPECT_EQ(g_calls, (std::vector<std::string>{"a", "b"}));
  EXPECT_EQ(list.Count(), 3);

  g_calls.clear();
  a.remove_on_call = Hook0V();
  a.add_on_call = Hook0V();
  a.flush_on_call = true;
  list.Invoke();
  EXPECT_EQ(g_calls, (std::vector<std::string>{"a"}));
  EXPECT_EQ(list.Count(), 0);
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
