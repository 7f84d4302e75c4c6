// Formatting numbers: the manipulators and the printf engines beside snprintf and {fmt} on the
// same work.
#include <zel/text/print.h>
#include <zel/text/vaprintf.h>

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <string>
#include <vector>

#include "append_each.h"

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
      const uint32_t r = bench::Next(state);
      double v = static_cast<double>(r) / 65536.0 * scales[(r >> 4) % 6];
      list.push_back({i % 3 == 0 ? -v : v, i % 2 == 0 ? 2 : 6});
    }
    return list;
  }();
  return values;
}

// Appends every value of FixedValues with `append`.
template <typename String, typename Append>
void AppendEach(benchmark::State &state, Append append) {
  bench::AppendEach<String>(state, FixedValues(), append);
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

// A mixed printf line: integers, hexadecimal, text and a double.
constexpr char kMixed[] = "item %d at 0x%x: %s = %.2f (%u)";
const char *const kNames[] = {"alpha", "beta", "gamma-ray", "delta"};

template <typename Print>
void PrintMixed(benchmark::State &state, Print print) {
  int i = 0;
  for (auto _ : state) {
    ++i;
    print(i, static_cast<unsigned>(i) * 2654435761u, kNames[i & 3], i * 0.37, 7u * i);
  }
  state.SetItemsProcessed(state.iterations());
}

void ZelPrintfInto(zel::cstring &out, const char *format, ...) {
  va_list args;
  va_start(args, format);
  zel::VAPrintf(out, format, args);
  va_end(args);
}

void ZelVAPrintf(benchmark::State &state) {
  zel::cstring out;
  PrintMixed(state, [&](int i, unsigned h, const char *name, double v, unsigned u) {
    ZelPrintfInto(out, kMixed, i, h, name, v, u);
    benchmark::DoNotOptimize(out);
  });
}
BENCHMARK(ZelVAPrintf)->Name("zel:printf mixed");

void ZelFormat(benchmark::State &state) {
  zel::cstring out;
  PrintMixed(state, [&](int i, unsigned h, const char *name, double v, unsigned u) {
    out.Format(kMixed, i, h, name, v, u);
    benchmark::DoNotOptimize(out);
  });
}
BENCHMARK(ZelFormat)->Name("zel:Format mixed");

void SnprintfMixed(benchmark::State &state) {
  std::string out;
  PrintMixed(state, [&](int i, unsigned h, const char *name, double v, unsigned u) {
    char buffer[128];
    int n = std::snprintf(buffer, sizeof buffer, kMixed, i, h, name, v, u);
    out.assign(buffer, static_cast<size_t>(n));
    benchmark::DoNotOptimize(out);
  });
}
BENCHMARK(SnprintfMixed)->Name("snprintf:printf mixed");
BENCHMARK(SnprintfMixed)->Name("snprintf:Format mixed");

void FmtMixed(benchmark::State &state) {
  std::string out;
  PrintMixed(state, [&](int i, unsigned h, const char *name, double v, unsigned u) {
    out.clear();
    fmt::format_to(std::back_inserter(out), "item {} at 0x{:x}: {} = {:.2f} ({})", i, h, name, v,
                   u);
    benchmark::DoNotOptimize(out);
  });
}
BENCHMARK(FmtMixed)->Name("fmt:printf mixed");

}  // namespace
