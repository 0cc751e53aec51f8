#include "inventory/linux/TProcessorCollector.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <map>
#include <utility>

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

// What a processor says of itself in its entry.
class TIdentity {
 public:
  explicit TIdentity(const TCpuInfo& entry) : m_entry(entry) {}

  // "cpu" on POWER, "Processor" on old ARM.
  std::optional<std::string> Model() const { return Text({"model name", "cpu", "Processor"}); }
  std::optional<std::string> Manufacturer() const {
    if (const auto vendor = Text({"vendor_id"})) return vendor;
    return ArmImplementer();
  }
  std::optional<std::uint32_t> Number(std::initializer_list<const char*> keys) const {
    const auto text = Text(keys);
    if (!text) return std::nullopt;
    return ParseNumber<std::uint32_t>(*text, text->compare(0, 2, "0x") == 0 ? 16 : 10);
  }

 private:
  // The first key that has a text counts.
  std::optional<std::string> Text(std::initializer_list<const char*> keys) const {
    for (const auto* const key : keys) {
      const auto found = m_entry.find(key);
      if (found != m_entry.end() && !found->second.empty() && IsReadable(found->second))
        return found->second;
    }
    return std::nullopt;
  }

  // ARM gives its licensees numbers.
  std::optional<std::string> ArmImplementer() const {
    constexpr std::array<std::pair<std::uint32_t, const char*>, 12> kImplementers{
        {{0x41, "ARM"},
         {0x42, "Broadcom"},
         {0x43, "Cavium"},
         {0x46, "Fujitsu"},
         {0x48, "HiSilicon"},
         {0x4e, "NVIDIA"},
         {0x50, "Applied Micro"},
         {0x51, "Qualcomm"},
         {0x53, "Samsung"},
         {0x56, "Marvell"},
         {0x61, "Apple"},
         {0xc0, "Ampere"}}};
    const auto number = Number({"CPU implementer"});
    for (const auto& [implementer, name] : kImplementers)
      if (number == implementer) return std::string(name);
    return std::nullopt;
  }

  const TCpuInfo& m_entry;
};

// hwloc knows the processor where it knows the architecture; what a machine recorded of itself
// may lack that.
std::optional<std::uint32_t> InfoNumber(hwloc_obj_t object, const char* name) {
  const auto text = InfoText(object, name);
  return text ? ParseNumber<std::uint32_t>(*text) : std::nullopt;
}

template <class T>
std::optional<T> FirstOf(std::optional<T> first, std::optional<T> second) {
  return first ? std::move(first) : std::move(second);
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
    const int first = hwloc_bitmap_first(package->cpuset);
    const auto& entry = m_cpuInfo[first < 0 ? 0 : static_cast<unsigned>(first)];
    const TIdentity identity(entry);
    processor.Describe(FirstOf(InfoText(package, "CPUModel"), identity.Model()))
        .Set("Manufacturer", FirstOf(InfoText(package, "CPUVendor"), identity.Manufacturer()))
        .Set("SocketNumber",
             numbered ? std::optional<std::uint32_t>(package->os_index) : std::nullopt)
        .Set("CPUStatus", std::optional(kEnabled))
        .Set("NumberOfCores", Known(Count(package, HWLOC_OBJ_CORE)))
        .Set("NumberOfLogicalProcessors", Known(Count(package, HWLOC_OBJ_PU)))
        .Set("FamilyNumber", FirstOf(InfoNumber(package, "CPUFamilyNumber"),
                                     identity.Number({"cpu family", "CPU architecture"})))
        .Set("ModelNumber",
             FirstOf(InfoNumber(package, "CPUModelNumber"), identity.Number({"model", "CPU part"})))
        .Set("Stepping", FirstOf(InfoNumber(package, "CPUStepping"),
                                 identity.Number({"stepping", "CPU revision"})));
    if (first >= 0) SetFromThread(processor, static_cast<unsigned>(first), entry);
    m_caches.SetLevels(processor, index);
  }

  std::uint32_t Count(hwloc_obj_t package, hwloc_obj_type_t type) const {
    const int count =
        hwloc_get_nbobjs_inside_cpuset_by_type(m_topology.Get(), package->cpuset, type);
    return count > 0 ? static_cast<std::uint32_t>(count) : 0;
  }

  // Speed and microcode are those of one thread, the package's first.
  void SetFromThread(TElement& processor, unsigned thread, const TCpuInfo& entry) {
    const std::string folder =
        std::string(kCpuFolder) + "/cpu" + std::to_string(thread) + "/cpufreq/";
    const auto maximum = m_files.Number<std::uint32_t>(folder + "cpuinfo_max_freq");
    auto current = m_files.Number<std::uint32_t>(folder + "scaling_cur_freq");
    if (maximum) processor.Set("MaxClockSpeedMHz", std::optional(*maximum / 1000));
    if (current) current = *current / 1000;
    const auto text = [&entry](const char* key) {
      const auto found = entry.find(key);
      return found == entry.end() ? std::string() : found->second;
    };
    // "2400.125", and on POWER "3800.000000MHz".
    for (const auto* const key : {"cpu MHz", "clock"}) {
      const auto megahertz = text(key);
      if (!current) current = ParseNumber<std::uint32_t>(megahertz.substr(0, megahertz.find('.')));
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
  // Where no thread is online hwloc would make a processor up.
  const auto names = files.Folder(kCpuFolder);
  const bool any = std::any_of(names.begin(), names.end(), [&](const std::string& name) {
    return files.Exists(std::string(kCpuFolder) + "/" + name + "/topology");
  });
  if (!any) return files.Fail(kCpuFolder, "tells of no processor");
  TProcessors(m_machine, collection).Collect();
}

}  // namespace hav::inventory
