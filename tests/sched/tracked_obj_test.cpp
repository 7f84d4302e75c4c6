// Tracked objects: dependencies, deactivation from dependants towards dependencies, aborts,
// auto-deactivation and auto-deletion, finding objects, and the destructor's reports.
#include <zel/sched/scheduler.h>

#include "support/log_capture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace zel {
namespace {

std::string Name(const TrackedObj *o) { return std::string(o->GetName().view().view()); }

// A tracked object whose checks run on a Scheduler the test pumps on its own thread, and which
// records when it deactivates.
class Obj : public TrackedObj {
 public:
  Obj(const char *name, TrackedObj *parent, Scheduler *s, std::vector<std::string> *log = nullptr)
      : TrackedObj(name, "obj", parent, true, s), log_(log) {}
  using TrackedObj::SetState;

  void Deactivate() override {
    TrackedObj::Deactivate();
    if (log_ != nullptr && GetState() == kInactive) log_->push_back(Name(this));
  }
  void OnDeactivateRequested() override { ++requests; }
  int requests = 0;

 private:
  std::vector<std::string> *log_;
};

// The test's Scheduler, not attached to any thread: its checks run when Pump says.
class TrackedTest : public testing::Test {
 protected:
  TrackedTest() : scheduler_(CreateScheduler("checks", nullptr, true, nullptr)) {}

  // Runs the checks and the global Scheduler's deletions until none is left.
  void Pump() {
    for (int i = 0; i < 50; ++i) {
      scheduler_->RunDueClients();
      GetGlobalScheduler()->RunDueClients();
      if (scheduler_->ClientCount() == 0 && GetGlobalScheduler()->ClientCount() == 0) return;
    }
    ADD_FAILURE() << "checks still queued";
  }
  Scheduler *s() { return scheduler_.get(); }

