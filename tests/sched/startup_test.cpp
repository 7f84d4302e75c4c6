// The library's load and the thread listeners.
#include <zel/sched/startup.h>

#include "support/test_thread.h"

#include <atomic>
#include <mutex>
#include <string>
#include <vector>

namespace zel {
namespace {

// Listeners cannot be removed, so these live for the whole program and only record what they hear
// about the threads a test names.
struct Journal {
  std::mutex lock;
  std::vector<std::string> entries;
  std::atomic<uint32_t> watched{0};

  void Note(const char *what) {
    if (os::CurrentThreadId() != watched) return;
    std::lock_guard hold(lock);
    entries.push_back(what);
  }
};
Journal journal;

struct NamedListener final : ThreadListener {
  explicit NamedListener(const char *name) : name_(name) {}
  void OnThreadStart() override { journal.Note((name_ + " start").c_str()); }
  void OnThreadEnd() override { journal.Note((name_ + " end").c_str()); }
  std::string name_;
};

TEST(Startup, RecordsTheLibraryModule) { EXPECT_NE(GetLibraryModule(), nullptr); }

TEST(Startup, ListenersHearThreadsNewestFirst) {
  static NamedListener a("A"), b("B");
  AddThreadListener(&a);
  AddThreadListener(&b);

  test::TestEvent go;
  test::TestThread thread([&] { go.Wait(); }, /*suspended=*/true);
  ASSERT_TRUE(thread.Started());
  journal.watched = thread.id();
  thread.Resume();
  go.Set();
  ASSERT_TRUE(thread.Join());

  std::lock_guard hold(journal.lock);
  EXPECT_EQ(journal.entries, (std::vector<std::string>{"B start", "A start", "B end", "A end"}));
}

}  // namespace
}  // namespace zel
