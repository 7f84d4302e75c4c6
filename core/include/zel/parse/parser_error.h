// ParserErrorX: the failure of a parse, with the stretch of text it concerns.
#pragma once

#include <zel/diag/error.h>
#include <zel/text/strptr.h>

namespace zel {

// Thrown by ParserBase and the parsers built on it. It is an ErrorX, so code that catches ErrorX
// catches it too; the message is the full report (line number, message, excerpt of the line) and
// is set behind the error prefix.
class ZEL_API ParserErrorX : public ErrorX {
 public:
  ParserErrorX(const strptr &message, const Range &where);
  ~ParserErrorX() override;

  // The positions the error concerns, in the parsed text.
  const Range &Where() const { return where_; }

 private:
  Range where_;
};

}  // namespace zel
