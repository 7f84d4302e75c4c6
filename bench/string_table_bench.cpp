// Interning names that are already interned, and copying shared strings: StringTableMT beside a
// std::unordered_map and Abseil's flat_hash_map under a std::mutex, shstring beside
// std::shared_ptr<std::string>.
#include <zel/text/shstring.h>
#include <zel/text/string_table.h>

#include <absl/container/flat_hash_map.h>
#include <benchmark/benchmark.h>

#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace {

constexpr int kNames = 1024;  // a power of two

// Dotted names of 10 to 30 characters, like object and property names.
const std::vector<std::string> &Names() {
  static const std::vector<std::string> names = [] {
    const char *parts[] = {"widget", "panel", "color", "size", "layout", "border", "font", "x"};
    std::vector<std::string> list;
    for (int i = 0; i < kNames; ++i)
      list.push_back(std::string(parts[i % 8]) + "." + parts[(i / 8) % 8] + "." +
                     std::to_string(i));
    return list;
  }();
  return names;
}

struct Zel {
  zel::StringTableMT table;
  const char *Intern(std::string_view name) { return table.GetOrCreateIndex(name); }
};

// A map from names to their interned copies, under a mutex.
template <typename Map>
struct LockedMap {
  std::mutex mutex;
  Map map;
  std::deque<std::string> texts;  // the interned copies; a deque never moves them

  const char *Intern(std::string_view name) {
    std::lock_guard<std::mutex> hold(mutex);
    auto found = map.find(name);
    if (found != map.end()) return found->second;
    const std::string &copy = texts.emplace_back(name);
    map.emplace(copy, copy.c_str());
    return copy.c_str();
  }
};
using UnorderedMap = LockedMap<std::unordered_map<std::string_view, const char *>>;
using FlatHashMap = LockedMap<absl::flat_hash_map<std::string_view, const char *>>;

// One table per implementation, holding every name before any benchmark looks one up.
template <typename Table>
Table &Filled() {
  static Table *const table = [] {
    auto *t = new Table;
    for (const std::string &name : Names()) t->Intern(name);
    return t;
  }();
  return *table;
}

template <typename Table>
void InternHit(benchmark::State &state) {
  Table &table = Filled<Table>();
  const std::vector<std::string> &names = Names();
  size_t i = static_cast<size_t>(state.thread_index()) * kNames / 2;
  for (auto _ : state) benchmark::DoNotOptimize(table.Intern(names[i++ & (kNames - 1)]));
  state.SetItemsProcessed(state.iterations());
}

constexpr const char *kSharedText = "an object name shared by many holders";

void ZelSharedCopy(benchmark::State &state) {
  const zel::shstring name(kSharedText);
  for (auto _ : state) {
    zel::shstring copy(name);
    benchmark::DoNotOptimize(copy);
  }
}

void SharedPtrCopy(benchmark::State &state) {
  const auto name = std::make_shared<std::string>(kSharedText);
  for (auto _ : state) {
    std::shared_ptr<std::string> copy(name);
    benchmark::DoNotOptimize(copy);
  }
}

}  // namespace

BENCHMARK_TEMPLATE(InternHit, Zel)->Name("zel:intern hit");
BENCHMARK_TEMPLATE(InternHit, UnorderedMap)->Name("unordered_map:intern hit");
BENCHMARK_TEMPLATE(InternHit, FlatHashMap)->Name("flat_hash_map:intern hit");
BENCHMARK_TEMPLATE(InternHit, Zel)->Name("zel:intern hit 2 threads")->Threads(2)->UseRealTime();
BENCHMARK_TEMPLATE(InternHit, UnorderedMap)
    ->Name("unordered_map:intern hit 2 threads")
    ->Threads(2)
    ->UseRealTime();
BENCHMARK_TEMPLATE(InternHit, FlatHashMap)
    ->Name("flat_hash_map:intern hit 2 threads")
    ->Threads(2)
    ->UseRealTime();
BENCHMARK(ZelSharedCopy)->Name("zel:shared string copy");
BENCHMARK(SharedPtrCopy)->Name("shared_ptr:shared string copy");
