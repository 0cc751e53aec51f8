// DeviceRepository: a device model as instances of the DMTF schema in a namespace of the
// plug-in.
//
// Ownership: owns the namespace.
// Errors:    std::runtime_error when the schema does not load, with what is wrong in it.
#pragma once

#include <filesystem>
#include <vector>

#include "realmodel/DeviceModel.h"
#include "support/Repository.h"

namespace havtest {

class DeviceRepository {
 public:
  // Loads the whole schema from that file and what it includes.
  explicit DeviceRepository(const std::filesystem::path& schema);

  // Takes the place of what was stored before.
  void Store(const DeviceModel& model);

  NamespacePtr ns;
  // In the order of the model.
  std::vector<InstancePtr> things;
  std::vector<InstancePtr> links;
};

}  // namespace havtest
