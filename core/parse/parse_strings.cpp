// ParserBase: quoted strings, one-line with escapes and long ones taken verbatim.
#include <zel/parse/parser_base.h>
#include <zel/text/thread_local_string.h>

#include "text/find_any.h"

namespace zel {

void ParserBase::ParseStringAppend(cstring &out, char open, char close) {
  if (AtEnd() || text_[position_] != open) Error("Open quote expected");
  const int start = position_++;
  int brackets;
  // A quote directly followed by a line end opens a long string too, with no brackets.
  if (SkipMultiLineHeader(brackets)) {
    AppendLongString(out, close, brackets, start);
  } else {
    AppendOneLineString(out, close, start);
  }
}

void ParserBase::Unterminated(int start) {
  position_ = start;
  Error("Unterminated string");
}

void ParserBase::AppendLongString(cstring &out, char close, int brackets, int start) {
  for (;;) {
    const int hit = text_.FindFrom(close, position_);
    if (hit < 0) Unterminated(start);
    out.AddNonOverlapping(text_.text() + position_, hit - position_);
    position_ = hit + 1;
    if (SkipNChars(']', brackets)) return;
    out << close;  // without its brackets the quote is an ordinary character
  }
}

void ParserBase::AppendOneLineString(cstring &out, char close, int start) {
  const char escape = escape_char;
  const char *const text = text_.text();
  const char *const end = text_.end();
  for (;;) {
    // Ordinary characters are appended a run at a time.
    const char *p = zel::text::FindAnyOf(text + position_, end, close, escape, '\n', '\r');
    const int stop = static_cast<int>(p - text);
    out.AddNonOverlapping(text + position_, stop - position_);
    position_ = stop;
    if (p == end) Unterminated(start);
    if (*p == escape) {
      AppendEscape(out, close);
    } else if (*p == close) {
      ++position_;
      return;
    } else {
      SkipNewLine();
      // In "#" texts a string may run over line ends, which it drops (intended).
      if (comment_info.language != CommentInfo::kHash) MissingClose(close, start);
    }
  }
}

void ParserBase::MissingClose(char close, int start) {
  ThreadLocalString message;
  *message << "Missing " << close << " in the string";
  // Reported without throwing: the string goes on after the line end (intended).
  ErrorAt(Range{start, position_}, *message, false);
}

void ParserBase::AppendEscape(cstring &out, char close) {
  const int at = position_++;
  if (AtEnd()) return;  // the caller finds the string unterminated
  const char c = text_[position_++];
  if (c == close) {
    out << close;
    return;
  }
  switch (c) {
    case '\n': return;  // an escaped line end continues the string on the next line
    case '\r': SkipChar('\n'); return;
    case '\\': out << '\\'; return;
    case 'n': out << '\n'; return;
    case 'r': out << '\r'; return;
    case 't': out << '\t'; return;
    case '0':
      if (strict_escapes) FailEscape(at, "Null character in the string");
      out << ' ';
      return;
    default:
      if (strict_escapes) {
        ThreadLocalString message;
        *message << "Unknown escape character " << c;
        FailEscape(at, *message);
      }
      out << escape_char << c;
  }
}

void ParserBase::FailEscape(int at, const strptr &message) {
  position_ = at;
  ThrowAt(Range{at, at + 2}, message);
}

void ParserBase::ParseString(cstring &out) {
  out.Flush();
  ParseStringAppend(out);
}

bool ParserBase::MaybeParseString(cstring &out) {
  SkipWs();
  if (AtEnd() || text_[position_] != open_quote) return false;
  out.Flush();
  ParseStringAppend(out);
  return true;
}

}  // namespace zel
