// What the allocator says: failures of the throwing forms, the statistics report, the counters.
#include <zel/diag/counters.h>
#include <zel/diag/error.h>
#include <zel/mem/allocator.h>
#include <zel/mem/mem_usage.h>

#include "support/strings.h"

#include <string>

namespace zel {
namespace {

std::string FailureOf(void (*call)()) {
  try {
    call();
  } catch (const ErrorX &e) {
    return test::Str(e.Message());
  }
  return "no failure";
}

TEST(ThrowingForms, NameTheSizeThatFailed) {
  EXPECT_EQ(FailureOf([] { MallocX(-5); }), "Malloc (-5) failed");
  EXPECT_EQ(FailureOf([] {
              void *block = MallocX(16);
              try {
                ReallocX(block, -1);
              } catch (...) {
                FreeX(block);  // kept by the failed resize
                throw;
              }
            }),
            "Realloc (-1) failed");
  EXPECT_EQ(GAlloc(-5), nullptr);
}

TEST(Statistics, ReportEveryArenaAndTheClassesInUse) {
  void *block = MallocX(100);
  cstring report;
  GetMemoryAllocator()->PrintStats(report);
  std::string text = test::Str(report);
  EXPECT_EQ(text.rfind("Allocator Stats\r\nAllocator 0\r\n", 0), 0u) << text;
  EXPECT_NE(text.find("\tBlocks of size 128: "), std::string::npos) << text;
  EXPECT_NE(text.find(" active, "), std::string::npos);
  EXPECT_NE(text.find("Allocator dedicated"), std::string::npos);
  for (const char *line :
       {"Number of system blocks: ", "Bytes allocated to user: ", "Bytes allocated from system: "})
    EXPECT_NE(text.find(line), std::string::npos) << line;
  FreeX(block);
}

TEST(Statistics, CountersAreInTheRegistryOnceEnabled) {
  EnableMemCounters();
  EnableMemCounters();  // once is enough
  double allocs = 0, frees = 0;
  ASSERT_TRUE(ReadCounter("Allocs", allocs));
  ASSERT_TRUE(ReadCounter("Frees", frees));
  EXPECT_GT(allocs, 0);
  EXPECT_LE(frees, allocs);
  double unused;
  EXPECT_TRUE(ReadCounter("Heap Allocs", unused));
  EXPECT_TRUE(ReadCounter("Allocator Collisions", unused));
  cstring report;
  PrintCounters(report);
  EXPECT_EQ(test::Str(report).find("Allocs: "), 0u);
}

TEST(MemUsage, SumsWhatObjectsAddAndPrintsIt) {
  MemUsageInfo usage;
  usage.Add(100, 128);
  usage.Add(3000, 4096);
  cstring text;
  usage.Print(text);
  EXPECT_EQ(test::Str(text), "3.02734 KB used, 4.125 KB allocated in 2 blocks");
}

}  // namespace
}  // namespace zel
