// CharSet: a 256-bit set of characters built from a pattern, and the predefined sets.
#pragma once

#include <zel/text/strptr.h>

#include <cstdint>

namespace zel {

// The pattern a CharSet is built from: a backslash makes the next character a literal member; a
// character, a hyphen and another character make an inclusive range (nothing when the first is
// greater than the last); any other character stands for itself. "a-z0-9_" is a typical pattern.
struct CharRange {
  constexpr explicit CharRange(strptr p) : pattern(p) {}
  strptr pattern;
};

// A membership set of the 256 byte values. The test takes the character as a signed byte and
// answers "not a member" for every negative one: bytes 0x80 to 0xFF are never members, whatever
// the pattern says. Every operation is constexpr, so sets can be built at compile time.
class CharSet {
 public:
  constexpr CharSet() = default;
  constexpr explicit CharSet(const CharRange &pattern) { Add(pattern); }

  // The set of the characters of `text`, each taken literally.
  static constexpr CharSet Literal(strptr text) {
    CharSet s;
    for (char c : text) s.AddChar(c);
    return s;
  }

  // Clears the set, then adds the pattern.
  constexpr void Set(const CharRange &pattern) {
    Clear();
    Add(pattern);
  }
  // Clears the set, then adds each character of `text` literally.
  constexpr void Set(const strptr &text) { *this = Literal(text); }
  constexpr void Add(const CharRange &range) {
    const strptr p = range.pattern;
    for (int i = 0; i < p.length(); ++i) {
      if (p[i] == '\\' && i + 1 < p.length()) {
        AddChar(p[++i]);
      } else if (i + 2 < p.length() && p[i + 1] == '-') {
        for (int c = static_cast<unsigned char>(p[i]); c <= static_cast<unsigned char>(p[i + 2]);
             ++c)
          AddChar(static_cast<char>(c));
        i += 2;
      } else {
        AddChar(p[i]);
      }
    }
  }
  constexpr void AddChar(char c) {
    auto u = static_cast<unsigned char>(c);
    bits_[u >> 5] |= uint32_t{1} << (u & 31);
  }
  constexpr void Clear() {
    for (uint32_t &w : bits_) w = 0;
  }

  // Membership; characters with the top bit set are never members.
  constexpr bool operator()(char c) const {
    auto s = static_cast<signed char>(c);
    return s >= 0 && ((bits_[s >> 5] >> (s & 31)) & 1) != 0;
  }
  constexpr bool Contains(char c) const { return (*this)(c); }

  constexpr bool operator==(const CharSet &) const = default;

 private:
  uint32_t bits_[8] = {};
};

// The predefined sets.
inline constexpr CharSet WhiteCharQ = CharSet::Literal(" \t\n\r");
inline constexpr CharSet NewLineCharQ = CharSet::Literal("\n\r");
inline constexpr CharSet DigitCharQ{CharRange("0-9")};
inline constexpr CharSet UpperCharQ{CharRange("A-Z")};
inline constexpr CharSet LowerCharQ{CharRange("a-z")};
inline constexpr CharSet AlphaCharQ{CharRange("a-zA-Z")};
inline constexpr CharSet IdentCharQ{CharRange("0-9a-zA-Z_")};
inline constexpr CharSet IdentStartQ{CharRange("a-zA-Z_")};
inline constexpr CharSet HexCharQ{CharRange("0-9a-fA-F")};
inline constexpr CharSet NumberStartQ{CharRange("0-9.")};
// The pattern writes plus, hyphen and slash in a row, which reads as the range from plus to slash:
// the comma and the full stop are members by that range too (intended).
inline constexpr CharSet WordSeparatorQ{CharRange("\t\n\r []{}(),;~`!@#$%.?'\"=+-/*^&|")};

}  // namespace zel
