// Character tests shared by the views and the readers of text.
#pragma once

namespace zel::text {

// White space of the readers: exactly blank, TAB, LF and CR.
constexpr bool IsWhite(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

// The value of a decimal digit; above 9 for every other character.
constexpr unsigned DigitValue(char c) { return static_cast<unsigned char>(c) - unsigned{'0'}; }

}  // namespace zel::text
