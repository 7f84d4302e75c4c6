// The per-thread pools of scratch strings.
#include <zel/text/thread_local_string.h>

#include "support/test_thread.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace zel {
namespace {

// Six strings on loan at once on a new thread, all given buffers, then returned: the pool keeps
// five, emptied with their buffers, and frees the sixth; loans take them back newest first. Another
// thread has a pool of its own.
TEST(ThreadLocalString, KeepsFiveSpareStringsPerThreadAndFreesTheSixth) {
  ASSERT_TRUE(test::RunOnThread([] {
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

    for (auto &loan : loans) loan.reset();  // the first five back in the pool
    cstring *theirs = nullptr;
    ASSERT_TRUE(test::RunOnThread([&] {
      ThreadLocalString scratch;
      theirs = &*scratch;
      EXPECT_EQ(scratch->capacity(), 0);
    }));
    EXPECT_EQ(std::count(taken.begin(), taken.begin() + 5, theirs), 0);  // none of the spares
    EXPECT_EQ(&loans[0].emplace().get(), taken[4]);
  }));
}

}  // namespace
}  // namespace zel
