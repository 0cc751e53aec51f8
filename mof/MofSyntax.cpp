#include "mof/MofSyntax.h"

#include <algorithm>

#include "havcore/client/FoldedName.h"

namespace hav::mof {

using client::SameName;

namespace {

bool Same(const TMofName& a, const TMofName& b) { return SameName(a.text, b.text); }

bool Same(const TMofToken& a, const TMofToken& b) {
  if (a.kind != b.kind) return false;
  switch (a.kind) {
    case TMofToken::EKind::kString:
      return TMofLexer::StringValue(a.text) == TMofLexer::StringValue(b.text);
    case TMofToken::EKind::kName:
    case TMofToken::EKind::kAlias: return SameName(a.text, b.text);
    default: return a.text == b.text;
  }
}

bool Same(const TMofType& a, const TMofType& b) {
  return a.element == b.element && Same(a.referenced, b.referenced) && a.isArray == b.isArray &&
         a.arraySize == b.arraySize;
}

bool Same(const TMofFlavor& a, const TMofFlavor& b) {
  return a.set == b.set && a.cleared == b.cleared;
}

bool Same(const TMofQualifier& a, const TMofQualifier& b);
bool Same(const TMofParameter& a, const TMofParameter& b);
bool Same(const TMofProperty& a, const TMofProperty& b);
bool Same(const TMofMethod& a, const TMofMethod& b);

template <class T>
bool Same(const std::vector<T>& a, const std::vector<T>& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](const T& one, const T& other) { return Same(one, other); });
}

bool Same(const std::optional<TMofValue>& a, const std::optional<TMofValue>& b) {
  if (!a || !b) return !a && !b;
  return a->isArray == b->isArray && Same(a->scalar, b->scalar) && Same(a->elements, b->elements);
}

bool Same(const TMofQualifier& a, const TMofQualifier& b) {
  return Same(a.name, b.name) && Same(a.value, b.value) && Same(a.flavor, b.flavor);
}

bool Same(const TMofParameter& a, const TMofParameter& b) {
  return Same(a.name, b.name) && Same(a.type, b.type) && Same(a.qualifiers, b.qualifiers);
}

bool Same(const TMofProperty& a, const TMofProperty& b) {
  return Same(a.name, b.name) && Same(a.type, b.type) && Same(a.qualifiers, b.qualifiers) &&
         Same(a.defaultValue, b.defaultValue);
}

bool Same(const TMofMethod& a, const TMofMethod& b) {
  return Same(a.name, b.name) && Same(a.returnType, b.returnType) &&
         Same(a.qualifiers, b.qualifiers) && Same(a.parameters, b.parameters);
}

// Calls `visit` with every name and literal that is given.
template <class TVisit>
void ForEachSaid(TMofValue& value, TVisit&& visit) {
  visit(value.scalar);
  for (auto& element : value.elements) visit(element);
}

template <class TVisit>
void ForEachSaid(TMofQualifiers& qualifiers, TVisit&& visit) {
  for (auto& qualifier : qualifiers) {
    visit(qualifier.name);
    if (qualifier.value) ForEachSaid(*qualifier.value, visit);
  }
}

// A parameter, property or method.
template <class TMember, class TVisit>
void ForEachSaid(TMember& member, TMofType& type, TVisit&& visit) {
  visit(member.name);
  visit(type.referenced);
  ForEachSaid(member.qualifiers, visit);
}

template <class TVisit>
void ForEachSaid(TMofQualifierDecl& decl, TVisit&& visit) {
  visit(decl.name);
  visit(decl.type.referenced);
  if (decl.defaultValue) ForEachSaid(*decl.defaultValue, visit);
}

template <class TVisit>
void ForEachSaid(TMofClass& cls, TVisit&& visit) {
  visit(cls.name);
  visit(cls.alias);
  visit(cls.superclass);
  ForEachSaid(cls.qualifiers, visit);
  for (auto& property : cls.properties) {
    ForEachSaid(property, property.type, visit);
    if (property.defaultValue) ForEachSaid(*property.defaultValue, visit);
  }
  for (auto& method : cls.methods) {
    ForEachSaid(method, method.returnType, visit);
    for (auto& parameter : method.parameters) ForEachSaid(parameter, parameter.type, visit);
  }
}

}  // namespace

void TMofFile::CutUp() {
  if (instances.empty()) return;
  instances.shrink_to_fit();
  text.CutUp(cuts, instances);
  for (const auto place : instances) text.Hold(place);
  const auto pointIntoPiece = [this](auto& said) {
    if (said.text.empty()) return;
    const auto part = text.PartAt(said.offset);
    said.text = part.text.substr(said.offset - part.begin, said.text.size());
  };
  for (auto& decl : qualifierDecls) {
    text.Hold(decl.name.offset);
    ForEachSaid(decl, pointIntoPiece);
  }
  for (auto& cls : classes) {
    text.Hold(cls.name.offset);
    ForEachSaid(cls, pointIntoPiece);
  }
}

bool TMofValue::HasAlias() const noexcept {
  const auto isAlias = [](const TMofToken& token) {
    return token.kind == TMofToken::EKind::kAlias;
  };
  return isArray ? std::any_of(elements.begin(), elements.end(), isAlias) : isAlias(scalar);
}

const TMofQualifier* FindQualifier(const TMofQualifiers& qualifiers, std::string_view name) {
  for (const auto& qualifier : qualifiers)
    if (SameName(qualifier.name.text, name)) return &qualifier;
  return nullptr;
}

bool SaysTrue(const TMofQualifiers& qualifiers, std::string_view name) {
  const auto* qualifier = FindQualifier(qualifiers, name);
  if (!qualifier || !qualifier->value) return qualifier != nullptr;
  return !qualifier->value->isArray && SameName(qualifier->value->scalar.text, "true");
}

bool Same(const TMofQualifierDecl& a, const TMofQualifierDecl& b) {
  return Same(a.name, b.name) && Same(a.type, b.type) && Same(a.defaultValue, b.defaultValue) &&
         a.scope == b.scope && Same(a.flavor, b.flavor);
}

bool Same(const TMofClass& a, const TMofClass& b) {
  return Same(a.name, b.name) && Same(a.alias, b.alias) && Same(a.superclass, b.superclass) &&
         Same(a.qualifiers, b.qualifiers) && Same(a.properties, b.properties) &&
         Same(a.methods, b.methods);
}

}  // namespace hav::mof
