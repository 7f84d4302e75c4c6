// NanoTime and NanoDiff conversions.
#include <zel/time/nano_time.h>
#include <zel/time/unix_time.h>

namespace zel {

namespace {

// Truncates `units` to 64 bits, saturating beyond ±2^63 at ±(2^63 - 1).
NanoDiff Saturated(double units) {
  constexpr double kLimit = 9223372036854775808.0;  // 2^63
  if (units >= kLimit || units <= -kLimit) return NanoDiff(units > 0 ? INT64_MAX : -INT64_MAX);
  return NanoDiff(static_cast<int64_t>(units));
}

}  // namespace

NanoDiff NanoDiff::Secs(double seconds) { return Saturated(seconds * 1e7); }
NanoDiff NanoDiff::Msecs(double ms) { return Saturated(ms * 1e4); }

NanoTime NanoTime::CurrentDate() { return NanoTime().Set(UnixTime::Current().GetDate()); }

NanoTime NanoTime::GetDate() const {
  const auto seconds = static_cast<int32_t>(static_cast<double>(value - kUnixEpoch) * 1e-7);
  return NanoTime().Set(UnixTime(seconds).GetDate());
}

UnixTime NanoTime::ToUnixTime() const {
  if (value <= kUnixEpoch) return UnixTime();
  return UnixTime(static_cast<int32_t>((value - kUnixEpoch) / 10000000));
}

NanoTime &NanoTime::Set(UnixTime t) {
  value = int64_t{t.value()} * 10000000 + kUnixEpoch;
  return *this;
}

NanoTime &NanoTime::Set(double unix_seconds) {
  const auto whole = static_cast<int64_t>(unix_seconds);
  const auto fraction = static_cast<int64_t>((unix_seconds - static_cast<double>(whole)) * 1e7);
  value = whole * 10000000 + kUnixEpoch + fraction;
  return *this;
}

}  // namespace zel
