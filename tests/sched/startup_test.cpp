// The library's load and the thread listeners.
#include <zel/sched/startup.h>

#include "support/test_thread.h"

#include <atomic>
#include <mutex>
#include <string>
#include <vector>

namespace zel {
namespace {

std::mutex g_lock;
std::vector<std::string> g_heard;
std::atomic<uint32_t> g_watched{0};

// Listeners cannot be removed, so these live for the whole program and only record what they hear
// about the thread a test names.
struct NamedListener final : ThreadListener {
  explicit NamedListener(const char *name) : name_(name) {}
  void OnThreadStart() override { Note(" start"); }
  void OnThreadEnd() override { Note(" end"); }
  void Note(const char *what) {
    if (os::CurrentThreadId() != g_watched) return;
    std::lock_guard hold(g_lock);
    g_heard.push_back(name_ + what);
  }
  std::string name_;
};

TEST(Startup, RecordsTheLibraryModule) { EXPECT_NE(GetLibraryModule(), nullptr); }

TEST(Startup, ListenersHearThreadsNewestFirst) {
  static NamedListener a("A"), b("B");
  AddThreadListener(&a);
  AddThreadListener(&b);

  test::TestThread thread([] {}, /*suspended=*/true);  // until it is watched
  ASSERT_TRUE(thread.Started());
  g_watched = thread.id();
  os::ResumeThread(thread.handle());
  ASSERT_TRUE(thread.Join());

  std::lock_guard hold(g_lock);
  EXPECT_EQ(g_heard, (std::vector<std::string>{"B start", "A start", "B end", "A end"}));
}

}  // namespace
}  // namespace zel
