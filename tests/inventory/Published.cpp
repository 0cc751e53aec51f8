#include "tests/inventory/Published.h"

#include <algorithm>
#include <filesystem>

#include "mof/TMofFolderSource.h"
#include "mof/TMofLoader.h"

using namespace hav::inventory;
using namespace hav::mof;

namespace havtest {

NamespacePtr LoadSchema() {
  Texts files;
  for (const auto& entry : std::filesystem::directory_iterator(HAV_INVENTORY_SCHEMA_FOLDER))
    if (entry.path().extension() == ".mof") files.push_back(entry.path().string());
  std::sort(files.begin(), files.end());
  TMofFolderSource source;
  TMofReport report;
  auto loaded = TMofLoader(*Provider(), source).Load(files, report);
  EXPECT_EQ(report.ToString(), "");
  return loaded;
}

}  // namespace havtest
