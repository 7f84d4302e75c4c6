// The light lock and locked pointers.
#include <zel/thread/mtptr.h>

#include "support/test_thread.h"
#include "thread/light_lock.h"

#include <memory>
#include <vector>

namespace zel {
namespace {

TEST(LightLock, ExcludesAndTryEnterFailsWhileHeld) {
  LightLock lock;
  int counter = 0;
  std::vector<std::unique_ptr<test::TestThread>> threads;
  for (int t = 0; t < 4; ++t)
    threads.push_back(std::make_unique<test::TestThread>([&] {
      for (int i = 0; i < 20000; ++i) {
        LightLockHold hold(lock);
        ++counter;
      }
    }));
  for (auto &t : threads) ASSERT_TRUE(t->Join(60000));
  EXPECT_EQ(counter, 80000);

  lock.Enter();
  bool taken = true;
  test::TestThread other([&] { taken = lock.TryEnter(); });
  ASSERT_TRUE(other.Join());
  EXPECT_FALSE(taken);
  lock.Leave();
  EXPECT_TRUE(lock.TryEnter());
  lock.Leave();
}

// True when another thread can take `lock` right now.
bool FreeForOthers(CritSect &lock) {
  bool free = false;
  test::TestThread other([&] {
    free = lock.TryEnter();
    if (free) lock.Leave();
  });
  other.Join();
  return free;
}

TEST(LockedPointer, HoldsTheLockWhileItPointsAndHandsItOver) {
  CritSect a_lock, b_lock;
  int a = 1, b = 2;
  {
    temp_mtptr<int> p(&a, &a_lock);
    EXPECT_EQ(*p, 1);
    EXPECT_FALSE(FreeForOthers(a_lock));
    temp_mtptr<int> copy(p);  // the same object: the lock is held once more
    temp_mtptr<int> q(&b, &b_lock);
    q = p;  // enters a's lock, then leaves b's
    EXPECT_TRUE(FreeForOthers(b_lock));
    EXPECT_EQ(*q, 1);
    temp_mtptr<int> moved(static_cast<temp_mtptr<int> &&>(q));
    EXPECT_EQ(q.get(), nullptr);
    EXPECT_EQ(*moved, 1);
  }
  EXPECT_TRUE(FreeForOthers(a_lock));
}

}  // namespace
}  // namespace zel
