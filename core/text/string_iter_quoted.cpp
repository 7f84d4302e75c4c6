// StringIter: quoted strings and the tokens of command lines.
#include <zel/diag/log.h>
#include <zel/mem/tary.h>
#include <zel/text/string_iter.h>
#include <zel/text/thread_local_string.h>

#include "text/char_tests.h"
#include "text/find_any.h"

#include <cstring>

namespace zel {

namespace {

constexpr bool IsOctal(char c) { return c >= '0' && c <= '7'; }

// Where a quoted string's content ended up.
enum class Content {
  kFailed,
  kInText,  // a stretch of the text, as it stands
  kCopied,  // unescaped, appended to the caller's string
};

// Reads a quoted string over `text`, from `pos` just past the opening `quote`, copying into `copy`
// from the first escape on. `content_start` is where this string's content begins in `copy`.
class QuotedReader {
 public:
  QuotedReader(const strptr &text, int pos, char quote, cstring &copy)
      : text_(text.text()),
        end_(text.length()),
        pos_(pos),
        quote_(quote),
        copy_(copy),
        content_start_(copy.length()) {}

  int position() const { return pos_; }

  // A raw string when a run of "[" and a line end follow the quote; false, having read nothing,
  // when they do not.
  bool MaybeReadRaw(Content &result, strptr &view) {
    int brackets = 0;
    while (pos_ + brackets < end_ && text_[pos_ + brackets] == '[') ++brackets;
    if (brackets == 0) return false;
    StringIter header(text_, end_);
    header.SetPosition(pos_ + brackets);
    if (!header.SkipNewLine()) return false;
    const int start = header.position();
    for (int from = start;;) {
      const void *hit = std::memchr(text_ + from, quote_, static_cast<size_t>(end_ - from));
      if (hit == nullptr) {
        result = Content::kFailed;
        return true;
      }
      const int at = static_cast<int>(static_cast<const char *>(hit) - text_);
      if (ClosesRaw(at, brackets)) {
        view = strptr(text_ + start, at - start);
        pos_ = at + 1 + brackets;
        result = Content::kInText;
        return true;
      }
      from = at + 1;
    }
  }

  // A string with escapes, up to the next unescaped quote.
  Content ReadOneLine(strptr &view) {
    const int start = pos_;
    bool copying = false;
    for (;;) {
      const char *p = zel::text::FindAnyOf(text_ + pos_, text_ + end_, quote_, '\\', '\n', '\r');
      const int stop = static_cast<int>(p - text_);
      if (copying) copy_.AddNonOverlapping(text_ + pos_, stop - pos_);
      if (stop == end_ || *p == '\n' || *p == '\r') return Content::kFailed;
      pos_ = stop + 1;
      if (*p == quote_) {
        // Only escapes kept as they stand leave the content as long as the text it came from.
        if (copying && copy_.length() - content_start_ != stop - start) return Content::kCopied;
        copy_.LimitLength(content_start_);
        view = strptr(text_ + start, stop - start);
        return Content::kInText;
      }
      if (!copying) {
        copying = true;
        copy_.AddNonOverlapping(text_ + start, stop - start);
      }
      if (!AppendEscape()) return Content::kFailed;
    }
  }

 private:
  bool ClosesRaw(int at, int brackets) const {
    if (end_ - (at + 1) < brackets) return false;
    for (int i = 1; i <= brackets; ++i)
      if (text_[at + i] != ']') return false;
    return true;
  }

  // The escape after a backslash at pos_ - 1; false when it fails the string.
  bool AppendEscape() {
    if (pos_ == end_) return false;
    const char c = text_[pos_++];
    if (c == quote_) {
      copy_ << c;
      return true;
    }
    switch (c) {
      case '\\': copy_ << '\\'; return true;
      case 'n': copy_ << '\n'; return true;
      case 'r': copy_ << '\r'; return true;
      case 't': copy_ << '\t'; return true;
      case '\n': return true;  // a line continuation
      case '\r':
        if (pos_ < end_ && text_[pos_] == '\n') ++pos_;
        return true;
      default: break;
    }
    if (IsOctal(c) && end_ - pos_ >= 2 && IsOctal(text_[pos_]) && IsOctal(text_[pos_ + 1])) {
      const int value = (c - '0') * 64 + (text_[pos_] - '0') * 8 + (text_[pos_ + 1] - '0');
      copy_ << static_cast<char>(value & 0xFF);
      pos_ += 2;
      return true;
    }
    if (c == '0') return false;
    WarnWeirdEscape(c);
    copy_ << '\\' << c;
    return true;
  }

