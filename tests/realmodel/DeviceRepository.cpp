#include "realmodel/DeviceRepository.h"

#include <stdexcept>

#include "mof/TMofFolderSource.h"
#include "mof/TMofLoader.h"
#include "realmodel/DeviceClasses.h"

namespace havtest {

DeviceRepository::DeviceRepository(const std::filesystem::path& schema) {
  // The schema has hundreds of classes without keys, and the log a line for each.
  RecordingLogger log;
  hav::mof::TMofFolderSource source;
  hav::mof::TMofReport report;
  const auto provider = Provider();
  ns = hav::mof::TMofLoader(*provider, source).Load({schema.u8string()}, report);
  if (!ns) throw std::runtime_error(report.ToString());
}

void DeviceRepository::Store(const DeviceModel& model) {
  things.clear();
  links.clear();
  ns->ClearInstances();
  for (const auto& thing : model.things) {
    auto instance = ns->GetClass(thing.cls, {})->AllocateInstance({});
    for (const auto& [name, value] : thing.keys)
      instance->SetPropertyValue(name, TCIMValue(value), {});
    instance->AddToNamespace({});
    things.push_back(instance);
  }
  for (const auto& link : model.links) {
    auto instance = ns->GetClass(link.cls, {})->AllocateInstance({});
    const auto& roles = LinkFact(link.cls).roles;
    for (std::size_t i = 0; i < roles.size(); ++i)
      instance->SetPropertyValue(roles[i].name, TCIMValue(things[link.ends[i]]->GetReference({})),
                                 {});
    instance->AddToNamespace({});
    links.push_back(instance);
  }
}

}  // namespace havtest
