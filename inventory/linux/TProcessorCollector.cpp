#include "inventory/linux/TProcessorCollector.h"

#include <algorithm>
#include <map>

#include "inventory/TCaches.h"
#include "inventory/linux/TSystemFiles.h"
#include "inventory/linux/TTopology.h"

namespace hav::inventory {
namespace {

constexpr const char* kCpuFolder = "/sys/devices/system/cpu";
constexpr const char* kCpuInfo = "/proc/cpuinfo";

using TCpuInfo = std::map<std::string, std::string, std::less<>>;

// The entries of /proc/cpuinfo, by the number of the thread.
std::map<unsigned, TCpuInfo> ReadCpuInfo(TSystemFiles& files) {
  std::map<unsigned, TCpuInfo> entries;
  const auto text = files.Text(kCpuInfo).value_or("");
  std::size_t start = 0;
  while (start < text.size()) {
    const auto end = std::min(text.find("\n\n", start), text.size());
    auto entry = KeyValues(std::string_view(text).substr(start, end - start), ':');
    if (const auto number = ParseNumber<unsigned>(entry["processor"]))
      entries.emplace(*number, std::move(entry));
    start = end + 2;
  }
  return entries;
}

std::optional<std::string> InfoText(hwloc_obj_t object, const char* name) {
  const char* const text = hwloc_obj_get_info_by_name(object, name);
  const auto trimmed = Trim(text ? text : "");
  if (trimmed.empty() || !IsReadable(trimmed)) return std::nullopt;
  return std::string(trimmed);
}

std::optional<std::uint32_t> InfoNumber(hwloc_obj_t object, const char* name) {
  const auto text = InfoText(object, name);
  return text ? ParseNumber<std::uint32_t>(*text) : std::nullopt;
}

TCaches::EType CacheType(hwloc_obj_cache_type_t type) {
  switch (type) {
    case HWLOC_OBJ_CACHE_INSTRUCTION: return TCaches::kInstruction;
    case HWLOC_OBJ_CACHE_DATA: return TCaches::kData;
    case HWLOC_OBJ_CACHE_UNIFIED: return TCaches::kUnified;
  }
  return TCaches::kOther;
}

// hwloc says 0 for what it does not know.
template <class T>
std::optional<T> Known(T number) {
  return number == 0 ? std::nullopt : std::optional<T>(number);
}

// Collects the processors of one machine.
class TProcessors {
 public:
  TProcessors(const TMachine& machine, TCollection& collection)
      : m_topology(machine), m_files(machine, collection), m_collection(collection) {}

  void Collect() {
    m_cpuInfo = ReadCpuInfo(m_files);
    FindPackages();
    FindCaches();
    for (unsigned index = 0; index < m_packages.size(); ++index) AddProcessor(index);
    m_caches.AddTo(m_collection);
  }

 private:
  // A machine that does not tell its packages apart counts as one.
  void FindPackages() {
    hwloc_obj_t package = nullptr;
    while ((package = hwloc_get_next_obj_by_type(m_topology.Get(), HWLOC_OBJ_PACKAGE, package)))
      m_packages.push_back(package);
    if (m_packages.empty()) m_packages.push_back(hwloc_get_root_obj(m_topology.Get()));
  }

  void FindCaches() {
    for (int type = HWLOC_OBJ_L1CACHE; type <= HWLOC_OBJ_L3ICACHE; ++type) {
      hwloc_obj_t cache = nullptr;
      while ((cache = hwloc_get_next_obj_by_type(m_topology.Get(),
                                                 static_cast<hwloc_obj_type_t>(type), cache))) {
        const auto& about = cache->attr->cache;
        // hwloc: -1 is fully associative, and 0 is not known.
        const auto ways =
            about.associativity == 0
                ? std::nullopt
                : std::optional(static_cast<std::uint32_t>(std::max(about.associativity, 0)));
        m_caches.Add({ProcessorsOf(cache), about.depth, CacheType(about.type), about.size,
                      about.linesize, ways});
      }
    }
  }

