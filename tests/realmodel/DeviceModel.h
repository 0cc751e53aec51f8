// DeviceModel: systems, devices and associations, made from a seed. It is data only: names,
// keys and which thing stands at which end; DeviceRepository makes instances of it.
//
// Ownership: a value.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace havtest {

struct ModelThing {
  std::string cls;
  std::vector<std::pair<std::string, std::string>> keys;  // in the order of their names
  std::string path;                                       // as CIM writes it
  bool stored = true;
};

struct ModelLink {
  std::string cls;
  std::vector<std::size_t> ends;  // indices of things, in the order of the class's roles
  std::string path;
};

struct DeviceModel {
  std::vector<ModelThing> things;
  std::vector<ModelLink> links;
};

// `systems` systems with `devicesEach` devices, their SCSI endpoints, and about `linksEach`
// associations of each concrete class, besides those of systems with their devices. The same
// numbers give the same model everywhere.
DeviceModel MakeDeviceModel(std::uint32_t seed, std::size_t systems, std::size_t devicesEach,
                            std::size_t linksEach);

}  // namespace havtest
