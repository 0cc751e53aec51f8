#include "wbem/TEnumerations.h"

#include <algorithm>
#include <random>
#include <utility>

#include "wbem/TCimError.h"

namespace hav::wbem {
namespace {

// Nobody guesses the enumeration of another.
std::string NewContext() {
  constexpr char hex[] = "0123456789abcdef";
  std::random_device random;
  std::string context;
  for (int word = 0; word < 4; ++word) {
    auto bits = random();
    for (int digit = 0; digit < 8; ++digit, bits >>= 4) context += hex[bits & 15];
  }
  return context;
}

std::chrono::seconds CheckedTimeout(std::optional<std::uint32_t> timeout) {
  const auto seconds = timeout.value_or(TEnumerations::kDefaultTimeout);
  if (seconds == 0 || seconds > TEnumerations::kMaximumTimeout)
    throw TCimError(ECimStatus::kInvalidOperationTimeout,
                    "OperationTimeout is 1 to " + std::to_string(TEnumerations::kMaximumTimeout) +
                        " seconds here");
  return std::chrono::seconds(seconds);
}

}  // namespace

TAnswer TEnumerations::Open(EKind kind, const std::string& home, TList list,
                            std::optional<std::uint32_t> timeout, std::uint32_t count) {
  Expire();
  TEnumeration enumeration{kind, home, std::move(list), 0, CheckedTimeout(timeout), {}};
  if (count >= enumeration.list.count) return Take(enumeration, {}, count);
  if (m_open.size() >= kMaximumOpen)
    throw TCimError(ECimStatus::kServerLimitsExceeded,
                    std::to_string(kMaximumOpen) + " enumerations are open already");
  const auto context = NewContext();
  auto answer = Take(enumeration, context, count);
  m_open.emplace(context, std::move(enumeration));
  return answer;
}

TAnswer TEnumerations::Pull(EKind kind, const std::string& home, const std::string& context,
                            std::uint32_t count) {
  const auto found = Find(home, context);
  if (found->second.kind != kind)
    throw TCimError(ECimStatus::kInvalidEnumerationContext,
                    "this enumeration is of the other kind");
  auto& enumeration = found->second;
  const bool ends = count >= enumeration.list.count - enumeration.at;
  auto answer = Take(enumeration, ends ? std::string() : context, count);
  if (ends) m_open.erase(found);
  return answer;
}

void TEnumerations::Close(const std::string& home, const std::string& context) {
  m_open.erase(Find(home, context));
}

std::size_t TEnumerations::Left(const std::string& home, const std::string& context) {
  const auto& enumeration = Find(home, context)->second;
  return enumeration.list.count - enumeration.at;
}

void TEnumerations::Expire() {
  const auto now = m_clock();
  for (auto at = m_open.begin(); at != m_open.end();)
    at = at->second.end <= now ? m_open.erase(at) : std::next(at);
}

TEnumerations::TOpen::iterator TEnumerations::Find(const std::string& home,
                                                   const std::string& context) {
  Expire();
  const auto found = m_open.find(context);
  if (found == m_open.end() || !client::SameName(found->second.home, home))
    throw TCimError(ECimStatus::kInvalidEnumerationContext,
                    "no such enumeration is open in this namespace");
  return found;
}

TAnswer TEnumerations::Take(TEnumeration& enumeration, std::string context, std::uint32_t count) {
  auto answer = TAnswer::Of(enumeration.list);
  answer.begin = enumeration.at;
  answer.end =
      enumeration.at + std::min<std::size_t>(count, enumeration.list.count - enumeration.at);
  const bool ends = context.empty();
  answer.outputs = {{"EnumerationContext", "string", std::move(context)},
                    {"EndOfSequence", "boolean", ends ? "TRUE" : "FALSE"}};
  enumeration.at = answer.end;
  enumeration.end = m_clock() + enumeration.timeout;
  return answer;
}

}  // namespace hav::wbem
