// The chained string map and the interning tables.
#include <zel/text/str_map.h>
#include <zel/text/string_table.h>

#include "support/strings.h"
#include "support/test_thread.h"

#include <string>
#include <vector>

namespace zel {
namespace {

using test::Str;

// A map hashed on the first character alone, so that tests know each key's bucket and that case
// changes it.
class FirstCharMap : public StrMapBase {
 public:
  ~FirstCharMap() override { Flush(); }
  void Add(const char *key) { Insert(new StrEntryBase{shstring(key)}); }
  std::string Keys() const {
    TAry<cstring> keys;
    GetKeys(keys);
    std::string all;
    for (const cstring &k : keys) all += Str(k) + " ";
    return all;
  }
  int destroyed = 0;

 private:
  uint32_t HashOf(const strptr &key) const override {
    return key.empty() ? 0 : static_cast<unsigned char>(key[0]);
  }
  void DestroyEntry(StrEntryBase *entry) override {
    ++destroyed;
    delete entry;
  }
};

TEST(StrMapBase, KeepsBucketAndChainOrderThroughRehashing) {
  FirstCharMap map;
  for (const char *key : {"a1", "h1", "b", "c"}) map.Add(key);  // a and h share bucket 6 of 7
  EXPECT_EQ(map.Keys(), "b c h1 a1 ");

  // Collected as h1 a1 c b (later buckets in front), then each pushed on its new chain's head.
  map.Realloc(2);
  EXPECT_EQ(map.Keys(), "b h1 c a1 ");
  TAry<shstring> shared;
  map.GetKeys(shared);
  EXPECT_EQ(shared[0].buffer()->RefCount(), 2);  // the entry's key and the copy

  EXPECT_FALSE(map.Remove("B"));
  EXPECT_TRUE(map.Remove("B", false));  // found although "B" hashes elsewhere
  EXPECT_EQ(map.Keys(), "h1 c a1 ");
  EXPECT_EQ(map.destroyed, 1);
  map.Flush();
  EXPECT_EQ(map.Count(), 0);
  EXPECT_EQ(map.destroyed, 4);
}

TEST(StringTableMT, InternsEachTextOnce) {
  StringTableMT table;
  const char *name = table.GetOrCreateIndex("Name");
  EXPECT_EQ(table.GetOrCreateIndex(strptr("Names", 4)), name);
  EXPECT_STREQ(name, "Name");
  EXPECT_NE(table.GetOrCreateIndex("NAME"), name);
  EXPECT_EQ(table.GetIndex("Name"), name);

  EXPECT_EQ(table.GetIndex("never"), nullptr);
  EXPECT_EQ(table.GetIndex("never"), nullptr);  // looking did not intern it
  EXPECT_EQ(table.Count(), 2);
  EXPECT_EQ(table.GetIndex(strptr()), nullptr);
  EXPECT_STREQ(table.GetOrCreateIndex(""), "");

  EXPECT_EQ(InternString("zel.table.test"), InternString(strptr("zel.table.test!", 14)));
  EXPECT_EQ(FindInternedString("zel.table.never"), nullptr);
  EXPECT_EQ(FindInternedString("zel.table.test"), InternString("zel.table.test"));
}

// The hash takes four characters a step: lengths around the step, signed characters in the steps
// and in the rest.
TEST(StringTableMT, HashesAsOneCharacterAtATime) {
  const struct {
    strptr text;
    uint32_t hash;
  } cases[] = {
      {"", 0},
      {"\xff", 0xFFFFFFFF},
      {"abc", 108966},
      {"abcd", 3595978},
      {"abcde", 118667375},
      {"\xff\x80\x7f", 4294962110},
      {"\200bcdefghi", 3898718380},
  };
  for (const auto &c : cases) EXPECT_EQ(StringTableMT::Hash(c.text), c.hash) << Str(c.text);
}

// Texts of equal hashes and lengths are compared as strncmp does.
TEST(StringTableMT, TextsEqualUpToANulInBothShareOneCopy) {
  StringTableMT table;
  const strptr nul_one_nul("\0\x01\0", 3), nul_nul_bang("\0\0!", 3);  // both hash to 33
  ASSERT_EQ(StringTableMT::Hash(nul_one_nul), StringTableMT::Hash(nul_nul_bang));
  const char *first = table.GetOrCreateIndex(nul_one_nul);
  EXPECT_EQ(table.GetOrCreateIndex(nul_nul_bang), first);  // intended
  EXPECT_EQ(table.GetIndex(nul_nul_bang), first);

  const strptr one_nul("\x01\0", 2), nul_bang("\0!", 2);  // both 33 too, but unequal
  EXPECT_NE(table.GetOrCreateIndex(one_nul), table.GetOrCreateIndex(nul_bang));
  EXPECT_EQ(table.Count(), 3);
}

TEST(StringTableMT, RehashesPastThreeEntriesPerBucket) {
  StringTableMT table;
  std::vector<const char *> interned;
  auto intern = [&](int i) { interned.push_back(table.GetOrCreateIndex(Formatted("text%d", i))); };
  for (int i = 0; i < 22; ++i) intern(i);
  EXPECT_EQ(table.BucketCount(), 7);
  intern(22);
  EXPECT_EQ(table.BucketCount(), 31);  // the next prime above 22
  for (int i = 23; i < 95; ++i) intern(i);
  EXPECT_EQ(table.BucketCount(), 127);  // past 93 entries
  for (int i = 0; i < 95; ++i) EXPECT_EQ(table.GetIndex(Formatted("text%d", i)), interned[i]) << i;

  MemUsageInfo usage;
  table.AddMemUsage(usage);
  EXPECT_EQ(usage.blocks, 3);  // one block of copies, one chunk of entries, the buckets
  EXPECT_GE(usage.allocated, 1024 + 127 * sizeof(void *));
}

// Threads intern overlapping ranges of names in different orders: every thread gets the same
// pointer for the same text, in its own table and in the process-wide one.
TEST(StringTableMT, ThreadsAgreeOnInternedPointers) {
  constexpr int kThreads = 4, kNames = 4000, kSpan = 2000;
  StringTableMT table;
  test::TestEvent start;
  std::vector<std::vector<const char *>> seen(kThreads, std::vector<const char *>(kNames));
  std::vector<std::vector<StringID>> ids(kThreads, std::vector<StringID>(kNames));
  test::TestThreads threads(kThreads, [&](int t) {
    start.Wait();
    for (int k = 0; k < kSpan; ++k) {
      int i = (t * kSpan / 2 + (t % 2 ? kSpan - 1 - k : k)) % kNames;
      cstring name = Formatted("thread.name.%d", i);
      seen[t][i] = table.GetOrCreateIndex(name);
      ids[t][i] = InternString(name);
    }
  });
  start.Set();
  ASSERT_TRUE(threads.JoinAll());

  EXPECT_EQ(table.Count(), kNames);
  for (int i = 0; i < kNames; ++i) {
    cstring name = Formatted("thread.name.%d", i);
    for (int t = 0; t < kThreads; ++t) {
      if (seen[t][i] == nullptr) continue;
      EXPECT_EQ(seen[t][i], table.GetIndex(name)) << i;
      EXPECT_EQ(ids[t][i], FindInternedString(name)) << i;
    }
  }
}

}  // namespace
}  // namespace zel
