// BCmdLine: building packed arguments, reading them in place, finding them by name.
#include <zel/mem/allocator.h>
#include <zel/mem/tary.h>
#include <zel/parse/bcmdline.h>

#include <cstddef>
#include <utility>

namespace zel {

namespace {

constexpr int kIdSize = static_cast<int>(sizeof(StringID));
constexpr int kHeaderSize = 2 * kIdSize;

int ReadLength(const char *at) {
  int32_t length;
  std::memcpy(&length, at, sizeof(length));
  return length;
}

template <typename T>
T ReadValue(const BCmdLineArg &arg, StringID type) {
  T value{};
  if (arg.GetType() == type) std::memcpy(&value, arg.Value(), sizeof(T));
  return value;
}

}  // namespace

// --- Arguments in place ---

int BCmdLineArg::GetSize() const {
  const StringID type = GetType();
  if (type == _id_bool) return 1;
  if (type == _id_int || type == _id_float) return 4;
  if (type == _id_int_64 || type == _id_double) return 8;
  if (type == _id_string) return 4 + ReadLength(Value());
  if (type == _id_BCmdLine) return kIdSize + 4 + ReadLength(Value() + kIdSize);
  return 0;
}

bool BCmdLineArg::GetBool() const { return ReadValue<char>(*this, _id_bool) != 0; }
int BCmdLineArg::GetInt() const { return ReadValue<int32_t>(*this, _id_int); }
long long BCmdLineArg::GetInt64() const { return ReadValue<int64_t>(*this, _id_int_64); }
float BCmdLineArg::GetFloat() const { return ReadValue<float>(*this, _id_float); }
double BCmdLineArg::GetDouble() const { return ReadValue<double>(*this, _id_double); }

strptr BCmdLineArg::GetString() const {
  if (GetType() != _id_string) return strptr();
  return strptr(Value() + 4, ReadLength(Value()));
}

BCmdLinePtr BCmdLineArg::GetCmdLine() const {
  if (GetType() != _id_BCmdLine) return BCmdLinePtr();
  StringID command;
  std::memcpy(&command, Value(), sizeof(command));
  return BCmdLinePtr(command, Value() + kIdSize + 4, ReadLength(Value() + kIdSize));
}

// --- Views ---

BCmdLinePtr::Iterator &BCmdLinePtr::Iterator::operator++() {
  at_ = reinterpret_cast<const char *>((**this).Next_());
  return *this;
}

namespace {

// Examines the arguments from `from` up to `stop`, moving `cursor` past each; the first named
// `name`, or null.
const BCmdLineArg *Scan(StringID name, const char *from, const char *stop, const char *&cursor) {
  for (const char *p = from; p < stop;) {
    const auto *arg = reinterpret_cast<const BCmdLineArg *>(p);
    cursor = p = reinterpret_cast<const char *>(arg->Next_());
    if (arg->GetName() == name) return arg;
  }
  return nullptr;
}

}  // namespace

const BCmdLineArg *BCmdLinePtr::Find(StringID name) const {
  if (length_ <= 0) return nullptr;
  if (cursor_ == nullptr) cursor_ = args_;
  const char *const began = cursor_;
  if (const BCmdLineArg *arg = Scan(name, began, args_ + length_, cursor_)) return arg;
  return Scan(name, args_, began, cursor_);
}

// --- Owned blocks ---

BCmdLine::BCmdLine(const BCmdLine &other) : command_(other.command_) {
  if (other.length_ == 0) return;
  args_ = static_cast<char *>(MallocX(other.length_));
  std::memcpy(args_, other.args_, static_cast<size_t>(other.length_));
  length_ = capacity_ = other.length_;
}

BCmdLine &BCmdLine::operator=(const BCmdLine &other) {
  if (this != &other) {
    BCmdLine copy(other);
    *this = std::move(copy);
  }
  return *this;
}

BCmdLine::BCmdLine(BCmdLine &&other) noexcept
    : command_(other.command_),
      args_(std::exchange(other.args_, nullptr)),
      length_(std::exchange(other.length_, 0)),
      capacity_(std::exchange(other.capacity_, 0)) {}

BCmdLine &BCmdLine::operator=(BCmdLine &&other) noexcept {
  std::swap(command_, other.command_);
  std::swap(args_, other.args_);
  std::swap(length_, other.length_);
  std::swap(capacity_, other.capacity_);
  return *this;
}

BCmdLine::~BCmdLine() { FreeX(args_); }

char *BCmdLine::AddArg(StringID type, StringID name, int size) {
  const int needed = length_ + kHeaderSize + size;
  if (needed > capacity_) {
    const int capacity = GrowCapacity(capacity_, 1, needed);
    args_ = static_cast<char *>(ReallocX(args_, capacity));
    capacity_ = capacity;
  }
  char *at = args_ + length_;
  std::memcpy(at, &type, kIdSize);
  std::memcpy(at + kIdSize, &name, kIdSize);
  length_ = needed;
  return at + kHeaderSize;
}

void BCmdLine::AddBool(StringID name, bool value) { *AddArg(_id_bool, name, 1) = value ? 1 : 0; }

void BCmdLine::AddInt(StringID name, int value) {
  const int32_t v = value;
  std::memcpy(AddArg(_id_int, name, 4), &v, 4);
}

void BCmdLine::AddInt64(StringID name, long long value) {
  const int64_t v = value;
  std::memcpy(AddArg(_id_int_64, name, 8), &v, 8);
}

void BCmdLine::AddFloat(StringID name, float value) {
  std::memcpy(AddArg(_id_float, name, 4), &value, 4);
}

void BCmdLine::AddDouble(StringID name, double value) {
  std::memcpy(AddArg(_id_double, name, 8), &value, 8);
}

void BCmdLine::AddString(StringID name, const strptr &value) {
  const int32_t length = value.length();
  char *at = AddArg(_id_string, name, 4 + length);
  std::memcpy(at, &length, 4);
  if (length > 0) std::memcpy(at + 4, value.text(), static_cast<size_t>(length));
}

void BCmdLine::AddCmdLine(StringID name, const BCmdLinePtr &sub) {
  const int32_t length = sub.Length() > 0 ? sub.Length() : 0;
  // The sub-line may lie in this block, which growing moves: keep its offset.
  const bool inside = sub.Data() >= args_ && sub.Data() < args_ + length_;
  const std::ptrdiff_t offset = inside ? sub.Data() - args_ : 0;
  const StringID command = sub.Command();
  char *at = AddArg(_id_BCmdLine, name, kIdSize + 4 + length);
  std::memcpy(at, &command, kIdSize);
  std::memcpy(at + kIdSize, &length, 4);
  if (length > 0)
    std::memcpy(at + kIdSize + 4, inside ? args_ + offset : sub.Data(),
                static_cast<size_t>(length));
}

}  // namespace zel
