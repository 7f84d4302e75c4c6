// LogCapture: a log client that keeps what it receives, for tests.
#pragma once

#include <zel/diag/log.h>
#include <zel/thread/critsect.h>

#include <string>
#include <vector>

namespace zel::test {

// Registered for its lifetime; keeps every line it receives.
class LogCapture : public LogClient {
 public:
  LogCapture() { AddLogClient(this); }
  ~LogCapture() override { RemoveLogClient(this); }

  void Write(const strptr &text) override {
    CritSectLock hold(lock_);
    lines_.emplace_back(text.text(), static_cast<size_t>(text.length()));
  }
  std::vector<std::string> Lines() {
    CritSectLock hold(lock_);
    return lines_;
  }

 private:
  CritSect lock_;
  std::vector<std::string> lines_;
};

}  // namespace zel::test
