// The small pieces of the operating-system layer: errors, clocks, thread-local slots, the lock,
// paths, the console and the wake port.
#include <zel/thread/critsect.h>

#include "os/os.h"
#include "support/test_thread.h"

#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace zel::os {
namespace {

TEST(LastError, IsPerThreadAndRestoredBySavedLastError) {
  SetLastError(5);
  {
    SavedLastError saved;
    SetLastError(7);
    EXPECT_EQ(LastError(), 7u);
  }
  EXPECT_EQ(LastError(), 5u);

  uint32_t seen_there = 1;
  test::TestThread other([&] {
    SetLastError(0);
    seen_there = LastError();
  });
  ASSERT_TRUE(other.Join());
  EXPECT_EQ(seen_there, 0u);
  EXPECT_EQ(LastError(), 5u);
}

TEST(LastError, TextOfACodeLeavesTheLastErrorAlone) {
  // Code 2 is "file not found" on both platforms (ENOENT, ERROR_FILE_NOT_FOUND).
  SetLastError(9);
  char text[256];
  int length = ErrorText(2, text, sizeof text);
  EXPECT_EQ(LastError(), 9u);
  ASSERT_GT(length, 0);
  EXPECT_EQ(static_cast<int>(std::strlen(text)), length);
#if !defined(_WIN32)
  EXPECT_STREQ(text, "No such file or directory");
#endif

  char small[5];
  EXPECT_EQ(ErrorText(2, small, sizeof small), length);  // the full length, though truncated
  EXPECT_EQ(std::strlen(small), 4u);
}

TEST(Clock, PerformanceCounterIsMonotonicAndSystemTimeIsPlausible) {
  EXPECT_GT(PerfFrequency(), 0);
  int64_t before = PerfCounter();
  int64_t after = PerfCounter();
  EXPECT_LE(before, after);

  // Between 2020-01-01 and 2100-01-01 on the FILETIME scale.
  int64_t now = SystemTime100ns();
  EXPECT_GT(now, 132223104000000000);
  EXPECT_LT(now, 157469184000000000);
}

TEST(Tls, EachThreadSeesItsOwnValue) {
  uint32_t slot = TlsAlloc();
  ASSERT_NE(slot, kNoTlsSlot);
  int mine = 1, theirs = 2;
  ASSERT_TRUE(TlsSet(slot, &mine));

  void *first_seen = &mine;
  void *after_set = nullptr;
  test::TestThread other([&] {
    first_seen = TlsGet(slot);
    TlsSet(slot, &theirs);
    after_set = TlsGet(slot);
  });
  ASSERT_TRUE(other.Join());
  EXPECT_EQ(first_seen, nullptr);
  EXPECT_EQ(after_set, &theirs);
  EXPECT_EQ(TlsGet(slot), &mine);
  EXPECT_TRUE(TlsFree(slot));
}

TEST(Tls, GetKeepsTheLastError) {
  uint32_t slot = TlsAlloc();
  ASSERT_NE(slot, kNoTlsSlot);
  SetLastError(3);
  TlsGet(slot);
  EXPECT_EQ(LastError(), 3u);
  TlsFree(slot);
}

TEST(CritSect, IsRecursiveAndExcludesOtherThreads) {
  CritSect lock;
  lock.Enter();
  EXPECT_TRUE(lock.TryEnter());  // the holder enters again
  lock.Leave();

  bool other_got_it = true;
  test::TestThread other([&] { other_got_it = lock.TryEnter(); });
  ASSERT_TRUE(other.Join());
  EXPECT_FALSE(other_got_it);
  lock.Leave();

  // Many increments under the lock from several threads lose none.
  int counter = 0;
  std::vector<std::unique_ptr<test::TestThread>> threads;
  for (int t = 0; t < 4; ++t)
    threads.push_back(std::make_unique<test::TestThread>([&] {
      for (int i = 0; i < 20000; ++i) {
        CritSectLock hold(lock);
        ++counter;
      }
    }));
  for (auto &t : threads) ASSERT_TRUE(t->Join());
  EXPECT_EQ(counter, 80000);
}

TEST(Paths, ExecutablePathNamesThisProgram) {
  char path[1024];
  int length = ExecutablePath(path, sizeof path);
  ASSERT_GT(length, 0);
  std::string text(path, static_cast<size_t>(length));
#if defined(_WIN32)
  EXPECT_NE(text.find("os_tests.exe"), std::string::npos) << text;
#else
  EXPECT_EQ(text.substr(text.size() - 8), "os_tests") << text;
  EXPECT_EQ(text[0], '/');
#endif
}

TEST(Console, WritesToStandardOutput) { EXPECT_TRUE(ConsoleWrite("console check\n", 14)); }

TEST(WakePort, SignalsCoalesceUntilDrained) {
  WakePort port;
  EXPECT_FALSE(port.IsOpen());
  ASSERT_TRUE(port.Open());
  EXPECT_FALSE(port.Drain());
  port.Signal();
  port.Signal();
  EXPECT_TRUE(port.Drain());
  EXPECT_FALSE(port.Drain());

  // Another thread's signal is seen here.
  test::TestThread other([&] { port.Signal(); });
  ASSERT_TRUE(other.Join());
  EXPECT_TRUE(port.Drain());
  port.Close();
  EXPECT_FALSE(port.IsOpen());
}

}  // namespace
}  // namespace zel::os
