// OpenFile and WinFile, the library's owned file handle, which is also a byte destination and a
// byte source.
#pragma once

#include <zel/file/flags.h>
#include <zel/stream/byte_stream.h>
#include <zel/text/strptr.h>

#include <concepts>
#include <cstdint>

namespace zel {

// Opens the file `path` as `flags` say and returns its handle, or null:
// - FileAppend opens or creates the file for writing; else FileRead opens an existing file; else
//   FileWrite creates the file or empties an existing one; with none of the three, null at once
//   and nothing is reported. FileWrite with FileTruncate always creates or empties.
// - Other handles may read and delete the file meanwhile, and write it too when only FileRead is
//   given. The hints and FileOverlapped become the system's attribute flags.
// - After an append open the position is the end of the file. If it cannot be moved there, the
//   handle is still returned; when the "WinFile Errors" log category is on and the log listens,
//   "Note: Failed: SetFilePointer(handle: <hex> Error: <system text>\r\n" is logged.
// - A failure makes "%W: Cannot open file <path><mode>: <system text>", where <mode> is " in
//   append mode", " in read/write mode", " in read mode" or " in write mode". With
//   FileThrowErrors it is thrown as ErrorX; otherwise, with FileLogErrors, it is logged (when the
//   log listens) followed by "\r\n".
// The thread's last error is the system's error of the failure afterwards, thrown or not.
ZEL_API void *OpenFile(const strptr &path, QFlags<FileFlags_> flags);

// An owned file handle (null when closed), and a byte destination and source over it. It closes
// the handle it replaces or holds when it is opened again, attached, stolen into or destroyed.
// Quiet operations report failure by their result and leave the system's error as the thread's
// last error; X operations throw ErrorX, leaving the handle open. One thread at a time.
class ZEL_API WinFile : public VirtByteDest, public VirtByteSource {
 public:
  WinFile() = default;
  ~WinFile() override;
  WinFile(const WinFile &) = delete;
  WinFile &operator=(const WinFile &) = delete;

  // Close, then OpenFile(path, flags | FileRead) / OpenFile(path, flags | FileWrite); true when a
  // handle was obtained.
  bool OpenRead(const strptr &path, QFlags<FileFlags_> flags = {});
  bool OpenWrite(const strptr &path, QFlags<FileFlags_> flags = {});
  // Closes the handle held and takes `handle` (an invalid-handle value is taken as null).
  void Attach(void *handle);
  // Returns the handle and forgets it without closing it.
  [[nodiscard]] void *Detach();
  // Closes the handle held and takes the other's, leaving the other closed.
  void StealFrom(WinFile &other);
  // Closes the handle, if any.
  void Close();
  void *GetHandle() const { return handle_; }
  bool IsOpen() const { return handle_ != nullptr; }

  // Reads up to `n` bytes; returns how many (fewer only at the end of the file), 0 on failure.
  int Read(void *buffer, int n) override;
  // True only when all `n` bytes were read.
  bool SurelyRead(void *buffer, int n);
  // Reads exactly `n` bytes or throws "Cannot read <n> from file (only <count> are available)"
  // when the file ended first, "Cannot read <n> from file; Error: <system text>" on a failure.
  void ReadX(void *buffer, int n) override;
  // Reads up to `n` bytes and returns how many; throws "Cannot read <n> from file; Error:
  // <system text>" on a failure.
  int PartialReadX(void *buffer, int n);
  // Writes `n` bytes; returns how many were written.
  int Write(const void *buffer, int n) override;
  // Writes exactly `n` bytes or throws "Cannot write <n> to file; Error: <system text>" on a
  // failure, "Cannot write <n> to file." when fewer were written without one.
  void WriteX(const void *buffer, int n) override;
  // Makes the system write the file to the device. On failure, logs (when the log listens) "Note:
  // Failed: FlushFileBuffers(); Error: <system text>\r\n" and returns false.
  bool Sync();
  // The same, throwing "Cannot flush file to disk; Error: <system text>".
  void SyncX();

  // The position, -1 on failure.
  int64_t GetPos() const;
  // Moves to `pos` from the start. On failure, logs (when the log listens) "Note: Failed:
  // SetFilePointer(handle: <hex>, pos: <pos>; Error: <system text>\r\n" and returns false.
  bool SetPos(int64_t pos);
  // The same, throwing the note's text (without the line end) as ErrorX.
  void SetPosX(int64_t pos);
  // Moves by `distance` from the position; on failure as SetPos, the note saying ", relative pos:
  // " in place of ", pos: ".
  bool Skip(int64_t distance);
  bool Skip(int distance) { return Skip(int64_t{distance}); }
  // The same, throwing the note's text as ErrorX.
  void SkipX(int64_t distance);
  void SkipX(int distance) { SkipX(int64_t{distance}); }
  // 64-bit distances of another spelling than int64_t (long long where int64_t is long).
  template <std::signed_integral T>
    requires(sizeof(T) == sizeof(int64_t) && !std::same_as<T, int64_t>)
  bool Skip(T distance) {
    return Skip(static_cast<int64_t>(distance));
  }
  template <std::signed_integral T>
    requires(sizeof(T) == sizeof(int64_t) && !std::same_as<T, int64_t>)
  void SkipX(T distance) {
    SkipX(static_cast<int64_t>(distance));
  }
  // Is the position the size of the file? True without a handle.
  bool EofQ() const;
  // The file's size; 0 without a handle or when the system cannot tell.
  int64_t operator~() const;
  // The low 32 bits of the size, as an int; 0 without a handle.
  int Length32() const;

 private:
  // Moves the position for SetPos and Skip; `what` names the kind of position in the note.
  bool Seek(int64_t distance, int origin, const char *what, bool throw_errors);

  void *handle_ = nullptr;
};

}  // namespace zel
