// The tool's console log client.
#include "console_log.h"

#include <zel/text/charset.h>
#include <zel/text/cstring.h>
#include <zel/text/string_iter.h>

#include <cstdio>

namespace zelcore {

namespace {

// Splits a leading marker off `line`; returns the ANSI colour sequence it stands for ("" for
// none) and leaves `line` as the text after the marker.
zel::cstring TakeMarker(zel::strptr &line) {
  zel::cstring colour;
  if (line.length() < 2 || line[0] != '%') return colour;
  const char kind = line[1];
  int end = line.FindFrom(": ", 2);
  if (kind == 'W' || kind == 'E' || kind == 'N') {
    if (end != 2) return colour;
    colour = kind == 'W' ? "\x1b[33m" : kind == 'E' ? "\x1b[31m" : "\x1b[36m";
  } else if (kind == 'C' && end == 8) {
    for (int i = 2; i < 8; ++i)
      if (!zel::HexCharQ(line[i])) return colour;
    auto byte = [&](int at) {
      return zel::StringIter::HexCharToInt(line[at], 0) * 16 +
             zel::StringIter::HexCharToInt(line[at + 1], 0);
    };
    colour << "\x1b[38;2;" << byte(2) << ';' << byte(4) << ';' << byte(6) << 'm';
  } else if ((kind == 'I' || kind == 'f') && end > 2) {
    colour = "\x1b[2m";
    return colour;  // the cell marker stays visible, dimmed
  } else {
    return colour;
  }
  line = line.Mid(end + 2);
  return colour;
}

}  // namespace

ConsoleLog::ConsoleLog() : colours_(zel::SysConsole::IsTerminal()) { zel::AddLogClient(this); }

ConsoleLog::~ConsoleLog() { zel::RemoveLogClient(this); }

void ConsoleLog::Write(const zel::strptr &text) {
  zel::strptr line = text;
  zel::cstring colour = TakeMarker(line);
  zel::cstring out;
  if (colours_ && !colour.empty()) out << colour;
  out << line.TrimmedRight();
  if (colours_ && !colour.empty()) out << "\x1b[0m";
  out << '\n';
  // One write per line: lines logged by several threads at once do not interleave.
  std::fwrite(out.text(), 1, static_cast<size_t>(out.length()), stdout);
}

}  // namespace zelcore
