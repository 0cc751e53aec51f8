#include "mof/TMofWriter.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>
#include <vector>

#include "havcore/client/Declared.h"
#include "havcore/client/Enumerate.h"
#include "havcore/client/FoldedName.h"
#include "mof/TMofSchemaBuilder.h"
#include "mof/TMofValueReader.h"

namespace hav::mof {

using namespace client;

using namespace NORVHAV20;

namespace {

constexpr std::array<std::pair<std::uint32_t, std::string_view>, 7> kScopes{{
    {ICIMQualifierDecl::kScopeClass, "class"},
    {ICIMQualifierDecl::kScopeAssociation, "association"},
    {ICIMQualifierDecl::kScopeIndication, "indication"},
    {ICIMQualifierDecl::kScopeProperty, "property"},
    {ICIMQualifierDecl::kScopeReference, "reference"},
    {ICIMQualifierDecl::kScopeMethod, "method"},
    {ICIMQualifierDecl::kScopeParameter, "parameter"},
}};

constexpr std::array<std::pair<std::uint32_t, std::string_view>, 2> kSetFlavors{{
    {ICIMQualifierDecl::kFlavorToInstance, "ToInstance"},
    {ICIMQualifierDecl::kFlavorTranslatable, "Translatable"},
}};

std::string Join(const std::vector<std::string_view>& words, std::string_view separator) {
  std::string joined;
  for (const auto word : words) {
    if (!joined.empty()) joined += separator;
    joined += word;
  }
  return joined;
}

std::string ScopeText(std::uint32_t scope) {
  if (scope == ICIMQualifierDecl::kScopeAny) return "any";
  std::vector<std::string_view> words;
  for (const auto& [bit, name] : kScopes)
    if ((scope & bit) != 0) words.push_back(name);
  return Join(words, ", ");
}

std::string FlavorText(std::uint32_t flavor, std::string_view separator) {
  std::vector<std::string_view> words{
      (flavor & ICIMQualifierDecl::kFlavorOverridable) != 0 ? "EnableOverride" : "DisableOverride",
      (flavor & ICIMQualifierDecl::kFlavorToSubclass) != 0 ? "ToSubclass" : "Restricted"};
  for (const auto& [bit, name] : kSetFlavors)
    if ((flavor & bit) != 0) words.push_back(name);
  return Join(words, separator);
}

std::string ReferencedClass(const std::string& name) {
  return name.empty() ? std::string(TMofSchemaBuilder::kAnyClass) : name;
}

bool HasDefault(const boost::shared_ptr<ICIMClass>& cls, const std::string& property) {
  try {
    return cls && !cls->GetPropertyDecl(property, {})->GetDefaultValue({}).IsNull();
  } catch (const THAVException& failure) {
    if (failure.GetStatusCode() != kHAVNotFound) throw;
    return false;
  }
}

// The language has every association and indication say that it is one. What may be overridden
// would become the class's own.
bool IsRestated(const ICIMQualifier& qualifier) {
  return (SameName(qualifier.GetName({}), "Association") ||
          SameName(qualifier.GetName({}), "Indication")) &&
         (qualifier.GetFlavor({}) & ICIMQualifierDecl::kFlavorOverridable) == 0;
}

// "[]", "[5]", or nothing.
template <class Decl>
std::string BracketsOf(Decl& decl) {
  if (!decl.IsArray({})) return {};
  const auto size = ArraySizeOf(decl);
  return size == 0 ? "[]" : "[" + std::to_string(size) + "]";
}

// A real in MOF has a point and a digit behind it.
std::string RealText(const TCIMValue& value) {
  auto text = value.ToString(10);
  if (text.find_first_not_of("+-.0123456789eE") != std::string::npos) return "NULL";
  if (text.find('.') != std::string::npos) return text;
  const auto e = text.find_first_of("eE");
  return text.insert(e == std::string::npos ? text.size() : e, ".0");
}

}  // namespace

void TMofWriter::WriteNamespace(ICIMNamespace& home) {
  for (const auto& decl : Collect<ICIMQualifierDecl>(
           [&](const auto& callback) { home.EnumerateQualifierDecls(callback, {}); }))
    WriteQualifierDecl(*decl);

  auto pending =
      Collect<ICIMClass>([&](const auto& callback) { home.EnumerateRootClasses(callback, {}); });
  std::vector<boost::shared_ptr<ICIMClass>> classes;
  std::reverse(pending.begin(), pending.end());
  while (!pending.empty()) {
    classes.push_back(std::move(pending.back()));
    pending.pop_back();
    const auto subclasses = SubclassesOf(*classes.back());
    pending.insert(pending.end(), subclasses.rbegin(), subclasses.rend());
  }
  for (const auto& cls : classes) WriteClass(*cls);
  for (const auto& cls : classes)
    for (const auto& instance : InstancesOf(*cls, false)) WriteInstance(*instance);
}

void TMofWriter::WriteQualifierDecl(const ICIMQualifierDecl& decl) {
  const auto type = decl.GetType({});
  m_out += "Qualifier " + decl.GetName({}) + " : " + TypeName(type);
  if (!decl.GetDefaultValue({}).IsNull()) {
    m_out += " = ";
    WriteValue(decl.GetDefaultValue({}));
  }
  m_out += ",\n    Scope(" + ScopeText(decl.GetScope({})) + "),\n    Flavor(" +
           FlavorText(decl.GetFlavor({}), ", ") + ");\n\n";
}

void TMofWriter::WriteClass(ICIMClass& cls) {
  if (WriteQualifiers(cls, "")) m_out += '\n';
  m_out += "class " + cls.GetName({});
  const auto superclass = cls.GetSuperClass({});
  if (superclass && superclass->GetSuperClass({})) m_out += " : " + superclass->GetName({});
  m_out += "\n{\n";
  for (const auto& member : OwnDeclsOf(cls)) {
    if (member.property)
      WriteProperty(cls, *member.property);
    else
      WriteMethod(*member.method);
  }
  m_out += "};\n\n";
}

void TMofWriter::WriteInstance(ICIMInstance& instance) {
  m_out += "instance of " + instance.GetClass({})->GetName({}) + "\n{\n";
  const auto slots = Collect<ICIMProperty>(
      [&](const auto& callback) { instance.EnumerateProperties(callback, {}); });
  for (const auto& slot : slots) {
    const auto decl = slot->GetDecl({});
    if (!decl || slot->IsValueDefault({})) continue;
    m_out += "  " + decl->GetName({}) + " = ";
    WriteValue(slot->GetValue({}));
    m_out += ";\n";
  }
  m_out += "};\n\n";
}

// False when there is none.
bool TMofWriter::WriteQualifiers(ICIMNamedElement& element, const char* indent) {
  bool any = false;
  for (const auto& qualifier : QualifiersOf(element)) {
    if (qualifier->IsPropagated({}) && !IsRestated(*qualifier)) continue;
    m_out += any ? std::string(",\n") + indent + " " : std::string(indent) + "[";
    WriteQualifier(*qualifier);
    any = true;
  }
  if (any) m_out += ']';
  return any;
}

void TMofWriter::WriteQualifier(const ICIMQualifier& qualifier) {
  const auto& value = qualifier.GetValue({});
  m_out += qualifier.GetName({});
  if (value != TCIMValue(true)) {
    const bool braces = value.IsArray() && !value.IsNull();
    m_out += braces ? " " : " (";
    WriteValue(value);
    if (!braces) m_out += ')';
  }
  if (qualifier.GetFlavor({}) != qualifier.GetQualifierDecl({})->GetFlavor({}))
    m_out += " : " + FlavorText(qualifier.GetFlavor({}), " ");
}

void TMofWriter::WriteProperty(const ICIMClass& cls, ICIMPropertyDecl& decl) {
  const auto& value = decl.GetDefaultValue({});
  if (WriteQualifiers(decl, "  ")) m_out += '\n';
  if (decl.GetType({}) == kCIMReference)
    m_out += "  " + ReferencedClass(value.GetReferencedClassName()) + " REF " + decl.GetName({});
  else
    m_out += "  " + TypeName(ElementOf(decl.GetType({}))) + ' ' + decl.GetName({});
  m_out += BracketsOf(decl);
  // An overriding property would take the default of the overridden one.
  if (!value.IsNull() || HasDefault(cls.GetSuperClass({}), decl.GetName({}))) {
    m_out += " = ";
    WriteValue(value);
  }
  m_out += ";\n";
}

void TMofWriter::WriteMethod(ICIMMethodDecl& decl) {
  if (WriteQualifiers(decl, "  ")) m_out += '\n';
  m_out += "  " + TypeName(decl.GetType({})) + ' ' + decl.GetName({}) + '(';
  const char* separator = "\n";
  for (const auto& parameter : ParametersOf(decl)) {
    m_out += separator;
    WriteParameter(*parameter);
    separator = ",\n";
  }
  m_out += ");\n";
}

void TMofWriter::WriteParameter(ICIMParameterDecl& parameter) {
  if (WriteQualifiers(parameter, "    ")) m_out += '\n';
  m_out += "    ";
  if (ElementOf(parameter.GetType({})) == kCIMReference)
    m_out += ReferencedClass(ReferencedClassOf(parameter)) + " REF ";
  else
    m_out += TypeName(ElementOf(parameter.GetType({}))) + ' ';
  m_out += parameter.GetName({});
  m_out += BracketsOf(parameter);
}

void TMofWriter::WriteValue(const TCIMValue& value) {
  if (value.IsNull() || !value.IsArray()) return WriteScalar(value);
  m_out += '{';
  const char* separator = "";
  for (const auto& element : static_cast<const std::vector<TCIMValue>&>(value)) {
    m_out += separator;
    WriteScalar(element);
    separator = ", ";
  }
  m_out += '}';
}

void TMofWriter::WriteScalar(const TCIMValue& value) {
  if (value.IsNull()) {
    m_out += "NULL";
    return;
  }
  switch (value.GetType()) {
    case kCIMString:
    case kCIMDateTime:
    case kCIMReference: return WriteQuoted(value.ToString(10), '"');
    case kCIMReal32:
    case kCIMReal64: m_out += RealText(value); return;
    case kCIMChar16: {
      constexpr std::string_view hex = "0123456789ABCDEF";
      const auto unit = static_cast<unsigned>(static_cast<char16_t>(value));
      if (unit < 0x80) return WriteQuoted(std::string(1, static_cast<char>(unit)), '\'');
      m_out += "'\\x";
      for (unsigned shift = 16; shift != 0; shift -= 4) m_out += hex[(unit >> (shift - 4)) & 15];
      m_out += '\'';
      return;
    }
    default: m_out += value.ToString(10);
  }
}

void TMofWriter::WriteQuoted(const std::string& text, char quote) {
  constexpr std::string_view hex = "0123456789ABCDEF";
  constexpr std::string_view escaped = "\b\t\n\f\r\\";
  constexpr std::string_view letters = "btnfr\\";
  m_out += quote;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    const auto simple = escaped.find(c);
    if (simple != std::string_view::npos || c == quote) {
      m_out += '\\';
      m_out += c == quote ? quote : letters[simple];
    } else if (byte < 0x20 || byte == 0x7F) {
      m_out += "\\x00";  // four digits, so that a digit behind it stays outside
      m_out += hex[byte >> 4];
      m_out += hex[byte & 15];
    } else {
      m_out += c;
    }
  }
  m_out += quote;
}

}  // namespace hav::mof
