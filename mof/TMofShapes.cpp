#include "mof/TMofShapes.h"

#include "havcore/client/Declared.h"
#include "havcore/client/Enumerate.h"

namespace hav::mof {

using namespace client;

using namespace NORVHAV20;

namespace {

void SetEmbedded(ICIMPropertyDecl& decl, TMofSlot& slot) {
  for (const auto& qualifier : QualifiersOf(decl)) {
    const auto& value = qualifier->GetValue({});
    if (value.IsNull()) continue;
    if (SameName(qualifier->GetName({}), "EmbeddedInstance") && value.GetType() == kCIMString) {
      slot.embeds = TMofSlot::EEmbedded::kInstance;
      slot.embeddedClass = value.ToString(10);
    } else if (SameName(qualifier->GetName({}), "EmbeddedObject") && value == TCIMValue(true)) {
      slot.embeds = TMofSlot::EEmbedded::kObject;
    }
  }
}

TMofSlot SlotOf(ICIMPropertyDecl& decl) {
  const auto& value = decl.GetDefaultValue({});
  TMofSlot slot;
  slot.name = decl.GetName({});
  slot.type = value.GetType();
  slot.hasDefault = !value.IsNull();
  if (slot.type == kCIMReference) slot.referenced = value.GetReferencedClass();
  if ((slot.type & kCIMArray) != 0) slot.arraySize = ArraySizeOf(decl);
  if (ElementOf(slot.type) == kCIMString) SetEmbedded(decl, slot);
  return slot;
}

}  // namespace

const TMofShape* TMofShapes::Find(std::string_view className) {
  if (className == m_lastName) return m_last;
  m_last = FindAny(className);
  m_lastName = className;
  return m_last;
}

const TMofShape* TMofShapes::FindAny(std::string_view className) {
  const auto* declared = m_schema.FindClass(className);
  if (!declared || !declared->object) return nullptr;
  const auto known = m_shapes.find(declared);
  if (known != m_shapes.end()) return &known->second;
  TMofShape shape;
  shape.cls = declared->object;
  for (const auto* cls = declared; cls; cls = cls->superclass)
    shape.isDamaged = shape.isDamaged || cls->syntax->isDamaged;
  shape.isAbstract = shape.cls->IsAbstract({});
  shape.isAssociation = shape.cls->IsAssociation({});
  AddSlots(shape);
  for (const auto& given : m_schema.GetReferenceDefaults())
    for (const auto& decl : shape.decls)
      shape.hasReferenceDefaults = shape.hasReferenceDefaults || given.decl == decl;
  return &m_shapes.emplace(declared, std::move(shape)).first->second;
}

boost::shared_ptr<ICIMClass> TMofShapes::FindClass(std::string_view className) const {
  const auto* declared = m_schema.FindClass(className);
  return declared ? declared->object : boost::shared_ptr<ICIMClass>();
}

void TMofShapes::AddSlots(TMofShape& shape) {
  shape.decls = Collect<ICIMPropertyDecl>(
      [&](const auto& callback) { shape.cls->EnumeratePropertyDecls(callback, {}); });
  for (const auto& decl : shape.decls) shape.slots.emplace(decl->GetName({}), SlotOf(*decl));
  TKeptException thrown;
  shape.cls->EnumerateKeyNames(
      [&](const std::string* name) {
        thrown.Guard([&] { shape.keys.push_back({*name, nullptr}); });
        return true;
      },
      {});
  thrown.Rethrow();
  for (auto& key : shape.keys) {
    const auto slot = shape.slots.find(key.name);
    if (slot == shape.slots.end()) continue;
    slot->second.isKey = true;
    key.slot = &slot->second;
  }
}

}  // namespace hav::mof
