# Statements compiled inside
#   void f(NanoTime t, NanoDiff d, UnixTime u, UnixDiff ud, strptr s, cstring c, DateStruct day)
# with `using namespace zel`.

# 64-bit values as callers spell them, on every platform (int64_t is `long` on 64-bit Linux).
set(ACCEPTED
  "long long v = 0\; StringIter it(\"1\")\; it.MaybeParseInteger64(v)\; v = it.ParseInteger64(v)"
  "FmtHex(c, 0x1ffULL)\; FmtHex(c, uint64_t{1})\; FmtHex(c, int64_t{-1})\; FmtHex(c, 7u)"
  "FmtFlags f\; f.PrintHex(c, 0x1ffULL)\; f.PrintHex(c, uint64_t{1})\; f.PrintHex(c, 7u)"
  "strptr gap = c.AddN(4)\; gap = c.InsertRegion(0, 2)\; (void)gap"
  "(void)t.qAdd(d)"
  # Every Append form takes literals as callers write them.
  "CmdLine::Append(c, \"v\")\; CmdLine::Append(c, s)\; CmdLine::Append(c, c)"
  "CmdLine::Append(c, \"k\", \"v\")\; CmdLine::Append(c, s, c)\; CmdLine::Append(c, \"k\", s)"
  "CmdLine::Append(c, \"k\", true)\; CmdLine::Append(c, \"k\", 1)\; CmdLine::Append(c, \"k\", 1.5)"
  "CmdLine::Append(c, \"k\", TypedVar<int>(1))"
  # File flags combine in any order; 64-bit distances as callers spell them.
  "(void)OpenFile(\"x\", FileRead | FileThrowErrors)\; (void)OpenFile(s, {})\; (void)OpenFile(c, FileWrite)"
  "QFlags<FileFlags_> f = FileRead\; f |= FileWrite\; f = f | FileAppend\; f = FileTruncate | f\; (void)f.Has(FileRead | FileWrite)"
  "WinFile w\; (void)w.Skip(1)\; (void)w.Skip(int64_t{1})\; (void)w.Skip(1LL)\; w.SkipX(2)\; w.SkipX(-3LL)\; (void)w.SetPos(5)")

# Results that must be used.
set(REJECTED
  "t.qAdd(d)" "t.qSub(d)" "t + d" "t - d" "t.GetDate()" "t.ToUnixTime()"
  "u.GetDate()" "u.GetStartOfYear()" "u.PrevYear()" "u.NextYear()" "u + ud" "u - ud"
  "day.ToUnixTime()"
  "s.Trimmed()" "s.TrimmedLeft()" "s.TrimmedRight()" "s.Left(1)" "s.Right(1)" "s.Mid(1)"
  "s.Mid(1, 1)" "s.Sub(Range{0, 1})"
  "c.Replaced(\"a\", \"b\")" "FixNewlines(s)"
  "FileToStringX(s)" "FileToString(s, FileRead)" "GetModuleDir()" "WinFile w\; w.Detach()")
