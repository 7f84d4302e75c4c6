// The contract between the portable library and the operating system.
//
// Everything platform-specific lives behind this header: core/os/win32 implements it with Win32
// calls, core/os/posix with POSIX and Linux calls. No other file of the library includes a
// platform header. The semantics are the Windows ones on every platform, so that the code above
// is written once: handles, wait results, alertable waits that run queued asynchronous procedure
// calls (APCs), waitable timers whose completion routines run on the arming thread, and the
// system's last-error value.
//
// This header is internal: it is not installed. Its functions are exported from the shared
// library only so that the library's own tests can reach them.
#pragma once

#include <zel/config.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <ctime>

namespace zel {
class cstring;
}

namespace zel::os {

// ---------------------------------------------------------------------------------------------
// The process heap: the memory under the global allocator and under this layer's own objects.

// Returns `bytes` bytes aligned for any scalar type, or null.
ZEL_API void *HeapAlloc(size_t bytes);
// Resizes a block from HeapAlloc (null `p` allocates); returns null and keeps `p` on failure.
ZEL_API void *HeapRealloc(void *p, size_t bytes);
// Frees a block from HeapAlloc; null is ignored.
ZEL_API void HeapFree(void *p);

// ---------------------------------------------------------------------------------------------
// The calling thread's last system error: GetLastError on Windows, errno on Linux. Every function
// of this layer that reports failure by its result sets it.

ZEL_API uint32_t LastError();
ZEL_API void SetLastError(uint32_t code);

// Writes the system's text for `code` into `buf` (at most `cap` - 1 characters and a NUL) and
// returns the length of the full text, which may exceed what fitted; 0 (and "") when the system
// has none. Windows: FormatMessageA from the system table; Linux: strerror's text, for the codes
// the C library knows (a code it would call "Unknown error N" has none). The text is returned as
// the system gives it (FormatMessageA ends it with CR LF). Leaves the last error unchanged.
ZEL_API int ErrorText(uint32_t code, char *buf, int cap);

// Saves the last error on construction and restores it on destruction.
class SavedLastError {
 public:
  SavedLastError() : code_(LastError()) {}
  ~SavedLastError() { SetLastError(code_); }
  SavedLastError(const SavedLastError &) = delete;
  SavedLastError &operator=(const SavedLastError &) = delete;

