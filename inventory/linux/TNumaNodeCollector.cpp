#include "inventory/linux/TNumaNodeCollector.h"

#include "inventory/linux/TSystemFiles.h"

using NORVHAV20::kCIMUInt32;
using NORVHAV20::TCIMValue;

namespace hav::inventory {
namespace {

constexpr const char* kNodes = "/sys/devices/system/node/";

// "Node 0 MemTotal:       16384000 kB" in bytes.
std::optional<std::uint64_t> Bytes(const std::string& memory, std::string_view key) {
  for (const auto& line : Lines(memory)) {
    const auto words = Words(line);
    if (words.size() == 5 && words[2] == key && words[4] == "kB")
      return Times(ParseNumber<std::uint64_t>(words[3]), 1024);
  }
  return std::nullopt;
}

TCIMValue Distances(TSystemFiles& files, const std::string& path) {
  std::vector<TCIMValue> distances;
  const auto line = files.Line(path).value_or("");
  for (const auto& word : Words(line))
    if (const auto distance = ParseNumber<std::uint32_t>(word)) distances.emplace_back(*distance);
  if (distances.empty()) return TCIMValue::Null(NORVHAV20::ArrayOf(kCIMUInt32));
  return TCIMValue(kCIMUInt32, std::move(distances));
}

void AddNode(TSystemFiles& files, std::uint32_t number, TCollection& collection) {
  const auto path = kNodes + ("node" + std::to_string(number)) + "/";
  const auto memory = files.Text(path + "meminfo").value_or("");
  auto& node = collection.AddSystemDevice("node:" + std::to_string(number), "ORVSG_NumaNode",
                                          "Node " + std::to_string(number));
  node.Set("NodeNumber", std::optional(number))
      .Set("LogicalProcessors", files.Line(path + "cpulist"))
      .Set("TotalSize", Bytes(memory, "MemTotal:"))
      .Set("FreeSize", Bytes(memory, "MemFree:"));
  node.values.emplace_back("Distances", Distances(files, path + "distance"));
}

}  // namespace

// A kernel that knows of no nodes has no such folder.
void TNumaNodeCollector::Collect(TCollection& collection) {
  TSystemFiles files(m_machine, collection);
  for (const auto& name : files.Folder(kNodes))
    if (name.compare(0, 4, "node") == 0)
      if (const auto number = ParseNumber<std::uint32_t>(name.substr(4)))
        AddNode(files, *number, collection);
}

}  // namespace hav::inventory
