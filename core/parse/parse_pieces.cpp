// ParserBase: reading identifiers, runs, words and lines as views into the text.
#include <zel/parse/parser_base.h>
#include <zel/text/thread_local_string.h>

namespace zel {

strptr ParserBase::GetIdent() {
  if (!IdentStartQ(Peek())) Error("Identifier expected");
  const int start = position_++;
  SkipWhile(IdentCharQ);
  return Since(start);
}

strptr ParserBase::GetSequence(const CharSet &set) {
  const int start = position_;
  SkipWhile(set);
  return Since(start);
}

strptr ParserBase::GetUpTo(const CharSet &stop, bool end_ok) {
  const int start = position_;
  while (!AtEnd() && !stop(text_[position_])) ++position_;
  if (AtEnd() && !end_ok) Error("Expected a character from charset");
  return Since(start);
}

int ParserBase::FindTerminator(const strptr &terminator, bool end_ok, bool case_sensitive) {
  if (terminator.empty()) return position_;
  const int hit = text_.FindFrom(terminator, position_, case_sensitive);
  if (hit >= 0) return hit;
  position_ = text_.length();
  if (!end_ok) ErrorExpected(terminator);
  return position_;
}

strptr ParserBase::GetUpTo(const strptr &terminator, bool end_ok, bool case_sensitive) {
  const int start = position_;
  position_ = FindTerminator(terminator, end_ok, case_sensitive);
  const strptr piece = Since(start);
  if (!AtEnd()) position_ += terminator.length();  // found: the end is never a match
  return piece;
}

strptr ParserBase::GetUpToExcluding(const strptr &terminator, bool end_ok) {
  const int start = position_;
  position_ = FindTerminator(terminator, end_ok, true);
  return Since(start);
}

strptr ParserBase::GetWord() {
  SkipWs();
  const int start = position_;
  while (!AtEnd() && !WhiteCharQ(text_[position_])) ++position_;
  return Since(start);
}

strptr ParserBase::GetLine() {
  const int start = position_;
  while (!AtEnd() && !PeekNewLine()) ++position_;
  const strptr line = Since(start);
  SkipNewLine();
  return line;
}

strptr ParserBase::GetLineBack() {
  const int end = position_;
  int start = end;
  while (start > 0 && !NewLineCharQ(text_[start - 1])) --start;
  position_ = start;
  if (!SkipNewLineBack() && position_ > 0) --position_;  // a lone CR
  return text_.Mid(start, end - start);
}

bool ParserBase::SkipMultiLineHeader(int &count) {
  const int start = position_;
  while (Peek() == '[') ++position_;
  count = position_ - start;
  if (SkipNewLine()) return true;
  position_ = start;
  count = 0;
  return false;
}

void ParserBase::ErrorExpected(const strptr &what) {
  ThreadLocalString message;
  *message << what << " expected";
  Error(*message);
}

}  // namespace zel
