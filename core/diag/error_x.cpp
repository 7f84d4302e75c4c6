// ErrorX: failures described by a message, logged as warnings when the "Exceptions" category is
// on.
#include <zel/diag/error.h>
#include <zel/diag/log.h>
#include <zel/text/thread_local_string.h>

namespace zel {

namespace {
LogCategory g_exceptions_category("Exceptions", false);
}  // namespace

ExceptionBase::~ExceptionBase() = default;

void ErrorX::Set(const strptr &text, bool with_prefix) {
  message_.Flush();
  if (with_prefix) message_.Add(GetErrorPrefix());
  message_.Add(text);
  if (!message_.empty() && g_exceptions_category.Enabled() && LogCategory::n_global_clients >= 1) {
    ThreadLocalString line;
    *line << "%W: " << message_ << "\r\n";
    PrintLog(*line);
  }
}

void ErrorX::Print(cstring &out) const { out << *this; }

cstring &operator<<(cstring &out, const ErrorX &error) {
  return out << (error.Message().empty() ? strptr("Unknown Error") : error.Message().view());
}

void ThrowErrorX(const strptr &message) { throw ErrorX(message, true); }

}  // namespace zel