  safeptr<Scheduler> scheduler_;
};

std::string Names(const PtrTAry<TrackedObj> &objects) {
  std::string out;
  for (const TrackedObj *o : objects) out.append(Name(o)).append(" ");
  return out;
}

TEST_F(TrackedTest, DependantsDeactivateFirst) {
  std::vector<std::string> order;
  Obj b("b", nullptr, s(), &order);
  Obj a("a", &b, s(), &order);
  Obj c("c", &b, s(), &order);
  PtrTAry<TrackedObj> list;
  b.GetDependants(list);
  EXPECT_EQ(Names(list), "a c ");
  b.GetDependencies(list);
  EXPECT_EQ(Names(list), "root ");
  EXPECT_EQ(b.GetNumActiveChildren(), 2);

  b.RequestDeactivate();
  EXPECT_EQ(b.GetTargetState(), 0);
  EXPECT_EQ(b.GetState(), 1);
  Pump();
  // b's first check asks its dependants, last first; their going makes b check again.
  EXPECT_EQ(order, (std::vector<std::string>{"c", "a", "b"}));
  EXPECT_EQ(b.requests, 2);
  for (const Obj *o : {&a, &b, &c}) EXPECT_EQ(o->GetState(), 0);
}

TEST_F(TrackedTest, StateChangesAndLinks) {
  Obj b("b", nullptr, s());
  Obj a("a", &b, s());
  a.AddDependency(&b);  // once only
  PtrTAry<TrackedObj> list;
  b.GetDependants(list);
  EXPECT_EQ(list.Count(), 1);
  b.SetState(0);  // refused while a is active
  EXPECT_EQ(b.GetState(), 1);
  EXPECT_EQ(b.GetTargetState(), 0);
  a.SetState(0);
  b.SetState(0);
  EXPECT_EQ(b.GetState(), 0);
  // Depending on an inactive object activates it.
  Obj c("c", nullptr, s());
  c.AddDependency(&b);
  EXPECT_EQ(b.GetState(), 1);
  c.RemoveDependency(&b);
  b.GetDependants(list);
  EXPECT_EQ(Names(list), "a ");
  Pump();

  Obj root_named("root", nullptr, s());  // the reserved name: no record, no parent
  root_named.GetDependencies(list);
  EXPECT_EQ(list.Count(), 0);
  root_named.RequestCheckState();
  EXPECT_EQ(s()->ClientCount(), 0);
}

TEST_F(TrackedTest, RepeatedRequestsCollapseIntoOneCheck) {
  Obj a("a", nullptr, s());
  for (int i = 0; i < 3; ++i) a.RequestCheckState();
  EXPECT_EQ(s()->ClientCount(), 1);
  a.RequestDeactivate();
  Pump();
  EXPECT_EQ(a.requests, 1);
  EXPECT_EQ(a.GetState(), 0);
}

TEST_F(TrackedTest, AnAbortRunsDownToTheRootButADeactivationOnlyAsksForChecks) {
  // An island of its own under an object with the reserved name, so that the abort stops there
  // rather than at the global Scheduler.
  Obj island("root", nullptr, s());
  Obj top("top", &island, s());
  Obj mid("mid", &top, s());
  Obj leaf("leaf", &mid, s());
  Obj plain("plain", nullptr, s());
  Obj plain_leaf("plain_leaf", &plain, s());

  plain_leaf.RequestDeactivate();
  Pump();
  EXPECT_EQ(plain_leaf.GetState(), 0);
  EXPECT_EQ(plain.GetState(), 1);  // checked, but nothing asked it to go
  EXPECT_FALSE(plain.GetAbortFlag());

  leaf.SetAbortFlag();
  leaf.RequestDeactivate();
  Pump();
  for (const Obj *o : {&leaf, &mid, &top}) {
    EXPECT_TRUE(o->GetAbortFlag()) << Name(o);
    EXPECT_EQ(o->GetState(), 0) << Name(o);
  }
  EXPECT_EQ(island.GetTargetState(), 0);  // asked to go too: an abort reaches the root
  EXPECT_FALSE(island.GetAbortFlag());    // which has no record to carry the flag
}

TEST_F(TrackedTest, AutoDeactivationFollowsTheLastDependant) {
  Obj hub("hub", nullptr, s());
  hub.SetAutoDeactivate(true);
  Obj one("one", &hub, s()), two("two", &hub, s());
  one.RequestDeactivate();
  Pump();
  EXPECT_EQ(hub.GetState(), 1);
  two.RequestDeactivate();
  Pump();
  EXPECT_EQ(hub.GetState(), 0);
}

// Counts the objects alive of this kind.
struct Counted : Obj {
  Counted(const char *name, TrackedObj *parent, Scheduler *s) : Obj(name, parent, s) { ++alive; }
  ~Counted() override { --alive; }
  static inline int alive = 0;
};

TEST_F(TrackedTest, AutoDeletionOnTheGlobalSchedulerOrWithTheLastSafeptr) {
  auto *alone = new Counted("alone", nullptr, s());
  alone->SetAutoDeleteFlag(true);
  alone->RequestDeactivate();
  Pump();
  EXPECT_EQ(Counted::alive, 0);

  auto *held = new Counted("held", nullptr, s());
  held->SetAutoDeleteFlag(true);
  safeptr<Counted> keep(held);
  held->RequestDeactivate();
  Pump();
  EXPECT_EQ(Counted::alive, 1);  // the safeptr still holds it
  PtrTAry<TrackedObj> list;
  GetTrackedObjRoot()->GetDependants(list);
  EXPECT_EQ(list.Find(held), -1);  // but it has left the graph
  keep.reset();
  EXPECT_EQ(Counted::alive, 0);
}

TEST_F(TrackedTest, FindingByNameAndKind) {
  test::LogCapture log;
  Obj svc("Service", nullptr, s());
  Obj child("Child", &svc, s());
  EXPECT_EQ(FindTrackedObj("service", "OBJ"), &svc);  // letter case ignored
  EXPECT_EQ(FindTrackedObj("service", ""), &svc);
  EXPECT_EQ(FindTrackedObj("service", "thread"), nullptr);
  EXPECT_EQ(FindTrackedObj("root", ""), GetTrackedObjRoot());
  EXPECT_EQ(svc.FindChild("child", ""), &child);
  EXPECT_EQ(child.FindParent("SERVICE", "obj"), &svc);
  EXPECT_FALSE(svc.FindAndRequestDeactivate("nobody", ""));
  EXPECT_TRUE(svc.FindAndRequestDeactivate("child", ""));
  Pump();
  EXPECT_EQ(svc.FindChild("child", ""), nullptr);  // found, but inactive
  EXPECT_EQ(FindTrackedObj("nobody", ""), nullptr);
  const auto lines = log.Lines();
  EXPECT_NE(std::find(lines.begin(), lines.end(), "%Ccccccc: object nobody not found\r\n"),
            lines.end());
  EXPECT_NE(
      std::find(lines.begin(), lines.end(), "Child::CheckState, active, ready to deactivate\r\n"),
      lines.end());
}

TEST_F(TrackedTest, WalksStatusAndLogging) {
  test::LogCapture log;
  SetDependencyLogging(true);
  // The checks of mid and leaf wait on a Scheduler nobody pumps.
  safeptr<Scheduler> idle = CreateScheduler("idle", nullptr, true, nullptr);
  auto top = std::make_unique<Obj>("top", nullptr, s());
  Obj mid("mid", top.get(), idle.get()), leaf("leaf", &mid, idle.get());
  SetDependencyLogging(false);

  struct Collect : TrackedObjTraverse {
    bool Visit(TrackedObj *o, int depth) override {
      seen.append(std::string(depth, '-')).append(Name(o)).append(" ");
      return true;
    }
    std::string seen;
  } walk;
  top->TraverseTree(&walk, 5);
  EXPECT_EQ(walk.seen, "top -mid --leaf ");
  walk.seen.clear();
  top->TraverseTree(&walk, 1);
  EXPECT_EQ(walk.seen, "top -mid ");

  top->RequestDeactivate();
  s()->RunDueClients();
  cstring status;
  top->GetTrackedObjStatus(status);
  EXPECT_EQ(std::string(status.view().view()), "top (obj): deactivating, waiting for mid");
  mid.SetName("middle", "stage");
  status.Flush();
  mid.GetTrackedObjStatus(status);
  EXPECT_EQ(std::string(status.view().view()), "middle (stage): deactivating, waiting for leaf");

  top.reset();  // destroyed while mid still depends on it
  const auto lines = log.Lines();
  for (const char *expected :
       {"Object mid now depends on top\r\n", "Object leaf now depends on mid\r\n",
        "Destructor for tracked object top\r\n",
        "Invalid dependency tree: object middle not deactivated!\r\n"})
    EXPECT_NE(std::find(lines.begin(), lines.end(), expected), lines.end()) << expected;
  PtrTAry<TrackedObj> parents;
  mid.GetDependencies(parents);
  EXPECT_EQ(parents.Count(), 0);
}

}  // namespace
}  // namespace zel
