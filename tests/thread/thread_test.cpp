// Threads started by the library: the call on the new thread, waiting and reaping.
#include <zel/thread/thread.h>

#include "support/test_thread.h"

#include <atomic>
#include <stdexcept>

namespace zel {
namespace {

// What a started thread does: waits for `go` (when given), notes its id, maybe throws.
struct ThreadWork {
  test::TestEvent *go = nullptr;
  bool throws = false;
  std::atomic<uint32_t> ran_on{0};

  static void Run(void *arg) {
    auto *self = static_cast<ThreadWork *>(arg);
    if (self->go != nullptr && !self->go->Wait()) return;
    self->ran_on = os::CurrentThreadId();
    if (self->throws) throw std::runtime_error("dropped");
  }
};

TEST(Thread, RunsTheCallOnAnotherThreadAndIsReapedOnce) {
  test::TestEvent go;
  ThreadWork work{&go};
  Thread thread;
  EXPECT_TRUE(thread.Wait(0));  // no thread yet
  ASSERT_TRUE(thread.Start_(&ThreadWork::Run, &work));
  void *const handle = thread.Handle();
  EXPECT_NE(handle, nullptr);
  EXPECT_FALSE(thread.Start_(&ThreadWork::Run, &work));  // one at a time
  EXPECT_FALSE(thread.Wait(0));                          // still running
  EXPECT_EQ(thread.Handle(), handle);
  go.Set();
  ASSERT_TRUE(thread.Wait(10000));
  EXPECT_EQ(thread.Handle(), nullptr);  // reaped
  EXPECT_NE(work.ran_on, 0u);
  EXPECT_NE(work.ran_on, os::CurrentThreadId());
  EXPECT_TRUE(thread.Wait(0));  // nothing left to wait for
  // Reaped, it starts again.
  work.ran_on = 0;
  ASSERT_TRUE(thread.Start_(&ThreadWork::Run, &work));
  ASSERT_TRUE(thread.Wait(10000));
  EXPECT_NE(work.ran_on, 0u);
}

TEST(Thread, AnExceptionLeavingTheCallEndsOnlyTheThread) {
  ThreadWork work;
  work.throws = true;
  Thread thread;
  ASSERT_TRUE(thread.Start_(&ThreadWork::Run, &work));
  EXPECT_TRUE(thread.Wait(10000));
  EXPECT_NE(work.ran_on, 0u);
}

TEST(Thread, TheDestructorWaitsForTheThread) {
  test::TestEvent go;
  ThreadWork work{&go};
  {
    Thread thread;
    ASSERT_TRUE(thread.Start_(&ThreadWork::Run, &work));
    go.Set();
  }
  EXPECT_NE(work.ran_on, 0u);
}

}  // namespace
}  // namespace zel
