// CmdLine: parsing, the queries by position and by name, writing lines back, Serialize.
#include <zel/parse/cmdline.h>
#include <zel/parse/types.h>

#include "support/strings.h"
#include "support/zones.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace zel {
namespace {

using test::FailureOf;
using test::Str;

// The command and the arguments as "cmd|name=value|value|..." (positional values without "=").
std::string Shape(const CmdLine &c) {
  std::string out = Str(c.Command());
  for (const CmdLine::Arg &arg : c.Args()) {
    out.append("|");
    if (!arg.name.empty()) out.append(Str(arg.name)).append("=");
    out.append(Str(arg.value));
  }
  return out;
}

TEST(CmdLineParse, TokensNamesAndWhereParsingStops) {
  const struct {
    const char *text;
    bool args_only;
    const char *shape, *parsed;
  } cases[] = {
      {R"(a arg1:value arg2:"complicated value" 1 2.1 3 x: y:)", true,
       "|a|arg1=value|arg2=complicated value|1|2.1|3|x=y",
       "a arg1:value arg2:\"complicated "
       "value\" 1 2.1 3 x: y"},
      {R"(a arg1:value 1 x: y:)", false, "a|arg1=value|1|x=y", "a arg1:value 1 x: y"},
      {"cmd a:1 b", false, "cmd|a=1|b", "cmd a:1 b"},
      {"a : b", true, "|a", "a "},  // a blank before the colon makes a lone ":"
      {"x:", true, "|x=", "x:"},
      {"a # b:c", true, "|a", "a "},
      {"a b#c", true, "|a|b#c", "a b#c"},  // only a token's first character starts a comment
      {"n:\r\n  'v w'", true, "|n=v w", "n:\r\n  'v w'"},  // line ends before a value
      {"a \"\" b", true, "|a", "a \"\""},
      {"a \"open b", true, "|a", "a \"open b"},
      {"a:\"\\0\" b", true, "|a=", "a:\"\\0\" b"},  // a failed value ends the text
      {"\"\" a", false, "|a", "\"\" a"},            // the command may be empty
      {"", false, "", ""},
  };
  for (const auto &c : cases) {
    const CmdLine line(c.text, c.args_only);
    EXPECT_EQ(Shape(line), c.shape) << c.text;
    EXPECT_EQ(Str(line.ParsedText()), c.parsed) << c.text;
  }
}

TEST(CmdLineParse, ParsesFromTheIteratorAndAppends) {
  const strptr text("skip a:1 b # rest");
  StringIter it(text);
  it.SetPosition(5);
  CmdLine line;
  line.Parse(it, true);
  EXPECT_EQ(it.position(), 11);  // at the comment
  EXPECT_EQ(Str(line.ParsedText()), "a:1 b ");
  StringIter again("c:2");
  line.Parse(again, true);
  EXPECT_EQ(Shape(line), "|a=1|b|c=2");

  StringIter before_start("q:1");
  before_start.SetPosition(-3);  // read from the start
  CmdLine from_start;
  from_start.Parse(before_start, true);
  EXPECT_EQ(Str(from_start.ParsedText()), "q:1");

  line.set_comment_char(';');
  line.Reset("x ;y #z", true);
  EXPECT_EQ(Shape(line), "|x");
}

TEST(CmdLineParse, EscapedValuesLiveInThePoolUntilReset) {
  CmdLine line(R"(k:"a\tb" plain:"no escapes")", true);
  const strptr escaped = line.GetString("k");
  const strptr plain = line.GetString("plain");
  EXPECT_EQ(Str(escaped), "a\tb");
  EXPECT_EQ(Str(plain), "no escapes");
  EXPECT_EQ(plain.text(), line.ParsedText().text() + 16);  // a view of the text itself
  line.Flush();  // the pool stays, so views into it stay valid
  EXPECT_EQ(line.ArgCount(), 0);
  EXPECT_EQ(Str(escaped), "a\tb");
  CmdLine moved(std::move(line));
  EXPECT_EQ(Str(escaped), "a\tb");
}

class CmdLineQueries : public testing::Test {
 protected:
  const CmdLine line{
      "cmd 12 -3.5e1 yes first:7 ratio:0.25 flag:ON bad:maybe word:12px empty:\"\" when:2007/03/05"
      " Width:4",
      false};
};

TEST_F(CmdLineQueries, ByPosition) {
  EXPECT_EQ(Str(line.Command()), "cmd");
  EXPECT_EQ(Str(line.GetString(0)), "12");
  EXPECT_EQ(Str(line.GetString(3)), "");
  EXPECT_EQ(line.GetInteger(0, -1), 12);
  EXPECT_EQ(line.GetInteger(2, -1), -1);
  EXPECT_EQ(line.GetInteger(9, -1), -1);
  EXPECT_EQ(line.GetDouble(1, 0), -35.0);
  EXPECT_EQ(line.GetDouble(-1, 0.5), 0.5);
  EXPECT_TRUE(line.GetBool(2, false));
  EXPECT_FALSE(line.GetBool(0, false));  // "12" is not a boolean word
  EXPECT_TRUE(line.GetBool(7, true));
}

TEST_F(CmdLineQueries, ByNameWithDefaults) {
  EXPECT_EQ(Str(line.GetString("FIRST")), "7");  // names ignore case
  EXPECT_EQ(Str(line.GetString("none", "dflt")), "dflt");
  EXPECT_EQ(Str(line.GetString("empty", "dflt")), "");
  strptr value("old");
  EXPECT_FALSE(line.MaybeGetString("none", value));
  EXPECT_TRUE(line.MaybeGetString("word", value));
  EXPECT_EQ(Str(value), "12px");

  EXPECT_EQ(line.GetInteger("word", 0), 12);  // a number at the start counts
  EXPECT_EQ(line.GetInteger("bad", -1), -1);
  EXPECT_EQ(line.GetDouble("ratio", 0), 0.25);
  EXPECT_EQ(line.GetDouble("none", 2.5), 2.5);
  int n = 5;
  EXPECT_FALSE(line.MaybeGetInteger("bad", n));
  EXPECT_EQ(n, 5);
  double d = 5;
  EXPECT_FALSE(line.MaybeGetDouble("empty", d));
  EXPECT_EQ(d, 5);
  EXPECT_EQ(line.GetIntegerX("width"), 4);
  EXPECT_EQ(line.GetDoubleX("ratio"), 0.25);
}

TEST_F(CmdLineQueries, Booleans) {
  for (const char *word : {"ON", "Yes", "1", "TRUE", "true", "on"})
    EXPECT_EQ(CmdLine::InterpretBool(word, -1), 1) << word;
  for (const char *word : {"off", "NO", "0", "False"})
    EXPECT_EQ(CmdLine::InterpretBool(word, -1), 0) << word;
  for (const char *word : {"", "maybe", "yes ", "2", "y"})
    EXPECT_EQ(CmdLine::InterpretBool(word, -1), -1) << word;
  EXPECT_TRUE(line.GetBool("flag", false));
  EXPECT_TRUE(line.GetBool("bad", true));
  EXPECT_FALSE(line.GetBool("none", false));
  EXPECT_TRUE(line.GetBoolX("flag"));
  bool b = true;
  EXPECT_FALSE(line.MaybeGetBool("bad", b));
  EXPECT_TRUE(b);
}

TEST_F(CmdLineQueries, FailuresNameTheArgument) {
  EXPECT_EQ(FailureOf([&] { (void)line.GetStringX("none"); }), "none should be specified");
  EXPECT_EQ(Str(line.GetStringX("empty")), "");  // present but empty is no failure
  EXPECT_EQ(FailureOf([&] { (void)line.GetIntegerX("bad"); }), "bad should be a valid integer");
  EXPECT_EQ(FailureOf([&] { (void)line.GetIntegerX("none"); }), "none should be a valid integer");
  // Doubles keep the integer wording (intended).
  EXPECT_EQ(FailureOf([&] { (void)line.GetDoubleX("bad"); }), "bad should be a valid integer");
  EXPECT_EQ(FailureOf([&] { (void)line.GetBoolX("bad"); }),
            "bad should be a valid boolean (yes,no,true,false,0,1,etc)");
  EXPECT_EQ(FailureOf([&] { (void)line.GetBoolX("none"); }),
            "none should be a valid boolean (yes,no,true,false,0,1,etc)");
}

TEST(CmdLineUnits, DurationsInSeconds) {
  const CmdLine line("a:90 b:\"1.5 hours\" c:2days d:250ms e:\"3 fortnights\" f:x", true);
  EXPECT_EQ(line.GetDouble("a", Unit::kTime, -1), 90);
  EXPECT_EQ(line.GetDouble("b", Unit::kTime, -1), 5400);
  EXPECT_EQ(line.GetDouble("c", Unit::kTime, -1), 172800);
  EXPECT_EQ(line.GetDouble("d", Unit::kTime, -1), 0.25);
  EXPECT_EQ(line.GetDouble("f", Unit::kTime, -1), -1);
  EXPECT_EQ(line.GetDouble("none", Unit::kTime, -1), -1);
  EXPECT_EQ(FailureOf([&] { (void)line.GetDouble("e", Unit::kTime, -1); }),
            "Invalid unit: fortnights");
  EXPECT_EQ(FailureOf([] { (void)StringToNumber("5 secs", Unit::kPlain, 0); }),
            "Invalid unit: secs");
  EXPECT_EQ(StringToNumber(" 7 ", Unit::kPlain, 0), 7);
  auto seconds = [](const std::string &text) {
    return StringToNumber(std::string_view(text), Unit::kTime, 0);
  };
  for (const char *unit : {"s", "SEC", "secs", "Seconds"})
    EXPECT_EQ(seconds(std::string("2 ") + unit), 2) << unit;
  for (const char *unit : {"m", "min", "Minutes", "h", "hrs", "d", "Day", "w", "weeks"})
    EXPECT_GE(seconds(std::string("1") + unit), 60) << unit;
}

class CmdLineDates : public test::ZonedTest {};

TEST_P(CmdLineDates, DatesAtLocalMidnight) {
  const CmdLine line(
      "2007/Mar/05 \"Jan 5, 07\" 2007/03/05 today x When:2007/Mar/05 when:2008/Jan/2", true);
  EXPECT_EQ(line.GetDate(0), test::LocalAt(2007, 3, 5));
  EXPECT_EQ(line.GetDate(1), test::LocalAt(2007, 1, 5));
  EXPECT_EQ(line.GetDate(2), UnixTime());  // loose dates name their month
  EXPECT_EQ(line.GetDate(3), UnixTime::Current().GetDate());
  EXPECT_EQ(line.GetDate(4), UnixTime());
  EXPECT_EQ(line.GetDate(9), UnixTime());
  // Dates alone match names exactly (intended).
  EXPECT_EQ(line.GetDate("when"), test::LocalAt(2008, 1, 2));
  EXPECT_EQ(line.GetDate("WHEN"), UnixTime());
  EXPECT_EQ(Str(line.GetString("when")), "2007/Mar/05");
}
INSTANTIATE_TEST_SUITE_P(Zones, CmdLineDates, test::kZones);

TEST(CmdLineWrite, AppendForms) {
  cstring out;
  CmdLine::Append(out, "cmd");
  CmdLine::Append(out, "k", "two words");
  CmdLine::Append(out, "e", "");
  CmdLine::Append(out, "i", -42);
  CmdLine::Append(out, "d", 0.1 + 0.2);
  CmdLine::Append(out, "b", true);
  CmdLine::Append(out, "", "alone");
  CmdLine::Append(out, "odd name", "a:b");
  CmdLine::Append(out, "v", TypedVar<cstring>(cstring("x y")));
  CmdLine::Append(out, "w", TypedVar<long long>(1LL << 40));
  CmdLine::Append(out, "plain", "a-zA-Z0-9_;&*^%$@.!");
  EXPECT_EQ(Str(out), R"(cmd k:"two words" e:"" i:-42 d:0.3 b:true alone "odd name":"a:b" v:"x y" )"
                      R"(w:1099511627776 plain:a-zA-Z0-9_;&*^%$@.!)");
  cstring empty;
  CmdLine::Append(empty, "");  // an empty positional value cannot be written
  EXPECT_EQ(Str(empty), "");

  cstring quoted;
  TypedVar<cstring>(cstring("plain")).Print(quoted, true);
  EXPECT_EQ(Str(quoted), "\"plain\"");
}

// Values that need every kind of quoting: blanks, quotes, backslashes, line ends, control bytes,
// bytes from 0x80, brackets, comment and name characters, and lines long enough to be broken.
std::vector<std::string> HardValues() {
  std::vector<std::string> values = {"two words",
                                     "\"",
                                     "'",
                                     "\\",
                                     "\\\\\"",
                                     "\r\n",
                                     "\r",
                                     "\n\n",
                                     "\t",
                                     std::string(1, '\0'),
                                     "\x01\x1f\x7f\x80\x81\xe9\xff",
                                     "[x]",
                                     "[\n",
                                     "\"[\r\nx\"]",
                                     "#",
                                     "a#b",
                                     ":",
                                     "x:",
                                     ":y",
                                     "\\012",
                                     "\\0",
                                     "0",
                                     "-",
                                     "a b\\\r\nc"};
  std::string long_text;
  for (int i = 0; i < 600; ++i) long_text += (i % 7 == 0 ? ',' : i % 11 == 0 ? ' ' : 'a' + i % 26);
  values.push_back(long_text);
  values.push_back(std::string(500, 'x'));
  values.push_back(std::string(300, ' '));
  std::mt19937 random(20261124);
  for (int i = 0; i < 300; ++i) {
    std::string bytes(random() % 40 + 1, ' ');
    for (char &c : bytes) c = static_cast<char>(random());
    values.push_back(bytes);
  }
  return values;
}

TEST(CmdLineWrite, WhatAppendWritesParsesBack) {
  for (const std::string &value : HardValues()) {
    const strptr v(value.data(), static_cast<int>(value.size()));
    cstring out;
    CmdLine::Append(out, "first");
    CmdLine::Append(out, v, v);  // as a name too
    CmdLine::Append(out, "k", v);
    CmdLine::Append(out, v);
    CmdLine::Append(out, "last", 1);
    const CmdLine line(out, true);
    ASSERT_EQ(line.ArgCount(), 5) << Str(out);
    EXPECT_EQ(Str(line.Args()[1].name), value) << Str(out);
    EXPECT_EQ(Str(line.Args()[1].value), value) << Str(out);
    EXPECT_EQ(Str(line.GetString("k")), value) << Str(out);
    EXPECT_EQ(Str(line.GetString(1)), value) << Str(out);
    EXPECT_EQ(line.GetInteger("last", 0), 1) << Str(out);
  }
}

// A record that writes and reads itself through one function, as Serialize is meant to be used.
struct Record {
  int i = 0;
  float f = 0;
  double d = 0;
  bool b = false;
  cstring s, none, positional_s;
  int positional_i = 0;

