#include "inventory/linux/TSystemFiles.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>
#include <system_error>

#include "inventory/linux/ReadWhole.h"

namespace hav::inventory {
namespace {

constexpr std::size_t kMaximumSize = 4U * 1024U * 1024U;

class TDescriptor {
 public:
  explicit TDescriptor(int number) : m_number(number) {}
  ~TDescriptor() {
    if (m_number >= 0) ::close(m_number);
  }
  TDescriptor(const TDescriptor&) = delete;
  TDescriptor& operator=(const TDescriptor&) = delete;
  int Number() const { return m_number; }

 private:
  int m_number;
};

struct TCloseFolder {
  void operator()(DIR* folder) const { ::closedir(folder); }
};

std::string Reason(int error) { return std::generic_category().message(error); }

bool MeansAbsent(int error) { return error == ENOENT || error == ENOTDIR; }

// Drivers answer a read with these when they have nothing to say.
bool MeansNoAnswer(int error) {
  constexpr std::array<int, 6> kNoAnswer{EINVAL, ENODATA, ENODEV, ENXIO, EOPNOTSUPP, EAGAIN};
  return std::find(kNoAnswer.begin(), kNoAnswer.end(), error) != kNoAnswer.end();
}

}  // namespace

TSystemFiles::TSystemFiles(const TMachine& machine, TCollection& collection)
    : m_root(machine.IsThisMachine() ? "" : machine.Root()), m_collection(collection) {}

bool TSystemFiles::Exists(const std::string& path) const {
  return ::access(Full(path).c_str(), F_OK) == 0;
}

bool TSystemFiles::Require(const std::string& path) {
  if (Exists(path)) return true;
  Fail(path, "is not there");
  return false;
}

std::optional<std::string> TSystemFiles::Text(const std::string& path) {
  // Without O_NONBLOCK, opening a pipe that nobody writes to would wait for ever.
  const TDescriptor file(::open(Full(path).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (file.Number() < 0) {
    if (!MeansAbsent(errno)) Fail(path, Reason(errno));
    return std::nullopt;
  }
  struct stat about {};
  if (::fstat(file.Number(), &about) != 0 || !S_ISREG(about.st_mode)) {
    Fail(path, "is not a file");
    return std::nullopt;
  }
  std::string text;
  const int error =
      ReadWhole([&](char* buffer, std::size_t size) { return ::read(file.Number(), buffer, size); },
                kMaximumSize, text);
  if (error == 0) return text;
  if (error == EFBIG)
    Fail(path, "is larger than 4 MiB");
  else if (!MeansNoAnswer(error))
    Fail(path, Reason(error));
  return std::nullopt;
}

std::optional<std::string> TSystemFiles::Line(const std::string& path) {
  const auto text = Text(path);
  if (!text) return std::nullopt;
  return Readable(path, Trim(*text));
}

std::optional<bool> TSystemFiles::Flag(const std::string& path) {
  const auto line = Line(path);
  if (!line) return std::nullopt;
  if (*line == "0" || *line == "1") return *line == "1";
  Fail(path, "\"" + *line + "\" is neither 0 nor 1");
  return std::nullopt;
}

std::vector<std::string> TSystemFiles::Folder(const std::string& path) {
  const std::unique_ptr<DIR, TCloseFolder> folder(::opendir(Full(path).c_str()));
  if (!folder) {
    if (errno != ENOENT) Fail(path, Reason(errno));
    return {};
  }
  std::vector<std::string> names;
  while (const auto* const entry = ::readdir(folder.get())) {
    if (entry->d_name[0] == '.') continue;
    if (IsReadable(entry->d_name))
      names.emplace_back(entry->d_name);
    else
      Fail(path, "holds a name that is not readable text");
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::optional<std::string> TSystemFiles::LinkTarget(const std::string& path) const {
  std::array<char, 4096> target;
  const auto length = ::readlink(Full(path).c_str(), target.data(), target.size());
  if (length <= 0 || static_cast<std::size_t>(length) == target.size()) return std::nullopt;
  return std::string(target.data(), static_cast<std::size_t>(length));
}

std::optional<std::string> TSystemFiles::LinkName(const std::string& path) const {
  const auto target = LinkTarget(path);
  if (!target) return std::nullopt;
  return target->substr(target->rfind('/') + 1);
}

std::optional<std::string> TSystemFiles::Readable(const std::string& path, std::string_view text) {
  constexpr std::size_t kLongestLine = 4096;
  if (text.empty()) return std::nullopt;
  if (text.size() <= kLongestLine && IsReadable(text)) return std::string(text);
  Fail(path, "is not a line of readable text");
  return std::nullopt;
}

void TSystemFiles::Fail(const std::string& path, const std::string& reason) {
  m_collection.Fail(path, reason);
}

}  // namespace hav::inventory
