// The log: startup log, clients (also removed while they are called), categories, cells, pieces
// for the debugger.
#include <zel/diag/error.h>
#include <zel/diag/log.h>

#include "diag/debugger.h"
#include "support/log_capture.h"
#include "support/strings.h"
#include "support/test_thread.h"

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace zel {
namespace {

using test::LogCapture;
using test::Str;

// The startup log tests run first in this program: nothing has detached it yet.
TEST(StartupLog, EndsWhenItPassesItsLimit) {
  // In a child process, so that this program's startup log stays as it is; started afresh rather
  // than forked, since the library keeps a thread of its own running.
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        int level = LogCategory::n_global_clients;
        std::string flood(100001, 'x');
        PrintLog(strptr(flood.c_str()));
        cstring kept;
        DetachStartupLog(kept);
        std::exit(kept.empty() && LogCategory::n_global_clients == level - 1 ? 0 : 1);
      },
      ::testing::ExitedWithCode(0), "");
}

TEST(StartupLog, KeepsWhatCameBeforeAnyClientUntilDetached) {
  PrintLog("early line\r\n");
  int level = LogCategory::n_global_clients;
  ASSERT_GE(level, 1);
  cstring kept;
  DetachStartupLog(kept);
  EXPECT_NE(Str(kept).find("early line\r\n"), std::string::npos);
  EXPECT_EQ(LogCategory::n_global_clients, level - 1);
  DetachStartupLog(kept);
  EXPECT_EQ(Str(kept), "");
  EXPECT_EQ(LogCategory::n_global_clients, level - 1);

  // Nobody listens now: cells log nothing.
  ASSERT_EQ(LogCategory::n_global_clients, 0);
  LogCell cell;
  LogCapture log;
  LogCell copy(cell);
  EXPECT_EQ(log.Lines().size(), 1u);
}

TEST(Clients, EachGetsEveryLineOnceAndTheLevelCountsThem) {
  int level = LogCategory::n_global_clients;
  LogCapture a, b;
  AddLogClient(&a);  // already registered
  AddLogClient(nullptr);
  EXPECT_EQ(LogCategory::n_global_clients, level + 2);
  PrintLog("one\r\n");
  PrintLog("two\r\n");
  EXPECT_EQ(a.Lines(), (std::vector<std::string>{"one\r\n", "two\r\n"}));
  EXPECT_EQ(b.Lines(), a.Lines());
  RemoveLogClient(&b);
  RemoveLogClient(&b);
  EXPECT_EQ(LogCategory::n_global_clients, level + 1);
  PrintLog("three\r\n");
  EXPECT_EQ(b.Lines().size(), 2u);
  EXPECT_EQ(a.Lines().size(), 3u);
}

// Removes itself, or another client, from inside Write.
struct Remover : LogCapture {
  LogClient *victim = nullptr;
  void Write(const strptr &text) override {
    LogCapture::Write(text);
    if (victim != nullptr) RemoveLogClient(victim);
    victim = nullptr;
  }
};

struct Thrower : LogClient {
  void Write(const strptr &) override { throw ErrorX("client failure", false); }
};

TEST(Clients, RemovalDuringADispatchDoesNotDisturbIt) {
  Remover self, other_remover;
  LogCapture victim, after;
  Thrower thrower;
  AddLogClient(&thrower);
  self.victim = &self;
  other_remover.victim = &victim;
  // Registration order: self, other_remover, victim, after, thrower.
  PrintLog("x\r\n");
  EXPECT_EQ(self.Lines().size(), 1u);
  EXPECT_EQ(other_remover.Lines().size(), 1u);
  EXPECT_EQ(victim.Lines().size(), 0u);  // removed before its turn
  EXPECT_EQ(after.Lines().size(), 1u);   // still reached, after a thrower too
  PrintLog("y\r\n");
  EXPECT_EQ(self.Lines().size(), 1u);
  EXPECT_EQ(after.Lines().size(), 2u);
  RemoveLogClient(&thrower);
}

// Logs again from inside Write, `levels` deep, and removes itself at the innermost level.
struct DeepRemover : LogClient {
  static constexpr int kLevels = 20;
  int depth = 0;
  bool removed = false;
  void Write(const strptr &) override {
    if (++depth < kLevels) {
      PrintLog("deeper\r\n");
    } else if (!removed) {
      RemoveLogClient(this);
      removed = true;
    }
  }
};

