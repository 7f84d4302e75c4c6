// `zelcore demo`: the library at work, narrated on the console.
#include "commands.h"
#include "console_log.h"

#include <zel/core.h>

#include <cstdio>
#include <thread>

namespace zelcore {

namespace {

void ShowClock() {
  const zel::NanoTime now = zel::NanoTime::Current();
  const zel::UnixTime seconds = now.ToUnixTime();
  zel::cstring line;
  line << "clock: " << now << " local time, from the performance counter kept in step with the "
       << "system clock; " << (seconds - seconds.GetDate()) << " since midnight";
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
  zel::StringIter loose("Jan 5, 07");
  const DateStruct date = ParseDate(loose, false);
  std::printf("  \"%s\" read as a loose date is day %d of month %d of %d\n", loose.text(), date.day,
              date.month, date.year);
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

void ShowCommandLines() {
  const zel::strptr text(R"(resize title:"Main editor" width:1024 height:768 visible:yes)");
  const zel::CmdLine line(text, false);
  std::printf("command lines: %s\n", text.text());
  std::printf("  command \"%.*s\", title \"%.*s\", %d x %d, visible: %s\n", line.Command().length(),
              line.Command().text(), line.GetString("title").length(),
              line.GetString("title").text(), line.GetInteger("width", 0),
              line.GetInteger("height", 0), line.GetBool("visible", false) ? "yes" : "no");
  zel::cstring written;
  zel::CmdLine::Append(written, "note", "a \"quoted\" word,\ttabbed");
  zel::CmdLine::Append(written, "ratio", 0.75);
  std::printf("  written back with Append: %s\n", written.text());
  // The same command, packed: built without text and read without parsing.
  zel::BCmdLine packed(zel::InternString("resize"));
  packed.AddString(zel::InternString("title"), line.GetString("title"));
  packed.AddInt(zel::InternString("width"), 1024);
  packed.AddBool(zel::InternString("visible"), true);
  zel::cstring shown;
  shown << packed;
  std::printf("  packed in %d bytes, printed as text: %s\n", packed.Length(), shown.text());
}

void ShowErrorsAndLog() {
  std::printf("log: a console client shows the lines and their markers\n");
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

// One of the demo's worker threads, numbered from 1, logging in a colour of its own.
struct Worker {
  int number;
  const char *colour;  // six hexadecimal digits: red, green, blue

  // Logs "  worker <number> " and `what` in the worker's colour.
  void Log(const zel::strptr &what) const {
    zel::cstring line;
    line << "%C" << colour << ":   worker " << number << ' ' << what << "\r\n";
    zel::PrintLog(line);
  }

  // The thread body: an exit hook, then two lines built in scratch strings from the thread's pool.
  void Run() {
    zel::AddThreadExitHook(zel::Hook0V::Of<&Worker::SayGoodbye>(this));
    const zel::cstring *first = nullptr;
    for (int i = 1; i <= 2; ++i) {
      zel::ThreadLocalString scratch;
      *scratch << "builds line " << i << " in "
               << (&*scratch == first ? "the same scratch string, back from its pool"
                                      : "a scratch string lent by its own pool");
      first = &*scratch;
      Log(*scratch);
    }
  }

  void SayGoodbye() const { Log("runs its exit hook as it ends"); }
};

void ShowThreads() {
  std::printf("threads: three std::thread workers share the log; each line arrives whole\n");
  Worker workers[] = {{1, "e07b39"}, {2, "3b8ee0"}, {3, "b04ad8"}};
  std::thread threads[3];
  for (int i = 0; i < 3; ++i) threads[i] = std::thread(&Worker::Run, &workers[i]);
  for (std::thread &t : threads) t.join();
  std::printf("  all three have been joined\n");
}

// A service whose checks run on a worker's Scheduler; it says when it goes.
class Service : public zel::TrackedObj {
 public:
  Service(const char *name, zel::TrackedObj *parent, zel::Scheduler *home, const char *colour)
      : TrackedObj(name, "service", parent, true, home), colour_(colour) {}

  void Deactivate() override {
    TrackedObj::Deactivate();
    zel::cstring line;
    line << "%C" << colour_ << ":   " << GetName() << " deactivates on thread "
         << zel::GetThreadLocalScheduler()->GetName() << "\r\n";
    zel::PrintLog(line);
    if (GetState() == kInactive) gone.Set();
  }

  zel::SyncEvent gone;

 private:
  const char *colour_;
};

// Ticks three times, a tenth of a second apart, on its Scheduler's thread.
struct Ticker : zel::DelayClient {
  bool Callback() override {
    zel::cstring line;
    line << "%C3b8ee0:   tick " << ++ticks << " on thread "
         << zel::GetThreadLocalScheduler()->GetName() << "\r\n";
    zel::PrintLog(line);
    if (ticks == 3) done.Set();
    return ticks < 3;
  }
  int ticks = 0;
  zel::SyncEvent done;
};

void ZEL_CALLBACK SayWhere(uintptr_t) {
  zel::cstring line;
  line << "%Ce07b39:   a plain call from the main thread runs on thread "
       << zel::GetThreadLocalScheduler()->GetName() << "\r\n";
  zel::PrintLog(line);
}

void ShowScheduling() {
  std::printf("event loops: two worker threads, each running its own Scheduler\n");
  zel::WorkThread indexer("indexer"), writer("writer");
  indexer.Start();
  writer.Start();
  Ticker ticker;
  ticker.Schedule(indexer.GetScheduler(), 0.1f);
  writer.GetScheduler()->QueueCall(&SayWhere, 0);
  ticker.done.Wait(5000);
  // A catalog whose pages depend on it: asked to go, the catalog first lets the pages go.
  std::printf("tracked objects: \"pages\" depends on \"catalog\"; the catalog is asked to go\n");
  Service catalog("catalog", nullptr, indexer.GetScheduler(), "b04ad8");
  Service pages("pages", &catalog, writer.GetScheduler(), "3b8ee0");
  catalog.RequestDeactivate();
  catalog.gone.Wait(5000);
  std::printf("  both are inactive; the workers stop as they go\n");
}

}  // namespace

int Demo(int, char **) {
  std::printf("zelcore %s, built for %s\n", zel::LibraryVersion(), zel::BuildLeg());
  std::printf("library module loaded at %p\n", zel::GetLibraryModule());
  ShowClock();
  ShowText();
  ShowTimeText();
  ShowSharedText();
  ShowCommandLines();
  ConsoleLog console;  // from here on, log lines show on the console too
  ShowErrorsAndLog();
  ShowThreads();
  ShowScheduling();
  std::fflush(stdout);
  return 0;
}

}  // namespace zelcore
