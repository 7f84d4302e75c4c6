// Shared strings: buffers, sub-views, assignment, severing, the pool, threads.
#include <zel/text/shstring.h>

#include "support/strings.h"
#include "support/test_thread.h"

#include <vector>

namespace zel {
namespace {

using test::Str;

int Refs(const shstring &s) { return s.buffer() ? s.buffer()->RefCount() : 0; }

TEST(ShString, EmptyStringsAndComparisons) {
  shstring none(""), null_text(static_cast<const char *>(nullptr)), zero(strptr("abc", 0));
  EXPECT_EQ(none.buffer(), nullptr);
  EXPECT_EQ(null_text.buffer(), nullptr);
  ASSERT_NE(zero.buffer(), nullptr);  // a buffer of 0 characters
  EXPECT_EQ(zero.length(), 0);
  EXPECT_TRUE(none == zero);
  EXPECT_EQ(Str(shstring(3, 'x')), "xxx");

  shstring name("Name");
  EXPECT_FALSE(name.Equal("name"));
  EXPECT_TRUE(name.Equal(strptr("nAMEless", 4), false));
  EXPECT_FALSE(name.Equal(strptr("Names"), false));
  EXPECT_FALSE(name == shstring("Nam"));
  EXPECT_FALSE(name == shstring("name"));
  // A NUL in both texts ends the comparison, as in strncmp.
  EXPECT_TRUE(shstring(strptr("a\0b", 3)) == shstring(strptr("a\0c", 3)));
  EXPECT_TRUE(shstring(strptr("a\0b", 3)).Equal(strptr("A\0c", 3), false));
}

TEST(ShString, SubStringsShareTheBufferOnlyForPartsInsideIt) {
  shstring base("hello world");
  shstring word(base, base.view().Mid(6));
  EXPECT_EQ(word.buffer(), base.buffer());
  EXPECT_EQ(Refs(base), 2);
  shstring copied(base, strptr("hello"));
  EXPECT_NE(copied.buffer(), base.buffer());
  EXPECT_EQ(shstring(base, base.view().Left(0)).buffer(), nullptr);  // an empty part
  // Parts and stretches of the buffer beyond the base's own view are shared too.
  EXPECT_EQ(shstring(word, strptr(base.text(), 11)).buffer(), base.buffer());
  EXPECT_EQ(Str(shstring(word, Range{0, 5})), "hello");
  EXPECT_EQ(shstring(word, Range{3, 3}).buffer(), base.buffer());
  EXPECT_EQ(shstring(word, Range{3, 2}).buffer(), nullptr);
  EXPECT_EQ(shstring(shstring(), Range{0, 0}).buffer(), nullptr);

  EXPECT_EQ(word.IndexIn(base), (Range{6, 11}));
  EXPECT_EQ(copied.IndexIn(base), (Range{0, 0}));
}

TEST(ShString, AssignmentRepointsInsideTheBufferAndCopiesOtherwise) {
  shstring base("key=value");
  shstring s(base);
  s = base.view().Mid(4);
  EXPECT_EQ(s.buffer(), base.buffer());
  EXPECT_EQ(Refs(base), 2);
  EXPECT_EQ(Str(s), "value");
  s = strptr("other");
  EXPECT_EQ(Refs(base), 1);  // the old buffer released
  s = base;
  const shstring &same = s;
  s = same;
  EXPECT_EQ(Refs(base), 2);

  // Setting from a part of its own sole buffer keeps the characters alive.
  shstring sole("abcdef");
  sole.Set(sole, sole.view().Mid(2, 2));
  EXPECT_EQ(Str(sole), "cd");
  EXPECT_EQ(Refs(sole), 1);
  sole.NewEmptyString(2)[1] = 'z';
  EXPECT_EQ(sole.length(), 2);
  EXPECT_EQ(sole.text()[1], 'z');
}

TEST(ShString, SeverCopiesOnlyASharedBuffer) {
  shstring base("one two three");
  shstring two(base, base.view().Mid(4, 3));
  two.Sever();
  EXPECT_NE(two.buffer(), base.buffer());
  EXPECT_EQ(two.buffer()->buffer_length, 3);
  EXPECT_EQ(Str(two), "two");
  EXPECT_EQ(Refs(base), 1);
  const char *text = base.text();
  base.Sever();  // one reference: nothing happens
  EXPECT_EQ(base.text(), text);
}

TEST(ShStringPool, PacksStringsIntoBlocks) {
  ShStringPool pool(16, 2);
  shstring a = pool.Add("abc"), b = pool.Add("defgh"), empty = pool.Add("");
  EXPECT_EQ(a.buffer()->buffer_length, 16);
  EXPECT_EQ(Refs(a), 4);  // the pool and three strings
  EXPECT_STREQ(a.text(), "abc");
  EXPECT_EQ(b.IndexIn(a), (Range{4, 9}));
  EXPECT_EQ(empty.buffer(), a.buffer());
  shstring c = pool.Add("0123456");  // 8 bytes, 6 left: a new block of 16 * 2
  EXPECT_EQ(c.buffer()->buffer_length, 32);
  EXPECT_EQ(Refs(a), 3);  // the pool has moved on

  ShStringPool fixed(1024, 1);
  shstring big = fixed.Add(shstring(2000, 'z'));
  EXPECT_EQ(big.buffer()->buffer_length, 2001);  // a block for it alone
  EXPECT_EQ(big.text()[2000], 0);
  EXPECT_EQ(fixed.Add("next").buffer()->buffer_length, 1024);
}

// Copies made on one thread are released on others, which also take sub-views of them; each
// buffer ends with the one reference the test keeps.
TEST(ShString, CopiesReleasedAcrossThreads) {
  constexpr int kStrings = 64, kThreads = 4, kRounds = 200;
  std::vector<shstring> kept;
  for (int i = 0; i < kStrings; ++i) kept.emplace_back(i % 7 + 1, static_cast<char>('a' + i % 26));
  std::vector<std::vector<shstring>> batches(kThreads * kRounds, kept);
  test::TestThreads threads(kThreads, [&](int index) {
    for (int r = 0; r < kRounds; ++r) {
      std::vector<shstring> mine = batches[r * kThreads + index];
      batches[r * kThreads + index].clear();
      for (shstring &s : mine) s = shstring(s, s.view().Left(1));
    }
  });
  ASSERT_TRUE(threads.JoinAll());
  for (const shstring &s : kept) EXPECT_EQ(Refs(s), 1);
}

}  // namespace
}  // namespace zel
