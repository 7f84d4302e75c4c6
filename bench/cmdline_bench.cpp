// Command lines: a settings record parsed by CmdLine and read with its typed getters, and written
// with CmdLine::Append and parsed back, beside RapidJSON (header-only peer, from /usr/include)
// doing the same with the record as a JSON object; binary command lines built and searched with
// BCmdLinePtr::Find, with no peer.
#include <zel/mem/allocator.h>
#include <zel/mem/tary.h>
#include <zel/parse/bcmdline.h>
#include <zel/parse/cmdline.h>

#include <benchmark/benchmark.h>
#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace {

using zel::BCmdLine;
using zel::BCmdLinePtr;
using zel::CmdLine;
using zel::StringID;
using zel::strptr;

// A window's settings: a command and ten values, three of the texts needing escapes.
struct Settings {
  const char *title = "Main \"editor\" window";
  int x = 120;
  int y = 80;
  int width = 1024;
  int height = 768;
  bool visible = true;
  double opacity = 0.95;
  const char *font = "DejaVu Sans\tMono";
  const char *path = "C:\\data\\notes.txt";
  const char *updated = "2024/03/05";
};
const Settings kSettings;

// The record as each side stores it, written by hand as a person editing a settings file would.
constexpr std::string_view kCmdLineText =
    R"(window title:"Main \"editor\" window" x:120 y:80 width:1024 height:768 visible:yes )"
    R"(opacity:0.95 font:"DejaVu Sans\tMono" path:"C:\\data\\notes.txt" updated:"2024/03/05")";
constexpr std::string_view kJsonText =
    R"({"command":"window","title":"Main \"editor\" window","x":120,"y":80,"width":1024,)"
    R"("height":768,"visible":true,"opacity":0.95,"font":"DejaVu Sans\tMono",)"
    R"("path":"C:\\data\\notes.txt","updated":"2024/03/05"})";

strptr View(std::string_view text) { return strptr(text.data(), static_cast<int>(text.size())); }

// What a caller takes out of the record: every value, the texts as views into the parser's keeping.
// The date stays text on both sides: converting it is not part of reading the record.
struct Values {
  std::string_view command, title, font, path, updated;
  int x = 0, y = 0, width = 0, height = 0;
  bool visible = false;
  double opacity = 0;

  bool operator==(const Values &) const = default;
};

std::string_view Std(const strptr &s) {
  return std::string_view(s.text(), static_cast<size_t>(s.length()));
}

const Values &Expected() {
  static const Values values{.command = "window",
                             .title = kSettings.title,
                             .font = kSettings.font,
                             .path = kSettings.path,
                             .updated = kSettings.updated,
                             .x = kSettings.x,
                             .y = kSettings.y,
                             .width = kSettings.width,
                             .height = kSettings.height,
                             .visible = kSettings.visible,
                             .opacity = kSettings.opacity};
  return values;
}

// Every value through the getters that take a default, as a caller that tolerates a missing key.
Values Read(const CmdLine &line) {
  Values v;
  v.command = Std(line.Command());
  v.title = Std(line.GetString("title"));
  v.x = line.GetInteger("x", 0);
  v.y = line.GetInteger("y", 0);
  v.width = line.GetInteger("width", 0);
  v.height = line.GetInteger("height", 0);
  v.visible = line.GetBool("visible", false);
  v.opacity = line.GetDouble("opacity", 0.0);
  v.font = Std(line.GetString("font"));
  v.path = Std(line.GetString("path"));
  v.updated = Std(line.GetString("updated"));
  return v;
}

// The same tolerance on the JSON side: look the member up and check its type before reading.
template <typename T, typename Get>
T Member(const rapidjson::Document &doc, const char *name, T def, Get get) {
  const auto found = doc.FindMember(name);
  return found != doc.MemberEnd() ? get(found->value, def) : def;
}

int JsonInt(const rapidjson::Document &doc, const char *name) {
  return Member(doc, name, 0,
                [](const rapidjson::Value &v, int def) { return v.IsInt() ? v.GetInt() : def; });
}

std::string_view JsonString(const rapidjson::Document &doc, const char *name) {
  return Member(doc, name, std::string_view(), [](const rapidjson::Value &v, std::string_view def) {
    return v.IsString() ? std::string_view(v.GetString(), v.GetStringLength()) : def;
  });
}

