// ConsoleLog: the tool's log client, which shows log lines on the console with their markers as
// colours.
#pragma once

#include <zel/diag/log.h>

namespace zelcore {

// Writes every log line to standard output. A leading marker becomes a colour when the output is
// a terminal ("%W: " yellow, "%E: " red, "%N: " cyan, "%Crrggbb: " that colour) and is dropped
// otherwise; cell markers ("%I<id>: ", "%f<id>: ") are shown dimmed.
class ConsoleLog : public zel::LogClient {
 public:
  ConsoleLog();
  ~ConsoleLog() override;
  void Write(const zel::strptr &text) override;

 private:
  bool colours_;
};

}  // namespace zelcore
