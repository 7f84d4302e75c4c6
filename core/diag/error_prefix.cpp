// The process-wide error prefix.
#include <zel/diag/error.h>

#include <cstring>

namespace zel {

namespace {

// Made on first use. Its guard word is "tini" while it lives and "daed" once destroyed at unload,
// so that late users see a destroyed prefix as empty and leave it alone.
struct ErrorPrefix {
  ErrorPrefix() { std::memcpy(guard, "tini", 4); }
  ~ErrorPrefix() {
    cstring().Swap(text);
    std::memcpy(guard, "daed", 4);
  }
  bool Alive() const { return std::memcmp(guard, "tini", 4) == 0; }

  char guard[4];
  cstring text;
};

ErrorPrefix &Prefix() {
  static ErrorPrefix prefix;
  return prefix;
}

}  // namespace

const cstring &GetErrorPrefix() { return Prefix().text; }

void SetErrorPrefix(const strptr &prefix) {
  ErrorPrefix &p = Prefix();
  if (p.Alive()) p.text.Set(prefix);
}

TempErrorPrefix::TempErrorPrefix(const strptr &text) : saved_(GetErrorPrefix()) {
  SetErrorPrefix(cstring(saved_, text));
}

TempErrorPrefix::~TempErrorPrefix() { SetErrorPrefix(saved_); }

}  // namespace zel
