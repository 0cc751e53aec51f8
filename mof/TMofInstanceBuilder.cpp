// Reading instances and setting their values.
#include "mof/TMofInstanceBuilder.h"

#include <algorithm>
#include <functional>
#include <memory>

#include "mof/TMofParser.h"
#include "mof/TMofWriter.h"

namespace hav::mof {

using namespace client;

using namespace NORVHAV20;

namespace {

template <class TVisit>
void ForEachAlias(const TMofValue& value, TVisit&& visit) {
  if (!value.isArray) return visit(value.scalar.text);
  for (const auto& element : value.elements)
    if (element.kind == TMofToken::EKind::kAlias) visit(element.text);
}

// Texts within texts have their quotes escaped once more, so that they double with each level.
constexpr std::size_t kMostEmbedded = std::size_t{1} << 24;

struct TTooLong {};

}  // namespace

TMofInstanceBuilder::TMofInstanceBuilder(boost::shared_ptr<ICIMNamespace> home,
                                         const TMofSchemaBuilder& schema,
                                         const TMofReader::TFiles& files, TSettings settings,
                                         TMofReport& report)
    : m_home(std::move(home)),
      m_schema(schema),
      m_files(files),
      m_settings(std::move(settings)),
      m_report(report),
      m_shapes(schema),
      m_values(m_home, report),
      m_embedded(m_home, m_shapes, m_settings.complete),
      m_parsers(files.size()) {}

void TMofInstanceBuilder::Build(const TProgress& progress) {
  AddClassAliases();
  ReadAll(progress);
  FinishWaiting();
  m_report.instances = m_stored.size();
}

void TMofInstanceBuilder::AddClassAliases() {
  std::unordered_map<const TMofFile*, std::uint32_t> indices;
  for (const auto& file : m_files)
    indices.emplace(file.get(), static_cast<std::uint32_t>(indices.size()));
  for (const auto& cls : m_schema.GetClasses())
    if (auto* alias = AddAlias({indices[cls.file], 0}, cls.syntax->alias)) alias->cls = &cls;
}

// Null when there is none, or it is taken.
TMofInstanceBuilder::TAlias* TMofInstanceBuilder::AddAlias(const TPlace& place,
                                                           const TMofName& name) {
  if (name.text.empty()) return nullptr;
  const TPlace at{place.file, name.offset};
  const auto [known, isNew] = m_aliases.emplace(name.text, TAlias{at, nullptr, {}, kNone});
  if (isNew) return &known->second;
  const auto& before = known->second.place;
  m_report.AddError(FileOf(at).text, at.offset,
                    "alias " + Quoted(name.text) + " is given twice, first at " +
                        FileOf(before).text.DescribePlace(before.offset));
  return nullptr;
}

void TMofInstanceBuilder::ReadAll(const TProgress& progress) {
  std::size_t total = 0;
  std::size_t done = 0;
  for (const auto& file : m_files) total += file->instances.size();
  m_paths.Reserve(total);
  std::vector<TPlace> links;
  for (std::uint32_t file = 0; file < m_files.size(); ++file) {
    for (const auto offset : m_files[file]->instances) {
      if (m_report.IsFull()) return;
      const TPlace place{file, offset};
      auto& parser = ParserOf(place);
      if (!parser.BeginInstance(offset, m_syntax)) continue;
      const auto* const shape = m_shapes.Find(m_syntax.className.text);
      if (shape && shape->isAssociation && m_syntax.alias.text.empty()) {
        links.push_back(place);
        continue;
      }
      if (parser.EndInstance(m_syntax)) TakeOne(place, shape);
      if (progress) progress(++done, total);
    }
  }
  for (const auto& place : links) {
    if (m_report.IsFull()) return;
    if (ReadAt(place)) TakeOne(place, m_shapes.Find(m_syntax.className.text));
    if (progress) progress(++done, total);
  }
}

TMofParser& TMofInstanceBuilder::ParserOf(const TPlace& place) {
  auto& parser = m_parsers[place.file];
  if (!parser) parser = std::make_unique<TMofParser>(*m_files[place.file], m_deaf);
  return *parser;
}

bool TMofInstanceBuilder::ReadAt(const TPlace& place) {
  return ParserOf(place).ReadInstance(place.offset, m_syntax);
}

void TMofInstanceBuilder::TakeOne(const TPlace& place, const TMofShape* shape) {
  const auto waiting = m_waiting.size();
  MakeOne(place, shape);
  if (m_syntax.alias.text.empty() && m_waiting.size() == waiting)
    m_files[place.file]->text.LetGo(place.offset);
}

void TMofInstanceBuilder::MakeOne(const TPlace& place, const TMofShape* shape) {
  auto* const alias = AddAlias(place, m_syntax.alias);
  if (!MayBeMade(shape, place)) return;
  TItem item{place, shape, shape->cls->AllocateInstance({})};
  item.isLost = m_syntax.isDamaged;
  SetPlainValues(item);
  // It may be meant as a value only.
  const bool waitsForKeys = alias && LacksKeys(*shape);
  if (!item.isWhole && !shape->hasReferenceDefaults && CanResolveAliases(item)) SetAliases(item);
  if (alias && item.hasKeys) alias->object = item.object;
  if (item.isWhole && !waitsForKeys && !shape->hasReferenceDefaults) return Finish(std::move(item));
  if (alias) alias->item = m_waiting.size();
  m_waiting.push_back(std::move(item));
}

bool TMofInstanceBuilder::MayBeMade(const TMofShape* shape, const TPlace& place) {
  const auto& name = m_syntax.className;
  if (!shape && m_settings.complete && !m_shapes.IsDeclared(name.text))
    m_report.AddError(FileOf(place).text, name.offset,
                      "class " + Quoted(name.text) + " is not declared");
  if (shape && shape->isAbstract)
    m_report.AddError(FileOf(place).text, name.offset,
                      "class " + Quoted(name.text) + " is abstract, and has no instances");
  return shape && !shape->isAbstract;
}

void TMofInstanceBuilder::SetPlainValues(TItem& item) {
  ++m_turn;
  m_references.clear();
  m_pathHash = reinterpret_cast<std::uintptr_t>(item.shape);
  std::size_t place = 0;
  for (const auto& assignment : m_syntax.assignments) {
    const auto& name = assignment.name;
    const auto* slot = item.shape->FindAt(place++, name.text);
    if (!slot) {
      if (!item.shape->isDamaged)
        Fail(item, name.offset,
             "class " + Quoted(item.shape->cls->GetName({})) + " has no property " +
                 Quoted(name.text));
      continue;
    }
    if (std::exchange(slot->givenTo, m_turn) == m_turn) {
      Fail(item, name.offset, "property " + Quoted(name.text) + " is given twice");
      continue;
    }
    slot->isGiven = true;
    if (!assignment.value.HasAlias() || !slot->TakesAlias()) {
      Set(item, assignment, *slot);
      continue;
    }
    item.isWhole = false;
    item.hasKeys = item.hasKeys && !slot->isKey;
  }
}

bool TMofInstanceBuilder::LacksKeys(const TMofShape& shape) const {
  if (shape.keys.empty()) return true;
  return std::any_of(shape.keys.begin(), shape.keys.end(),
                     [&](const TMofKey& key) { return !HasKey(key); });
}

bool TMofInstanceBuilder::CanResolveAliases(const TItem& item) const {
  bool all = true;
  ForEachAliased(item, [&](const TMofAssignment& assignment, const TMofSlot& slot) {
    ForEachAlias(assignment.value, [&](std::string_view name) {
      const auto alias = m_aliases.find(name);
      const bool known = alias != m_aliases.end() && (alias->second.cls || alias->second.object);
      const bool whole = known && (alias->second.item == kNone || slot.type == kCIMReference ||
                                   m_waiting[alias->second.item].isWhole);
      all = all && whole;
    });
  });
  return all;
}

void TMofInstanceBuilder::SetAliases(TItem& item) {
  ForEachAliased(item, [&](const TMofAssignment& assignment, const TMofSlot& slot) {
    Set(item, assignment, slot);
  });
  item.hasKeys = item.isWhole = true;
}

void TMofInstanceBuilder::Set(TItem& item, const TMofAssignment& assignment, const TMofSlot& slot) {
  TMofValueReader::TAliases aliases;
  if (slot.TakesAlias()) aliases = [&](std::string_view alias) { return Resolve(alias, slot); };
  std::optional<TCIMValue> value;
  try {
    value = m_values.Read(FileOf(item.place), assignment.value, slot.type, aliases);
  } catch (const TTooLong&) {
    return Fail(item, assignment.value.offset,
                "the text of the embedded object is longer than 16 MiB");
  }
  if (!value) {
    item.isLost = true;
    return;
  }
  slot.isGiven = !value->IsNull();
  if (!IsSound(item, assignment, slot, *value)) return;
  if (slot.type == kCIMReference && !value->IsNull()) m_references.push_back(*value);
  try {
    if (slot.isKey && !value->IsNull()) HashKey(slot, *value);
    item.object->SetPropertyValue(slot.name, *value, {});
  } catch (const THAVException& failure) {
    // What is left out refers to what nobody knows.
    if (item.isLost) return;
    const bool isTooLong = value->IsReference() && failure.GetStatusCode() == kHAVNotSupported;
    Fail(item, assignment.value.offset,
         isTooLong ? "property " + Quoted(assignment.name.text) +
                         " refers to an object whose path is too long"
                   : Quoted(assignment.name.text) + ": " + failure.what());
  }
}

// Keys come in any order.
void TMofInstanceBuilder::HashKey(const TMofSlot& slot, const TCIMValue& value) {
  const auto hash = [&] {
    const std::hash<std::string_view> of;
    if (value.GetType() == kCIMString) return of(static_cast<std::string_view>(value));
    if (value.IsReference()) return of(static_cast<const TCIMReference&>(value).GetPath());
    return of(value.ToString(10));
  }();
  const auto mixed =
      (hash ^ reinterpret_cast<std::uintptr_t>(&slot)) * std::uint64_t{0x9E3779B97F4A7C15};
  m_pathHash += mixed ^ mixed >> 32U;
}

bool TMofInstanceBuilder::IsSound(TItem& item, const TMofAssignment& assignment,
                                  const TMofSlot& slot, const TCIMValue& value) {
  if (slot.arraySize == 0 && !slot.TakesAlias()) return true;  // most are
  auto wrong = WhatIsWrongWithSize(value, slot.arraySize);
  if (wrong.empty() && slot.type == kCIMReference)
    wrong = WhatIsWrongWithTarget(item, assignment, slot, value);
  if (wrong.empty() && slot.Embeds() && !assignment.value.HasAlias())
    wrong = WhatIsWrongWithObjects(slot, value);
  if (!wrong.empty()) Fail(item, assignment.value.offset, wrong);
  return wrong.empty();
}

std::string TMofInstanceBuilder::WhatIsWrongWithTarget(TItem& item,
                                                       const TMofAssignment& assignment,
                                                       const TMofSlot& slot,
                                                       const TCIMValue& value) {
  if (value.IsNull()) return {};
  const auto& target = static_cast<const TCIMReference&>(value);
  const auto cls = IsElsewhere(target) ? boost::shared_ptr<ICIMClass>() : target.GetClass();
  if (!cls) LeaveOut(item, assignment.value.offset, {std::string(assignment.name.text), target});
  if (!cls || !slot.referenced || cls->IsA(slot.referenced, {})) return {};
  return "property " + Quoted(assignment.name.text) + " refers to a " +
         Quoted(slot.referenced->GetName({})) + ", and " + Quoted(cls->GetName({})) + " is none";
}

std::string TMofInstanceBuilder::WhatIsWrongWithObjects(const TMofSlot& slot,
                                                        const TCIMValue& value) {
  auto texts = std::vector<TCIMValue>{value};
  if (value.IsArray() && !value.IsNull()) texts = static_cast<const std::vector<TCIMValue>&>(value);
  for (const auto& text : texts) {
    if (text.IsNull()) continue;
    const auto wrong = m_embedded.WhatIsWrong(text.ToString(10), slot);
    if (!wrong.empty()) return "in the embedded object, " + wrong;
  }
  return {};
}

std::optional<TCIMValue> TMofInstanceBuilder::Resolve(std::string_view name, const TMofSlot& slot) {
  const auto found = m_aliases.find(name);
  if (found == m_aliases.end()) return {};
  const auto& alias = found->second;
  if (slot.Embeds()) return TextOf(alias, slot);
  if (alias.cls) {
    if (!alias.cls->object) return {};
    TCIMReference reference(m_home, {});
    reference.SetClass(alias.cls->object);
    return TCIMValue(reference);
  }
  if (!alias.object) return {};
  return TCIMValue(alias.object->GetReference({}));
}

// Nothing when the object may not be embedded there.
std::optional<TCIMValue> TMofInstanceBuilder::TextOf(const TAlias& alias, const TMofSlot& slot) {
  std::string text;
  if (alias.cls && alias.cls->object && slot.embeds == TMofSlot::EEmbedded::kObject)
    TMofWriter(text).WriteClass(*alias.cls->object);
  else if (alias.object && MayEmbed(m_shapes, slot, *alias.object->GetClass({})))
    TMofWriter(text).WriteInstance(*alias.object);
  else
    return {};
  if (text.size() > kMostEmbedded) throw TTooLong();
  if (alias.item != kNone) m_waiting[alias.item].isValue = true;
  text.erase(text.find_last_not_of('\n') + 1);
  return TCIMValue(text);
}

void TMofInstanceBuilder::Fail(TItem& item, TMofOffset offset, const std::string& text) {
  item.isLost = true;
  m_report.AddError(FileOf(item.place).text, offset, text);
}

}  // namespace hav::mof
