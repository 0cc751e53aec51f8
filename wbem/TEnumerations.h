// TEnumerations: the enumerations that clients have opened and pull from, bounded in number
// and in time.
//
// Threads: that of the namespace.
// Errors:  TCimError; the status with each operation.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>

#include "wbem/TAnswer.h"

namespace hav::wbem {

class TEnumerations {
 public:
  using TTime = std::chrono::steady_clock::time_point;
  using TClock = std::function<TTime()>;

  static constexpr std::size_t kMaximumOpen = 100;
  static constexpr std::uint32_t kDefaultTimeout = 60;   // seconds
  static constexpr std::uint32_t kMaximumTimeout = 600;  // seconds

  enum class EKind { kInstances, kPaths };

  explicit TEnumerations(TClock clock = std::chrono::steady_clock::now)
      : m_clock(std::move(clock)) {}

  // Answers with the first `count` elements, and keeps the rest for `timeout` seconds after
  // each answer. Throws kInvalidOperationTimeout for none or more than the maximum, and
  // kServerLimitsExceeded when as many are open as may be.
  TAnswer Open(EKind kind, const std::string& home, TList list,
               std::optional<std::uint32_t> timeout, std::uint32_t count);
  // Answers with the next. These throw kInvalidEnumerationContext for an enumeration that is
  // not open: it has ended, timed out, is of the other kind or in another namespace.
  TAnswer Pull(EKind kind, const std::string& home, const std::string& context,
               std::uint32_t count);
  void Close(const std::string& home, const std::string& context);
  std::size_t Left(const std::string& home, const std::string& context);

  // Lets go of those whose time is over.
  void Expire();
  std::size_t CountOpen() const { return m_open.size(); }

 private:
  struct TEnumeration {
    EKind kind;
    std::string home;
    TList list;
    std::size_t at;
    std::chrono::seconds timeout;
    TTime end;
  };
  using TOpen = std::map<std::string, TEnumeration>;

  TOpen::iterator Find(const std::string& home, const std::string& context);
  // Takes `count` elements and moves on; `context` is empty when it is the end.
  TAnswer Take(TEnumeration& enumeration, std::string context, std::uint32_t count);

  TClock m_clock;
  TOpen m_open;
};

}  // namespace hav::wbem
