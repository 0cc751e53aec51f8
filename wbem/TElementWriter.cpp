#include "wbem/TElementWriter.h"

#include <array>
#include <string_view>
#include <utility>

#include "havcore/client/Declared.h"
#include "havcore/client/Enumerate.h"
#include "wbem/ValueText.h"

namespace hav::wbem {

using namespace client;
using namespace NORVHAV20;

namespace {

constexpr std::array<std::pair<std::uint32_t, std::string_view>, 7> kScopes{{
    {ICIMQualifierDecl::kScopeClass, "CLASS"},
    {ICIMQualifierDecl::kScopeAssociation, "ASSOCIATION"},
    {ICIMQualifierDecl::kScopeReference, "REFERENCE"},
    {ICIMQualifierDecl::kScopeProperty, "PROPERTY"},
    {ICIMQualifierDecl::kScopeMethod, "METHOD"},
    {ICIMQualifierDecl::kScopeParameter, "PARAMETER"},
    {ICIMQualifierDecl::kScopeIndication, "INDICATION"},
}};

std::string_view KeyValueType(ECIMType type) {
  switch (type) {
    case kCIMBoolean: return "boolean";
    case kCIMString:
    case kCIMChar16:
    case kCIMDateTime: return "string";
    default: return "numeric";
  }
}

}  // namespace

boost::shared_ptr<ICIMClass> SuperclassOf(const ICIMClass& cls) {
  const auto superclass = cls.GetSuperClass({});
  return superclass && superclass->GetSuperClass({}) ? superclass : boost::shared_ptr<ICIMClass>();
}

void TElementWriter::Class(ICIMClass& cls, const TDetail& detail) {
  m_xml.Begin("CLASS");
  m_xml.Attribute("NAME", cls.GetName({}));
  if (const auto superclass = SuperclassOf(cls))
    m_xml.Attribute("SUPERCLASS", superclass->GetName({}));
  m_xml.End();
  if (detail.qualifiers) Qualifiers(cls, detail.localOnly);
  for (const auto& decl : Collect<ICIMPropertyDecl>(
           [&](const auto& callback) { cls.EnumeratePropertyDecls(callback, {}); }))
    PropertyDecl(cls, *decl, detail);
  for (const auto& decl : Collect<ICIMMethodDecl>(
           [&](const auto& callback) { cls.EnumerateMethodDecls(callback, {}); }))
    Method(cls, *decl, detail);
  m_xml.Close("CLASS");
}

void TElementWriter::ClassPath(const std::string& name) {
  m_xml.Open("CLASSPATH");
  NamespacePath();
  ClassName(name);
  m_xml.Close("CLASSPATH");
}

void TElementWriter::QualifierDecl(const ICIMQualifierDecl& decl) {
  m_xml.Begin("QUALIFIER.DECLARATION");
  m_xml.Attribute("NAME", decl.GetName({}));
  m_xml.Attribute("TYPE", TypeName(decl.GetType({})));
  m_xml.Attribute("ISARRAY", decl.IsArray({}) ? "true" : "false");
  Flavor(decl.GetFlavor({}));
  m_xml.End();
  m_xml.Begin("SCOPE");
  for (const auto& [bit, name] : kScopes)
    m_xml.Attribute(name, (decl.GetScope({}) & bit) != 0 ? "true" : "false");
  m_xml.End();
  m_xml.Close("SCOPE");
  Value(decl.GetDefaultValue({}));
  m_xml.Close("QUALIFIER.DECLARATION");
}

void TElementWriter::Instance(ICIMInstance& instance, const TDetail& detail) {
  const auto cls = instance.GetClass({});
  m_xml.Open("INSTANCE", {{"CLASSNAME", cls->GetName({})}});
  if (detail.qualifiers) Qualifiers(*cls, false);
  for (const auto& slot : Collect<ICIMProperty>(
           [&](const auto& callback) { instance.EnumerateProperties(callback, {}); }))
    if (const auto decl = slot->GetDecl({}))
      if (detail.Shows(decl->GetName({}))) Property(*cls, *decl, slot->GetValue({}), detail);
  m_xml.Close("INSTANCE");
}

void TElementWriter::InstanceName(const TCIMReference& path) {
  m_xml.Open("INSTANCENAME", {{"CLASSNAME", path.GetClassName()}});
  for (const auto& [name, value] : path.GetKeyValues()) KeyBinding(name, value);
  m_xml.Close("INSTANCENAME");
}

void TElementWriter::InstancePath(const TCIMReference& path) {
  m_xml.Open("INSTANCEPATH");
  NamespacePath();
  InstanceName(path);
  m_xml.Close("INSTANCEPATH");
}

void TElementWriter::Value(const TCIMValue& value) {
  if (value.IsNull()) return;
  if (!value.IsArray()) return Scalar(value);
  const bool references = ElementOf(value.GetType()) == kCIMReference;
  const auto* const element = references ? "VALUE.REFARRAY" : "VALUE.ARRAY";
  m_xml.Open(element);
  for (const auto& one : static_cast<const std::vector<TCIMValue>&>(value)) {
    if (one.IsNull())
      m_xml.Empty("VALUE.NULL");
    else
      Scalar(one);
  }
  m_xml.Close(element);
}

void TElementWriter::Qualifiers(ICIMNamedElement& element, bool localOnly) {
  for (const auto& qualifier : QualifiersOf(element))
    if (!(localOnly && qualifier->IsPropagated({}))) Qualifier(*qualifier);
}

void TElementWriter::Qualifier(const ICIMQualifier& qualifier) {
  m_xml.Begin("QUALIFIER");
  m_xml.Attribute("NAME", qualifier.GetName({}));
  m_xml.Attribute("TYPE", TypeName(qualifier.GetType({})));
  if (qualifier.IsPropagated({})) m_xml.Attribute("PROPAGATED", "true");
  Flavor(qualifier.GetFlavor({}));
  m_xml.End();
  Value(qualifier.GetValue({}));
  m_xml.Close("QUALIFIER");
}

// What is not written has its default.
void TElementWriter::Flavor(std::uint32_t flavor) {
  if ((flavor & ICIMQualifierDecl::kFlavorOverridable) == 0)
    m_xml.Attribute("OVERRIDABLE", "false");
  if ((flavor & ICIMQualifierDecl::kFlavorToSubclass) == 0) m_xml.Attribute("TOSUBCLASS", "false");
  if ((flavor & ICIMQualifierDecl::kFlavorToInstance) != 0) m_xml.Attribute("TOINSTANCE", "true");
  if ((flavor & ICIMQualifierDecl::kFlavorTranslatable) != 0)
    m_xml.Attribute("TRANSLATABLE", "true");
}

void TElementWriter::PropertyDecl(const ICIMClass& cls, ICIMPropertyDecl& decl,
                                  const TDetail& detail) {
  if (detail.localOnly && decl.GetClass({}).get() != &cls) return;
  if (detail.Shows(decl.GetName({}))) Property(cls, decl, decl.GetDefaultValue({}), detail);
}

void TElementWriter::Property(const ICIMClass& cls, ICIMPropertyDecl& decl, const TCIMValue& value,
                              const TDetail& detail) {
  const ECIMType type = decl.GetType({});
  const auto* const element = type == kCIMReference ? "PROPERTY.REFERENCE"
                              : decl.IsArray({})    ? "PROPERTY.ARRAY"
                                                    : "PROPERTY";
  m_xml.Begin(element);
  m_xml.Attribute("NAME", decl.GetName({}));
  if (type == kCIMReference) {
    const auto referenced = decl.GetDefaultValue({}).GetReferencedClassName();
    if (!referenced.empty()) m_xml.Attribute("REFERENCECLASS", referenced);
  } else {
    m_xml.Attribute("TYPE", TypeName(type));
  }
  Origin(cls, decl.GetClass({}), detail);
  m_xml.End();
  if (detail.qualifiers) Qualifiers(decl, false);
  Value(value);
  m_xml.Close(element);
}

void TElementWriter::Origin(const ICIMClass& cls, const boost::shared_ptr<ICIMClass>& origin,
                            const TDetail& detail) {
  if (!origin) return;
  if (detail.classOrigin) m_xml.Attribute("CLASSORIGIN", origin->GetName({}));
  if (origin.get() != &cls) m_xml.Attribute("PROPAGATED", "true");
}

void TElementWriter::Method(const ICIMClass& cls, ICIMMethodDecl& decl, const TDetail& detail) {
  if (detail.localOnly && decl.GetClass({}).get() != &cls) return;
  m_xml.Begin("METHOD");
  m_xml.Attribute("NAME", decl.GetName({}));
  if (decl.GetType({}) != kCIMNone) m_xml.Attribute("TYPE", TypeName(decl.GetType({})));
  Origin(cls, decl.GetClass({}), detail);
  m_xml.End();
  if (detail.qualifiers) Qualifiers(decl, false);
  for (const auto& parameter : client::ParametersOf(decl)) Parameter(*parameter, detail);
  m_xml.Close("METHOD");
}

void TElementWriter::Parameter(ICIMParameterDecl& parameter, const TDetail& detail) {
  const bool reference = ElementOf(parameter.GetType({})) == kCIMReference;
  const bool array = parameter.IsArray({});
  const auto* const element = reference ? (array ? "PARAMETER.REFARRAY" : "PARAMETER.REFERENCE")
                                        : (array ? "PARAMETER.ARRAY" : "PARAMETER");
  m_xml.Begin(element);
  m_xml.Attribute("NAME", parameter.GetName({}));
  if (reference) {
    const auto referenced = ReferencedClassOf(parameter);
    if (!referenced.empty()) m_xml.Attribute("REFERENCECLASS", referenced);
  } else {
    m_xml.Attribute("TYPE", TypeName(parameter.GetType({})));
  }
  m_xml.End();
  if (detail.qualifiers) Qualifiers(parameter, false);
  m_xml.Close(element);
}

void TElementWriter::Scalar(const TCIMValue& value) {
  if (value.GetType() == kCIMReference)
    Reference(static_cast<const TCIMReference&>(value));
  else
    m_xml.Leaf("VALUE", ValueText(value));
}

// A path without keys is that of a class.
void TElementWriter::Reference(const TCIMReference& path) {
  const auto& home = path.GetNameSpaceName();
  const bool isClass = path.GetKeyValues().empty();
  m_xml.Open("VALUE.REFERENCE");
  const auto* const local = isClass ? "LOCALCLASSPATH" : "LOCALINSTANCEPATH";
  if (!home.empty()) {
    m_xml.Open(local);
    LocalNamespacePath(home);
  }
  if (isClass)
    ClassName(path.GetClassName());
  else
    InstanceName(path);
  if (!home.empty()) m_xml.Close(local);
  m_xml.Close("VALUE.REFERENCE");
}

void TElementWriter::KeyBinding(const std::string& name, const TCIMValue& value) {
  m_xml.Open("KEYBINDING", {{"NAME", name}});
  if (value.IsReference())
    Reference(static_cast<const TCIMReference&>(value));
  else if (!value.IsNull()) {
    m_xml.Open("KEYVALUE",
               {{"VALUETYPE", KeyValueType(value.GetType())}, {"TYPE", TypeName(value.GetType())}});
    m_xml.Text(ValueText(value));
    m_xml.Close("KEYVALUE");
  }
  m_xml.Close("KEYBINDING");
}

void TElementWriter::NamespacePath() {
  m_xml.Open("NAMESPACEPATH");
  m_xml.Leaf("HOST", m_place.host);
  LocalNamespacePath(m_place.namespaceName);
  m_xml.Close("NAMESPACEPATH");
}

void TElementWriter::LocalNamespacePath(const std::string& name) {
  m_xml.Open("LOCALNAMESPACEPATH");
  for (std::size_t at = 0; at <= name.size();) {
    const auto end = std::min(name.find('/', at), name.size());
    if (end != at) m_xml.Empty("NAMESPACE", {{"NAME", name.substr(at, end - at)}});
    at = end + 1;
  }
  m_xml.Close("LOCALNAMESPACEPATH");
}

}  // namespace hav::wbem
