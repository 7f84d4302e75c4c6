// Building text: cstring beside std::string, std::to_chars and snprintf on the same work.
#include <zel/text/cstring.h>

#include <benchmark/benchmark.h>

#include <charconv>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "append_each.h"

namespace {

constexpr int kMegabyte = 1 << 20;
constexpr int kNumbers = 1000;

using bench::AppendEach;
using bench::Next;

// Pieces of 8 to 32 characters that add up to at least a megabyte.
const std::vector<std::string_view> &Pieces() {
  static const std::string pool(64, 'x');
  static const std::vector<std::string_view> pieces = [] {
    std::vector<std::string_view> list;
    uint32_t state = 1;
    for (int total = 0; total < kMegabyte;) {
      int n = 8 + static_cast<int>(Next(state) % 25);
      list.emplace_back(pool.data() + Next(state) % 32, n);
      total += n;
    }
    return list;
  }();
  return pieces;
}

// Integers of every magnitude, both signs.
const std::vector<int> &Ints() {
  static const std::vector<int> ints = [] {
    std::vector<int> list;
    uint32_t state = 2;
    for (int i = 0; i < kNumbers; ++i)
      list.push_back(static_cast<int>(Next(state) << 8) >> (Next(state) % 31));
    return list;
  }();
  return ints;
}

// Doubles of many magnitudes, some integral, some needing an exponent.
const std::vector<double> &Doubles() {
  static const std::vector<double> doubles = [] {
    std::vector<double> list;
    uint32_t state = 3;
    const double scales[] = {1e-7, 1e-3, 1, 1000, 1e6, 1e12};
    for (int i = 0; i < kNumbers; ++i) {
      double v = static_cast<double>(Next(state)) / 1024.0 * scales[Next(state) % 6];
      list.push_back(i % 3 == 0 ? static_cast<double>(static_cast<int>(v)) : (i % 2 ? -v : v));
    }
    return list;
  }();
  return doubles;
}

// About 64 KB of words, one in eight of them "needle".
const std::string &Haystack() {
  static const std::string text = [] {
    const char *words[] = {"alpha", "beta", "gamma", "delta", "epsilon", "zeta", "eta", "needle"};
    std::string t;
    uint32_t state = 4;
    while (t.size() < 64 * 1024) {
      t += words[Next(state) % 8];
      t += ' ';
    }
    return t;
  }();
  return text;
}

void ZelBuild(benchmark::State &state) {
  for (auto _ : state) {
    zel::cstring s;
    for (std::string_view piece : Pieces()) s.Add(piece);
    benchmark::DoNotOptimize(s.text());
  }
  state.SetBytesProcessed(state.iterations() * kMegabyte);
}
BENCHMARK(ZelBuild)->Name("zel:build_1mb");

void StdStringBuild(benchmark::State &state) {
  for (auto _ : state) {
    std::string s;
    for (std::string_view piece : Pieces()) s.append(piece);
    benchmark::DoNotOptimize(s.data());
  }
  state.SetBytesProcessed(state.iterations() * kMegabyte);
}
BENCHMARK(StdStringBuild)->Name("std_string:build_1mb");

// Formats with `format` into a stack buffer, then appends.
template <typename T, typename Format>
void AppendFormatted(std::string &s, T v, Format format) {
  char buffer[32];
  s.append(buffer, format(buffer, buffer + sizeof buffer, v));
}

void ZelAppendInt(benchmark::State &state) {
  AppendEach<zel::cstring>(state, Ints(), [](zel::cstring &s, int v) { s << v; });
}
BENCHMARK(ZelAppendInt)->Name("zel:append_int");

void ToCharsAppendInt(benchmark::State &state) {
  AppendEach<std::string>(state, Ints(), [](std::string &s, int v) {
    AppendFormatted(s, v, [](char *b, char *e, int x) { return std::to_chars(b, e, x).ptr; });
  });
}
BENCHMARK(ToCharsAppendInt)->Name("to_chars:append_int");

void SnprintfAppendInt(benchmark::State &state) {
  AppendEach<std::string>(state, Ints(), [](std::string &s, int v) {
    AppendFormatted(s, v, [](char *b, char *e, int x) {
      return b + std::snprintf(b, static_cast<size_t>(e - b), "%d", x);
    });
  });
}
BENCHMARK(SnprintfAppendInt)->Name("snprintf:append_int");

void ZelAppendDouble(benchmark::State &state) {
  AppendEach<zel::cstring>(state, Doubles(), [](zel::cstring &s, double v) { s << v; });
}
BENCHMARK(ZelAppendDouble)->Name("zel:append_double");

void ToCharsAppendDouble(benchmark::State &state) {
  AppendEach<std::string>(state, Doubles(), [](std::string &s, double v) {
    AppendFormatted(s, v, [](char *b, char *e, double x) {
      return std::to_chars(b, e, x, std::chars_format::general, 6).ptr;
    });
  });
}
BENCHMARK(ToCharsAppendDouble)->Name("to_chars:append_double");

void SnprintfAppendDouble(benchmark::State &state) {
  AppendEach<std::string>(state, Doubles(), [](std::string &s, double v) {
    AppendFormatted(s, v, [](char *b, char *e, double x) {
      return b + std::snprintf(b, static_cast<size_t>(e - b), "%g", x);
    });
  });
}
BENCHMARK(SnprintfAppendDouble)->Name("snprintf:append_double");

void ZelReplace(benchmark::State &state) {
  const zel::cstring text{std::string_view(Haystack())};
  for (auto _ : state) {
    zel::cstring replaced = text.Replaced("needle", "pin");
    benchmark::DoNotOptimize(replaced.text());
  }
  state.SetBytesProcessed(state.iterations() * text.length());
}
BENCHMARK(ZelReplace)->Name("zel:replace");

void StdStringReplace(benchmark::State &state) {
  const std::string &text = Haystack();
  const std::string_view what = "needle", with = "pin";
  for (auto _ : state) {
    std::string replaced;
    replaced.reserve(text.size());
    size_t from = 0;
    for (size_t hit; (hit = text.find(what, from)) != std::string::npos; from = hit + what.size()) {
      replaced.append(text, from, hit - from);
      replaced.append(with);
    }
    replaced.append(text, from);
    benchmark::DoNotOptimize(replaced.data());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(text.size()));
}
BENCHMARK(StdStringReplace)->Name("std_string:replace");

}  // namespace
