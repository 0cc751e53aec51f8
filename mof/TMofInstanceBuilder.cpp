#include "mof/TMofInstanceBuilder.h"

#include <utility>

namespace hav::mof {

using namespace client;

using namespace NORVHAV20;

namespace {

bool IsAlias(const TMofAssignment& assignment) {
  return !assignment.value.isArray &&
         assignment.value.elements.front().kind == TMofToken::EKind::kAlias;
}

boost::shared_ptr<ICIMClass> ReferencedClass(const TCIMValue& value) {
  return value.GetType() == kCIMReference ? value.GetReferencedClass()
                                          : boost::shared_ptr<ICIMClass>();
}

template <class TVisit>
void ForEachReference(ICIMInstance& instance, TVisit&& visit) {
  std::vector<TCIMValue> values;
  instance.EnumerateProperties(
      [&](boost::shared_ptr<ICIMProperty> slot) {
        if (slot->GetValue({}).IsReference()) values.push_back(slot->GetValue({}));
        return true;
      },
      {});
  for (const auto& value : values) visit(static_cast<const TCIMReference&>(value));
}

}  // namespace

void TMofInstanceBuilder::TWaiting::Add(std::size_t item, std::size_t other) {
  ++waitsFor[item];
  awaitedBy[other].push_back(item);
}

template <class TVisit>
std::vector<std::size_t> TMofInstanceBuilder::TWaiting::Run(const std::vector<std::size_t>& items,
                                                            TVisit&& visit) {
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

TMofInstanceBuilder::TMofInstanceBuilder(boost::shared_ptr<ICIMNamespace> home,
                                         const TMofSchemaBuilder& schema,
                                         const TMofReader::TFiles& files, bool complete,
                                         TMofReport& report)
    : m_home(std::move(home)),
      m_schema(schema),
      m_files(files),
      m_complete(complete),
      m_report(report),
      m_values(m_home, report) {}

void TMofInstanceBuilder::Build(const TProgress& progress) {
  Collect();
  for (auto& item : m_items) {
    if (m_report.IsFull()) return;
    if (item.shape) Make(item);
  }
  SetAliasedKeys();
  for (const auto& item : m_items)
    if (item.object) SetAliases(item, false);
  SetReferenceDefaults();
  if (!m_report.HasErrors()) Store(progress);
}

void TMofInstanceBuilder::Collect() {
  for (const auto& cls : m_schema.GetClasses()) AddAlias(*cls.file, cls.syntax->alias, kNone, &cls);
  for (const auto& file : m_files) {
    for (const auto& syntax : file->instances) {
      AddAlias(*file, syntax.alias, m_items.size(), nullptr);
      m_items.push_back({file.get(), &syntax, ShapeOf(*file, syntax.className), {}, false});
    }
  }
}

void TMofInstanceBuilder::AddAlias(const TMofFile& file, const TMofName& name, std::size_t item,
                                   const TMofSchemaBuilder::TClass* cls) {
  if (name.text.empty()) return;
  const auto [known, isNew] = m_aliases.emplace(name.text, TAlias{&file, name.offset, item, cls});
  if (!isNew)
    m_report.AddError(file.text, name.offset,
                      "alias " + Quoted(name.text) + " is given twice, first at " +
                          known->second.file->text.DescribePlace(known->second.offset));
}

// Empty when there is no such class.
const TMofInstanceBuilder::TShape* TMofInstanceBuilder::ShapeOf(const TMofFile& file,
                                                                const TMofName& className) {
  const auto* declared = m_schema.FindClass(className.text);
  if (!declared && m_complete)
    m_report.AddError(file.text, className.offset,
                      "class " + Quoted(className.text) + " is not declared");
  if (!declared || !declared->object) return nullptr;
  const auto [known, isNew] =
      m_shapes.emplace(declared->syntax->name.text, TShape{declared->object, false, {}, {}});
  auto& shape = known->second;
  if (!isNew) return &shape;
  for (const auto* cls = declared; cls; cls = cls->superclass)
    shape.isDamaged = shape.isDamaged || cls->syntax->isDamaged;
  declared->object->EnumeratePropertyDecls(
      [&](boost::shared_ptr<ICIMPropertyDecl> decl) {
        const auto& value = decl->GetDefaultValue({});
        shape.slots.emplace(decl->GetName({}),
                            TSlot{value.GetType(), ReferencedClass(value), false});
        return true;
      },
      {});
  declared->object->EnumerateKeyNames(
      [&](const std::string* name) {
        shape.keys.push_back(*name);
        shape.slots[*name].isKey = true;
        return true;
      },
      {});
  return &shape;
}

void TMofInstanceBuilder::Make(TItem& item) {
  item.object = item.shape->cls->AllocateInstance({});
  std::unordered_set<std::string_view, TFoldedHash, TFoldedEqual> seen;
  for (const auto& assignment : item.syntax->assignments) {
    const auto& name = assignment.name;
    const auto slot = item.shape->slots.find(name.text);
    if (!seen.insert(name.text).second)
      Fail(item, name.offset, "property " + Quoted(name.text) + " is given twice");
    else if (slot == item.shape->slots.end() && !item.shape->isDamaged)
      Fail(item, name.offset,
           "class " + Quoted(item.shape->cls->GetName({})) + " has no property " +
               Quoted(name.text));
    else if (slot != item.shape->slots.end() && !IsAlias(assignment))
      Set(item, assignment, slot->second);
  }
}

void TMofInstanceBuilder::SetAliasedKeys() {
  TWaiting waiting(m_items.size());
  std::vector<std::size_t> all;
  for (std::size_t i = 0; i < m_items.size(); ++i) {
    if (!m_items[i].object) continue;
    all.push_back(i);
    for (const auto& assignment : m_items[i].syntax->assignments) {
      const auto slot = m_items[i].shape->slots.find(assignment.name.text);
      if (!IsAlias(assignment) || slot == m_items[i].shape->slots.end() || !slot->second.isKey)
        continue;
      const auto alias = m_aliases.find(assignment.value.elements.front().text);
      if (alias == m_aliases.end() || alias->second.item == kNone) continue;
      if (m_items[alias->second.item].object) waiting.Add(i, alias->second.item);
    }
  }
  const auto stuck = waiting.Run(all, [&](std::size_t item) {
    SetAliases(m_items[item], true);
    m_items[item].hasKeys = true;
  });
  for (const auto item : stuck)
    Fail(m_items[item], m_items[item].syntax->className.offset,
         "the keys of this instance of " + Quoted(m_items[item].syntax->className.text) +
             " depend on themselves through aliases");
}

void TMofInstanceBuilder::SetAliases(const TItem& item, bool keys) {
  for (const auto& assignment : item.syntax->assignments) {
    const auto slot = item.shape->slots.find(assignment.name.text);
    if (IsAlias(assignment) && slot != item.shape->slots.end() && slot->second.isKey == keys)
      Set(item, assignment, slot->second);
  }
}

// A default that is not NULL stands in for the declared class, so it has to be of it.
void TMofInstanceBuilder::SetReferenceDefaults() {
  for (const auto& [file, syntax, decl] : m_schema.GetReferenceDefaults()) {
    const auto value = m_values.Read(*file, *syntax->defaultValue, kCIMReference,
                                     [this](std::string_view alias) { return Resolve(alias); });
    if (!value || value->IsNull()) continue;
    if (!SameName(value->GetReferencedClassName(), syntax->type.referenced.text))
      m_report.AddError(file->text, syntax->defaultValue->offset,
                        "the default of a reference to " + Quoted(syntax->type.referenced.text) +
                            " is an object of that very class");
    else
      decl->SetDefaultValue(*value, {});
  }
}

void TMofInstanceBuilder::Set(const TItem& item, const TMofAssignment& assignment,
                              const TSlot& slot) {
  const auto value = m_values.Read(*item.file, assignment.value, slot.type,
                                   [this](std::string_view alias) { return Resolve(alias); });
  if (!value) return;
  const auto target = ReferencedClass(*value);
  if (slot.referenced && target && !target->IsA(slot.referenced, {}))
    return Fail(item, assignment.value.offset,
                "property " + Quoted(assignment.name.text) + " refers to a " +
                    Quoted(slot.referenced->GetName({})) + ", and " + Quoted(target->GetName({})) +
                    " is none");
  try {
    item.object->SetPropertyValue(std::string(assignment.name.text), *value, {});
  } catch (const THAVException& failure) {
    Fail(item, assignment.value.offset, Quoted(assignment.name.text) + ": " + failure.what());
  }
}

std::optional<TCIMReference> TMofInstanceBuilder::Resolve(std::string_view alias) const {
  const auto found = m_aliases.find(alias);
  if (found == m_aliases.end()) return {};
  if (const auto* cls = found->second.cls) {
    if (!cls->object) return {};
    TCIMReference reference(m_home, {});
    reference.SetClass(cls->object);
    return reference;
  }
  const auto& item = m_items[found->second.item];
  if (!item.object || !item.hasKeys) return {};
  return item.object->GetReference({});
}

void TMofInstanceBuilder::Store(const TProgress& progress) {
  std::unordered_map<std::string, std::size_t> byPath;
  std::vector<std::size_t> plain;
  std::vector<std::size_t> associations;
  for (std::size_t i = 0; i < m_items.size(); ++i) {
    const auto& item = m_items[i];
    if (!HasAllKeys(item)) continue;
    const auto [known, isNew] = byPath.emplace(item.object->GetReference({}).GetPath(), i);
    if (!isNew) {
      const auto& before = m_items[known->second];
      Fail(item, item.syntax->className.offset,
           "instance " + known->first + " is given twice, first at " +
               before.file->text.DescribePlace(before.syntax->className.offset));
    }
    (item.shape->cls->IsAssociation({}) ? associations : plain).push_back(i);
  }
  if (m_report.HasErrors()) return;

  TWaiting waiting(m_items.size());
  for (const auto item : associations) {
    ForEachReference(*m_items[item].object, [&](const TCIMReference& reference) {
      const auto target = byPath.find(reference.GetPath());
      if (target != byPath.end() && m_items[target->second].shape->cls->IsAssociation({}))
        waiting.Add(item, target->second);
    });
  }
  std::size_t done = 0;
  const auto store = [&](std::size_t item) {
    if (m_report.IsFull()) return;
    StoreOne(m_items[item]);
    if (progress) progress(++done, m_items.size());
  };
  for (const auto item : plain) store(item);
  for (const auto item : waiting.Run(associations, store)) store(item);
  m_report.instances = m_items.size();
}

bool TMofInstanceBuilder::HasAllKeys(const TItem& item) {
  bool all = true;
  for (const auto& name : item.shape->keys) {
    if (!item.object->GetProperty(name, {})->GetValue({}).IsNull()) continue;
    Fail(item, item.syntax->className.offset,
         "key property " + Quoted(name) + " of this instance of " +
             Quoted(item.syntax->className.text) + " has no value");
    all = false;
  }
  return all;
}

// Storing an instance does not say whether it was stored, so it is validated first.
void TMofInstanceBuilder::StoreOne(const TItem& item) {
  try {
    item.object->Validate({});
    item.object->AddToNamespace({});
  } catch (const THAVException& failure) {
    ReportBadReference(item, failure);
  }
}

void TMofInstanceBuilder::ReportBadReference(const TItem& item, const THAVException& failure) {
  std::string text = Quoted(item.syntax->className.text) + ": " + failure.what();
  ForEachReference(*item.object, [&](const TCIMReference& reference) {
    try {
      reference.GetCIMElement(false);
    } catch (const THAVException&) {
      text = "the instance refers to " + reference.GetPath() + ", which is not there";
    }
  });
  Fail(item, item.syntax->className.offset, text);
}

void TMofInstanceBuilder::Fail(const TItem& item, TMofOffset offset, const std::string& text) {
  m_report.AddError(item.file->text, offset, text);
}

}  // namespace hav::mof
