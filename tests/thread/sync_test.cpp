// Owned handles, waits on one and on several handles, manual-reset events, and the lines that
// failed system calls log.
#include <zel/diag/error.h>
#include <zel/thread/sync.h>

#include "support/log_capture.h"
#include "support/test_thread.h"

#include <atomic>
#include <functional>
#include <string>
#include <vector>

namespace zel {
namespace {

using Lines = std::vector<std::string>;

// The line a failed call logs with `prefix`, for the error that call left behind.
std::string OsFailureLine(const char *prefix) {
  temp_cstring text = errstr(static_cast<int>(os::LastError()));
  EXPECT_FALSE(text.empty());
  return prefix + std::string(text.text(), static_cast<size_t>(text.length())) + "\r\n";
}

// An APC that counts its calls in the int at `arg`, and one that sets the event at `arg`.
void ZEL_CALLBACK CountApc(uintptr_t arg) { ++*reinterpret_cast<int *>(arg); }
void ZEL_CALLBACK SetEventApc(uintptr_t arg) { reinterpret_cast<SyncEvent *>(arg)->Set(); }

// Queues `routine` to the calling thread, to run at its next alertable wait.
void QueueToSelf(os::ApcRoutine routine, void *arg) {
  test::TestHandle self(os::DuplicateCurrentThread());
  ASSERT_TRUE(os::QueueApc(routine, self, reinterpret_cast<uintptr_t>(arg)));
}

// A value that closing refuses: on Windows an address, which is no handle value; on Linux the
// current thread's pseudo-handle, which only the thread functions accept (an address there would
// be read as an object).
void *NotAHandle() {
#if defined(_WIN32)
  static int not_an_object;
  return &not_an_object;
#else
  return os::kCurrentThread;
#endif
}

TEST(CloseHandleSafe, ClosesRealHandlesOnceAndClearsEveryValue) {
  const struct {
    void *handle;
    bool fails;
  } cases[] = {
      {nullptr, false},
      {os::kInvalidHandle, false},
      {os::CreateEvent(true, false), false},
      {NotAHandle(), true},
  };
  for (const auto &t : cases) {
    test::LogCapture log;
    void *h = t.handle;
    CloseHandleSafe(h);
    Lines expected;
    if (t.fails) expected.push_back(OsFailureLine("CloseHandle failed: "));
    EXPECT_EQ(h, nullptr);
    CloseHandleSafe(h);  // 0 now: nothing
    EXPECT_EQ(log.Lines(), expected);
  }
}

TEST(QHandle, WaitsReportSignalledTimeOutAndFailure) {
  enum Call { kWait, kAlertableWait, kAlertableWaitForever };
  const struct {
    bool has_event;
    bool set;
    Call call;
    bool result;
    const char *failure;  // the logged prefix, or null
  } cases[] = {
      {true, true, kWait, true, nullptr},
      {true, false, kWait, false, nullptr},
      {true, true, kAlertableWait, true, nullptr},
      {true, false, kAlertableWait, false, nullptr},
      {true, true, kAlertableWaitForever, true, nullptr},
      {false, false, kWait, false, "Wait failed: "},
      {false, false, kAlertableWait, false, "AlertableWait failed: "},
      {false, false, kAlertableWaitForever, false, "AlertableWait failed: "},
  };
  for (const auto &t : cases) {
    SCOPED_TRACE(testing::Message() << "call " << t.call << " set " << t.set);
    QHandle h(t.has_event ? os::CreateEvent(true, t.set) : nullptr);
    test::LogCapture log;
    bool result = t.call == kWait            ? h.Wait(0)
                  : t.call == kAlertableWait ? h.AlertableWait(0)
                                             : h.AlertableWait();
    Lines expected;
    if (t.failure != nullptr) expected.push_back(OsFailureLine(t.failure));
    EXPECT_EQ(result, t.result);
    EXPECT_EQ(log.Lines(), expected);
  }
}

TEST(QHandle, AlertableWaitsAndAPCs) {
  // With a time-out, the APCs end the wait, which reports false.
  SyncEvent event;
  int calls = 0;
  QueueToSelf(&CountApc, &calls);
  EXPECT_FALSE(event.AlertableWait(10000));
  EXPECT_EQ(calls, 1);
  // Without one, the wait goes on after the APCs until the event is set, here by the APC itself.
  // It waits on a thread of its own, so that a wait that misses the APC can be let go.
  std::atomic<bool> signalled{false};
  test::TestThread waiter([&] {
    QueueToSelf(&SetEventApc, &event);
    signalled = event.AlertableWait();
  });
  const bool ended = waiter.Join();
  if (!ended) event.Set();
  EXPECT_TRUE(ended);
  EXPECT_TRUE(signalled);
  // A plain wait leaves APCs queued.
  event.Reset();
  QueueToSelf(&CountApc, &calls);
  EXPECT_FALSE(event.Wait(0));
  EXPECT_EQ(calls, 1);
  EXPECT_EQ(os::SleepEx(0, true), os::kWaitIoCompletion);
  EXPECT_EQ(calls, 2);
}

TEST(AlertableSelect, GivesTheSignalledIndexOrMinusOne) {
  SyncEvent events[3];
  void *const handles[3] = {events[0].Handle(), events[1].Handle(), events[2].Handle()};
  void *const with_null[2] = {events[0].Handle(), nullptr};
  const struct {
    std::vector<int> set;
    void *const *handles;
    int count;
    int ms;
    int result;
  } cases[] = {
      {{1}, handles, 3, 0, 1},
      {{0, 2}, handles, 3, 0, 0},  // the lowest index wins
      {{2}, handles, 3, 10000, 2},
      {{2}, handles, 2, 10, -1},  // only the first two count: the time passes
      {{}, handles, 3, 0, -1},
      {{1}, handles, 0, 0, -1},
      {{0}, with_null, 2, 0, -1},  // the wait fails
  };
  for (const auto &t : cases) {
    SCOPED_TRACE(testing::Message() << "count " << t.count << " ms " << t.ms);
    for (SyncEvent &e : events) e.Reset();
    for (int i : t.set) events[i].Set();
    EXPECT_EQ(AlertableSelect(t.handles, t.count, t.ms), t.result);
  }
}

TEST(AlertableSelect, APCsEndTheWait) {
  SyncEvent events[3];
  void *const handles[3] = {events[0].Handle(), events[1].Handle(), events[2].Handle()};
  int calls = 0;
  QueueToSelf(&CountApc, &calls);
  EXPECT_EQ(AlertableSelect(handles, 3, 10000), -1);
  EXPECT_EQ(calls, 1);
}

TEST(SyncEvent, IsManualResetAndStartsAsAsked) {
  SyncEvent unset, set(true);
  EXPECT_FALSE(unset.Wait(0));
  EXPECT_TRUE(set.Wait(0));
  EXPECT_TRUE(set.Wait(0));  // waiting does not reset it
  EXPECT_TRUE(unset.Set());
  EXPECT_TRUE(unset.Wait(0));
  EXPECT_TRUE(unset.Reset());
  EXPECT_FALSE(unset.Wait(0));
  EXPECT_TRUE(set.Pulse());  // nobody waits: it only ends reset
  EXPECT_FALSE(set.Wait(0));
}

TEST(SyncEvent, NamesAreSharedOnWindowsOnly) {
#if defined(_WIN32)
  constexpr bool kShared = true;
#else
  constexpr bool kShared = false;
#endif
  SyncEvent a(false, "zel-sync-test-named-event");
  SyncEvent b(false, "zel-sync-test-named-event");
  ASSERT_TRUE(a.Set());
  EXPECT_EQ(b.Wait(0), kShared);
}

TEST(SyncEvent, PulseReleasesAWaitingThreadAndEndsReset) {
  SyncEvent event;
  test::TestEvent released;
  std::atomic<bool> signalled{false};
  test::TestThread waiter([&] {
    signalled = event.Wait(10000);
    released.Set();
  });
  // A pulse releases only a thread that waits already: pulse until the waiter has gone through.
  for (int i = 0; i < 5000 && !released.Wait(1); ++i) ASSERT_TRUE(event.Pulse());
  ASSERT_TRUE(released.Wait(0));
  EXPECT_TRUE(signalled);
  EXPECT_FALSE(event.Wait(0));
}

TEST(SyncEvent, FailuresLogTheirPrefixAndTheSystemsText) {
  const struct {
    std::function<bool(SyncEvent &)> call;
    const char *prefix;
  } cases[] = {
      {&SyncEvent::Set, "Error setting event: "},
      {&SyncEvent::Reset, "Error resetting event: "},
      {&SyncEvent::Pulse, "Error pulsing event: "},
  };
  for (const auto &t : cases) {
    SyncEvent event;
    event.Close();
    test::LogCapture log;
    const bool result = t.call(event);
    const Lines expected{OsFailureLine(t.prefix)};
    EXPECT_FALSE(result);
    EXPECT_EQ(log.Lines(), expected);
  }
}

}  // namespace
}  // namespace zel
