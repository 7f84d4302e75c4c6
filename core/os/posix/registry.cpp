// The registry as a directory tree: <root>/HKEY_LOCAL_MACHINE/<key path>/<value name>, where the
// root is $ZEL_REGISTRY or /etc/zel/registry.
#include "os/os.h"
#include "os/posix/native_path.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <new>

namespace zel::os {

namespace {

struct Key {
  static constexpr uint32_t kLive = 0x4B474552;  // "REGK"

  uint32_t magic = kLive;
  bool writable = false;
  posix::NativePath directory;
};

// Creates `path` and its missing parents; false with errno set when one cannot be made.
bool MakeDirectories(posix::NativePath &path) {
  char *text = path.data();
  for (int i = 1; i <= path.length(); ++i) {
    if (text[i] != '/' && text[i] != 0) continue;
    char kept = text[i];
    text[i] = 0;
    bool made = CreateDirectory(text) || IsDirectory(text);
    text[i] = kept;
    if (!made) return false;
  }
  return true;
}

Key *KeyOf(void *key) {
  auto *k = static_cast<Key *>(key);
  if (k == nullptr || k->magic != Key::kLive) {
    errno = EBADF;
    return nullptr;
  }
  return k;
}

// Opens the file of value `name` of `key` with `flags`; -1 with errno set on failure.
int OpenValue(const Key &key, const char *name, int flags) {
  posix::NativePath path(key.directory.c_str());
  if (!path.Append("/") || !path.Append(name)) return -1;
  int fd;
  do {
    fd = open(path.c_str(), flags | O_CLOEXEC, 0666);
  } while (fd < 0 && errno == EINTR);
  return fd;
}

// Reads the `length` bytes of a value into `buf` as RegistryGetString returns them.
int ReadValue(int fd, int length, char *buf, int cap) {
  int wanted = cap <= 0 ? 0 : (length < cap - 1 ? length : cap - 1);
  int got = 0;
  while (got < wanted) {
    ssize_t n = read(fd, buf + got, static_cast<size_t>(wanted - got));
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) return -1;
    if (n == 0) break;
    got += static_cast<int>(n);
  }
  if (cap > 0) buf[got] = 0;
  // A value that shrank meanwhile is what was read.
  return got < wanted ? got : length;
}

}  // namespace

void *RegistryOpen(const char *subkey, bool create) {
  const char *root = std::getenv("ZEL_REGISTRY");
  if (root == nullptr || *root == 0) root = "/etc/zel/registry";
  void *memory = HeapAlloc(sizeof(Key));
  if (memory == nullptr) {
    errno = ENOMEM;
    return nullptr;
  }
  auto *key = new (memory) Key;
  key->writable = create;
  posix::NativePath &directory = key->directory;
  bool found = directory.Append(root) && directory.Append("/HKEY_LOCAL_MACHINE") &&
               (*subkey == 0 || (directory.Append("/") && directory.Append(subkey)));
  if (found && create) {
    found = MakeDirectories(directory);
  } else if (found && !IsDirectory(directory.c_str())) {
    errno = ENOENT;
    found = false;
  }
  if (!found) {
    RegistryClose(key);
    return nullptr;
  }
  return key;
}

void RegistryClose(void *key) {
  if (key == nullptr) return;
  SavedLastError saved;
  Key *k = KeyOf(key);
  if (k == nullptr) return;
  k->magic = 0;
  k->~Key();
  HeapFree(k);
}

int RegistryGetString(void *key, const char *name, char *buf, int cap) {
  Key *k = KeyOf(key);
  if (k == nullptr) return -1;
  int fd = OpenValue(*k, name, O_RDONLY);
  if (fd < 0) return -1;
  struct stat status;
  int length = -1;
  if (fstat(fd, &status) == 0) {
    if (S_ISREG(status.st_mode))
      length = ReadValue(fd, static_cast<int>(status.st_size), buf, cap);
    else
      errno = ENOENT;  // a key of that name is not a value
  }
  SavedLastError saved;
  close(fd);
  return length;
}

bool RegistrySetString(void *key, const char *name, const char *value, int length) {
  Key *k = KeyOf(key);
  if (k == nullptr) return false;
  if (!k->writable) {
    errno = EACCES;
    return false;
  }
  int fd = OpenValue(*k, name, O_WRONLY | O_CREAT | O_TRUNC);
  if (fd < 0) return false;
  bool written = true;
  for (int done = 0; written && done < length;) {
    ssize_t n = write(fd, value + done, static_cast<size_t>(length - done));
    if (n < 0 && errno == EINTR) continue;
    if (n == 0) errno = EIO;
    written = n > 0;
    if (written) done += static_cast<int>(n);
  }
  SavedLastError saved;
  close(fd);
  return written;
}

}  // namespace zel::os
