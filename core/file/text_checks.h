// What the whole-file readers do to a text after reading it.
#pragma once

#include <zel/text/cstring.h>

namespace zel::file {

// Does the text begin with the UTF-16LE byte-order mark FF FE?
bool StartsWithUnicodeMark(const strptr &text);

// Narrows UTF-16LE text (the mark, an even length, every unit below 256) in place to one byte per
// unit without the mark, logging "Note: converted Unicode text to ASCII\r\n" when the log listens.
// Any other text is left as it is.
void NarrowUnicode(cstring &text);

// Does the text hold a zero byte?
bool HasZero(const strptr &text);

// The message of a text holding a zero byte.
inline constexpr const char *kZeroMessage = "Text contains invalid (zero) characters";

}  // namespace zel::file
