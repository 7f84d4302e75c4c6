// Reading quoted strings: ParserBase::ParseString beside RapidJSON reading the same text as a JSON
// string (header-only peer, from /usr/include).
#include <zel/parse/parser_base.h>

#include <benchmark/benchmark.h>
#include <rapidjson/reader.h>

#include <string>

namespace {

// A quoted string of about 1 KB: words, with one of the escapes \n \t \\ \" every few words.
const std::string &QuotedText() {
  static const std::string text = [] {
    const char *words[] = {"alpha ", "beta ", "gamma ", "delta ", "epsilon ", "zeta "};
    const char *escapes[] = {"\\n", "\\t", "\\\\", "\\\""};
    std::string t = "\"";
    for (int i = 0; t.size() < 1024; ++i) {
      t += words[i % 6];
      if (i % 5 == 4) t += escapes[(i / 5) % 4];
    }
    return t + "\"";
  }();
  return text;
}

void ZelParseString(benchmark::State &state) {
  const std::string &text = QuotedText();
  zel::cstring out;
  for (auto _ : state) {
    zel::ParserBase p(zel::strptr(text.data(), static_cast<int>(text.size())));
    p.ParseString(out);
    benchmark::DoNotOptimize(out.text());
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}
BENCHMARK(ZelParseString)->Name("zel:parse 1 KB string");

// Receives the decoded string; RapidJSON keeps it in the reader's own reused buffer.
struct StringHandler : rapidjson::BaseReaderHandler<rapidjson::UTF8<>, StringHandler> {
  bool String(const char *s, rapidjson::SizeType length, bool) {
    benchmark::DoNotOptimize(s);
    benchmark::DoNotOptimize(length);
    return true;
  }
};

void RapidJsonParseString(benchmark::State &state) {
  const std::string &text = QuotedText();
  rapidjson::Reader reader;
  StringHandler handler;
  for (auto _ : state) {
    rapidjson::StringStream stream(text.c_str());
    if (!reader.Parse<rapidjson::kParseDefaultFlags>(stream, handler)) state.SkipWithError("bad");
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}
BENCHMARK(RapidJsonParseString)->Name("rapidjson:parse 1 KB string");

}  // namespace
