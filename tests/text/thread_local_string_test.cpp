// The per-thread pools of scratch strings.
#include <zel/text/thread_local_string.h>

#include "support/test_thread.h"

#include <optional>
#include <vector>

namespace zel {
namespace {

// Six strings on loan at once on a new thread, all given buffers, then returned: the pool keeps
// five, emptied with their buffers, and frees the sixth; loans take them back newest first.
TEST(ThreadLocalString, KeepsFiveSpareStringsAndFreesTheSixth) {
  test::TestThread thread([] {
    std::optional<ThreadLocalString> loans[ThreadLocalString::kLimit + 1];
    std::vector<cstring *> released, taken;
    for (auto &loan : loans) {
      EXPECT_EQ(loan.emplace()->capacity(), 0);  // the pool starts empty
      **loan << "text";
    }
    for (auto &loan : loans) released.push_back(&**loan), loan.reset();
    int with_buffer = 0;
    for (auto &loan : loans) {
      taken.push_back(&loan.emplace().get());
      EXPECT_TRUE(loan->get().empty());
      with_buffer += loan->get().capacity() > 0;
    }
    EXPECT_EQ(with_buffer, 5);
    EXPECT_EQ(loans[5]->get().capacity(), 0);  // the pool ran dry: a new string
    for (int i = 0; i < 5; ++i) EXPECT_EQ(taken[i], released[4 - i]) << i;
  });
  ASSERT_TRUE(thread.Join());
}

TEST(ThreadLocalString, EachThreadHasItsOwnPool) {
  cstring *mine;
  {
    ThreadLocalString scratch;
    *scratch << "kept in this thread's pool";
    mine = &*scratch;
  }
  cstring *theirs = nullptr;
  int their_capacity = -1;
  test::TestThread thread([&] {
    ThreadLocalString scratch;
    theirs = &*scratch;
    their_capacity = scratch->capacity();
  });
  ASSERT_TRUE(thread.Join());
  EXPECT_NE(theirs, mine);
  EXPECT_EQ(their_capacity, 0);
  ThreadLocalString again;
  EXPECT_EQ(&*again, mine);
  EXPECT_GT(again->capacity(), 0);
}

}  // namespace
}  // namespace zel