  std::vector<unsigned> ProcessorsOf(hwloc_obj_t cache) const {
    std::vector<unsigned> indices;
    for (unsigned index = 0; index < m_packages.size(); ++index)
      if (hwloc_bitmap_intersects(cache->cpuset, m_packages[index]->cpuset))
        indices.push_back(index);
    return indices;
  }

  void AddProcessor(unsigned index) {
    constexpr std::uint16_t kEnabled = 1;
    const auto package = m_packages[index];
    auto& processor =
        m_collection.AddSystemDevice(ProcessorId(index), "ORVSG_Processor", ProcessorName(index));
    const bool isPackage = package->type == HWLOC_OBJ_PACKAGE;
    const bool numbered = isPackage && package->os_index != HWLOC_UNKNOWN_INDEX;
    processor.Describe(InfoText(package, "CPUModel"))
        .Set("Manufacturer", InfoText(package, "CPUVendor"))
        .Set("SocketNumber",
             numbered ? std::optional<std::uint32_t>(package->os_index) : std::nullopt)
        .Set("CPUStatus", std::optional(kEnabled))
        .Set("NumberOfCores", Known(Count(package, HWLOC_OBJ_CORE)))
        .Set("NumberOfLogicalProcessors", Known(Count(package, HWLOC_OBJ_PU)))
        .Set("FamilyNumber", InfoNumber(package, "CPUFamilyNumber"))
        .Set("ModelNumber", InfoNumber(package, "CPUModelNumber"))
        .Set("Stepping", InfoNumber(package, "CPUStepping"));
    SetFromFirstThread(processor, package);
    m_caches.SetLevels(processor, index);
  }

  std::uint32_t Count(hwloc_obj_t package, hwloc_obj_type_t type) const {
    const int count =
        hwloc_get_nbobjs_inside_cpuset_by_type(m_topology.Get(), package->cpuset, type);
    return count > 0 ? static_cast<std::uint32_t>(count) : 0;
  }

  // Speed and microcode are those of the package's first thread.
  void SetFromFirstThread(TElement& processor, hwloc_obj_t package) {
    const int first = hwloc_bitmap_first(package->cpuset);
    if (first < 0) return;
    const std::string folder =
        std::string(kCpuFolder) + "/cpu" + std::to_string(first) + "/cpufreq/";
    const auto maximum = m_files.Number<std::uint32_t>(folder + "cpuinfo_max_freq");
    auto current = m_files.Number<std::uint32_t>(folder + "scaling_cur_freq");
    if (maximum) processor.Set("MaxClockSpeedMHz", std::optional(*maximum / 1000));
    if (current) current = *current / 1000;
    const auto& entry = m_cpuInfo[static_cast<unsigned>(first)];
    const auto text = [&entry](const char* key) {
      const auto found = entry.find(key);
      return found == entry.end() ? std::string() : found->second;
    };
    if (!current) {
      const auto megahertz = text("cpu MHz");
      current = ParseNumber<std::uint32_t>(megahertz.substr(0, megahertz.find('.')));
    }
    processor.Set("CurrentClockSpeedMHz", current)
        .Set("MicrocodeRevision", ParseNumber<std::uint64_t>(text("microcode"), 16));
  }

  TTopology m_topology;
  TSystemFiles m_files;
  TCollection& m_collection;
  std::map<unsigned, TCpuInfo> m_cpuInfo;
  std::vector<hwloc_obj_t> m_packages;
  TCaches m_caches;
};

}  // namespace

void TProcessorCollector::Collect(TCollection& collection) {
  TSystemFiles files(m_machine, collection);
  // Without this folder hwloc would make a processor up.
  if (!files.Require(std::string(kCpuFolder) + "/cpu0/topology")) return;
  TProcessors(m_machine, collection).Collect();
}

}  // namespace hav::inventory
