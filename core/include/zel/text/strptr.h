// strptr, the library's view of 8-bit text, and Range, a stretch of positions.
#pragma once

#include <zel/config.h>

#include <string>
#include <string_view>

namespace zel {

// A half-open stretch [begin, end) of character positions. A range with end < begin is empty.
struct Range {
  int begin = 0;
  int end = 0;

  constexpr int Length() const { return end > begin ? end - begin : 0; }
  constexpr bool operator==(const Range &) const = default;
};

// A view of `length` characters at `text`: it owns nothing, and the text need not end in a NUL.
// The text may be null when the length is 0. Comparisons work on characters as signed 8-bit
// values and fold only the ASCII letters A-Z to a-z; no operation depends on the locale.
// Positions are not range-checked except where a comment says so.
class ZEL_API strptr {
 public:
  constexpr strptr() = default;
  // A view of the NUL-terminated `text` (its length counted up to the NUL); null gives "".
  constexpr strptr(const char *text)
      : text_(text), length_(text ? static_cast<int>(std::char_traits<char>::length(text)) : 0) {}
  constexpr strptr(const char *text, int length) : text_(text), length_(length) {}
  constexpr strptr(std::string_view v) : text_(v.data()), length_(static_cast<int>(v.size())) {}

  constexpr const char *text() const { return text_; }
  // The viewed characters for writing, for views of writable memory (such as the gaps that
  // cstring::AddN and cstring::InsertRegion return).
  constexpr char *writable_text() const { return const_cast<char *>(text_); }
  constexpr int length() const { return length_; }
  constexpr bool empty() const { return length_ == 0; }
  constexpr char operator[](int i) const { return text_[i]; }
  constexpr const char *begin() const { return text_; }
  constexpr const char *end() const { return text_ + length_; }
  constexpr std::string_view view() const { return {text_, static_cast<size_t>(length_)}; }

  // Sub-views; positions and counts are clamped to the view.
  [[nodiscard]] strptr Left(int n) const { return strptr(text_, Clamp(n)); }
  [[nodiscard]] strptr Right(int n) const { return strptr(text_ + length_ - Clamp(n), Clamp(n)); }
  [[nodiscard]] strptr Mid(int from) const {
    return strptr(text_ + Clamp(from), length_ - Clamp(from));
  }
  [[nodiscard]] strptr Mid(int from, int n) const {
    int start = Clamp(from);
    int count = n < 0 ? 0 : (n > length_ - start ? length_ - start : n);
    return strptr(text_ + start, count);
  }
  [[nodiscard]] strptr Sub(const Range &r) const { return Mid(r.begin, r.end - r.begin); }

  // Position of the first occurrence of `what` at or after `from`, or -1; -1 also when `what` is
  // empty or longer than this text.
  int FindFrom(const strptr &what, int from = 0, bool case_sensitive = true) const;
  // Position of the first `c` at or after `from`, or -1.
  int FindFrom(char c, int from = 0, bool case_sensitive = true) const;
  // Position of the last `c` strictly before `before`, or -1.
  int ReverseFindFrom(char c, int before, bool case_sensitive = true) const;

  // The view without leading and/or trailing white characters (blank, TAB, LF, CR).
  [[nodiscard]] strptr Trimmed() const;
  [[nodiscard]] strptr TrimmedLeft() const;
  [[nodiscard]] strptr TrimmedRight() const;

  // Orderings: the difference of the first differing characters (signed, folded when not case
  // sensitive) or, when one text is a prefix of the other, this length minus the other's.
  int CompareCase(const strptr &other) const;
  int CompareNoCase(const strptr &other) const;
  int Compare(const strptr &other, bool case_sensitive) const {
    return case_sensitive ? CompareCase(other) : CompareNoCase(other);
  }
  // Natural ordering: letters folded, runs of digits compared by value (file9 < file10), with
  // the full lengths deciding once either text runs out (a01 > a1).
  int CompareNoCaseNum(const strptr &other) const;

  bool Equal(const strptr &other, bool case_sensitive = true) const;
  bool EqualNoCase(const strptr &other) const { return Equal(other, false); }
  bool StartsWithQ(const strptr &prefix, bool case_sensitive = true) const;
  bool EndsWithQ(const strptr &suffix, bool case_sensitive = true) const;

  // Change the viewed characters in place (a-z / A-Z only); the memory must be writable.
  void MakeUpper() const;
  void MakeLower() const;

 private:
  constexpr int Clamp(int n) const { return n < 0 ? 0 : (n > length_ ? length_ : n); }

  const char *text_ = nullptr;
  int length_ = 0;
};

// Case-sensitive equality of the characters.
inline bool operator==(const strptr &a, const strptr &b) { return a.Equal(b); }

// ASCII-only case folding, independent of the locale.
constexpr char ToLowerAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }
constexpr char ToUpperAscii(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; }

// Compares two NUL-terminated texts with the ASCII letters folded, on unsigned bytes (unlike the
// strptr comparisons, which are signed; intended), up to the first NUL of `a` or the first
// difference; returns the difference of the folded bytes.
ZEL_API int CompareStringsNoCase(const char *a, const char *b);

}  // namespace zel
