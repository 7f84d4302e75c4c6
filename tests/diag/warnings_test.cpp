// The warning log.
#include <zel/diag/error.h>
#include <zel/diag/warnings.h>

#include "support/strings.h"
#include "support/test_thread.h"

#include <atomic>
#include <string>

namespace zel {
namespace {

using test::Str;

TEST(Warnings, AreSeparatedByLineBreaksAndDetachedWholeAndTheLogStaysLockedWhileHeld) {
  DetachWarningLog();
  AddWarning("a");
  AddWarning("");
  AddWarning("b\r\n");
  AddWarning("c", false);
  {
    TempErrorPrefix prefix("In d: ");
    AddWarning("d");
    AddWarning("e", false);
  }
  EXPECT_EQ(Str(*GetWarningLog()), "a\r\nb\r\nc\r\nIn d: d\r\ne");
  EXPECT_EQ(Str(DetachWarningLog()), "a\r\nb\r\nc\r\nIn d: d\r\ne");
  EXPECT_EQ(Str(*GetWarningLog()), "");

  // The log stays locked while a holder lives.
  std::atomic<bool> added{false};
  test::TestEvent started;
  {
    temp_mtptr<cstring> held = GetWarningLog();
    test::TestThread other([&] {
      started.Set();
      AddWarning("late");
      added = true;
    });
    ASSERT_TRUE(started.Wait());
    os::SleepEx(50, false);
    EXPECT_FALSE(added);  // it waits for the holder
    temp_mtptr<cstring> moved(static_cast<temp_mtptr<cstring> &&>(held));
    EXPECT_FALSE(added);  // the lock passed over without being released
    moved.Reset();
    ASSERT_TRUE(other.Join());
  }
  EXPECT_TRUE(added);
  EXPECT_EQ(Str(DetachWarningLog()), "late");
}

}  // namespace
}  // namespace zel
