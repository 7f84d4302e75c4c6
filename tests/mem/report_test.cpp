// What the allocator says: failures of the throwing forms, the statistics report, the counters.
#include <zel/diag/counters.h>
#include <zel/diag/error.h>
#include <zel/mem/allocator.h>
#include <zel/mem/mem_usage.h>
#include <zel/text/charset.h>

#include "support/strings.h"

#include <string>

namespace zel {
namespace {

TEST(ThrowingForms, NameTheSizeThatFailed) {
  EXPECT_EQ(test::FailureOf([] { MallocX(-5); }), "Malloc (-5) failed");
  void *block = MallocX(16);
  EXPECT_EQ(test::FailureOf([&] { ReallocX(block, -1); }), "Realloc (-1) failed");
  FreeX(block);  // kept by the failed resize
  EXPECT_EQ(GAlloc(-5), nullptr);
}

TEST(Statistics, ReportEveryArenaAndTheClassesInUse) {
  void *block = MallocX(100);
  cstring report;
  GetMemoryAllocator()->PrintStats(report);
  std::string text = test::Str(report);
  EXPECT_EQ(text.rfind("Allocator Stats\r\nAllocator 0\r\n", 0), 0u) << text;
  for (const char *line :
       {"\tBlocks of size 128: ", " active, ", "Allocator dedicated",
        "Number of system blocks: ", "Bytes allocated to user: ", "Bytes allocated from system: "})
    EXPECT_NE(text.find(line), std::string::npos) << line << " in " << text;
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
  cstring report;
  PrintCounters(report);
  report.DeleteCharSet(DigitCharQ);  // the names, each once
  EXPECT_EQ(test::Str(report),
            "Allocs: \r\nFrees: \r\nHeap Allocs: \r\nAllocator Collisions: \r\n"
            "NanoTime::Current calls: \r\n");
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
