// BCmdLine: the packed layout, reading arguments in place, the rotating search, and the text form.
#include <zel/mem/allocator.h>
#include <zel/parse/bcmdline.h>
#include <zel/parse/cmdline.h>

#include "support/strings.h"

#include <gtest/gtest.h>

#include <string>

namespace zel {
namespace {

using test::Str;

constexpr int kId = static_cast<int>(sizeof(StringID));

StringID Id(const char *name) { return InternString(name); }

std::string Text(const BCmdLinePtr &line) {
  cstring out;
  out << line;
  return Str(out);
}

TEST(BCmdLineLayout, ArgumentSizes) {
  // On 32-bit builds: an int 12 bytes, a two-character string 14, a bool 9, a nested line with
  // 12 bytes of arguments 28.
  BCmdLine sub(Id("sub"));
  sub.AddInt(Id("x"), 1);
  ASSERT_EQ(sub.Length(), 2 * kId + 4);
  const struct {
    void (*add)(BCmdLine &, const BCmdLine &sub);
    int size;
  } cases[] = {
      {[](BCmdLine &b, const BCmdLine &) { b.AddInt(Id("a"), 1); }, 2 * kId + 4},
      {[](BCmdLine &b, const BCmdLine &) { b.AddString(Id("a"), "ab"); }, 2 * kId + 6},
      {[](BCmdLine &b, const BCmdLine &) { b.AddBool(Id("a"), true); }, 2 * kId + 1},
      {[](BCmdLine &b, const BCmdLine &) { b.AddInt64(Id("a"), 1); }, 2 * kId + 8},
      {[](BCmdLine &b, const BCmdLine &) { b.AddFloat(Id("a"), 1); }, 2 * kId + 4},
      {[](BCmdLine &b, const BCmdLine &) { b.AddDouble(Id("a"), 1); }, 2 * kId + 8},
      {[](BCmdLine &b, const BCmdLine &s) { b.AddCmdLine(Id("a"), s); },
       3 * kId + 4 + sub.Length()},
  };
  for (const auto &c : cases) {
    BCmdLine line;
    c.add(line, sub);
    EXPECT_EQ(line.Length(), c.size);
    const BCmdLineArg &arg = *line.View().begin();
    EXPECT_EQ(arg.GetSize(), c.size - 2 * kId);
    EXPECT_EQ(reinterpret_cast<const char *>(arg.Next_()), line.Data() + c.size);
  }
  if (kId == 4) {
    BCmdLine literal;
    literal.AddCmdLine(Id("n"), sub);
    EXPECT_EQ(sub.Length(), 12);
    EXPECT_EQ(literal.Length(), 28);
  }
}

TEST(BCmdLineLayout, BytesAreTheDocumentedOnes) {
  BCmdLine line(Id("cmd"));
  line.AddInt(Id("n"), 0x01020304);
  line.AddString(Id("s"), "hi");
  const char *p = line.Data();
  StringID type, name;
  std::memcpy(&type, p, kId);
  std::memcpy(&name, p + kId, kId);
  EXPECT_EQ(type, _id_int);
  EXPECT_EQ(name, Id("n"));
  EXPECT_EQ(std::string(p + 2 * kId, 4), std::string("\x04\x03\x02\x01", 4));  // little-endian
  p += 2 * kId + 4;
  std::memcpy(&type, p, kId);
  EXPECT_EQ(type, _id_string);
  EXPECT_EQ(std::string(p + 2 * kId, 6), std::string("\x02\0\0\0hi", 6));
  EXPECT_STREQ(_id_string, "string");
  EXPECT_EQ(_id_BCmdLine, InternString("BCmdLine"));
}

TEST(BCmdLineRead, ValuesInPlaceAndOfOtherTypes) {
  BCmdLine line(Id("cmd"));
  line.AddBool(Id("b"), true);
  line.AddInt(Id("i"), -5);
  line.AddInt64(Id("l"), -(1LL << 40));
  line.AddFloat(Id("f"), 0.5f);
  line.AddDouble(Id("d"), 0.1);
  line.AddString(Id("s"), strptr("a\0b", 3));
  const BCmdLinePtr view = line;
  EXPECT_TRUE(view.Find(Id("b"))->GetBool());
  EXPECT_EQ(view.Find(Id("i"))->GetInt(), -5);
  EXPECT_EQ(view.Find(Id("l"))->GetInt64(), -(1LL << 40));
  EXPECT_EQ(view.Find(Id("f"))->GetFloat(), 0.5f);
  EXPECT_EQ(view.Find(Id("d"))->GetDouble(), 0.1);
  EXPECT_EQ(Str(view.Find(Id("s"))->GetString()), std::string("a\0b", 3));
  // Another type reads as nothing.
  const BCmdLineArg *i = view.Find(Id("i"));
  EXPECT_EQ(i->GetDouble(), 0);
  EXPECT_EQ(Str(i->GetString()), "");
  const BCmdLinePtr none = i->GetCmdLine();
  EXPECT_EQ(none.Command(), nullptr);
  EXPECT_EQ(none.Data(), nullptr);
  EXPECT_EQ(Text(none), "");
}

TEST(BCmdLineRead, NestedLinesAreViewedInPlace) {
  BCmdLine inner(Id("inner"));
  inner.AddString(Id("s"), "x y");
  BCmdLine line(Id("outer"));
  line.AddInt(Id("before"), 1);
  line.AddCmdLine(Id("n"), inner);
  line.AddCmdLine(Id("self"), line);  // a view of the block being added to
  const BCmdLinePtr nested = line.View().Find(Id("n"))->GetCmdLine();
  EXPECT_EQ(nested.Command(), Id("inner"));
  EXPECT_EQ(nested.Length(), inner.Length());
  EXPECT_EQ(nested.Data(), line.Data() + (2 * kId + 4) + 3 * kId + 4);
  EXPECT_EQ(Str(nested.Find(Id("s"))->GetString()), "x y");
  const BCmdLinePtr self = line.View().Find(Id("self"))->GetCmdLine();
  EXPECT_EQ(Text(self), R"(outer before:1 n:"inner s:\"x y\"")");
}

TEST(BCmdLineFind, RotatesFromTheCursor) {
  BCmdLine line;
  line.AddInt(Id("a"), 1);
  line.AddInt(Id("dup"), 2);
  line.AddInt(Id("b"), 3);
  line.AddInt(Id("dup"), 4);
  const BCmdLinePtr view = line;
  EXPECT_EQ(view.Find(Id("dup"))->GetInt(), 2);
  EXPECT_EQ(view.Find(Id("dup"))->GetInt(), 4);
  EXPECT_EQ(view.Find(Id("dup"))->GetInt(), 2);  // around again
  EXPECT_EQ(view.Find(Id("absent")), nullptr);
  EXPECT_EQ(view.Find(Id("a"))->GetInt(), 1);
  EXPECT_EQ(view.Find(Id("b"))->GetInt(), 3);
  EXPECT_EQ(view.Find(Id("a"))->GetInt(), 1);
  EXPECT_EQ(BCmdLinePtr().Find(Id("a")), nullptr);
  view.Rewind();
  EXPECT_EQ(view.Find(Id("dup"))->GetInt(), 2);
}

TEST(BCmdLineOwn, CopiesMovesAndGrowth) {
  const StringID c = Id("c"), a = Id("a");
  const int64_t before = GetMemoryAllocator()->Counts().allocs;
  BCmdLine line(c);
  for (int i = 0; i < 10; ++i) line.AddInt(a, i);
  // Only the block's growth allocates; by the array rule it takes 8, 16, 32, 64, 128, 256 bytes.
  EXPECT_LE(GetMemoryAllocator()->Counts().allocs - before, 6);
  BCmdLine copy(line);
  EXPECT_EQ(copy.Length(), line.Length());
  EXPECT_EQ(Text(copy), Text(line));
  BCmdLine moved(std::move(copy));
  EXPECT_EQ(copy.Length(), 0);
  EXPECT_EQ(Text(moved), Text(line));
  moved = line;
  EXPECT_EQ(Text(moved), Text(line));
  moved.Flush();
  EXPECT_EQ(Text(moved), "c");
}

TEST(BCmdLineText, PrintsALineThatParsesBack) {
  BCmdLine inner(Id("set"));
  inner.AddString(Id("title"), "two \"words\"\r\n");
  inner.AddBool(Id("on"), false);
  BCmdLine line(Id("cmd"));
  line.AddBool(Id("flag"), true);
  line.AddInt(Id("count"), -12);
  line.AddInt64(Id("big"), 1LL << 40);
  line.AddFloat(Id("f"), 0.25f);
  line.AddDouble(Id("d"), 2.5);
  line.AddString(Id("plain"), "a.b-c");
  line.AddString(Id("blank"), "x y");
  line.AddString(Id("empty"), "");
  line.AddString(Id("bytes"), "\x01\xe9\\");
  line.AddString(Id("lines"), "a\nb");  // a line end without a quote
  line.AddCmdLine(Id("nested"), inner);
  const std::string text = Text(line);
  EXPECT_EQ(text.substr(0, 78),
            R"(cmd flag:true count:-12 big:1099511627776 f:0.25 d:2.5 plain:a.b-c blank:"x y")");

  const CmdLine parsed(strptr(text.data(), static_cast<int>(text.size())), false);
  EXPECT_EQ(Str(parsed.Command()), "cmd");
  ASSERT_EQ(parsed.ArgCount(), 11);
  EXPECT_TRUE(parsed.GetBool("flag", false));
  EXPECT_EQ(parsed.GetInteger("count", 0), -12);
  EXPECT_EQ(Str(parsed.GetString("big")), "1099511627776");
  EXPECT_EQ(parsed.GetDouble("f", 0), 0.25);
  EXPECT_EQ(Str(parsed.GetString("empty", "x")), "");
  EXPECT_EQ(Str(parsed.GetString("bytes")), "\x01\xe9\\");
  EXPECT_EQ(Str(parsed.GetString("lines")), "a\nb");
  const CmdLine nested(parsed.GetString("nested"), false);
  EXPECT_EQ(Str(nested.Command()), "set");
  EXPECT_EQ(Str(nested.GetString("title")), "two \"words\"\r\n");
  EXPECT_FALSE(nested.GetBool("on", true));
  EXPECT_EQ(Text(BCmdLine(Id("alone"))), "alone");
}

}  // namespace
}  // namespace zel
