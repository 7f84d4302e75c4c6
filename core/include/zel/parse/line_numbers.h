// LineNumbers: turns character positions of a text into line numbers, with a table of line starts
// that is built lazily, only as far as the questions asked need it.
#pragma once

#include <zel/mem/tary.h>
#include <zel/text/strptr.h>

namespace zel {

// Line numbers and line starts of one text (not owned). A line ends at "\r\n", a lone "\r" or a
// lone "\n"; every line end begins a new line, so "a\n" has two lines, the second empty. Lines are
// numbered from 0. Nothing is allocated until a question needs the table.
class ZEL_API LineNumbers {
 public:
  LineNumbers() = default;
  LineNumbers(const LineNumbers &) = delete;
  LineNumbers &operator=(const LineNumbers &) = delete;

  // Starts over with `text`; the table is emptied (its memory kept).
  void Set(const strptr &text);
  // `text` is the same text grown at its end (it may have moved): what is known is kept.
  void Extend(const strptr &text);

  // The line of `pos` (0-based); positions are clamped to 0..length, and the end of the text is
  // on the last line.
  int GetLineNumber(int pos);
  // The position where `line` begins, or -1 when the text has no such line.
  int GetLineStart(int line);
  // The text of `line` without its line end; empty when the text has no such line.
  strptr GetLine(int line);

  // Extend the table until it knows the start of `line` (or the text ends).
  void ProcessUpToLine(int line);
  // Extend the table over the characters before `pos`.
  void ProcessUpToChar(int pos);
  // The number of lines found so far: all of them once the table covers the whole text.
  int LineCount() const { return starts_.Count(); }

 private:
  // Makes sure the start of line 0 is known.
  void Begin() {
    if (starts_.empty()) starts_.Add(0);
  }
  // Looks at the character at scanned_ (and the LF of a CR LF); after a line end, records the
  // start of the next line.
  void Step();

  strptr text_;
  TAry<int> starts_;  // starts of the lines found so far; starts_[0] is 0 once anything is asked
  int scanned_ = 0;   // positions before this have been looked at
};

// The line of `pos` in `text` (0-based, as LineNumbers counts), without building a table.
ZEL_API int GetLineNumber(const strptr &text, int pos);

}  // namespace zel
