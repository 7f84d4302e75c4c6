// The process-wide log: producers hand it finished lines with PrintLog, and it passes each line to
// every registered LogClient. Until DetachStartupLog is called, every line is also kept in the
// startup log (up to 100,000 characters), so that nothing logged before the first client is lost.
//
// A line may begin with a marker for clients: "%W: " (warning), "%E: " (error), "%N: " (note),
// "%C" + six hexadecimal digits (red, green, blue) + ": " (colour), "%I<id>: " (log cell opening),
// "%f<id>: " (fixed log cell closing). Lines end in CR LF.
#pragma once

#include <zel/mem/tary.h>
#include <zel/text/cstring.h>

#include <atomic>
#include <cstdint>

namespace zel {

// Receives every logged line. Clients belong to the application; the log keeps pointers only.
class ZEL_API LogClient {
 public:
  virtual ~LogClient();
  // Called once per line, with the line exactly as given to PrintLog. May be called from any
  // thread, also from several at once. An exception thrown here is caught and ignored.
  virtual void Write(const strptr &text) = 0;
};

// A named switch that producers consult before logging one kind of output. Categories are usually
// static objects; they register themselves with the log and leave it when destroyed.
class ZEL_API LogCategory {
 public:
  // `name` is a literal (it is not copied).
  LogCategory(const char *name, bool enabled);
  ~LogCategory();
  LogCategory(const LogCategory &) = delete;
  LogCategory &operator=(const LogCategory &) = delete;

  strptr Name() const { return strptr(name_, name_length_); }
  bool Enabled() const { return enabled_.load(std::memory_order_relaxed); }
  void Enable(bool on) { enabled_.store(on, std::memory_order_relaxed); }

  // The log level: the number of registered clients, plus 1 while the startup log is active.
  // Check it (n_global_clients >= 1) before building any log text: at 0 nobody listens.
  static std::atomic<int32_t> n_global_clients;

 private:
  const char *name_;
  int name_length_;
  std::atomic<bool> enabled_;
};

// Logs one text, normally a whole line ending in "\r\n". Any thread.
ZEL_API void PrintLog(const strptr &text);

// Registers a client; null or an already registered client is ignored.
ZEL_API void AddLogClient(LogClient *client);
// Unregisters a client; unknown or null is ignored. Returns once no other thread is calling the
// client, so that it may be destroyed at once. Called from inside the client's own Write (or
// another client's), it returns at once; the running line still reaches the other clients.
ZEL_API void RemoveLogClient(LogClient *client);

// Switch the first category whose name equals `name`, ignoring case; an unknown name is ignored.
ZEL_API void EnableLogCategory(const strptr &name);
ZEL_API void DisableLogCategory(const strptr &name);
// Replaces the array's contents with the registered categories, in registration order.
ZEL_API void GetLogCategories(PtrTAry<LogCategory> &out);

// Moves the startup log into `out` and ends it; later calls give "".
ZEL_API void DetachStartupLog(cstring &out);

// A numbered cell marker: construction takes the next id (from 1) and logs "%I<id>: \r\n"; a copy
// keeps the id and logs the line again.
class ZEL_API LogCell {
 public:
  LogCell();
  LogCell(const LogCell &other);
  LogCell &operator=(const LogCell &) = delete;
  int Id() const { return id_; }

 private:
  int id_;
};

// A numbered closing marker: construction takes the next id (from 1, counted apart from LogCell)
// silently; destruction logs "%f<id>: \r\n".
class ZEL_API FixedLogCell {
 public:
  FixedLogCell();
  ~FixedLogCell();
  FixedLogCell(const FixedLogCell &) = delete;
  FixedLogCell &operator=(const FixedLogCell &) = delete;
  int Id() const { return id_; }

 private:
  int id_;
};

// Debugger output that does not lose text: all of the process's debugger output is serialised,
// and sent in pieces of at most 512 characters with a pause of about 10 ms per full piece.
ZEL_API void BetterOutputDebugString(const strptr &text);

// The process's console, off until the application turns it on.
class ZEL_API SysConsole {
 public:
  static bool IsOn();
  static void TurnOn(bool on);
  // Writes to standard output when the console is on.
  static void Write(const strptr &text);
  // Is standard output a terminal (a console window on Windows) rather than a file or a pipe?
  // Asked of the system at each call, whether the console is on or not.
  static bool IsTerminal();
};

// The text to the console (when on) and to the debugger.
ZEL_API void prerr_end(cstring &text);

}  // namespace zel
