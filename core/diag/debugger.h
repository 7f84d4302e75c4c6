// Sending text to the debugger in pieces it can keep up with.
#pragma once

#include <zel/config.h>
#include <zel/text/strptr.h>

#include <cstdint>

namespace zel {

// Sends `text` to `output` in NUL-terminated pieces of at most 512 characters, calling
// `pause(ms)` after each with round(piece length * 0.01953125) ms: 10 ms for a full piece.
ZEL_API void SendInPieces(const strptr &text, void (*output)(const char *),
                          void (*pause)(uint32_t ms));

}  // namespace zel
