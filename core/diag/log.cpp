// The log: clients, categories, the startup log and the dispatch of lines.
//
// The client lock is never held while a client writes. A dispatch takes it only to step from one
// client to the next, counting each call in progress on the client's entry; entries are removed
// (compacted) only when no dispatch runs anywhere, so an entry stays at its index while any
// dispatch could be looking at it. RemoveLogClient blanks the entry and waits until the calls on
// other threads have returned.
#include <zel/diag/log.h>

#include <zel/thread/critsect.h>
#include "os/os.h"

#include <new>

namespace zel {

std::atomic<int32_t> LogCategory::n_global_clients{0};

namespace {

constexpr int kStartupLogLimit = 100000;

struct ClientEntry {
  LogClient *client;  // null once removed
  int calls;          // calls in progress
};

struct Log {
  Log() {
    // The startup log listens from the start.
    LogCategory::n_global_clients.fetch_add(1);
  }

  CritSect lock;  // categories, clients, depth, compactions
  PtrTAry<LogCategory> categories;
  TAry<ClientEntry> clients;
  int depth = 0;             // dispatches in progress, on any thread
  uint32_t compactions = 0;  // times the client entries were compacted

  CritSect startup_lock;
  cstring startup;
  std::atomic<bool> startup_active{true};
};

// The log is made on first use and lives until the process ends, so that static objects can log
// while they are destroyed.
Log &TheLog() {
  alignas(Log) static unsigned char storage[sizeof(Log)];
  static Log *const log = new (storage) Log();
  return *log;
}

// The clients this thread is calling now, innermost first: a client may log while it writes, to
// any depth, so each call in progress is one link kept in the frame of the dispatch making it.
struct Calling {
  const LogClient *client;
  const Calling *outer;
};
thread_local const Calling *t_calling = nullptr;

int CallsOnThisThread(const LogClient *client) {
  int n = 0;
  for (const Calling *c = t_calling; c != nullptr; c = c->outer) n += c->client == client;
  return n;
}

void KeepInStartupLog(Log &log, const strptr &text) {
  CritSectLock hold(log.startup_lock);
  if (!log.startup_active.load()) return;
  log.startup.Add(text);
  if (log.startup.length() > kStartupLogLimit) {
    // The earliest output is dropped rather than kept without bound.
    log.startup_active.store(false);
    LogCategory::n_global_clients.fetch_sub(1);
    cstring().Swap(log.startup);
  }
}

void Compact(Log &log) {
  int kept = 0;
  for (int i = 0; i < log.clients.Count(); ++i)
    if (log.clients[i].client != nullptr) log.clients[kept++] = log.clients[i];
  while (log.clients.Count() > kept) log.clients.RemoveAt(log.clients.Count() - 1);
  ++log.compactions;
}

LogCategory *FindCategory(Log &log, const strptr &name) {
  for (LogCategory *c : log.categories)
    if (c->Name().EqualNoCase(name)) return c;
  return nullptr;
}

}  // namespace

LogClient::~LogClient() = default;

void PrintLog(const strptr &text) {
  Log &log = TheLog();
  if (log.startup_active.load(std::memory_order_relaxed)) KeepInStartupLog(log, text);

  int i = 0;
  LogClient *client = nullptr;
  CritSectLock hold(log.lock);
  ++log.depth;
  for (;; ++i) {
    while (i < log.clients.Count() && log.clients[i].client == nullptr) ++i;
    if (i >= log.clients.Count()) break;
    client = log.clients[i].client;
    ++log.clients[i].calls;
    const Calling calling{client, t_calling};
    t_calling = &calling;
    log.lock.Leave();
    try {
      client->Write(text);
    } catch (...) {
      // A client's failure is its own; the others still get the line.
    }
    log.lock.Enter();
    t_calling = calling.outer;
    --log.clients[i].calls;
  }
  if (--log.depth == 0) Compact(log);
}

void AddLogClient(LogClient *client) {
  if (client == nullptr) return;
  Log &log = TheLog();
  CritSectLock hold(log.lock);
  for (const ClientEntry &e : log.clients)
    if (e.client == client) return;
  log.clients.Add(ClientEntry{client, 0});
  LogCategory::n_global_clients.fetch_add(1);
}

void RemoveLogClient(LogClient *client) {
  if (client == nullptr) return;
  Log &log = TheLog();
  log.lock.Enter();
  int at = -1;
  for (int i = 0; i < log.clients.Count() && at < 0; ++i)
    if (log.clients[i].client == client) at = i;
  if (at < 0) {
    log.lock.Leave();
    return;
  }
  log.clients[at].client = nullptr;
  LogCategory::n_global_clients.fetch_sub(1);
  if (log.depth == 0) Compact(log);
  // Wait for the calls on other threads; a compaction means no dispatch was left running.
  const uint32_t compactions = log.compactions;
  const int mine = CallsOnThisThread(client);
  while (log.compactions == compactions && log.clients[at].calls > mine) {
    log.lock.Leave();
    os::Yield();
    log.lock.Enter();
  }
  log.lock.Leave();
}

void EnableLogCategory(const strptr &name) {
  Log &log = TheLog();
  CritSectLock hold(log.lock);
  if (LogCategory *c = FindCategory(log, name)) c->Enable(true);
}

void DisableLogCategory(const strptr &name) {
  Log &log = TheLog();
  CritSectLock hold(log.lock);
  if (LogCategory *c = FindCategory(log, name)) c->Enable(false);
}

void GetLogCategories(PtrTAry<LogCategory> &out) {
  Log &log = TheLog();
  CritSectLock hold(log.lock);
  out.Flush();
  for (LogCategory *c : log.categories) out.Add(c);
}

void DetachStartupLog(cstring &out) {
  out.Flush();
  Log &log = TheLog();
  CritSectLock hold(log.startup_lock);
  if (!log.startup_active.load()) return;
  log.startup_active.store(false);
  LogCategory::n_global_clients.fetch_sub(1);
  out.Swap(log.startup);
}

LogCategory::LogCategory(const char *name, bool enabled)
    : name_(name), name_length_(strptr(name).length()), enabled_(enabled) {
  Log &log = TheLog();
  CritSectLock hold(log.lock);
  if (log.categories.Find(this) < 0) log.categories.Add(this);
}

LogCategory::~LogCategory() {
  Log &log = TheLog();
  CritSectLock hold(log.lock);
  int at = log.categories.Find(this);
  if (at >= 0) log.categories.RemoveAt(at);
}

}  // namespace zel