TEST(Clients, RemoveThemselvesAtAnyNestingDepth) {
  DeepRemover deep;
  AddLogClient(&deep);
  // On a thread of its own, so that a removal waiting for itself fails the test instead of hanging.
  test::TestThread writer([] { PrintLog("top\r\n"); });
  ASSERT_TRUE(writer.Join());
  EXPECT_TRUE(deep.removed);
  EXPECT_EQ(deep.depth, DeepRemover::kLevels);
}

// Blocks in Write until released.
struct Blocker : LogClient {
  test::TestEvent entered, release;
  void Write(const strptr &) override {
    entered.Set();
    release.Wait();
  }
};

TEST(Clients, RemovalWaitsForACallOnAnotherThread) {
  Blocker blocker;
  AddLogClient(&blocker);
  test::TestThread writer([] { PrintLog("slow\r\n"); });
  ASSERT_TRUE(blocker.entered.Wait());
  std::atomic<bool> removed{false};
  test::TestThread remover([&] {
    RemoveLogClient(&blocker);
    removed = true;
  });
  EXPECT_FALSE(remover.Join(50));
  EXPECT_FALSE(removed);
  blocker.release.Set();
  ASSERT_TRUE(remover.Join());
  EXPECT_TRUE(removed);
  ASSERT_TRUE(writer.Join());
}

TEST(Clients, ManyThreadsLogWhileClientsComeAndGo) {
  LogCapture steady;
  constexpr int kThreads = 4, kLines = 500;
  test::TestThreads threads(kThreads, [](int) {
    for (int i = 0; i < kLines; ++i) PrintLog("line\r\n");
  });
  for (int i = 0; i < 200; ++i) {
    LogCapture passing;
    PrintLog("own\r\n");
    EXPECT_GE(passing.Lines().size(), 1u);
  }
  ASSERT_TRUE(threads.JoinAll());
  EXPECT_EQ(steady.Lines().size(), kThreads * kLines + 200u);
}

TEST(Categories, AreFoundByNameIgnoringCaseAndLeaveWhenDestroyed) {
  PtrTAry<LogCategory> all;
  {
    LogCategory mine("Test Category", false);
    EnableLogCategory("TEST category");
    EXPECT_TRUE(mine.Enabled());
    DisableLogCategory("test category");
    EXPECT_FALSE(mine.Enabled());
    EnableLogCategory("no such category");
    GetLogCategories(all);
    EXPECT_GE(all.Find(&mine), 0);
  }
  int before = all.Count();
  GetLogCategories(all);
  EXPECT_EQ(all.Count(), before - 1);
}

TEST(Cells, AreNumberedInOrderAndCopiesRepeatTheirLine) {
  LogCapture log;
  LogCell first, second;
  EXPECT_EQ(second.Id(), first.Id() + 1);
  LogCell copy(second);
  EXPECT_EQ(copy.Id(), second.Id());
  {
    FixedLogCell fixed;
    EXPECT_EQ(log.Lines().size(), 3u);  // a fixed cell is silent until it closes
  }
  auto lines = log.Lines();
  ASSERT_EQ(lines.size(), 4u);
  EXPECT_EQ(lines[0], "%I" + std::to_string(first.Id()) + ": \r\n");
  EXPECT_EQ(lines[1], "%I" + std::to_string(second.Id()) + ": \r\n");
  EXPECT_EQ(lines[2], lines[1]);
  EXPECT_EQ(lines[3].substr(0, 2), "%f");
}

std::vector<int> g_pieces;
std::vector<uint32_t> g_pauses;

TEST(Debugger, LongTextGoesInPiecesOf512WithPauses) {
  std::string text(1200, 'x');
  g_pieces.clear();
  g_pauses.clear();
  SendInPieces(
      strptr(text.c_str()),
      [](const char *piece) { g_pieces.push_back(static_cast<int>(std::strlen(piece))); },
      [](uint32_t ms) { g_pauses.push_back(ms); });
  EXPECT_EQ(g_pieces, (std::vector<int>{512, 512, 176}));
  EXPECT_EQ(g_pauses, (std::vector<uint32_t>{10, 10, 3}));
}

}  // namespace
}  // namespace zel
