// Datetimes, the clock, the log, the provider manager and the status texts of the foreign core.

#include <array>
#include <chrono>
#include <ctime>
#include <iostream>
#include <string>
#include <utility>

#include <boost/make_shared.hpp>

#include "havcore/TCIMDateTime.h"
#include "havcore/THAVException.h"
#include "havcore/TNamespaceProviderManager.h"
#include "havcore/TOSSpecific.h"
#include "havcore/TRootObject.h"

namespace NORVHAV20 {

namespace {

class TConsole : public ILogger {
 public:
  void Log(int level, const std::string& message) override {
    std::cerr << level << ": " << message << '\n';
  }
};

ILogger*& Logger() {
  static TConsole console;
  static ILogger* logger = &console;
  return logger;
}

boost::shared_ptr<INamespaceProviderManager>& Manager() {
  static boost::shared_ptr<INamespaceProviderManager> manager =
      boost::make_shared<TNamespaceProviderManager>();
  return manager;
}

std::string TwoDigits(unsigned number) {
  return {static_cast<char>('0' + number / 10), static_cast<char>('0' + number % 10)};
}

std::string Formatted(const char* format, const std::tm& time) {
  char text[32];
  return {text, std::strftime(text, sizeof text, format, &time)};
}

}  // namespace

TCIMDateTime::TCIMDateTime() = default;
TCIMDateTime::~TCIMDateTime() = default;

void TCIMDateTime::Set(std::uint32_t days, std::uint16_t hours, std::uint16_t minutes,
                       std::uint16_t seconds, std::uint32_t microseconds) {
  if (days > 99999999 || hours > 23 || minutes > 59 || seconds > 59 || microseconds > 999999)
    throw THAVException(kHAVTypesDiffer);
  *this = TCIMDateTime();
  m_days = days;
  m_hours = hours;
  m_minutes = minutes;
  m_seconds = seconds;
  m_microseconds = microseconds;
}

std::string TCIMDateTime::ToUIString() const {
  std::string text = m_date.empty() ? "" : m_date + ' ';
  if (m_days != 0) text += std::to_string(m_days) + (m_days == 1 ? " day " : " days ");
  text += TwoDigits(m_hours) + ':' + TwoDigits(m_minutes) + ':' + TwoDigits(m_seconds);
  if (m_microseconds != 0) text += '.' + std::to_string(1000000 + m_microseconds).substr(1);
  return m_offset.empty() ? text : text + ' ' + m_offset;
}

TCIMDateTime TOSSpecific::GetLocalTime() {
  const std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
  std::tm local = {};
#if defined(_WIN32)
  localtime_s(&local, &now);
#else
  localtime_r(&now, &local);
#endif
  TCIMDateTime time;
  time.m_interval = false;
  time.m_date = Formatted("%Y-%m-%d", local);
  time.m_offset = Formatted("%z", local);
  time.m_hours = static_cast<unsigned>(local.tm_hour);
  time.m_minutes = static_cast<unsigned>(local.tm_min);
  time.m_seconds = static_cast<unsigned>(local.tm_sec);
  return time;
}

ILogger* TRootObject::GetCoreLogger() { return Logger(); }

ILogger* TRootObject::SetCoreLogger(ILogger* logger) { return std::exchange(Logger(), logger); }

boost::shared_ptr<INamespaceProviderManager> TRootObject::GetNamespaceProviderManager() {
  return Manager();
}

boost::shared_ptr<INamespaceProviderManager> TRootObject::SetNamespaceProviderManager(
    const boost::shared_ptr<INamespaceProviderManager>& manager) {
  return std::exchange(Manager(),
                       manager ? manager : boost::make_shared<TNamespaceProviderManager>());
}

const std::string& THAVStatusCode::TranslateStatusCode() const {
  static const auto texts = [] {
    std::array<std::string, 33> made;
    for (std::size_t i = 0; i < made.size(); ++i) made[i] = "foreign status " + std::to_string(i);
    made.back() = "foreign status that nobody knows";
    return made;
  }();
  return texts[std::min<std::size_t>(m_code, texts.size() - 1)];
}

}  // namespace NORVHAV20
