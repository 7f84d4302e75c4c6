// `zelcore demo`: the library at work, narrated on the console.
#include "commands.h"
#include "console_log.h"

#include <zel/core.h>

#include "os/os.h"

#include <atomic>
#include <cstdio>

namespace zelcore {

namespace {

// Prints the threads the library sees starting and ending.
struct ThreadNarrator final : zel::ThreadListener {
  void OnThreadStart() override {
    std::printf("  [thread %u starts]\n", zel::os::CurrentThreadId());
  }
  void OnThreadEnd() override { std::printf("  [thread %u ends]\n", zel::os::CurrentThreadId()); }
};

// Calls the worker has run: two queued ones and its timer's routine.
std::atomic<int> g_worker_calls{0};

void ZEL_CALLBACK SayHello(uintptr_t text) {
  std::printf("  worker %u runs a queued call: %s\n", zel::os::CurrentThreadId(),
              reinterpret_cast<const char *>(text));
  ++g_worker_calls;
}

void ZEL_CALLBACK TimerFired(void *, uint32_t, uint32_t) {
  std::printf("  worker %u runs its timer's completion routine\n", zel::os::CurrentThreadId());
  ++g_worker_calls;
}

// The worker: arms a timer, then waits alertably until the queued calls and the timer have run.
unsigned ZEL_CALLBACK Worker(void *) {
  zel::os::Handle timer = zel::os::CreateWaitableTimer(false);
  zel::os::SetWaitableTimer(timer, -200000 /* 20 ms */, 0, TimerFired, nullptr);
  while (g_worker_calls < 3) zel::os::SleepEx(zel::os::kInfinite, true);
  zel::os::CloseHandle(timer);
  return 0;
}

void ShowClock() {
  const zel::NanoTime now = zel::NanoTime::Current();
  const zel::UnixDiff today(now.ToUnixTime().value() - zel::UnixTime::Current().GetDate().value());
  zel::cstring line;
  line << "clock: " << now << " local time, from the performance counter ("
       << zel::PrintDoubleWithCommas(static_cast<double>(zel::os::PerfFrequency()), 0)
       << " ticks per second); " << today << " since midnight";
  std::printf("%s\n", line.text());
}

void ShowTimeText() {
  const zel::strptr format("%Y/%m/%d %H:%M:%S");
  zel::cstring line;
  line << "time text: now is \""
       << zel::PrintNanoTime(zel::NanoTime::Current(), "%a %d %b %Y, %I:%M %P")
       << "\"; \"2007/03/05 14:02:09\" read with \"" << format << "\" is Unix time "
       << zel::ParseTimeX("2007/03/05 14:02:09", format).value();
  std::printf("%s\n", line.text());
  try {
    zel::ParseTimeX("2007/03/05 24:02:09", format);
  } catch (const zel::ErrorX &e) {
    line.Flush();
    line << "  a bad hour is refused: " << e;
    line.Replace("\r\n", "\n    where: ");
    std::printf("%s\n", line.text());
  }
}

void ShowSharedText() {
  const zel::shstring sentence("one buffer, shared by its parts");
  const zel::shstring word(sentence, sentence.view().Mid(4, 6));
  const zel::Range where = word.IndexIn(sentence);
  std::printf("shared text: \"%.*s\" views characters %d to %d of its sentence's buffer\n",
              word.length(), word.text(), where.begin, where.end);
  const zel::cstring name("Scheduler");
  const bool same = zel::InternString(name) == zel::InternString("Scheduler");
  std::printf("  \"%s\" interned from two different buffers: %s\n", name.text(),
              same ? "one address, one StringID" : "two addresses");
}

void ShowThreads() {
  static ThreadNarrator narrator;
  zel::AddThreadListener(&narrator);
  std::printf("threads: the main thread is %u; a worker starts suspended\n",
              zel::os::CurrentThreadId());
  uint32_t id = 0;
  zel::os::Handle worker = zel::os::CreateThread(Worker, nullptr, 0, true, &id);
  if (worker == nullptr) {
    std::printf("  could not start a thread\n");
    return;
  }
  zel::os::QueueApc(SayHello, worker, reinterpret_cast<uintptr_t>("hello"));
  zel::os::QueueApc(SayHello, worker, reinterpret_cast<uintptr_t>("world"));
  std::printf("  two calls are queued to worker %u; now it is resumed\n", id);
  zel::os::ResumeThread(worker);
  if (zel::os::WaitOne(worker, 10000, false) == zel::os::kWaitObject0)
    std::printf("  worker %u has ended: its handle is signalled\n", id);
  zel::os::CloseHandle(worker);
}

void ShowText() {
  zel::cstring line;
  line << "text: " << 42 << " and " << 2.5 << " built with <<; ";
  zel::cstring cats("Cat CAT cat");
  line << '"' << cats << "\" with cat replaced, case kept: \""
       << cats.Replaced("cat", "dog", false, true) << '"';
  std::printf("%s\n", line.text());
  line.Flush();
  line << "  " << zel::PrintSizeBytes(1536) << ", " << zel::PrintPercent(0.1234, 1) << ", "
       << zel::PrintDouble(2.5, 3, false)
       << ", quoted: " << zel::PrintQuotedString("tab\there", false);
  std::printf("%s\n", line.text());
  zel::StringIter numbers("  42, -7 and 1e3");
  int a = 0, b = 0;
  double c = 0;
  numbers.MaybeParseInteger(a);
  numbers.GetToken(zel::CharSet::Literal(","), true);
  numbers.MaybeParseInteger(b);
  numbers.GetWord();
  numbers.MaybeParseDouble(c);
  std::printf("  read back from \"%s\": %d, %d and %g\n", numbers.text(), a, b, c);
}

void ShowErrorsAndLog() {
  std::printf("log: a console client shows the lines and their markers\n");
  std::fflush(stdout);  // the client writes to the console directly
  ConsoleLog console;
  zel::LogCell cell;
  zel::PrintLog("%N: a note\r\n");
  zel::PrintLog("%C00aa00: a green line\r\n");
  zel::EnableLogCategory("Exceptions");
  try {
    zel::TempErrorPrefix prefix("While loading demo.cfg: ");
    zel::ThrowErrorX("the file is missing");
  } catch (const zel::ErrorX &e) {
    zel::cstring caught;
    caught << "%E: caught: " << e << "\r\n";
    zel::PrintLog(caught);
  }
  zel::DisableLogCategory("Exceptions");
}

}  // namespace

int Demo(int, char **) {
  std::printf("zelcore %s, built for %s\n", zel::LibraryVersion(), zel::BuildLeg());
  std::printf("library module loaded at %p\n", zel::GetLibraryModule());
  ShowClock();
  ShowText();
  ShowTimeText();
  ShowSharedText();
  std::fflush(stdout);
  ShowErrorsAndLog();
  ShowThreads();
  std::fflush(stdout);
  return 0;
}

}  // namespace zelcore
