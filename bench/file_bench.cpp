// Whole files and small records: FileToStringX and StringToFileX beside plain read() and write()
// on a 256 MB file, and small records through BufferedByteDest over a WinFile beside fwrite.
#include <zel/file/whole_file.h>
#include <zel/file/win_file.h>
#include <zel/stream/buffered.h>

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace {

constexpr int kFileSize = 256 << 20;
constexpr int kRecordCount = 1 << 20;

// A path in the temporary directory, private to this process; the file is removed at exit.
class ScratchFile {
 public:
  explicit ScratchFile(const char *name)
      : path_((std::filesystem::temp_directory_path() /
               ("zel-file-bench-" + std::to_string(getpid()) + "-" + name))
                  .string()) {}
  ~ScratchFile() { std::remove(path_.c_str()); }
  const char *path() const { return path_.c_str(); }

 private:
  std::string path_;
};

// 256 MB of text lines (no zero byte), the same for every benchmark of the process.
const std::string &Text() {
  static const std::string text = [] {
    std::string t;
    t.reserve(kFileSize);
    const std::string line = "0123456789 the quick brown fox jumps over the lazy dog\r\n";
    while (t.size() + line.size() <= kFileSize) t += line;
    t.resize(kFileSize, '.');
    return t;
  }();
  return text;
}

// The 256 MB file that the readers read, written once per process.
const char *InputFile() {
  static const ScratchFile file("input");
  static const bool written = zel::StringToFile(zel::strptr(Text()), file.path());
  if (!written) std::abort();
  return file.path();
}

void ZelRead(benchmark::State &state) {
  const char *path = InputFile();
  for (auto _ : state) {
    zel::temp_cstring text = zel::FileToStringX(path);
    benchmark::DoNotOptimize(text.text());
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * kFileSize);
}

// Reads the whole file at `path` into `buffer`, as a careful caller writes it by hand: the size,
// then read until it is all there.
size_t ReadWhole(const char *path, char *&buffer) {
  int fd = open(path, O_RDONLY | O_CLOEXEC);
  struct stat status;
  fstat(fd, &status);
  const size_t size = static_cast<size_t>(status.st_size);
  if (buffer == nullptr) buffer = static_cast<char *>(std::malloc(size + 1));
  size_t done = 0;
  while (done < size) {
    ssize_t n = read(fd, buffer + done, size - done);
    if (n <= 0) break;
    done += static_cast<size_t>(n);
  }
  buffer[done] = 0;
  close(fd);
  return done;
}

// A new right-sized buffer for every read, as FileToStringX returns a new string.
void PosixRead(benchmark::State &state) {
  const char *path = InputFile();
  for (auto _ : state) {
    char *buffer = nullptr;
    benchmark::DoNotOptimize(ReadWhole(path, buffer));
    std::free(buffer);
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * kFileSize);
}

// One buffer for all reads: the cost of reading alone.
void PosixReadReused(benchmark::State &state) {
  const char *path = InputFile();
  char *buffer = nullptr;
  for (auto _ : state) benchmark::DoNotOptimize(ReadWhole(path, buffer));
  std::free(buffer);
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * kFileSize);
}

void ZelWrite(benchmark::State &state) {
  const std::string &text = Text();
  static const ScratchFile file("zel-output");
  for (auto _ : state) zel::StringToFileX(zel::strptr(text), file.path());
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * kFileSize);
}

void PosixWrite(benchmark::State &state) {
  const std::string &text = Text();
  static const ScratchFile file("posix-output");
  for (auto _ : state) {
    int fd = open(file.path(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    size_t done = 0;
    while (done < text.size()) {
      ssize_t n = write(fd, text.data() + done, text.size() - done);
      if (n <= 0) break;
      done += static_cast<size_t>(n);
    }
    close(fd);
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * kFileSize);
}

// A small record: a time stamp and a value.
struct Record {
  int64_t time;
  double value;
};

void ZelRecords(benchmark::State &state) {
  static const ScratchFile file("zel-records");
  for (auto _ : state) {
    zel::WinFile out;
    out.OpenWrite(file.path(), zel::FileThrowErrors);
    zel::BufferedByteDest buffered(out);
    for (int i = 0; i < kRecordCount; ++i) {
      Record record{i, i * 0.5};
      buffered.Write(&record, sizeof record);
    }
    buffered.WriteOut();
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * kRecordCount);
}

void StdioRecords(benchmark::State &state) {
  static const ScratchFile file("stdio-records");
  for (auto _ : state) {
    std::FILE *out = std::fopen(file.path(), "wb");
    for (int i = 0; i < kRecordCount; ++i) {
      Record record{i, i * 0.5};
      std::fwrite(&record, sizeof record, 1, out);
    }
    std::fclose(out);
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * kRecordCount);
}

BENCHMARK(ZelRead)->Name("zel:read a 256 MB file")->Unit(benchmark::kMillisecond);
BENCHMARK(PosixRead)->Name("posix:read a 256 MB file")->Unit(benchmark::kMillisecond);
BENCHMARK(PosixReadReused)
    ->Name("posix_reused_buffer:read a 256 MB file")
    ->Unit(benchmark::kMillisecond);
BENCHMARK(ZelWrite)->Name("zel:write a 256 MB file")->Unit(benchmark::kMillisecond);
BENCHMARK(PosixWrite)->Name("posix:write a 256 MB file")->Unit(benchmark::kMillisecond);
BENCHMARK(ZelRecords)->Name("zel:write 1M records of 16 bytes")->Unit(benchmark::kMillisecond);
BENCHMARK(StdioRecords)->Name("stdio:write 1M records of 16 bytes")->Unit(benchmark::kMillisecond);

}  // namespace
