// TMofFolderSource: MOF files on disk. An included file is looked for in the folder of the
// file that includes it, then in each folder of the search path.
//
// Names are UTF-8; '/' and '\' both separate folders.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "mof/IMofSource.h"

namespace hav::mof {

class TMofFolderSource : public IMofSource {
 public:
  explicit TMofFolderSource(std::vector<std::filesystem::path> searchPath = {});

  bool Find(const std::string& name, const std::string& includer, std::string& identity) override;
  bool Read(const std::string& identity, std::string& text) override;

 private:
  std::vector<std::filesystem::path> m_searchPath;
};

}  // namespace hav::mof
