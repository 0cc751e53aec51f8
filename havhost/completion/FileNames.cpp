#include "havhost/completion/FileNames.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "havcore/client/Utf8.h"

namespace havhost {

using namespace hav::client;

namespace {

constexpr bool kIsWindows = std::filesystem::path::preferred_separator == '\\';
constexpr const char* kSeparators = kIsWindows ? "/\\" : "/";

}  // namespace

std::vector<std::string> FileNamesFrom(const std::string& word, bool onlyFolders) {
  const auto end = word.find_last_of(kSeparators) + 1;
  const auto folder = word.substr(0, end);
  const auto begin = word.substr(end);
  std::vector<std::string> names;
  std::error_code failure;
  std::filesystem::directory_iterator entry(PathOf(folder.empty() ? "." : folder), failure);
  for (; !failure && entry != std::filesystem::directory_iterator(); entry.increment(failure)) {
    const auto name = Utf8(entry->path().filename());
    std::error_code unknown;
    const bool isFolder = entry->is_directory(unknown);
    if ((onlyFolders && !isFolder) || name.rfind(begin, 0) != 0) continue;
    if (name[0] == '.' && begin.empty()) continue;
    names.push_back(folder + name + (isFolder ? "/" : ""));
  }
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace havhost
