// The small pieces of the operating-system layer: errors, clocks, thread-local slots, the lock,
// paths, the console and the wake port.
#include <zel/thread/critsect.h>

#include "os/os.h"
#include "support/test_thread.h"

#include <cstring>
#include <string>

namespace zel::os {
namespace {

TEST(LastError, IsPerThreadRestoredBySavedLastErrorAndKeptByErrorText) {
  SetLastError(5);
  {
    SavedLastError saved;
    SetLastError(7);
    EXPECT_EQ(LastError(), 7u);
  }
  EXPECT_EQ(LastError(), 5u);

  ASSERT_TRUE(test::RunOnThread([] {
    SetLastError(0);
    EXPECT_EQ(LastError(), 0u);
  }));
  EXPECT_EQ(LastError(), 5u);

  // The text of a code leaves the last error alone. Code 2 is "file not found" on both platforms
  // (ENOENT, ERROR_FILE_NOT_FOUND).
  char text[256];
  int length = ErrorText(2, text, sizeof text);
  EXPECT_EQ(LastError(), 5u);
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
  EXPECT_LE(before, PerfCounter());

  // Between 2020-01-01 and 2100-01-01 on the FILETIME scale.
  int64_t now = SystemTime100ns();
  EXPECT_GT(now, 132223104000000000);
  EXPECT_LT(now, 157469184000000000);
}

TEST(Tls, EachThreadSeesItsOwnValueAndGetKeepsTheLastError) {
  uint32_t slot = TlsAlloc();
  ASSERT_NE(slot, kNoTlsSlot);
  int mine = 1, theirs = 2;
  ASSERT_TRUE(TlsSet(slot, &mine));
  SetLastError(3);
  EXPECT_EQ(TlsGet(slot), &mine);
  EXPECT_EQ(LastError(), 3u);

  ASSERT_TRUE(test::RunOnThread([&] {
    EXPECT_EQ(TlsGet(slot), nullptr);
    TlsSet(slot, &theirs);
    EXPECT_EQ(TlsGet(slot), &theirs);
  }));
  EXPECT_EQ(TlsGet(slot), &mine);
  EXPECT_TRUE(TlsFree(slot));
}

TEST(CritSect, IsRecursiveAndExcludesOtherThreads) {
  CritSect lock;
  lock.Enter();
  EXPECT_TRUE(lock.TryEnter());  // the holder enters again
  lock.Leave();
  EXPECT_FALSE(test::FreeForOthers(lock));
  lock.Leave();
  EXPECT_TRUE(test::FreeForOthers(lock));
  EXPECT_EQ(test::CountUnderLock<CritSectLock>(lock), 80000);
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
  ASSERT_TRUE(port.Open());
  EXPECT_FALSE(port.Drain());
  port.Signal();
  port.Signal();
  EXPECT_TRUE(port.Drain());
  EXPECT_FALSE(port.Drain());

  ASSERT_TRUE(test::RunOnThread([&] { port.Signal(); }));
  EXPECT_TRUE(port.Drain());
  port.Close();
  EXPECT_FALSE(port.IsOpen());
}

}  // namespace
}  // namespace zel::os
