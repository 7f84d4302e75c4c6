// ThreadLocalString: a scratch cstring on loan from the calling thread's pool.
#pragma once

#include <zel/text/cstring.h>

namespace zel {

// Lends an empty scratch string from a per-thread pool for the lifetime of the object, so that
// building a message (an error to throw, a log line) on a busy thread reuses buffers. The pool
// keeps at most 5 spare strings; more are freed when returned. Use it on the thread that made it.
//
//   ThreadLocalString message;
//   *message << "Cannot open " << name;
class ZEL_API ThreadLocalString {
 public:
  ThreadLocalString();
  ~ThreadLocalString();
  ThreadLocalString(const ThreadLocalString &) = delete;
  ThreadLocalString &operator=(const ThreadLocalString &) = delete;

  cstring &operator*() const { return *string_; }
  cstring *operator->() const { return string_; }
  cstring &get() const { return *string_; }
  operator strptr() const { return string_->view(); }

  // The most spare strings a thread keeps.
  static constexpr int kLimit = 5;

 private:
  cstring *string_;
};

}  // namespace zel
