// Arbitrary text run through the parser's primitives. The first byte picks the options (comment
// language, strict escapes, line mode), the second how many of the following bytes name the
// primitives to apply, in turn and repeatedly; the rest is the text. Every primitive must return
// or throw ParserErrorX, keep the position within the text, and give views inside the text.
#include <zel/parse/parser_base.h>

#include <cstdint>
#include <cstdlib>

namespace {

using zel::ParserBase;
using zel::strptr;

void Require(bool condition) {
  if (!condition) std::abort();
}

void RequireInside(const ParserBase &p, const strptr &piece) {
  Require(piece.length() >= 0 && piece.begin() >= p.text().begin() &&
          piece.end() <= p.text().end());
}

void Apply(ParserBase &p, uint8_t op) {
  zel::cstring out;
  int count = 0;
  switch (op % 20) {
    case 0: p.SkipWs(); break;
    case 1: RequireInside(p, p.GetIdent()); break;
    case 2: p.ParseNumber(); break;
    case 3: p.ParseInteger(); break;
    case 4: p.ParseUnsignedInteger(); break;
    case 5:
      p.ParseString(out);
      Require(out.text()[out.length()] == 0);
      break;
    case 6: RequireInside(p, p.GetLine()); break;
    case 7: RequireInside(p, p.GetWord()); break;
    case 8: p.ParseHexDigits(); break;
    case 9: p.ParseDigits(); break;
    case 10: p.ParseFraction(); break;
    case 11: RequireInside(p, p.GetLineBack()); break;
    case 12: p.WsEolQ(); break;
    case 13: p.FindNext("*/"); break;
    case 14: RequireInside(p, p.GetUpTo("]]", op & 0x80)); break;
    case 15: RequireInside(p, p.GetUpTo(zel::CharSet::Literal(",;}"), op & 0x80)); break;
    case 16: {
      zel::ParseStringArray strings;
      p >> strings;
      break;
    }
    case 17: p.SkipMultiLineHeader(count); break;
    case 18: p.ErrorAt(zel::Range{p.position(), p.position()}, "note", false); break;
    case 19:
      if (!p.AtEnd()) p.Advance();
      break;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  if (size < 2) return 0;
  const uint8_t options = data[0];
  const size_t op_count = 1 + data[1] % 16;
  if (size < 2 + op_count) return 0;
  const uint8_t *ops = data + 2;
  const strptr text(reinterpret_cast<const char *>(ops + op_count),
                    static_cast<int>(size - 2 - op_count));

  ParserBase p(text);
  const zel::CommentInfo::Language languages[] = {
      zel::CommentInfo::kNone, zel::CommentInfo::kC, zel::CommentInfo::kCNested,
      zel::CommentInfo::kHash, zel::CommentInfo::kSemicolon};
  p.comment_info.SetLanguage(languages[options % 5]);
  p.strict_escapes = options & 0x08;
  p.SetLineMode(options & 0x10);
  if (options & 0x20) p.decimal_separator = ',';
  if (options & 0x40) p.escape_char = '^';

  for (int round = 0; round < 8 && !p.AtEnd(); ++round) {
    for (size_t i = 0; i < op_count; ++i) {
      try {
        Apply(p, ops[i]);
      } catch (const zel::ParserErrorX &) {
      }
      Require(p.position() >= 0 && p.position() <= text.length());
      Require(p.GetLineNumber(p.position()) == zel::GetLineNumber(text, p.position()));
    }
  }
  return 0;
}
