#include "mof/TMofFolderSource.h"

#include <algorithm>
#include <fstream>
#include <system_error>
#include <utility>

#include "havcore/client/Utf8.h"
#include "mof/TMofText.h"

namespace hav::mof {

using client::PathOf;
using client::Utf8;

namespace fs = std::filesystem;

namespace {

bool IsFile(const fs::path& path) {
  std::error_code failure;
  const auto status = fs::status(path, failure);
  return !failure && fs::exists(status) && !fs::is_directory(status);
}

}  // namespace

TMofFolderSource::TMofFolderSource(std::vector<fs::path> searchPath)
    : m_searchPath(std::move(searchPath)) {}

bool TMofFolderSource::Find(const std::string& name, const std::string& includer,
                            std::string& identity) {
  auto portable = name;
  if (!includer.empty()) std::replace(portable.begin(), portable.end(), '\\', '/');
  const auto wanted = PathOf(portable);
  const auto beside = includer.empty() ? wanted : PathOf(includer).parent_path() / wanted;
  auto found = IsFile(beside) ? beside : fs::path();
  for (auto folder = m_searchPath.begin(); found.empty() && folder != m_searchPath.end(); ++folder)
    if (IsFile(*folder / wanted)) found = *folder / wanted;
  if (found.empty()) return false;
  identity = Utf8(found.lexically_normal());
  return true;
}

bool TMofFolderSource::Read(const std::string& identity, std::string& text) {
  std::ifstream file;
  file.rdbuf()->pubsetbuf(nullptr, 0);  // the whole file is read at once
  file.open(PathOf(identity), std::ios::binary | std::ios::ate);
  const auto size = file ? static_cast<std::streamoff>(file.tellg()) : -1;
  if (size < 0) {
    text = "the file cannot be read";
    return false;
  }
  if (static_cast<unsigned long long>(size) > TMofText::kMaxSize) {
    text = "the file is larger than " + std::to_string(TMofText::kMaxSize >> 20) + " MiB";
    return false;
  }
  text.resize(static_cast<std::size_t>(size));
  file.seekg(0);
  if (size != 0 && !file.read(text.data(), size)) {
    text = "the file cannot be read to its end";
    return false;
  }
  return true;
}

}  // namespace hav::mof
