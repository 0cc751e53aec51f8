// Any bytes as the firmware's table of memory modules: what is found in it are texts that people
// can read, and no more modules than the table has room for.
#include <cstdint>
#include <set>
#include <string>
#include <string_view>

#include "fuzz/Check.h"
#include "inventory/Smbios.h"
#include "inventory/Text.h"

namespace {

using namespace hav::inventory;

void CheckText(const std::optional<std::string>& text) {
  if (!text) return;
  havfuzz::Require(!text->empty() && IsReadable(*text) && Trim(*text) == *text,
                   "a text is not readable");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kSmallestModule = 0x0E;  // up to its size
  const auto modules = MemoryModules({reinterpret_cast<const char*>(data), size});
  havfuzz::Require(modules.size() <= size / kSmallestModule, "there are too many modules");
  for (const auto& module : modules) {
    CheckText(module.locator);
    for (const auto* const text :
         {&module.bank, &module.manufacturer, &module.partNumber, &module.serialNumber})
      CheckText(*text);
    havfuzz::Require(!module.size || *module.size != 0, "a module has no size");
  }
  TCollection collection;
  AddMemoryModules(modules, collection);
  havfuzz::RequireEqual(collection.Elements().size(), modules.size(), "number of elements");
  std::set<std::string> names;
  for (const auto& element : collection.Elements())
    havfuzz::Require(names.insert(element.id).second, "two modules have one name");
  return 0;
}
