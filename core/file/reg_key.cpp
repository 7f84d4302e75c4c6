// RegKey: a registry key under HKEY_LOCAL_MACHINE and its string values.
#include <zel/file/reg_key.h>

#include "os/os.h"

namespace zel {

RegKey::~RegKey() { Close(); }

bool RegKey::Open(const strptr &subkey) { return OpenKey(subkey, false); }

bool RegKey::Create(const strptr &subkey) { return OpenKey(subkey, true); }

bool RegKey::OpenKey(const strptr &subkey, bool create) {
  Close();
  key_ = os::RegistryOpen(cstring(subkey).text(), create);
  return key_ != nullptr;
}

void RegKey::Close() {
  os::RegistryClose(key_);
  key_ = nullptr;
}

bool RegKey::GetString(const strptr &name, cstring &out) const {
  const cstring value_name(name);
  char small[256];
  int length = os::RegistryGetString(key_, value_name.text(), small, sizeof small);
  if (length < 0) return false;
  if (length < static_cast<int>(sizeof small)) {
    out.Set(strptr(small, length));
    return true;
  }
  cstring value;
  int now = os::RegistryGetString(key_, value_name.text(), value.GetBuffer(length), length + 1);
  if (now < 0) return false;
  // A value that changed meanwhile is cut to the shorter length.
  value.ReleaseBuffer(now < length ? now : length);
  out.Swap(value);
  return true;
}

bool RegKey::SetString(const strptr &name, const strptr &value) {
  return os::RegistrySetString(key_, cstring(name).text(), cstring(value).text(), value.length());
}

}  // namespace zel
