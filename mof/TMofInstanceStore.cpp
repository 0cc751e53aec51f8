// Finishing instances that had to wait, and storing.
#include <algorithm>
#include <memory>
#include <tuple>

#include "havcore/client/Enumerate.h"
#include "mof/TMofInstanceBuilder.h"
#include "mof/TMofParser.h"

namespace hav::mof {

using namespace client;

using namespace NORVHAV20;

namespace {

// A namespace without the host that is named before it.
std::string_view WithoutHost(std::string_view name) {
  if (name.substr(0, 2) == "//") {
    const auto end = name.find('/', 2);
    return end == std::string_view::npos ? std::string_view() : name.substr(end + 1);
  }
  return name.substr(0, 1) == "/" ? name.substr(1) : name;
}

// Nothing where it would be too long: paths double with each reference among their keys.
std::optional<std::string> PathOf(const TCIMReference& reference) {
  try {
    return reference.GetPath();
  } catch (const THAVException& failure) {
    if (failure.GetStatusCode() != kHAVNotSupported) throw;
    return {};
  }
}

std::string InNamespace(const std::string& name) {
  return name.empty() ? "the namespace" : "namespace '" + name + "'";
}

}  // namespace

void TMofInstanceBuilder::TDependencies::Add(std::size_t item, std::size_t other) {
  ++waitsFor[item];
  awaitedBy[other].push_back(item);
}

template <class TVisit>
std::vector<std::size_t> TMofInstanceBuilder::TDependencies::Run(
    const std::vector<std::size_t>& items, TVisit&& visit) {
  std::vector<std::size_t> ready;
  for (const auto item : items)
    if (waitsFor[item] == 0) ready.push_back(item);
  for (std::size_t next = 0; next < ready.size(); ++next) {
    visit(ready[next]);
    for (const auto other : awaitedBy[ready[next]])
      if (--waitsFor[other] == 0) ready.push_back(other);
  }
  std::vector<std::size_t> stuck;
  for (const auto item : items)
    if (waitsFor[item] != 0) stuck.push_back(item);
  return stuck;
}

void TMofInstanceBuilder::FinishWaiting() {
  SetWaitingKeys();
  SetWaitingReferences();
  SetWaitingObjects();
  SetReferenceDefaults();
  StoreWaiting();
}

void TMofInstanceBuilder::SetWaitingKeys() {
  TDependencies dependencies(m_waiting.size());
  std::vector<std::size_t> items;
  const auto forEachKey = [&](std::size_t i, const auto& visit) {
    ForEachAliased(m_waiting[i], [&](const TMofAssignment& assignment, const TMofSlot& slot) {
      if (slot.isKey) visit(assignment, slot);
    });
  };
  for (std::size_t i = 0; i < m_waiting.size(); ++i) {
    if (m_waiting[i].hasKeys || !ReadAt(m_waiting[i].place)) continue;
    items.push_back(i);
    forEachKey(i, [&](const TMofAssignment& assignment, const TMofSlot&) {
      const auto alias = m_aliases.find(assignment.value.scalar.text);
      if (alias == m_aliases.end() || alias->second.item == kNone) return;
      if (!m_waiting[alias->second.item].hasKeys) dependencies.Add(i, alias->second.item);
    });
  }
  const auto stuck = dependencies.Run(items, [&](std::size_t i) {
    auto& item = m_waiting[i];
    ReadAt(item.place);
    forEachKey(i, [&](const TMofAssignment& assignment, const TMofSlot& slot) {
      Set(item, assignment, slot);
    });
    item.hasKeys = true;
    const auto alias = m_aliases.find(m_syntax.alias.text);
    if (alias != m_aliases.end() && alias->second.item == i) alias->second.object = item.object;
  });
  for (const auto i : stuck) {
    ReadAt(m_waiting[i].place);
    Fail(m_waiting[i], m_syntax.className.offset,
         "the keys of this instance of " + Quoted(m_syntax.className.text) +
             " depend on themselves through aliases");
  }
}

void TMofInstanceBuilder::SetWaitingReferences() {
  for (auto& item : m_waiting) {
    if (item.isWhole || item.isLost || !ReadAt(item.place)) continue;
    bool whole = true;
    ForEachAliased(item, [&](const TMofAssignment& assignment, const TMofSlot& slot) {
      if (slot.type != kCIMReference)
        whole = false;
      else if (!slot.isKey)
        Set(item, assignment, slot);
    });
    item.isWhole = whole;
  }
}

// What an object embeds is set before it is embedded itself.
void TMofInstanceBuilder::SetWaitingObjects() {
  TDependencies dependencies(m_waiting.size());
  std::vector<std::size_t> items;
  const auto forEachObject = [&](std::size_t i, const auto& visit) {
    ForEachAliased(m_waiting[i], [&](const TMofAssignment& assignment, const TMofSlot& slot) {
      if (slot.type != kCIMReference) visit(assignment, slot);
    });
  };
  const auto add = [&](std::size_t i, std::string_view name) {
    const auto alias = m_aliases.find(name);
    if (alias == m_aliases.end() || alias->second.item == kNone) return;
    if (!m_waiting[alias->second.item].isWhole) dependencies.Add(i, alias->second.item);
  };
  for (std::size_t i = 0; i < m_waiting.size(); ++i) {
    if (m_waiting[i].isWhole || !ReadAt(m_waiting[i].place)) continue;
    items.push_back(i);
    forEachObject(i, [&](const TMofAssignment& assignment, const TMofSlot&) {
      if (!assignment.value.isArray) return add(i, assignment.value.scalar.text);
      for (const auto& element : assignment.value.elements) add(i, element.text);
    });
  }
  const auto stuck = dependencies.Run(items, [&](std::size_t i) {
    auto& item = m_waiting[i];
    ReadAt(item.place);
    forEachObject(i, [&](const TMofAssignment& assignment, const TMofSlot& slot) {
      Set(item, assignment, slot);
    });
    item.isWhole = true;
  });
  for (const auto i : stuck) {
    if (m_waiting[i].isLost) continue;
    ReadAt(m_waiting[i].place);
    Fail(m_waiting[i], m_syntax.className.offset,
         "this instance of " + Quoted(m_syntax.className.text) + " embeds itself through aliases");
  }
}

// A default that is not NULL stands in for the declared class, so it has to be of it.
void TMofInstanceBuilder::SetReferenceDefaults() {
  TMofSlot slot;
  slot.type = kCIMReference;
  for (const auto& [file, syntax, decl] : m_schema.GetReferenceDefaults()) {
    const auto value = m_values.Read(*file, *syntax->defaultValue, kCIMReference,
                                     [&](std::string_view alias) { return Resolve(alias, slot); });
    if (!value || value->IsNull()) continue;
    if (!SameName(value->GetReferencedClassName(), syntax->type.referenced.text))
      m_report.AddError(file->text, syntax->defaultValue->offset,
                        "the default of a reference to " + Quoted(syntax->type.referenced.text) +
                            " is an object of that very class");
    else
      decl->SetDefaultValue(*value, {});
  }
}

void TMofInstanceBuilder::StoreWaiting() {
  std::vector<std::size_t> associations;
  for (std::size_t i = 0; i < m_waiting.size(); ++i) {
    const auto& item = m_waiting[i];
    if (item.isLost || (item.isValue && !HasOwnPath(item)) || !HasAllKeys(item)) continue;
    if (item.shape->isAssociation)
      associations.push_back(i);
    else
      Store(item);
  }
  StoreLinks(associations);
}

// Each is stored behind what it refers to; what is left then refers to something that is not
// there.
void TMofInstanceBuilder::StoreLinks(const std::vector<std::size_t>& items) {
  std::unordered_map<std::string, std::vector<std::size_t>> awaited;  // by path
  std::vector<std::size_t> lacks(m_waiting.size());
  std::vector<std::size_t> ready;
  for (const auto i : items) {
    for (const auto& link : LinksOf(*m_waiting[i].object)) {
      if (!IsElsewhere(link.target) && IsThere(link.target)) continue;
      ++lacks[i];
      if (IsElsewhere(link.target)) continue;
      if (const auto path = PathOf(link.target))
        awaited[*path].push_back(i);
      else
        Fail(m_waiting[i], PlaceOf(m_waiting[i], link.property),
             "property " + Quoted(link.property) + " refers to an object whose path is too long");
    }
    if (lacks[i] == 0) ready.push_back(i);
  }
  for (std::size_t next = 0; next < ready.size() && !m_report.IsFull(); ++next) {
    Store(m_waiting[ready[next]]);
    const auto path = PathOf(m_waiting[ready[next]].object->GetReference({}));
    const auto found = path ? awaited.find(*path) : awaited.end();
    if (found == awaited.end()) continue;
    for (const auto i : found->second)
      if (--lacks[i] == 0) ready.push_back(i);
    found->second.clear();
  }
  for (const auto i : items) {
    if (lacks[i] == 0 || m_waiting[i].isLost) continue;
    if (const auto lack = FirstLack(m_waiting[i]))
      LeaveOut(m_waiting[i], PlaceOf(m_waiting[i], lack->property), *lack);
  }
}

// Of the value that the instance gives to a property, else of its class's name.
TMofOffset TMofInstanceBuilder::PlaceOf(const TItem& item, const std::string& property) {
  auto place = item.place.offset;
  ReadAt(item.place);
  for (const auto& assignment : m_syntax.assignments)
    if (SameName(assignment.name.text, property)) place = assignment.value.offset;
  return place;
}

void TMofInstanceBuilder::Finish(TItem&& item) {
  if (item.isLost || !HasAllKeysGiven(item)) return;
  const bool waits =
      item.shape->isAssociation &&
      std::any_of(m_references.begin(), m_references.end(), [this](const TCIMValue& value) {
        return !IsThere(static_cast<const TCIMReference&>(value));
      });
  if (!waits) return Store(item, MayBeThere(item));
  const auto alias = m_aliases.find(m_syntax.alias.text);
  if (alias != m_aliases.end() && alias->second.object == item.object)
    alias->second.item = m_waiting.size();
  m_waiting.push_back(std::move(item));
}

void TMofInstanceBuilder::ReportMissingKey(const TItem& item, const std::string& name) {
  ReadAt(item.place);
  m_report.AddError(FileOf(item.place).text, item.place.offset,
                    "key property " + Quoted(name) + " of this instance of " +
                        Quoted(m_syntax.className.text) + " has no value");
}

// Whether one of the same path may have been stored before; of the instance that was read last.
bool TMofInstanceBuilder::MayBeThere(const TItem& item) {
  const auto& keys = item.shape->keys;
  // A default that is given is not told from one that is not.
  const bool isHashed = std::all_of(keys.begin(), keys.end(), [](const TMofKey& key) {
    return key.slot && !key.slot->hasDefault;
  });
  return m_paths.MayHoldAndAdd(m_pathHash) || !isHashed;
}

// The instance that was read last has a value for the key.
bool TMofInstanceBuilder::HasKey(const TMofKey& key) const {
  const auto* const slot = key.slot;
  return slot && (slot->givenTo == m_turn ? slot->isGiven : slot->hasDefault);
}

// Of the instance that was read last; it asks nothing of the instance itself.
bool TMofInstanceBuilder::HasAllKeysGiven(const TItem& item) {
  bool all = true;
  for (const auto& key : item.shape->keys) {
    if (HasKey(key)) continue;
    ReportMissingKey(item, key.name);
    all = false;
  }
  return all;
}

bool TMofInstanceBuilder::HasAllKeys(const TItem& item) {
  bool all = true;
  for (const auto& key : item.shape->keys) {
    if (!item.object->GetProperty(key.name, {})->GetValue({}).IsNull()) continue;
    ReportMissingKey(item, key.name);
    all = false;
  }
  return all;
}

bool TMofInstanceBuilder::HasOwnPath(const TItem& item) {
  const auto& keys = item.shape->keys;
  return !keys.empty() && std::all_of(keys.begin(), keys.end(), [&](const TMofKey& key) {
    return !item.object->GetProperty(key.name, {})->GetValue({}).IsNull();
  });
}

std::vector<TMofInstanceBuilder::TLink> TMofInstanceBuilder::LinksOf(ICIMInstance& object) {
  std::vector<TLink> links;
  for (const auto& slot : Collect<ICIMProperty>(
           [&](const auto& callback) { object.EnumerateProperties(callback, {}); })) {
    const auto value = slot->GetValue({});
    if (value.IsReference() && !value.IsNull())
      links.push_back({slot->GetDecl({})->GetName({}), static_cast<const TCIMReference&>(value)});
  }
  return links;
}

bool TMofInstanceBuilder::IsElsewhere(const TCIMReference& target) const {
  const auto name = WithoutHost(target.GetNameSpaceName());
  return !name.empty() && !m_settings.home.empty() && !SameName(name, WithoutHost(m_settings.home));
}

bool TMofInstanceBuilder::IsThere(const TCIMReference& target) const {
  try {
    return static_cast<bool>(target.GetCIMElement(false));
  } catch (const THAVException&) {
    return false;
  }
}

std::optional<TMofInstanceBuilder::TLink> TMofInstanceBuilder::FirstLack(const TItem& item) const {
  for (auto& link : LinksOf(*item.object))
    if (IsElsewhere(link.target) || !IsThere(link.target)) return std::move(link);
  return {};
}

// Storing does not say whether there was one of that path, nor whether it was stored; so what
// could keep it out is looked at before.
void TMofInstanceBuilder::Store(const TItem& item, bool mayBeThere) {
  try {
    if (mayBeThere) {
      const auto reference = item.object->GetReference({});
      if (const auto before = m_home->GetInstance(reference, {}))
        return ReportTwice(item, reference.GetPath(), *before);
    }
    item.object->AddToNamespace({});
    m_stored.emplace_back(item.object.get(), item.place);
  } catch (const THAVException& failure) {
    ReadAt(item.place);
    m_report.AddError(
        FileOf(item.place).text, item.place.offset,
        failure.GetStatusCode() == kHAVNotSupported
            ? "the path of this instance of " + Quoted(m_syntax.className.text) + " is too long"
            : Quoted(m_syntax.className.text) + ": " + failure.what());
  }
}

void TMofInstanceBuilder::ReportTwice(const TItem& item, const std::string& path,
                                      const ICIMInstance& before) {
  const auto known = std::find_if(m_stored.begin(), m_stored.end(),
                                  [&](const auto& stored) { return stored.first == &before; });
  auto again = item.place;
  std::string first;
  if (known != m_stored.end()) {
    // Links are stored behind what stands after them.
    auto place = known->second;
    if (std::tie(again.file, again.offset) < std::tie(place.file, place.offset))
      std::swap(again, place);
    first = ", first at " + FileOf(place).text.DescribePlace(place.offset);
  }
  m_report.AddError(FileOf(again).text, again.offset,
                    "instance " + path + " is given twice" + first);
}

// What is missing beside an error may be the error's doing.
void TMofInstanceBuilder::LeaveOut(TItem& item, TMofOffset offset, const TLink& lack) {
  item.isLost = true;
  if (m_report.HasErrors() && !m_settings.strict) return;
  const auto what =
      "property " + Quoted(lack.property) + " refers to " + lack.target.GetPath() +
      (IsElsewhere(lack.target) ? " in namespace '" + lack.target.GetNameSpaceName() +
                                      "', and only " + InNamespace(m_settings.home) + " is loaded"
                                : ", which is not there in " + InNamespace(m_settings.home));
  const auto& text = FileOf(item.place).text;
  if (m_settings.strict)
    m_report.AddError(text, offset, what);
  else
    m_report.AddWarning(text, offset, "the instance is left out: " + what);
}

}  // namespace hav::mof
