// Reading numbers from text: StringIter beside strtol / strtod and std::from_chars, each reading
// the same 1000 numbers separated by blanks.
#include <zel/text/string_iter.h>

#include <benchmark/benchmark.h>

#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <system_error>

namespace {

constexpr int kNumbers = 1000;

// Integers of every magnitude, both signs.
const std::string &IntegerText() {
  static const std::string text = [] {
    std::minstd_rand random(1);
    std::string t;
    for (int i = 0; i < kNumbers; ++i) {
      const auto bits = static_cast<int32_t>(random() << 1);
      t += std::to_string(bits >> (random() % 31)) + ' ';
    }
    return t;
  }();
  return text;
}

// Measurements as people write them: 0 to 6 decimals over many magnitudes, one in ten with an
// exponent.
const std::string &DecimalText() {
  static const std::string text = [] {
    std::minstd_rand random(2);
    const double scales[] = {1e-3, 1, 100, 1e4, 1e6};
    std::string t;
    char buffer[64];
    for (int i = 0; i < kNumbers; ++i) {
      double v = static_cast<double>(random()) / 2147483647.0 * scales[random() % 5];
      if (random() % 2) v = -v;
      if (i % 10 == 0)
        std::snprintf(buffer, sizeof buffer, "%.4e ", v);
      else
        std::snprintf(buffer, sizeof buffer, "%.*f ", static_cast<int>(random() % 7), v);
      t += buffer;
    }
    return t;
  }();
  return text;
}

template <typename Read>
void Run(benchmark::State &state, const std::string &text, Read read) {
  for (auto _ : state) {
    double sum = 0;
    const int count = read(text, sum);
    if (count != kNumbers) state.SkipWithError("not every number was read");
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * kNumbers);
}

// from_chars skips no white space: the blanks are stepped over by hand.
template <typename T>
int FromChars(const std::string &text, double &sum) {
  const char *p = text.data(), *end = p + text.size();
  int count = 0;
  for (;;) {
    while (p < end && *p == ' ') ++p;
    T v;
    const auto result = std::from_chars(p, end, v);
    if (result.ec != std::errc()) return count;
    sum += static_cast<double>(v);
    p = result.ptr;
    ++count;
  }
}

void ZelParseInt(benchmark::State &state) {
  Run(state, IntegerText(), [](const std::string &text, double &sum) {
    zel::StringIter it(text.data(), static_cast<int>(text.size()));
    int count = 0;
    for (int v; it.MaybeParseInteger(v); ++count) sum += v;
    return count;
  });
}
BENCHMARK(ZelParseInt)->Name("zel:parse_int");

void StrtolParseInt(benchmark::State &state) {
  Run(state, IntegerText(), [](const std::string &text, double &sum) {
    const char *p = text.c_str();
    int count = 0;
    for (char *end;; p = end, ++count) {
      const long v = std::strtol(p, &end, 10);
      if (end == p) return count;
      sum += static_cast<double>(v);
    }
  });
}
BENCHMARK(StrtolParseInt)->Name("strtol:parse_int");

void FromCharsParseInt(benchmark::State &state) { Run(state, IntegerText(), FromChars<int>); }
BENCHMARK(FromCharsParseInt)->Name("from_chars:parse_int");

void ZelParseDouble(benchmark::State &state) {
  Run(state, DecimalText(), [](const std::string &text, double &sum) {
    zel::StringIter it(text.data(), static_cast<int>(text.size()));
    int count = 0;
    for (double v; it.MaybeParseDouble(v); ++count) sum += v;
    return count;
  });
}
BENCHMARK(ZelParseDouble)->Name("zel:parse_double");

void StrtodParseDouble(benchmark::State &state) {
  Run(state, DecimalText(), [](const std::string &text, double &sum) {
    const char *p = text.c_str();
    int count = 0;
    for (char *end;; p = end, ++count) {
      const double v = std::strtod(p, &end);
      if (end == p) return count;
      sum += v;
    }
  });
}
BENCHMARK(StrtodParseDouble)->Name("strtod:parse_double");

void FromCharsParseDouble(benchmark::State &state) { Run(state, DecimalText(), FromChars<double>); }
BENCHMARK(FromCharsParseDouble)->Name("from_chars:parse_double");

}  // namespace
