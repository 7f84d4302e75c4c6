// The light lock, the non-recursive lock and locked pointers.
#include <zel/thread/mtptr.h>
#include <zel/thread/nr_critsect.h>

#include "support/test_thread.h"
#include "thread/light_lock.h"

#include <thread>

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

TEST(NRCritSect, ExcludesAndIsNotRecursive) {
  NRCritSect lock;
  EXPECT_EQ(test::CountUnderLock<NRCritSectLock>(lock), 80000);
  lock.Enter();
  EXPECT_FALSE(lock.TryEnter());  // not even for the holder
  EXPECT_FALSE(FreeForOthers(lock));
  lock.Leave();
  EXPECT_TRUE(FreeForOthers(lock));
}

TEST(NRCritSect, KnowsTheProcessorCount) {
  EXPECT_GE(NRCritSect::_number_of_processors, 1);
  if (const unsigned n = std::thread::hardware_concurrency(); n != 0) {
    EXPECT_EQ(NRCritSect::_number_of_processors, static_cast<int>(n));
  }
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
