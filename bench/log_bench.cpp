// The log beside spdlog: a guarded statement nobody listens to, and a 60-byte line to one client
// that discards it.
#include <zel/diag/log.h>

#include <benchmark/benchmark.h>
#include <spdlog/sinks/null_sink.h>
#include <spdlog/spdlog.h>

namespace {

constexpr const char *kLine = "Scheduler worker-3: Deactivating, APC ignored; queue at 42\r\n";

struct Discard : zel::LogClient {
  void Write(const zel::strptr &text) override { benchmark::DoNotOptimize(text.text()); }
};

// Detaches the startup log once, so that nobody listens unless a benchmark adds a client.
void Quiet() {
  static bool done = [] {
    zel::cstring ignored;
    zel::DetachStartupLog(ignored);
    return true;
  }();
  benchmark::DoNotOptimize(done);
}

std::shared_ptr<spdlog::logger> NullLogger() {
  static auto logger =
      std::make_shared<spdlog::logger>("bench", std::make_shared<spdlog::sinks::null_sink_mt>());
  return logger;
}

void ZelDisabled(benchmark::State &state) {
  Quiet();
  int n = 0;
  for (auto _ : state) {
    if (zel::LogCategory::n_global_clients >= 1) zel::PrintLog(kLine);
    benchmark::DoNotOptimize(++n);
  }
}
BENCHMARK(ZelDisabled)->Name("zel:disabled_statement");

void SpdlogDisabled(benchmark::State &state) {
  auto logger = NullLogger();
  logger->set_level(spdlog::level::info);
  int n = 0;
  for (auto _ : state) {
    logger->debug("{}", kLine);
    benchmark::DoNotOptimize(++n);
  }
}
BENCHMARK(SpdlogDisabled)->Name("spdlog:disabled_statement");

void ZelOneClient(benchmark::State &state) {
  Quiet();
  Discard client;
  zel::AddLogClient(&client);
  for (auto _ : state) zel::PrintLog(kLine);
  zel::RemoveLogClient(&client);
}
BENCHMARK(ZelOneClient)->Name("zel:line_to_one_client");

void SpdlogNullSink(benchmark::State &state) {
  auto logger = NullLogger();
  logger->set_level(spdlog::level::info);
  for (auto _ : state) logger->info("{}", kLine);
}
BENCHMARK(SpdlogNullSink)->Name("spdlog:line_to_one_client");

}  // namespace
