#include "inventory/linux/TTopology.h"

#include <cerrno>
#include <cstdlib>
#include <optional>
#include <stdexcept>
#include <string>
#include <system_error>

namespace hav::inventory {
namespace {

// Sets an environment variable while it lives.
class TEnvironmentSetting {
 public:
  TEnvironmentSetting(const char* name, const std::string& value) : m_name(name) {
    if (const char* const before = std::getenv(name)) m_before = before;
    ::setenv(name, value.c_str(), 1);
  }
  ~TEnvironmentSetting() {
    if (m_before)
      ::setenv(m_name, m_before->c_str(), 1);
    else
      ::unsetenv(m_name);
  }
  TEnvironmentSetting(const TEnvironmentSetting&) = delete;
  TEnvironmentSetting& operator=(const TEnvironmentSetting&) = delete;

 private:
  const char* m_name;
  std::optional<std::string> m_before;
};

void Check(int result, const char* call) {
  if (result == 0) return;
  throw std::runtime_error(std::string(call) + ": " + std::generic_category().message(errno));
}

// Loads what Linux says in files, and keeps hwloc from asking this machine's processor.
void LoadFrom(const std::string& root, hwloc_topology_t topology) {
  const TEnvironmentSetting folder("HWLOC_FSROOT", root);
  const TEnvironmentSetting silence("HWLOC_HIDE_ERRORS", "2");
  const TEnvironmentSetting components("HWLOC_COMPONENTS", "linux,stop");
  Check(hwloc_topology_load(topology), "hwloc_topology_load");
}

}  // namespace

TTopology::TTopology(const TMachine& machine) {
  Check(hwloc_topology_init(&m_topology), "hwloc_topology_init");
  try {
    // The whole machine, and not just the part that a container may use.
    Check(hwloc_topology_set_flags(m_topology, HWLOC_TOPOLOGY_FLAG_INCLUDE_DISALLOWED),
          "hwloc_topology_set_flags");
    Check(hwloc_topology_set_icache_types_filter(m_topology, HWLOC_TYPE_FILTER_KEEP_ALL),
          "hwloc_topology_set_icache_types_filter");
    if (machine.IsThisMachine())
      Check(hwloc_topology_load(m_topology), "hwloc_topology_load");
    else
      LoadFrom(machine.Root(), m_topology);
  } catch (...) {
    hwloc_topology_destroy(m_topology);
    throw;
  }
}

TTopology::~TTopology() { hwloc_topology_destroy(m_topology); }

}  // namespace hav::inventory
