#include "havcore/TOSSpecific.h"

#include <chrono>
#include <ctime>

namespace NORVHAV20 {
namespace {

std::tm LocalFields(std::time_t time) {
  std::tm fields = {};
#if defined(_WIN32)
  localtime_s(&fields, &time);
#else
  localtime_r(&time, &fields);
#endif
  return fields;
}

std::tm UtcFields(std::time_t time) {
  std::tm fields = {};
#if defined(_WIN32)
  gmtime_s(&fields, &time);
#else
  gmtime_r(&time, &fields);
#endif
  return fields;
}

TCIMDateTime FromFields(const std::tm& fields, std::uint32_t microseconds, std::int32_t utcOffset) {
  return TCIMDateTime::Timestamp(
      static_cast<std::uint32_t>(fields.tm_year + 1900),
      static_cast<std::uint16_t>(fields.tm_mon + 1), static_cast<std::uint16_t>(fields.tm_mday),
      static_cast<std::uint16_t>(fields.tm_hour), static_cast<std::uint16_t>(fields.tm_min),
      static_cast<std::uint16_t>(fields.tm_sec), microseconds, utcOffset);
}

}  // namespace

TCIMDateTime TOSSpecific::GetLocalTime() {
  using namespace std::chrono;
  const auto now = time_point_cast<microseconds>(system_clock::now());
  const auto second = time_point_cast<seconds>(now);
  const auto fraction = static_cast<std::uint32_t>((now - second).count());
  const std::time_t time = system_clock::to_time_t(second);

  // What local clocks are ahead of UTC, without the fields that only some systems have.
  constexpr std::int64_t kMicrosecondsPerMinute = 60'000'000;
  const std::tm local = LocalFields(time);
  const std::int64_t ahead = FromFields(local, 0, 0).GetMicroseconds() -
                             FromFields(UtcFields(time), 0, 0).GetMicroseconds();
  return FromFields(local, fraction, static_cast<std::int32_t>(ahead / kMicrosecondsPerMinute));
}

}  // namespace NORVHAV20
