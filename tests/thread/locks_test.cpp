// The light lock and locked pointers.
#include <zel/thread/mtptr.h>

#include "support/test_thread.h"
#include "thread/light_lock.h"

namespace zel {
namespace {

using test::FreeForOthers;

TEST(LightLock, ExcludesAndTryEnterFailsWhileHeld) {
  LightLock lock;
  EXPECT_EQ(test::CountUnderLock<LightLockHold>(lock), 80000);
  lock.Enter();
  EXPECT_FALSE(FreeForOthers(lock));
  lock.Leave();
  EXPECT_TRUE(lock.TryEnter());
  lock.Leave();
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
