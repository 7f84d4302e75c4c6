// What the text benchmarks share: the same pseudo-random input for every implementation, and the
// loop that appends a list of values to a string.
#pragma once

#include <zel/text/cstring.h>

#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>

namespace bench {

// A small deterministic generator (a linear congruential one), so that every implementation gets
// the same input.
inline uint32_t Next(uint32_t &state) {
  state = state * 1664525u + 1013904223u;
  return state >> 8;
}

inline void Empty(zel::cstring &s) { s.Flush(); }
inline void Empty(std::string &s) { s.clear(); }

// Appends every value with `append`, into a string emptied (its buffer kept) before each round.
template <typename String, typename Values, typename Append>
void AppendEach(benchmark::State &state, const Values &values, Append append) {
  String s;
  for (auto _ : state) {
    Empty(s);
    for (const auto &v : values) append(s, v);
    benchmark::DoNotOptimize(s);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(values.size()));
}

}  // namespace bench
