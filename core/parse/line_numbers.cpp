// Line numbers of positions: the lazily built table of line starts, and the table-free count.
#include <zel/parse/line_numbers.h>

#include <algorithm>

namespace zel {

void LineNumbers::Set(const strptr &text) {
  text_ = text;
  starts_.Flush();
  scanned_ = 0;
}

void LineNumbers::Extend(const strptr &text) {
  const int old_length = text_.length();
  // A CR that ended the old text may now be the first half of a CR LF: the line after it starts
  // one character later.
  if (scanned_ == old_length && old_length > 0 && text_[old_length - 1] == '\r' &&
      text.length() > old_length && text[old_length] == '\n') {
    ++scanned_;
    ++starts_.Last();
  }
  text_ = text;
}

void LineNumbers::Step() {
  const char c = text_[scanned_++];
  if (c == '\r' && scanned_ < text_.length() && text_[scanned_] == '\n') {
    ++scanned_;
  } else if (c != '\r' && c != '\n') {
    return;
  }
  starts_.Add(scanned_);
}

void LineNumbers::ProcessUpToLine(int line) {
  Begin();
  while (starts_.Count() <= line && scanned_ < text_.length()) Step();
}

void LineNumbers::ProcessUpToChar(int pos) {
  Begin();
  if (pos > text_.length()) pos = text_.length();
  while (scanned_ < pos) Step();
}

int LineNumbers::GetLineNumber(int pos) {
  pos = std::clamp(pos, 0, text_.length());
  ProcessUpToChar(pos);
  const int *after = std::upper_bound(starts_.begin(), starts_.end(), pos);
  return static_cast<int>(after - starts_.begin()) - 1;
}

int LineNumbers::GetLineStart(int line) {
  if (line < 0) return -1;
  ProcessUpToLine(line);
  return line < starts_.Count() ? starts_[line] : -1;
}

strptr LineNumbers::GetLine(int line) {
  const int start = GetLineStart(line);
  if (start < 0) return strptr();
  int end = start;
  while (end < text_.length() && text_[end] != '\n' && text_[end] != '\r') ++end;
  return text_.Mid(start, end - start);
}

int GetLineNumber(const strptr &text, int pos) {
  pos = std::clamp(pos, 0, text.length());
  int line = 0;
  for (int i = 0; i < pos; ++i) {
    // The CR of a CR LF is not a line end of its own.
    if (text[i] == '\n' || (text[i] == '\r' && (i + 1 == text.length() || text[i + 1] != '\n')))
      ++line;
  }
  return line;
}

}  // namespace zel
