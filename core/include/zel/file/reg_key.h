// RegKey: a registry key under HKEY_LOCAL_MACHINE and its string values.
#pragma once

#include <zel/text/cstring.h>

namespace zel {

// An open key under HKEY_LOCAL_MACHINE ("Software\Quendari"), closed by its destructor. On Linux
// the registry is a directory tree under $ZEL_REGISTRY (default /etc/zel/registry): the key
// "Software\Quendari" is <root>/HKEY_LOCAL_MACHINE/Software/Quendari and a string value the file
// of its name there, holding the value's bytes. Failures are not reported beyond the results and
// the thread's last error. Not copyable.
class ZEL_API RegKey {
 public:
  RegKey() = default;
  ~RegKey();
  RegKey(const RegKey &) = delete;
  RegKey &operator=(const RegKey &) = delete;

  // Opens HKEY_LOCAL_MACHINE\<subkey> for reading (a key held before is closed first); false when
  // it is missing or cannot be read.
  bool Open(const strptr &subkey);
  // Opens it for reading and writing, creating it and the missing keys above it; false when that
  // is not allowed (Windows wants an administrator for HKEY_LOCAL_MACHINE).
  bool Create(const strptr &subkey);
  void Close();
  bool IsOpen() const { return key_ != nullptr; }

  // Reads the string value `name` into `out`; false, `out` unchanged, when there is no open key
  // or the value is missing or not a string.
  bool GetString(const strptr &name, cstring &out) const;
  // Sets the string value `name`; false when there is no key opened by Create or the system
  // refuses.
  bool SetString(const strptr &name, const strptr &value);

 private:
  bool OpenKey(const strptr &subkey, bool create);

  void *key_ = nullptr;
};

}  // namespace zel