Values Read(const rapidjson::Document &doc) {
  Values v;
  v.command = JsonString(doc, "command");
  v.title = JsonString(doc, "title");
  v.x = JsonInt(doc, "x");
  v.y = JsonInt(doc, "y");
  v.width = JsonInt(doc, "width");
  v.height = JsonInt(doc, "height");
  v.visible = Member(doc, "visible", false, [](const rapidjson::Value &b, bool def) {
    return b.IsBool() ? b.GetBool() : def;
  });
  v.opacity = Member(doc, "opacity", 0.0, [](const rapidjson::Value &d, double def) {
    return d.IsNumber() ? d.GetDouble() : def;
  });
  v.font = JsonString(doc, "font");
  v.path = JsonString(doc, "path");
  v.updated = JsonString(doc, "updated");
  return v;
}

// Blocks the global allocator has handed out so far.
int64_t Allocations() { return zel::GetMemoryAllocator()->Counts().allocs; }

// The blocks handed out since `before`, per iteration, as the counter `name`.
void ReportAllocations(benchmark::State &state, int64_t before, const char *name) {
  state.counters[name] = benchmark::Counter(static_cast<double>(Allocations() - before),
                                            benchmark::Counter::kAvgIterations);
}

// --- Parsing the record and reading every value ---
//
// Both sides make their parser per record, as a caller handling records one at a time does: a
// CmdLine, a rapidjson::Document.

void ZelParseAndRead(benchmark::State &state) {
  if (!(Read(CmdLine(View(kCmdLineText), false)) == Expected())) state.SkipWithError("misread");
  const int64_t before = Allocations();
  for (auto _ : state) {
    const CmdLine line(View(kCmdLineText), false);
    Values v = Read(line);
    benchmark::DoNotOptimize(v);
  }
  ReportAllocations(state, before, "allocs_per_record");
}
BENCHMARK(ZelParseAndRead)->Name("zel:parse a settings record and read every value");

void RapidJsonParseAndRead(benchmark::State &state) {
  const std::string text(kJsonText);  // NUL-terminated, as Document::Parse(const char *) wants
  {
    rapidjson::Document doc;
    if (doc.Parse(text.c_str()).HasParseError() || !(Read(doc) == Expected()))
      state.SkipWithError("misread");
  }
  for (auto _ : state) {
    rapidjson::Document doc;
    doc.Parse(text.c_str());
    Values v = Read(doc);
    benchmark::DoNotOptimize(v);
  }
}
BENCHMARK(RapidJsonParseAndRead)->Name("rapidjson:parse a settings record and read every value");

// --- Writing the record and parsing it back ---
//
// Both sides keep one output buffer across records, emptied before each, and make their parser
// per record.

void Write(const Settings &s, zel::cstring &out) {
  out << "window";
  CmdLine::Append(out, "title", s.title);
  CmdLine::Append(out, "x", s.x);
  CmdLine::Append(out, "y", s.y);
  CmdLine::Append(out, "width", s.width);
  CmdLine::Append(out, "height", s.height);
  CmdLine::Append(out, "visible", s.visible);
  CmdLine::Append(out, "opacity", s.opacity);
  CmdLine::Append(out, "font", s.font);
  CmdLine::Append(out, "path", s.path);
  CmdLine::Append(out, "updated", s.updated);
}

void Write(const Settings &s, rapidjson::Writer<rapidjson::StringBuffer> &w) {
  w.StartObject();
  w.Key("command");
  w.String("window");
  w.Key("title");
  w.String(s.title);
  w.Key("x");
  w.Int(s.x);
  w.Key("y");
  w.Int(s.y);
  w.Key("width");
  w.Int(s.width);
  w.Key("height");
  w.Int(s.height);
  w.Key("visible");
  w.Bool(s.visible);
  w.Key("opacity");
  w.Double(s.opacity);
  w.Key("font");
  w.String(s.font);
  w.Key("path");
  w.String(s.path);
  w.Key("updated");
  w.String(s.updated);
  w.EndObject();
}

void ZelWriteAndParse(benchmark::State &state) {
  zel::cstring out;
  Write(kSettings, out);
  if (!(Read(CmdLine(out, false)) == Expected())) state.SkipWithError("misread");
  const int64_t before = Allocations();
  for (auto _ : state) {
    out.Flush();
    Write(kSettings, out);
    const CmdLine line(out, false);
    benchmark::DoNotOptimize(line.ArgCount());
  }
  ReportAllocations(state, before, "allocs_per_record");
}
BENCHMARK(ZelWriteAndParse)->Name("zel:write the record and parse it back");

