// ParserBase: comment conventions, peeking and skipping.
#include <zel/parse/parser_base.h>

#include <algorithm>

namespace zel {

namespace {

// The comment strings of each language, by its value.
struct CommentStrings {
  const char *line, *block_begin, *block_end;
};
constexpr CommentStrings kLanguages[] = {
    {"//", "/*", "*/"},  // kC
    {"", "", ""},        // kNone
    {"//", "/*", "*/"},  // kCNested
    {"#", "", ""},       // kHash
    {";", "", ""},       // kSemicolon
};

}  // namespace

void CommentInfo::SetLanguage(Language new_language) {
  language = new_language;
  nested = new_language == kCNested;
  const CommentStrings &strings = kLanguages[new_language];
  line_comment = strings.line;
  block_begin = strings.block_begin;
  block_end = strings.block_end;
}

bool ParserBase::SkipStr(const strptr &s, bool case_sensitive) {
  if (!PeekStr(s, case_sensitive)) return false;
  position_ += s.length();
  return true;
}

bool ParserBase::SkipNChars(int ch, int n) {
  if (n > text_.length() - position_) return false;
  for (int i = 0; i < n; ++i)
    if (text_[position_ + i] != static_cast<char>(ch)) return false;
  position_ += std::max(n, 0);
  return true;
}

void ParserBase::SkipWs() {
  do {
    while (!AtEnd() && white_space(text_[position_])) ++position_;
  } while (SkipComment());
}

bool ParserBase::SkipComment() {
  const CommentInfo &comments = comment_info;
  if (!comments.block_begin.empty() && !comments.block_end.empty()) {
    if (PeekStr(comments.block_end)) {
      const int past = position_ + comments.block_end.length();
      ThrowAt(Range{past, past}, "End-of-comment string found outside of a comment");
    }
    if (PeekStr(comments.block_begin)) {
      SkipBlockComment();
      return true;
    }
  }
  // A line continuation counts as white space.
  if (Peek() == '\\' && SkipStr("\\\r\n")) return true;
  if (!comments.line_comment.empty() && SkipStr(comments.line_comment)) {
    while (!AtEnd() && !PeekNewLine()) ++position_;
    SkipNewLine();
    return true;
  }
  return false;
}

void ParserBase::SkipBlockComment() {
  const CommentInfo &comments = comment_info;
  const int start = position_;
  position_ += comments.block_begin.length();
  int depth = 1;
  do {
    if (AtEnd()) ThrowAt(Range{start, position_}, "End of comment not found");
    if (comments.nested && SkipStr(comments.block_begin)) {
      ++depth;
    } else if (SkipStr(comments.block_end)) {
      --depth;
    } else {
      ++position_;
    }
  } while (depth > 0);
}

bool ParserBase::SkipNewLine() {
  if (SkipChar('\r')) {
    SkipChar('\n');
    return true;
  }
  return SkipChar('\n');
}

bool ParserBase::SkipNewLineBack() {
  if (position_ == 0 || text_[position_ - 1] != '\n') return false;
  --position_;
  if (position_ > 0 && text_[position_ - 1] == '\r') --position_;
  return true;
}

bool ParserBase::FindNext(const strptr &s, bool case_sensitive) {
  if (s.empty()) return true;
  const int hit = text_.FindFrom(s, position_, case_sensitive);
  if (hit < 0) {
    position_ = std::max(position_, text_.length() - s.length() + 1);
    return false;
  }
  position_ = hit + s.length();
  return true;
}

bool ParserBase::WsEolQ() {
  for (;;) {
    SkipWhile(BlankCharQ);
    if (Peek() != '\\') break;
    ++position_;
    if (!SkipNewLine()) {
      --position_;
      break;
    }
  }
  return AtEnd() || PeekNewLine();
}

}  // namespace zel