 private:
  uint32_t code_;
};

// ---------------------------------------------------------------------------------------------
// Atomics on plain 32-bit fields, with the results of the Interlocked family.

// Adds one; returns the new value.
inline int32_t AtomicIncrement(int32_t &v) { return std::atomic_ref<int32_t>(v).fetch_add(1) + 1; }
// Subtracts one; returns the new value.
inline int32_t AtomicDecrement(int32_t &v) { return std::atomic_ref<int32_t>(v).fetch_sub(1) - 1; }
// Stores `value`; returns the previous value.
inline int32_t AtomicExchange(int32_t &v, int32_t value) {
  return std::atomic_ref<int32_t>(v).exchange(value);
}
// Stores `value` when `v` equals `expected`; returns the value `v` held before.
inline int32_t AtomicCompareExchange(int32_t &v, int32_t value, int32_t expected) {
  std::atomic_ref<int32_t>(v).compare_exchange_strong(expected, value);
  return expected;
}

// ---------------------------------------------------------------------------------------------
// Thread identity, yielding and sleeping.

// The calling thread's system id (GetCurrentThreadId; the kernel's thread id, gettid, on Linux).
ZEL_API uint32_t CurrentThreadId();
// Tells the processor that the thread is spinning on a value (PAUSE on x86).
inline void CpuPause() {
#if defined(__i386__) || defined(__x86_64__)
  __builtin_ia32_pause();
#endif
}
// Gives up the rest of the time slice (Sleep(0)).
ZEL_API void Yield();
// Sleeps `ms` milliseconds without running APCs.
ZEL_API void Sleep(uint32_t ms);
// The number of processors that run the process's threads (GetSystemInfo;
// sysconf(_SC_NPROCESSORS_ONLN) on Linux); at least 1.
ZEL_API int ProcessorCount();

// ---------------------------------------------------------------------------------------------
// Clocks.

// The performance counter: monotonic ticks (QueryPerformanceCounter; CLOCK_MONOTONIC in
// nanoseconds on Linux).
ZEL_API int64_t PerfCounter();
// Ticks per second of PerfCounter.
ZEL_API int64_t PerfFrequency();
// The system clock in 100-ns units since 1601-01-01 00:00 UTC (the FILETIME scale).
ZEL_API int64_t SystemTime100ns();

// ---------------------------------------------------------------------------------------------
// Calendar: the C runtime's broken-down times, in their thread-safe forms.

// `t` (seconds since 1970) broken down in local time / in UTC; false when the runtime cannot.
ZEL_API bool LocalTime(int64_t t, std::tm &out);
ZEL_API bool UtcTime(int64_t t, std::tm &out);
// Sets the process's time zone (the TZ variable, "UTC0" or "CET-1CEST,M3.5.0,M10.5.0/3") and makes
// the runtime read it again.
ZEL_API void SetTimeZone(const char *tz);

// ---------------------------------------------------------------------------------------------
// Thread-local slots (TlsAlloc and friends). A slot holds one pointer per thread, null at first.

inline constexpr uint32_t kNoTlsSlot = 0xFFFFFFFF;

// Allocates a slot; kNoTlsSlot on failure.
ZEL_API uint32_t TlsAlloc();
// Frees a slot; false on failure.
ZEL_API bool TlsFree(uint32_t slot);
// The calling thread's value in the slot.
ZEL_API void *TlsGet(uint32_t slot);
// Stores the calling thread's value; false on failure. Storing a non-null value on Linux also
// makes sure ThreadDetaching runs when this thread ends (see Module and thread lifetime).
ZEL_API bool TlsSet(uint32_t slot, void *value);

// ---------------------------------------------------------------------------------------------
// Handles and waits.
//
// A handle names a waitable object: an event, a semaphore, a waitable timer or a thread. On
// Windows it is the system's HANDLE; on Linux it points to this layer's own reference-counted
// object, and the wait functions reproduce the Windows semantics (including alertable waits and
// APCs). Null and kInvalidHandle (all ones) are never valid handles.

using Handle = void *;
inline Handle const kInvalidHandle = reinterpret_cast<Handle>(~uintptr_t{0});
// The pseudo-handle of the calling thread (GetCurrentThread); valid only in the thread functions.
inline Handle const kCurrentThread = reinterpret_cast<Handle>(~uintptr_t{1});

inline bool IsHandle(Handle h) { return h != nullptr && h != kInvalidHandle; }

// Wait results, with their Windows values.
inline constexpr uint32_t kWaitObject0 = 0x00000000;       // + index of the signalled object
inline constexpr uint32_t kWaitAbandoned0 = 0x00000080;    // + index of an abandoned mutex
inline constexpr uint32_t kWaitIoCompletion = 0x000000C0;  // the wait ended because APCs ran
inline constexpr uint32_t kWaitTimeout = 0x00000102;
inline constexpr uint32_t kWaitFailed = 0xFFFFFFFF;
// A time-out that never passes.
inline constexpr uint32_t kInfinite = 0xFFFFFFFF;
// The most handles one wait accepts (MAXIMUM_WAIT_OBJECTS).
inline constexpr int kMaxWaitObjects = 64;

// Closes a handle; false (and the last error set) when it is not a handle.
ZEL_API bool CloseHandle(Handle h);

// Waits until `h` is signalled, `ms` pass, or (when `alertable`) APCs queued to the calling thread
// have run. Returns kWaitObject0, kWaitTimeout, kWaitIoCompletion or kWaitFailed. Waiting
// consumes an auto-reset event's signal, one unit of a semaphore and an auto-reset timer's signal.
ZEL_API uint32_t WaitOne(Handle h, uint32_t ms, bool alertable);

// Waits on `count` handles (1 to kMaxWaitObjects): for any one of them (the lowest signalled index
// wins, and only that one is consumed), or with `wait_all` for all of them at once (all consumed
// together). Returns kWaitObject0 + index (kWaitObject0 for wait_all), kWaitAbandoned0 + index,
// kWaitTimeout, kWaitIoCompletion or kWaitFailed.
ZEL_API uint32_t WaitMany(int count, const Handle *handles, bool wait_all, uint32_t ms,
                          bool alertable);

// Sleeps `ms` milliseconds; when `alertable`, returns early with kWaitIoCompletion after running
// queued APCs. Returns 0 when the time passed.
ZEL_API uint32_t SleepEx(uint32_t ms, bool alertable);

// Events. A manual-reset event stays signalled until reset; an auto-reset event releases one
// waiter and resets itself. Pulse releases the threads waiting at that moment (one for an
// auto-reset event) and leaves the event reset. All return null / false on failure. On Windows a
// `name` makes the event one that every process naming it shares (an existing one is opened as it
// is); Linux events belong to their process and the name is ignored.
ZEL_API Handle CreateEvent(bool manual_reset, bool initially_set, const char *name = nullptr);
ZEL_API bool SetEvent(Handle event);
ZEL_API bool ResetEvent(Handle event);
ZEL_API bool PulseEvent(Handle event);

// Semaphores. Release fails, changing nothing, when it would raise the count above `maximum`;
// `previous` (may be null) receives the count before the release.
ZEL_API Handle CreateSemaphore(int32_t initial, int32_t maximum);
ZEL_API bool ReleaseSemaphore(Handle semaphore, int32_t count, int32_t *previous);

// Waitable timers. `due` is in 100-ns units: negative means relative to now, positive an absolute
// system time on the FILETIME scale. `period_ms` > 0 makes the timer periodic. Arming resets the
// timer's signal. With a `routine`, each expiry also queues the routine as an APC to the thread
// that armed the timer; it runs there during an alertable wait, with `arg` and the expiry's
// system time split into its low and high 32 bits. Closing a timer cancels it.
using TimerRoutine = void(ZEL_CALLBACK *)(void *arg, uint32_t time_low, uint32_t time_high);
ZEL_API Handle CreateWaitableTimer(bool manual_reset);
ZEL_API bool SetWaitableTimer(Handle timer, int64_t due, int32_t period_ms, TimerRoutine routine,
                              void *arg);
ZEL_API bool CancelWaitableTimer(Handle timer);

// ---------------------------------------------------------------------------------------------
// Threads. A thread handle is signalled when its thread ends.

using ThreadRoutine = unsigned(ZEL_CALLBACK *)(void *arg);
using ApcRoutine = void(ZEL_CALLBACK *)(uintptr_t arg);

// Thread priorities, with their Windows values.
inline constexpr int kPriorityIdle = -15;
inline constexpr int kPriorityLowest = -2;
inline constexpr int kPriorityBelowNormal = -1;
inline constexpr int kPriorityNormal = 0;
inline constexpr int kPriorityAboveNormal = 1;
inline constexpr int kPriorityHighest = 2;
inline constexpr int kPriorityTimeCritical = 15;
inline constexpr int kPriorityError = 0x7FFFFFFF;  // GetThreadPriority's failure value

// Starts a thread running routine(arg) (through _beginthreadex on Windows). `stack_size` 0 means
// the default; small sizes are raised to the system's minimum. With `suspended` the routine does
// not start before ResumeThread. Stores the thread's id through `thread_id` when it is not null.
// Returns the thread's handle, or null.
ZEL_API Handle CreateThread(ThreadRoutine routine, void *arg, uint32_t stack_size, bool suspended,
                            uint32_t *thread_id);
// Lowers the thread's suspend count by one, starting it at 0; returns the count before the call,
// or 0xFFFFFFFF on failure.
ZEL_API uint32_t ResumeThread(Handle thread);
// Sets or reads a thread's priority (one of the kPriority values; kCurrentThread is accepted).
// Linux has no per-thread priorities for ordinary threads: the value is kept and mapped to the
// thread's nice value where the process may do so (lowering always, raising with privilege).
ZEL_API bool SetThreadPriority(Handle thread, int priority);
ZEL_API int GetThreadPriority(Handle thread);
// A real handle to the calling thread (DuplicateHandle of GetCurrentThread, same access); null
// on failure. The handle keeps naming the thread after it ends, and is then signalled.
ZEL_API Handle DuplicateCurrentThread();
// Queues routine(arg) to run on `thread` at its next alertable wait, after the APCs queued before
// it. False when the handle is not a thread or the thread has ended.
ZEL_API bool QueueApc(ApcRoutine routine, Handle thread, uintptr_t arg);

// ---------------------------------------------------------------------------------------------
// Hardware faults as exceptions.

// Called on the faulting thread, from the fault, with its Windows exception code (0xC0000005 for
// an access violation, 0xC0000094 for an integer division by zero, ...); expected to throw.
using FaultThrower = void (*)(uint32_t code);

// Makes faults on the calling thread call `thrower`. Linux: SIGSEGV, SIGBUS, SIGFPE and SIGILL,
// through process-wide handlers made on first use; a fault on a thread that has not enabled
// translation goes to the handler that was installed before, or ends the process. The exception
// can leave the faulting code only where that was compiled with -fnon-call-exceptions. Returns
// false where the platform cannot do it (MinGW has no way to throw from a structured exception).
ZEL_API bool EnableFaultTranslation(FaultThrower thrower);

// ---------------------------------------------------------------------------------------------
// Files and paths.

// The separator added to a directory that lacks one ("\" and "/" are both read as separators).
#if defined(_WIN32)
inline constexpr char kPathSeparator = '\\';
#else
inline constexpr char kPathSeparator = '/';
#endif

// Writes the running executable's full path into `buf` (at most `cap` - 1 characters and a NUL)
// and returns its full length, which may exceed what fitted; 0 on failure.
ZEL_API int ExecutablePath(char *buf, int cap);

// Writes the full path of a loaded module into `buf` (NUL-terminated) and returns its length; 0
// on failure or when the path needs more than `cap` - 1 characters. `module` is what ThisModule
// or LoadLibrary returned, or null for the executable (GetModuleFileNameA; on Linux the loader's
// name of the shared object, and the executable's path for the main program).
ZEL_API int ModuleFileName(void *module, char *buf, int cap);

// Files. A file handle is the system's HANDLE on Windows; on Linux it points to this layer's own
// record of an open descriptor. Null is never a file handle (OpenFile returns null, never
// kInvalidHandle, on failure); a file handle is closed with CloseFile, not CloseHandle. Paths are
// NUL-terminated, and "\" and "/" both separate directories (Linux turns "\" into "/").

// Desired access, share modes, creation dispositions and attribute flags of OpenFile, with their
// Windows values.
inline constexpr uint32_t kGenericRead = 0x80000000;
inline constexpr uint32_t kGenericWrite = 0x40000000;
inline constexpr uint32_t kShareRead = 0x1;
inline constexpr uint32_t kShareWrite = 0x2;
inline constexpr uint32_t kShareDelete = 0x4;
inline constexpr uint32_t kCreateNew = 1;         // creates; fails when the file exists
inline constexpr uint32_t kCreateAlways = 2;      // creates, or empties an existing file
inline constexpr uint32_t kOpenExisting = 3;      // opens; fails when the file is missing
inline constexpr uint32_t kOpenAlways = 4;        // opens, creating a missing file
inline constexpr uint32_t kTruncateExisting = 5;  // opens and empties; fails when it is missing
inline constexpr uint32_t kFlagSequentialScan = 0x08000000;
inline constexpr uint32_t kFlagRandomAccess = 0x10000000;
inline constexpr uint32_t kFlagOverlapped = 0x40000000;

// Opens or creates the file `path` (CreateFileA, no security attributes, no template) with
// `access` (kGenericRead and/or kGenericWrite), `share` (what other handles of the file may do
// meanwhile), `disposition` and the attribute `flags`. A directory is not opened. The open is
// refused as a sharing violation (nothing is created or emptied) when another open handle of the
// file does not share the access asked for, or has an access that `share` does not allow. Linux:
// that violation is EBUSY and is seen between the handles of this process only, share-delete is
// not checked, the two hints become posix_fadvise advice and kFlagOverlapped is ignored. Returns
// the handle, or null with the last error set.
ZEL_API Handle OpenFile(const char *path, uint32_t access, uint32_t share, uint32_t disposition,
                        uint32_t flags);
// Closes a file handle; false (and the last error set) when it is not one.
ZEL_API bool CloseFile(Handle file);
// Reads up to `n` bytes at the file pointer and moves it past them (ReadFile); `*done` receives
// the count, fewer than `n` only at the end of the file. False on a system error, `*done` then
// counting the bytes read before it.
ZEL_API bool ReadFile(Handle file, void *buf, int n, int *done);
// Writes `n` bytes at the file pointer and moves it past them (WriteFile); `*done` receives the
// count. False on a system error, `*done` then counting the bytes written before it.
ZEL_API bool WriteFile(Handle file, const void *buf, int n, int *done);

// Origins of SeekFile, with their Windows values (FILE_BEGIN, FILE_CURRENT, FILE_END).
inline constexpr int kFileBegin = 0;
inline constexpr int kFileCurrent = 1;
inline constexpr int kFileEnd = 2;
// Moves the file pointer by `distance` from `origin` (SetFilePointer with its high word) and
// stores the new position through `position` when it is not null. A position before the start
// fails and leaves the pointer where it was; one past the end is allowed. False on failure.
ZEL_API bool SeekFile(Handle file, int64_t distance, int origin, int64_t *position);
// The file's size in bytes (GetFileSize with its high word); -1, with the last error set, on
// failure.
ZEL_API int64_t FileSize(Handle file);
// Writes what the system holds of the file to the device (FlushFileBuffers). Fails for a handle
// opened without write access.
ZEL_API bool FlushFile(Handle file);

// Creates one directory (CreateDirectoryA); false, with the last error set, when it exists
// already or its parent is missing.
ZEL_API bool CreateDirectory(const char *path);
// Is `path` an existing directory? Keeps the last error.
ZEL_API bool IsDirectory(const char *path);

// ---------------------------------------------------------------------------------------------
// The registry: keys under HKEY_LOCAL_MACHINE and their string values.
//
// Windows: advapi32 (RegOpenKeyExA, RegCreateKeyExA, RegQueryValueExA, RegSetValueExA). Linux: a
// directory tree under $ZEL_REGISTRY (read at each open), or /etc/zel/registry when it is unset:
// the key "Software\Quendari" is the directory <root>/HKEY_LOCAL_MACHINE/Software/Quendari, and a
// string value is the file of its name in it, holding the value's bytes (no terminator, no
// newline).

// Opens HKEY_LOCAL_MACHINE\`subkey` for reading, or with `create` opens it for reading and
// writing, creating it and the missing keys above it. Returns the key, or null with the last
// error set.
ZEL_API void *RegistryOpen(const char *subkey, bool create);
// Closes a key from RegistryOpen; null is ignored.
ZEL_API void RegistryClose(void *key);
// Copies the string value `name` of `key` into `buf` (at most `cap` - 1 characters and a NUL)
// and returns its full length, which may exceed what fitted; -1, with the last error set, when
// the value is missing or not a string.
ZEL_API int RegistryGetString(void *key, const char *name, char *buf, int cap);
// Sets the string value `name` of `key` to the `length` characters at `value`; false, with the
// last error set, on failure (a key opened without `create` cannot be written).
ZEL_API bool RegistrySetString(void *key, const char *name, const char *value, int length);

// ---------------------------------------------------------------------------------------------
// The environment.

// Sets the process's environment variable `name` to `value`, or removes it when `value` is null or
// empty (the Windows runtime holds no empty variables), so that the C runtime's getenv sees the
// change. False on failure.
ZEL_API bool SetEnvironment(const char *name, const char *value);

// ---------------------------------------------------------------------------------------------
// Loading other libraries, each with its own symbols as Windows does (on Linux a library loaded
// here binds its own symbols first and adds none to the process's global scope).

// Loads a library (LoadLibraryA / dlopen); null, with the last error set, on failure.
ZEL_API void *LoadLibrary(const char *name);
// The address of an exported symbol of a loaded library, or null.
ZEL_API void *GetProcAddress(void *library, const char *name);
// Unloads a library loaded by LoadLibrary.
ZEL_API bool FreeLibrary(void *library);

// ---------------------------------------------------------------------------------------------
// The locale's number separators.

// Sets `decimal` and `thousands` to the user's decimal and thousands separators. Windows asks
// GetLocaleInfoA for the size under the user default locale and reads the text under the system
// default locale (LOCALE_SDECIMAL, LOCALE_STHOUSAND); Linux reads the C library's data for the
// current numeric locale (nl_langinfo: "." and "" in the "C" locale). Empty where none is known.
ZEL_API void LocaleSeparators(cstring &decimal, cstring &thousands);

// ---------------------------------------------------------------------------------------------
// Debugger and console.

// Hands NUL-terminated text to an attached debugger (OutputDebugStringA). Linux has no such
// channel: the text goes where the environment variable ZEL_DEBUG_OUTPUT says ("stderr", or a
// file path to append to) and is dropped when it is unset.
ZEL_API void DebugOutput(const char *text);
// Writes `length` characters to the process's standard output; false on failure.
ZEL_API bool ConsoleWrite(const char *text, int length);
// Is standard output a terminal (a console window on Windows) rather than a file or a pipe?
ZEL_API bool ConsoleIsTerminal();

// ---------------------------------------------------------------------------------------------
// A pollable wake-up for an application's own event loop: the Linux external-loop mode watches an
// eventfd; on Windows it is a manual-reset event that a message loop can wait on
// (MsgWaitForMultipleObjects). Signals coalesce until drained.

class ZEL_API WakePort {
 public:
  WakePort() = default;
  ~WakePort() { Close(); }
  WakePort(const WakePort &) = delete;
  WakePort &operator=(const WakePort &) = delete;