  void WarnWeirdEscape(char c) const {
    if (LogCategory::n_global_clients < 1) return;
    ThreadLocalString line;
    *line << "%W: Weird escape character " << c
          << ", string so far: " << copy_.view().Mid(content_start_) << "\r\n";
    PrintLog(*line);
  }

  const char *text_;
  int end_;
  int pos_;
  char quote_;
  cstring &copy_;
  int content_start_;
};

// Reads the quoted string at the iterator's position into `view` or `copy`. On failure the
// position moves to the end and `copy` is as it was.
Content ReadQuoted(StringIter &it, strptr &view, cstring &copy) {
  const char quote = it.Peek();
  if (it.AtEnd() || (quote != '"' && quote != '\'')) {
    it.SetPosition(it.length());
    return Content::kFailed;
  }
  const int copy_length = copy.length();
  QuotedReader reader(strptr(it.text(), it.length()), it.position() + 1, quote, copy);
  Content result;
  if (!reader.MaybeReadRaw(result, view)) result = reader.ReadOneLine(view);
  if (result == Content::kFailed) {
    copy.LimitLength(copy_length);
    it.SetPosition(it.length());
  } else {
    it.SetPosition(reader.position());
  }
  return result;
}

// The characters that end an unquoted token of a command line, as a table: one load per character.
struct WordEnds {
  bool at[256] = {};
  constexpr WordEnds() {
    for (unsigned char c : {' ', '\t', '\r', '\n', ':', '"', '\''}) at[c] = true;
  }
  bool operator()(char c) const { return at[static_cast<unsigned char>(c)]; }
};
constexpr WordEnds kEndsWord;

// Room the strings of a command line's pool are made with: the unescaped texts of a line share
// them, so that a line costs one allocation however many of its values have escapes.
constexpr int kPoolChunk = 256;

// A copy of `text` in the pool: after the last string's text when its buffer has room, else in a
// new string. A string's buffer is never grown, so views into it stay valid.
strptr KeepInPool(TAry<cstring> &pool, const strptr &text) {
  if (pool.empty() || pool.Last().capacity() - 1 - pool.Last().length() < text.length()) {
    pool.Add().Reserve(text.length() > kPoolChunk ? text.length() : kPoolChunk);
  }
  cstring &chunk = pool.Last();
  const int at = chunk.length();
  chunk.AddNonOverlapping(text.text(), text.length());
  return chunk.view().Mid(at);
}

}  // namespace

bool StringIter::ParseString(cstring &out) {
  strptr view;
  const Content result = ReadQuoted(*this, view, out);
  if (result == Content::kInText) out.AddNonOverlapping(view.text(), view.length());
  return result != Content::kFailed;
}

strptr StringIter::ParseCmdArg(TAry<cstring> &pool) {
  while (position_ < length_ && text::IsWhite(text_[position_])) ++position_;
  if (position_ >= length_) return strptr(text_ + length_, 0);
  const char c = text_[position_];
  if (c == '"' || c == '\'') {
    strptr view;
    // Unescaped text is built in a reused scratch string.
    ThreadLocalString copy;
    switch (ReadQuoted(*this, view, *copy)) {
      case Content::kFailed: return strptr(text_ + length_, 0);
      case Content::kInText: return view;
      case Content::kCopied: return KeepInPool(pool, *copy);
    }
  }
  const char *const start = text_ + position_, *const end = text_ + length_;
  const char *p = start;
  while (p < end && !kEndsWord(*p)) ++p;
  position_ = static_cast<int>(p - text_);
  return strptr(start, static_cast<int>(p - start));
}

}  // namespace zel
