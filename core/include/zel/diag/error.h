// The library's exceptions (ExceptionBase, ErrorX, ErrorSE) and the process-wide error prefix.
//
// By convention a function whose name ends in X throws ErrorX on failure, and its namesake without
// X reports failure by its result. Messages with arguments carry the markers "%1" and "%2", filled
// by plain replacement ("Cannot read %1 from file; Error: %2").
#pragma once

#include <zel/text/cstring.h>

#include <cstdint>

namespace zel {

// The root of the library's exceptions.
class ZEL_API ExceptionBase {
 public:
  virtual ~ExceptionBase();
  // Appends a description of the error.
  virtual void Print(cstring &out) const = 0;
};

// A failure described by a text message.
class ZEL_API ErrorX : public ExceptionBase {
 public:
  ErrorX() = default;
  // As Set(text, with_prefix).
  explicit ErrorX(const strptr &text, bool with_prefix = true) { Set(text, with_prefix); }

  // Sets the message: the error prefix (when `with_prefix` and the prefix is not empty; it carries
  // its own punctuation), then `text`. When the "Exceptions" log category is on and the log has a
  // listener, logs "%W: " + the message + "\r\n".
  void Set(const strptr &text, bool with_prefix);
  const cstring &Message() const { return message_; }
  // Appends the message, or "Unknown Error" when it is empty.
  void Print(cstring &out) const override;

 private:
  cstring message_;
};

// Appends the error's message, or "Unknown Error" when it is empty.
ZEL_API cstring &operator<<(cstring &out, const ErrorX &error);

// Throws ErrorX with `message` behind the error prefix.
[[noreturn]] ZEL_API void ThrowErrorX(const strptr &message);

// A hardware fault (an access violation, a division by zero, ...) turned into an exception, with
// its Windows exception code (0xC0000005, 0xC0000094, ...).
class ZEL_API ErrorSE : public ExceptionBase {
 public:
  explicit ErrorSE(uint32_t code) : code_(code) {}

  uint32_t Code() const { return code_; }
  // The description of the code; "Unknown stuctured exception code" (sic) for an unknown one.
  const char *GetDescription() const;
  // Appends the code in hexadecimal ("0xc0000005"), " : " and the description.
  void Print(cstring &out) const override;

 private:
  uint32_t code_;
};

// Makes hardware faults on the calling thread throw ErrorSE. The library does this for the thread
// that loads it and for the threads it starts. Faults become exceptions only in code compiled to
// allow it: gcc's -fnon-call-exceptions (clang has no such option: there a fault ends the
// process). On Linux SIGSEGV, SIGBUS, SIGFPE and SIGILL are translated; a fault on a thread
// without the translator goes to the handler that was there before, or ends the process. MinGW
// has no way to turn structured exceptions into C++ exceptions: there it returns false and does
// nothing.
ZEL_API bool InstallSETranslator();

// The process-wide error prefix: text put in front of messages to name the activity in progress
// ("While loading settings: "). Empty at start. It has no lock: set it on the thread that runs the
// activity.
ZEL_API const cstring &GetErrorPrefix();
ZEL_API void SetErrorPrefix(const strptr &prefix);

// Extends the error prefix by `text` for its lifetime, then restores the previous prefix; nested
// scopes accumulate and unwind in reverse order.
class ZEL_API TempErrorPrefix {
 public:
  explicit TempErrorPrefix(const strptr &text);
  ~TempErrorPrefix();
  TempErrorPrefix(const TempErrorPrefix &) = delete;
  TempErrorPrefix &operator=(const TempErrorPrefix &) = delete;

 private:
  cstring saved_;
};

// The system's text for an error code (or, first, a text registered with AddComErr), trailing
// white characters removed; "" when there is none. Keeps the thread's last error.
ZEL_API temp_cstring errstr(int code);

// Registers a text and returns its new code: 0xFFFF0000 first, then 0xFFFEFFFF and so on
// downwards, reusing discarded codes first. Above 10,000 texts the oldest half is discarded.
ZEL_API int AddComErr(const strptr &text);
// The text registered under `code`, or "".
ZEL_API temp_cstring LookupComErr(int code);

// Logs a failed Boolean system call: when `result` is 0, the last error is set and the log has a
// listener, writes `what` + ": Error: " + the system's text for the last error + "\r\n".
ZEL_API void ApiBoolCheck(int result, const char *what);

}  // namespace zel