  // Creates the descriptor; false on failure. An open port is closed first.
  bool Open();
  void Close();
  bool IsOpen() const { return native_ != -1; }
  // Makes the descriptor readable (signalled) until the next Drain. Any thread.
  void Signal();
  // Clears the signal; true when it was set.
  bool Drain();
  // The file descriptor (Linux) or event HANDLE (Windows) to watch.
  intptr_t Native() const { return native_; }

 private:
  intptr_t native_ = -1;
};

// ---------------------------------------------------------------------------------------------
// The message window of a Scheduler's window mode.
//
// Windows: a hidden window (class "static", empty title, 1 by 1 pixel, no parent; a message-only
// window where no display can be had) made on the calling thread. The messages that thread's message loop dispatches to it reach `handler`: those
// posted with Post, and kTimerMessage (wparam 1) each time the timer set with SetTimer expires;
// then they go on to the window's own procedure. Linux has no windows: posted messages wait in a
// queue, and Descriptor(), an eventfd, becomes readable when a message is posted or the timer is
// set from another thread. The application's event loop (poll, epoll, GLib, Qt) watches it and
// calls Dispatch on the window's thread, which hands the waiting messages to `handler`; the timer
// itself is the loop's business (its time-out).

class ZEL_API MessageWindow {
 public:
  using Handler = void (*)(void *context, uint32_t message, uintptr_t wparam, intptr_t lparam);
  static constexpr uint32_t kUserMessage = 0x0400;   // WM_USER
  static constexpr uint32_t kTimerMessage = 0x0113;  // WM_TIMER

