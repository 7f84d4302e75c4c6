// Debugger output: serialised, in pieces, paced.
#include "diag/debugger.h"

#include <zel/diag/log.h>
#include <zel/text/cstring.h>
#include <zel/thread/critsect.h>

#include "os/os.h"

#include <cmath>
#include <cstring>

namespace zel {

namespace {

constexpr int kPiece = 512;

// The process-wide lock of debugger output and the buffer that terminates each piece. Its guard
// word tells whether it is alive: "tini" from its construction at load to its destruction at
// unload, when it becomes "daed".
struct DebuggerChannel {
  DebuggerChannel() { std::memcpy(guard, "tini", 4); }
  ~DebuggerChannel() { std::memcpy(guard, "daed", 4); }
  bool Alive() const { return std::memcmp(guard, "tini", 4) == 0; }

  char guard[4] = {};
  CritSect lock;
  char piece[kPiece + 1];
};
DebuggerChannel g_channel;

}  // namespace

void SendInPieces(const strptr &text, void (*output)(const char *), void (*pause)(uint32_t ms)) {
  for (int at = 0; at < text.length(); at += kPiece) {
    int n = text.length() - at < kPiece ? text.length() - at : kPiece;
    std::memcpy(g_channel.piece, text.text() + at, static_cast<size_t>(n));
    g_channel.piece[n] = 0;
    output(g_channel.piece);
    pause(static_cast<uint32_t>(std::lround(n * 0.01953125)));
  }
}

void BetterOutputDebugString(const strptr &text) {
  if (!g_channel.Alive()) {
    // Before the channel is made or after it is gone: at once, in one piece.
    cstring copy(text);
    os::DebugOutput(copy.text());
    return;
  }
  CritSectLock hold(g_channel.lock);
  SendInPieces(text, os::DebugOutput, os::Sleep);
}

}  // namespace zel
