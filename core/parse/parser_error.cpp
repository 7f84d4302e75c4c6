// ParserErrorX, and ParserBase's reporting of errors with the line and an excerpt of it.
#include <zel/diag/log.h>
#include <zel/parse/parser_base.h>
#include <zel/parse/parser_error.h>
#include <zel/text/thread_local_string.h>

#include <algorithm>

namespace zel {

ParserErrorX::ParserErrorX(const strptr &message, const Range &where)
    : ErrorX(message, true), where_(where) {}

ParserErrorX::~ParserErrorX() = default;

namespace {

// How many characters before the error the excerpt of its line shows at most.
constexpr int kExcerptLength = 100;

}  // namespace

void ParserBase::ComposeError(cstring &out, const Range &where, const strptr &message) {
  const int at = std::clamp(where.begin, 0, text_.length());
  ProcessUpToChar(text_.length());
  const int line = GetLineNumber(at);
  if (LineCount() > 1) out << "Line " << line + 1 << ": ";
  out << message << "\r\n" << line + 1 << ": ";
  const int line_start = GetLineStart(line);
  const int column = at - line_start;
  const int from = std::max(0, column - kExcerptLength);
  out << text_.Mid(line_start + from, column - from) << "...";
}

void ParserBase::ErrorAt(const Range &where, const strptr &message, bool throw_it) {
  if (throw_it) ThrowAt(where, message);
  if (LogCategory::n_global_clients < 1) return;
  ThreadLocalString line;
  *line << "Parser Error: ";
  ComposeError(*line, where, message);
  *line << "\r\n";
  PrintLog(*line);
}

void ParserBase::ThrowAt(const Range &where, const strptr &message) {
  ThreadLocalString text;
  ComposeError(*text, where, message);
  throw ParserErrorX(*text, where);
}

}  // namespace zel