  // The platform's part of an open window.
  struct State;

  MessageWindow() = default;
  ~MessageWindow() { Destroy(); }
  MessageWindow(const MessageWindow &) = delete;
  MessageWindow &operator=(const MessageWindow &) = delete;

  // Makes the window on the calling thread (a window made before is destroyed first); false when
  // it cannot.
  bool Create(Handler handler, void *context);
  // Destroys the window; messages still on their way are dropped.
  void Destroy();
  bool IsOpen() const { return state_ != nullptr; }
  // Posts a message (PostMessageA). Any thread.
  bool Post(uint32_t message, uintptr_t wparam, intptr_t lparam);
  // Sets timer 1 to expire every `ms` milliseconds (SetTimer). Any thread.
  bool SetTimer(uint32_t ms);
  // Linux: the descriptor to watch; Windows: -1.
  intptr_t Descriptor() const;
  // Linux: hands the waiting messages to the handler, in order; Windows: nothing.
  void Dispatch();

 private:
  State *state_ = nullptr;
};

// Posts the quit message to the calling thread's message loop (PostQuitMessage); nothing on Linux.
ZEL_API void PostQuitMessage(int code);
// Windows: runs the calling thread's message loop for `ms` milliseconds, alertably (queued APCs
// run too); false, at once, when the quit message arrives. Linux: an alertable sleep of `ms`.
ZEL_API bool PumpMessages(uint32_t ms);
// Linux: waits until `descriptor` is readable or `ms` milliseconds pass (-1: no limit); true when
// readable. Windows: false.
ZEL_API bool WaitReadable(intptr_t descriptor, int ms);

// ---------------------------------------------------------------------------------------------
// Module and thread lifetime.
//
// The platform's entry points call these functions, which the portable library defines. Windows
// calls them from DllMain for every thread that starts and ends in the process after the library
// was loaded (a static build on Windows behaves as Linux does). Linux calls ThreadAttached at the
// start of every thread made by CreateThread, and ThreadDetaching, through a thread_local object's
// destructor, when a thread ends that was made by CreateThread or that stored a value with TlsSet.
// Neither is called for the thread that ends the process.

void ThreadAttached();
void ThreadDetaching();

// The handle of the loaded library: its HINSTANCE, as DllMain received it, or on Linux the base
// address of the shared object. In a static build, the executable's.
ZEL_API void *ThisModule();

}  // namespace zel::os
