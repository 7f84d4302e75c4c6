// Formatting numbers: the manipulators beside snprintf and {fmt} on the same work.
#include <zel/text/print.h>

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace {

constexpr int kValues = 1000;

struct Fixed {
  double value;
  int decimals;
};

// Doubles of many magnitudes and both signs, every other one with 2 decimals, the rest with 6.
const std::vector<Fixed> &FixedValues() {
  static const std::vector<Fixed> values = [] {
    std::vector<Fixed> list;
    uint32_t state = 5;
    const double scales[] = {1e-4, 0.01, 1, 100, 1e4, 1e7};
    for (int i = 0; i < kValues; ++i) {
      state = state * 1664525u + 1013904223u;
      double v = static_cast<double>(state >> 8) / 65536.0 * scales[(state >> 4) % 6];
      list.push_back({i % 3 == 0 ? -v : v, i % 2 == 0 ? 2 : 6});
    }
    return list;
  }();
  return values;
}

void Empty(zel::cstring &s) { s.Flush(); }
void Empty(std::string &s) { s.clear(); }

// Appends every value with `append`, into a string emptied (its buffer kept) before each round.
template <typename String, typename Append>
void AppendEach(benchmark::State &state, Append append) {
  String s;
  for (auto _ : state) {
    Empty(s);
    for (const Fixed &f : FixedValues()) append(s, f);
    benchmark::DoNotOptimize(s);
  }
  state.SetItemsProcessed(state.iterations() * kValues);
}

void ZelPrintDouble(benchmark::State &state) {
  AppendEach<zel::cstring>(state, [](zel::cstring &s, const Fixed &f) {
    s << zel::PrintDouble(f.value, f.decimals, false);
  });
}
BENCHMARK(ZelPrintDouble)->Name("zel:print double");

void SnprintfPrintDouble(benchmark::State &state) {
  AppendEach<std::string>(state, [](std::string &s, const Fixed &f) {
    char buffer[64];
    int n = std::snprintf(buffer, sizeof buffer, "%.*f", f.decimals, f.value);
    s.append(buffer, static_cast<size_t>(n));
  });
}
BENCHMARK(SnprintfPrintDouble)->Name("snprintf:print double");

void FmtPrintDouble(benchmark::State &state) {
  AppendEach<std::string>(state, [](std::string &s, const Fixed &f) {
    char buffer[64];
    char *end = fmt::format_to(buffer, "{:.{}f}", f.value, f.decimals);
    s.append(buffer, static_cast<size_t>(end - buffer));
  });
}
BENCHMARK(FmtPrintDouble)->Name("fmt:print double");

}  // namespace
