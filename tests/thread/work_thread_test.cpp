// WorkThread: a thread running its own Scheduler, started, given work and ended through its
// tracked part; a deactivation spreading through objects on several of them.
#include <zel/sched/scheduler.h>
#include <zel/thread/work_thread.h>

#include "support/log_capture.h"
#include "support/test_thread.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace zel {
namespace {

bool Logged(test::LogCapture &log, const std::string &line) {
  const auto lines = log.Lines();
  return std::find(lines.begin(), lines.end(), line) != lines.end();
}

struct RunOnce : DelayClient {
  bool Callback() override {
    thread = os::CurrentThreadId();
    ran.Set();
    return false;
  }
  std::atomic<uint32_t> thread{0};
  test::TestEvent ran;
};

TEST(WorkThread, RunsItsSchedulerUntilDeactivated) {
  test::LogCapture log;
  WorkThread worker("indexer");
  Scheduler *s = worker.GetScheduler();
  ASSERT_NE(s, nullptr);
  EXPECT_EQ(s->GetState(), 0);  // active only while its thread runs
  EXPECT_TRUE(s->GetAutoDeleteFlag());
  ASSERT_TRUE(worker.Start());
  RunOnce job;
  job.Schedule(s, 0.01f);
  ASSERT_TRUE(job.ran.Wait());
  EXPECT_EQ(job.thread, s->GetThreadID());
  EXPECT_EQ(s->GetState(), 1);
  EXPECT_TRUE(worker.Start());  // running already

  ASSERT_TRUE(worker.SetPriority(-1));
  worker.SetPriority(7);  // the system may refuse it: the line is logged all the same
  EXPECT_TRUE(Logged(log, "indexer: Thread priority set to low\r\n"));
  EXPECT_TRUE(Logged(log, "indexer: Thread priority set to ...\r\n"));
  worker.SetPriority(0);

  s->RequestDeactivate();
  ASSERT_TRUE(worker.GetThread().Wait(10000));
  EXPECT_EQ(s->GetState(), 0);
  cstring started;
  started << "Thread " << s->GetThreadID() << " is indexer\r\n";
  EXPECT_TRUE(Logged(log, std::string(started.view().view())));
}

TEST(WorkThread, TheDestructorEndsARunningThread) {
  auto worker = std::make_unique<WorkThread>("short");
  ASSERT_TRUE(worker->Start());
  safeptr<Scheduler> s(worker->GetScheduler());
  worker.reset();
  EXPECT_EQ(s->GetState(), 0);
  EXPECT_TRUE(s->StopRequested());
  s.reset();
  // The Scheduler's deletion, queued on the global Scheduler, runs after its WorkThread has gone.
  GetGlobalScheduler()->RunDueClients();
}

// A worker that does its own work in slices, then ends by itself.
struct Slices : WorkThread {
  Slices() : WorkThread("slices") {}
  bool OnInit() override {
    ++inits;
    return init_result;
  }
  bool DoWork() override { return ++slices < 3; }
  void OnExit() override { ++exits; }
  bool init_result = true;
  std::atomic<int> inits{0}, slices{0}, exits{0};
};

TEST(WorkThread, HooksFrameTheWorkAndTheSchedulerDeactivatesAfterIt) {
  Slices worker;
  ASSERT_TRUE(worker.Start());
  ASSERT_TRUE(worker.GetThread().Wait(10000));
  EXPECT_EQ(worker.inits, 1);
  EXPECT_EQ(worker.slices, 3);
  EXPECT_EQ(worker.exits, 1);
  EXPECT_EQ(worker.GetScheduler()->GetState(), 0);

  Slices skipped;
  skipped.init_result = false;
  ASSERT_TRUE(skipped.Start());
  ASSERT_TRUE(skipped.GetThread().Wait(10000));
  EXPECT_EQ(skipped.slices, 0);
  EXPECT_EQ(skipped.exits, 1);
}

// Objects whose checks run on several worker threads, each depending on a few earlier ones.
class Node : public TrackedObj {
 public:
  Node(int n, TrackedObj *parent, Scheduler *s)
      : TrackedObj(std::to_string(n).c_str(), "node", parent, true, s) {}
};

TEST(WorkThread, ADeactivationStormEndsWithEveryObjectInactive) {
  std::vector<std::unique_ptr<WorkThread>> workers;
  for (int i = 0; i < 4; ++i) {
    workers.push_back(std::make_unique<WorkThread>(("storm" + std::to_string(i)).c_str()));
    ASSERT_TRUE(workers.back()->Start());
  }
  std::mt19937 random(12);
  std::vector<std::unique_ptr<Node>> nodes;
  nodes.push_back(std::make_unique<Node>(0, nullptr, workers[0]->GetScheduler()));
  for (int i = 1; i < 400; ++i) {
    Scheduler *s = workers[random() % 4]->GetScheduler();
    nodes.push_back(std::make_unique<Node>(i, nodes[random() % i].get(), s));
    for (int extra = 0; extra < 2; ++extra) nodes.back()->AddDependency(nodes[random() % i].get());
  }
  nodes[0]->RequestDeactivate();
  const auto all_inactive = [&] {
    for (const auto &n : nodes)
      if (n->GetState() != 0) return false;
    return true;
  };
  for (int i = 0; i < 2000 && !all_inactive(); ++i) os::Sleep(5);
  EXPECT_TRUE(all_inactive());
  nodes.clear();
  workers.clear();
}

}  // namespace
}  // namespace zel
