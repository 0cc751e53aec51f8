#include "inventory/windows/ProcessorRelations.h"

#include <vector>

#include "inventory/windows/WindowsText.h"

namespace hav::inventory {

bool ForEachProcessorRelation(
    LOGICAL_PROCESSOR_RELATIONSHIP kind, TCollection& collection,
    const std::function<void(const SYSTEM_LOGICAL_PROCESSOR_INFORMATION_EX&)>& visit) {
  DWORD size = 0;
  GetLogicalProcessorInformationEx(kind, nullptr, &size);
  std::vector<char> bytes(size);
  auto* const first = reinterpret_cast<SYSTEM_LOGICAL_PROCESSOR_INFORMATION_EX*>(bytes.data());
  if (size == 0 || !GetLogicalProcessorInformationEx(kind, first, &size)) {
    collection.Fail("GetLogicalProcessorInformationEx", ErrorText(GetLastError()));
    return false;
  }
  for (DWORD at = 0; at < size;) {
    const auto* const entry =
        reinterpret_cast<const SYSTEM_LOGICAL_PROCESSOR_INFORMATION_EX*>(bytes.data() + at);
    if (entry->Size == 0) break;
    visit(*entry);
    at += entry->Size;
  }
  return true;
}

}  // namespace hav::inventory