  void Serialize(CmdLine &line) {
    line.Serialize("i", i);
    line.Serialize("f", f);
    line.Serialize("d", d);
    line.Serialize("b", b);
    line.Serialize("s", s);
    line.Serialize("none", none);
    line.Serialize(positional_i);
    line.Serialize(positional_s);
  }
};

TEST(CmdLineSerialize, WritesThenReadsEveryType) {
  Record written{-7, 1.5f, 2.25, true, "a \"q\"", "", "x y", 12};
  cstring text;
  CmdLine writer;
  writer.SetSerializeTarget(&text);
  written.Serialize(writer);
  EXPECT_EQ(Str(text), R"(i:-7 f:1.5 d:2.25 b:true s:"a \"q\"" none:"" 12 "x y")");

  CmdLine reader(text, true);
  Record read;
  read.none = "was here";
  read.Serialize(reader);
  EXPECT_EQ(read.i, -7);
  EXPECT_EQ(read.f, 1.5f);
  EXPECT_EQ(read.d, 2.25);
  EXPECT_TRUE(read.b);
  EXPECT_EQ(Str(read.s), "a \"q\"");
  EXPECT_EQ(Str(read.none), "");
  EXPECT_EQ(read.positional_i, 12);
  EXPECT_EQ(Str(read.positional_s), "x y");
  EXPECT_EQ(reader.PositionalCursor(), 2);
}

TEST(CmdLineSerialize, ReadingKeepsValuesThatDoNotRead) {
  CmdLine reader("1 x 3 n:abc flag:maybe", true);
  int a = 0, b = -1, c = 0, n = 5, missing = 9;
  bool flag = true;
  reader.Serialize(a);
  reader.Serialize(b);  // "x" is not an integer: kept, and the cursor moves on
  reader.Serialize(c);
  reader.Serialize("n", n);
  reader.Serialize("missing", missing);
  reader.Serialize("flag", flag);  // not a boolean word: the current value is the default
  EXPECT_EQ(a, 1);
  EXPECT_EQ(b, -1);
  EXPECT_EQ(c, 3);
  EXPECT_EQ(n, 5);
  EXPECT_EQ(missing, 9);
  EXPECT_TRUE(flag);

  reader.Flush();  // the cursor is -1 until it is set again
  StringIter more("4 5");
  reader.Parse(more, true);
  int x = 0, y = 0;
  reader.Serialize(x);
  reader.Serialize(y);
  EXPECT_EQ(x, 0);
  EXPECT_EQ(y, 4);
  reader.Reset("6", true);
  reader.Serialize(x);
  EXPECT_EQ(x, 6);
}

}  // namespace
}  // namespace zel
