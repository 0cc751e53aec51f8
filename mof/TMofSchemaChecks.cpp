#include "mof/TMofSchemaChecks.h"

#include "havcore/client/Enumerate.h"
#include "mof/MofDisplayChecks.h"
#include "mof/TMofValueReader.h"

namespace hav::mof {

using namespace client;

using namespace NORVHAV20;

namespace {

template <class TFind>
auto FoundBy(TFind&& find) -> decltype(find()) {
  try {
    return find();
  } catch (const THAVException& failure) {
    if (failure.GetStatusCode() != kHAVNotFound) throw;
    return {};
  }
}

boost::shared_ptr<ICIMPropertyDecl> PropertyOf(const boost::shared_ptr<ICIMClass>& cls,
                                               const TMofName& name) {
  return FoundBy([&] { return cls->GetPropertyDecl(std::string(name.text), {}); });
}

boost::shared_ptr<ICIMMethodDecl> MethodOf(const boost::shared_ptr<ICIMClass>& cls,
                                           const TMofName& name) {
  return FoundBy([&] { return cls->GetMethodDecl(std::string(name.text), {}); });
}

bool HasKey(ICIMClass& cls) {
  bool found = false;
  cls.EnumerateKeyNames(
      [&](const std::string*) {
        found = true;
        return true;
      },
      {});
  return found;
}

std::string TextOf(const TMofQualifier& qualifier) {
  if (!qualifier.value || qualifier.value->isArray ||
      qualifier.value->scalar.kind != TMofToken::EKind::kString)
    return {};
  return TMofLexer::StringValue(qualifier.value->scalar.text);
}

}  // namespace

void TMofSchemaChecks::Run() {
  for (const auto& cls : m_schema.GetClasses()) CollectEmbedded(cls);
  for (const auto& cls : m_schema.GetClasses())
    if (cls.object) CheckClass(cls);
}

void TMofSchemaChecks::CollectEmbedded(const TClass& cls) {
  for (const auto& property : cls.syntax->properties) CollectEmbedded(cls, property.qualifiers);
  for (const auto& method : cls.syntax->methods) {
    CollectEmbedded(cls, method.qualifiers);
    for (const auto& parameter : method.parameters) CollectEmbedded(cls, parameter.qualifiers);
  }
}

void TMofSchemaChecks::CollectEmbedded(const TClass& cls, const TMofQualifiers& qualifiers) {
  const auto* const qualifier = FindQualifier(qualifiers, "EmbeddedInstance");
  if (!qualifier) return;
  const auto name = TextOf(*qualifier);
  if (name.empty()) return;
  m_embedded.insert(name);
  if (!m_schema.FindClass(name))
    Warn(cls, qualifier->value->offset, "class " + Quoted(name) + " is not declared");
}

bool TMofSchemaChecks::IsEmbedded(const TClass* cls) const {
  for (; cls; cls = cls->superclass)
    if (m_embedded.count(std::string(cls->syntax->name.text)) != 0) return true;
  return false;
}

void TMofSchemaChecks::CheckClass(const TClass& cls) {
  // Of a class that could not be read whole, what is missing is not known.
  if (!cls.syntax->isDamaged) {
    CheckKey(cls);
    CheckReferences(cls);
  }
  for (const auto& property : cls.syntax->properties) CheckProperty(cls, property);
  for (const auto& method : cls.syntax->methods) CheckMethod(cls, method);
}

void TMofSchemaChecks::CheckKey(const TClass& cls) {
  const auto& qualifiers = cls.syntax->qualifiers;
  if (SaysTrue(qualifiers, "Abstract") || SaysTrue(qualifiers, "Exception") ||
      cls.object->IsIndication({}) || IsEmbedded(&cls) || HasKey(*cls.object))
    return;
  Warn(cls, cls.syntax->name.offset,
       "class " + Quoted(cls.syntax->name.text) +
           " has no key, so its instances cannot be told apart");
}

void TMofSchemaChecks::CheckReferences(const TClass& cls) {
  if (!cls.object->IsAssociation({}) || SaysTrue(cls.syntax->qualifiers, "Abstract")) return;
  const auto references = Collect<ICIMPropertyDecl>(
      [&](const auto& callback) { cls.object->EnumerateReferenceDecls(callback, {}); });
  if (references.empty())
    Warn(cls, cls.syntax->name.offset,
         "association " + Quoted(cls.syntax->name.text) +
             " has no reference, and associates nothing");
}

void TMofSchemaChecks::CheckProperty(const TClass& cls, const TMofProperty& property) {
  const auto decl = PropertyOf(cls.object, property.name);
  if (!decl || decl->GetClass({}) != cls.object) return;  // it is left out, and was told of
  const auto inherited = cls.superclass ? PropertyOf(cls.superclass->object, property.name)
                                        : boost::shared_ptr<ICIMPropertyDecl>();
  if (const auto* const override = FindQualifier(property.qualifiers, "Override"))
    CheckOverride(cls, *override, property.name, "property", inherited != nullptr);
  else if (inherited)
    CheckTaken(cls, property, *inherited);
  const TMofDisplayed displayed{*cls.file, property.name, property.qualifiers, decl->GetType({}),
                                *decl};
  CheckValueMap(displayed, m_report);
  CheckDisplay(displayed, m_report);
}

// Keys, and the properties that network ports declare anew, need no Override.
void TMofSchemaChecks::CheckTaken(const TClass& cls, const TMofProperty& property,
                                  const ICIMPropertyDecl& inherited) {
  const auto type = property.type.isArray ? ArrayOf(property.type.element) : property.type.element;
  auto text = "property " + Quoted(property.name.text) + " takes the place of that of class " +
              Quoted(inherited.GetClass({})->GetName({})) + " without Override, because of its " +
              (FindQualifier(property.qualifiers, "Key") ? "Key" : "name");
  if (inherited.GetType({}) != type)
    text +=
        ", and changes its type from " + TypeName(inherited.GetType({})) + " to " + TypeName(type);
  Warn(cls, property.name.offset, std::move(text));
}

void TMofSchemaChecks::CheckMethod(const TClass& cls, const TMofMethod& method) {
  const auto decl = MethodOf(cls.object, method.name);
  if (!decl || decl->GetClass({}) != cls.object) return;
  if (const auto* const override = FindQualifier(method.qualifiers, "Override"))
    CheckOverride(cls, *override, method.name, "method",
                  cls.superclass && MethodOf(cls.superclass->object, method.name));
  CheckValueMap({*cls.file, method.name, method.qualifiers, decl->GetType({}), *decl}, m_report);
  for (const auto& parameter : method.parameters) {
    const auto made =
        FoundBy([&] { return decl->GetParameter(std::string(parameter.name.text), {}); });
    if (made)
      CheckValueMap({*cls.file, parameter.name, parameter.qualifiers, made->GetType({}), *made},
                    m_report);
  }
}

// The namespace asks for the qualifier, and not for what it says.
void TMofSchemaChecks::CheckOverride(const TClass& cls, const TMofQualifier& override,
                                     const TMofName& name, const char* what, bool isInherited) {
  const auto said = TextOf(override);
  if (!said.empty() && !SameName(said, name.text))
    Warn(cls, override.value->offset,
         std::string(what) + " " + Quoted(name.text) + " cannot override " + Quoted(said) +
             ": it overrides what has its own name");
  if (!isInherited)
    Warn(cls, override.name.offset,
         std::string(what) + " " + Quoted(name.text) +
             " overrides nothing: no superclass has it, and it is declared as a new one");
}

}  // namespace hav::mof
