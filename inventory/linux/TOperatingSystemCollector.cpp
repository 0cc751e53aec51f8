#include "inventory/linux/TOperatingSystemCollector.h"

#include <ctime>

#include "havcore/TCIMDateTime.h"
#include "inventory/linux/ISystemCalls.h"
#include "inventory/linux/TSystemFiles.h"

using NORVHAV20::TCIMDateTime;

namespace hav::inventory {
namespace {

// A value of os-release, which is quoted as a shell would quote it.
std::string Unquote(const std::string& text) {
  const bool quoted = text.size() >= 2 && (text.front() == '"' || text.front() == '\'') &&
                      text.back() == text.front();
  if (!quoted) return text;
  std::string plain;
  for (std::size_t i = 1; i + 1 < text.size(); ++i) {
    if (text.front() == '"' && text[i] == '\\' && i + 2 < text.size()) ++i;
    plain += text[i];
  }
  return plain;
}

class TRelease {
 public:
  explicit TRelease(TSystemFiles& files) : m_files(files) {
    auto text = files.Text(m_path);
    if (!text) {
      m_path = "/usr/lib/os-release";
      text = files.Text(m_path);
    }
    m_values = KeyValues(text.value_or(""), '=');
  }

  std::optional<std::string> Value(const char* key) const {
    const auto found = m_values.find(key);
    if (found == m_values.end()) return std::nullopt;
    return m_files.Readable(m_path, Unquote(found->second));
  }

 private:
  TSystemFiles& m_files;
  std::string m_path = "/etc/os-release";
  std::map<std::string, std::string, std::less<>> m_values;
};

std::optional<TCIMDateTime> BootTime(TSystemFiles& files) {
  const auto text = files.Text("/proc/stat");
  if (!text) return std::nullopt;
  for (const auto& line : Lines(*text)) {
    const auto words = Words(line);
    if (words.size() != 2 || words[0] != "btime") continue;
    const auto seconds = ParseNumber<std::int64_t>(words[1]);
    std::tm utc{};
    const auto time = static_cast<std::time_t>(seconds.value_or(-1));
    if (time < 0 || !::gmtime_r(&time, &utc) || utc.tm_year > 9999 - 1900) break;
    const auto field = [](int value) { return static_cast<std::uint16_t>(value); };
    return TCIMDateTime::Timestamp(static_cast<std::uint32_t>(utc.tm_year + 1900),
                                   field(utc.tm_mon + 1), field(utc.tm_mday), field(utc.tm_hour),
                                   field(utc.tm_min), field(utc.tm_sec), 0, 0);
  }
  files.Fail("/proc/stat", "does not say when the system was started");
  return std::nullopt;
}

std::optional<std::uint64_t> UpTime(TSystemFiles& files) {
  const auto line = files.Line("/proc/uptime");
  if (!line) return std::nullopt;
  const auto seconds = ParseNumber<std::uint64_t>(line->substr(0, line->find('.')));
  if (!seconds) files.Fail("/proc/uptime", "\"" + *line + "\" does not begin with a number");
  return seconds;
}

}  // namespace

void TOperatingSystemCollector::Collect(TCollection& collection) {
  TSystemFiles files(m_machine, collection);
  const TRelease release(files);
  const auto kernel = files.Line("/proc/sys/kernel/ostype");
  const auto kernelVersion = files.Line("/proc/sys/kernel/osrelease");
  auto name = release.Value("PRETTY_NAME");
  if (!name) name = release.Value("NAME");
  if (!name) name = kernel;
  if (!name) return files.Fail("/etc/os-release", "the operating system has no name");

  auto& system = collection.Add("os", "ORVSG_OperatingSystem", *name);
  if (kernel && kernelVersion) system.Describe(*kernel + " " + *kernelVersion);
  system.Set("Distribution", release.Value("ID"))
      .Set("Version", release.Value("VERSION_ID"))
      .Set("KernelName", kernel)
      .Set("KernelVersion", kernelVersion)
      .Set("Architecture", MakeSystemCalls(m_machine)->Architecture(collection))
      .Set("LastBootUpTime", BootTime(files))
      .Set("UpTime", UpTime(files));
  collection.Link("ORVSG_RunningOS", "os", TCollection::kSystem);
}

}  // namespace hav::inventory