void RapidJsonWriteAndParse(benchmark::State &state) {
  rapidjson::StringBuffer buffer;
  rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
  Write(kSettings, writer);
  {
    rapidjson::Document doc;
    if (doc.Parse(buffer.GetString()).HasParseError() || !(Read(doc) == Expected()))
      state.SkipWithError("misread");
  }
  for (auto _ : state) {
    buffer.Clear();
    writer.Reset(buffer);
    Write(kSettings, writer);
    rapidjson::Document doc;
    doc.Parse(buffer.GetString(), buffer.GetSize());
    benchmark::DoNotOptimize(doc.MemberCount());
  }
}
BENCHMARK(RapidJsonWriteAndParse)->Name("rapidjson:write the record and parse it back");

// --- Binary command lines ---

// How many times a block holding `line`'s arguments grows when they are added one by one from
// empty, by the growth rule: what the allocations should not exceed.
int BlockGrowths(const BCmdLinePtr &line) {
  int capacity = 0, growths = 0;
  for (const zel::BCmdLineArg &arg : line) {
    const int needed = static_cast<int>(reinterpret_cast<const char *>(arg.Next_()) - line.Data());
    if (needed > capacity) {
      capacity = zel::GrowCapacity(capacity, 1, needed);
      ++growths;
    }
  }
  return growths;
}

struct SettingNames {
  StringID window = zel::InternString("window");
  StringID title = zel::InternString("title");
  StringID x = zel::InternString("x");
  StringID y = zel::InternString("y");
  StringID width = zel::InternString("width");
  StringID height = zel::InternString("height");
  StringID visible = zel::InternString("visible");
  StringID opacity = zel::InternString("opacity");
  StringID font = zel::InternString("font");
  StringID path = zel::InternString("path");
  StringID updated = zel::InternString("updated");
};

// The settings with mixed types: texts, ints, a bool, a double, a float and a 64-bit time.
BCmdLine Build(const SettingNames &n, const Settings &s) {
  BCmdLine line(n.window);
  line.AddString(n.title, s.title);
  line.AddInt(n.x, s.x);
  line.AddInt(n.y, s.y);
  line.AddInt(n.width, s.width);
  line.AddInt(n.height, s.height);
  line.AddBool(n.visible, s.visible);
  line.AddFloat(n.opacity, static_cast<float>(s.opacity));
  line.AddString(n.font, s.font);
  line.AddString(n.path, s.path);
  line.AddInt64(n.updated, 1709596800);
  return line;
}

// Each argument looked up once, in stored order, and its value read.
void FindEach(const SettingNames &n, const BCmdLinePtr &view) {
  benchmark::DoNotOptimize(view.Find(n.title)->GetString());
  benchmark::DoNotOptimize(view.Find(n.x)->GetInt());
  benchmark::DoNotOptimize(view.Find(n.y)->GetInt());
  benchmark::DoNotOptimize(view.Find(n.width)->GetInt());
  benchmark::DoNotOptimize(view.Find(n.height)->GetInt());
  benchmark::DoNotOptimize(view.Find(n.visible)->GetBool());
  benchmark::DoNotOptimize(view.Find(n.opacity)->GetFloat());
  benchmark::DoNotOptimize(view.Find(n.font)->GetString());
  benchmark::DoNotOptimize(view.Find(n.path)->GetString());
  benchmark::DoNotOptimize(view.Find(n.updated)->GetInt64());
}

void ZelBuildAndFind(benchmark::State &state) {
  const SettingNames names;
  const int growths = BlockGrowths(Build(names, kSettings));
  const int64_t before = Allocations();
  for (auto _ : state) {
    const BCmdLine line = Build(names, kSettings);
    FindEach(names, line.View());
  }
  ReportAllocations(state, before, "allocs_per_line");
  state.counters["block_growths"] = growths;
}
BENCHMARK(ZelBuildAndFind)->Name("zel:build a binary line of ten values and find each");

// One lookup per argument in stored order over lines of 10 to 1,000 int arguments: the rotating
// search examines one argument per lookup, so the time per lookup stays flat.
void ZelFindInOrder(benchmark::State &state) {
  const int count = static_cast<int>(state.range(0));
  std::vector<StringID> names;
  BCmdLine line(zel::InternString("values"));
  for (int i = 0; i < count; ++i) {
    names.push_back(zel::InternString(("value" + std::to_string(i)).c_str()));
    line.AddInt(names.back(), i);
  }
  const BCmdLinePtr view = line.View();
  for (auto _ : state)
    for (StringID name : names) benchmark::DoNotOptimize(view.Find(name)->GetInt());
  state.SetItemsProcessed(state.iterations() * count);
  state.counters["per_lookup"] = benchmark::Counter(
      count, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(ZelFindInOrder)
    ->Name("zel:binary line lookup in stored order")
    ->Arg(10)
    ->Arg(100)
    ->Arg(1000);

}  // namespace
