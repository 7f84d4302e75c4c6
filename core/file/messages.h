// The messages of file operations: templates with "%1" and "%2" filled by plain replacement, and
// the system's text of the error that made an operation fail.
#pragma once

#include <zel/text/cstring.h>

#include <cstdint>

namespace zel::file {

// The system's text of `code` (errstr).
temp_cstring ErrorText(uint32_t code);

// Appends `format` to `out` with "%1", and then "%2", replaced by `first` and `second`.
void Fill(cstring &out, const strptr &format, const strptr &first, const strptr &second = {});

// Throws ErrorX with `message`, leaving `code` as the thread's last error.
[[noreturn]] void Throw(uint32_t code, const strptr &message);

// Throws ErrorX with the filled `format`, leaving `code` as the thread's last error.
[[noreturn]] void ThrowFilled(uint32_t code, const strptr &format, const strptr &first,
                              const strptr &second = {});

// When the log listens, logs the filled `format` and "\r\n". Leaves `code` as the thread's last
// error in any case.
void LogFilled(uint32_t code, const strptr &format, const strptr &first,
               const strptr &second = {});

}  // namespace zel::file
