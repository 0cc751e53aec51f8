// The operations on qualifier declarations.
#include <utility>

#include "havcore/client/Enumerate.h"
#include "wbem/Operations.h"
#include "wbem/TCimError.h"

namespace hav::wbem {

using namespace client;
using namespace NORVHAV20;

namespace {

using TDeclPtr = boost::shared_ptr<ICIMQualifierDecl>;

constexpr std::pair<std::string_view, std::uint32_t> kScopes[] = {
    {"CLASS", ICIMQualifierDecl::kScopeClass},
    {"ASSOCIATION", ICIMQualifierDecl::kScopeAssociation},
    {"REFERENCE", ICIMQualifierDecl::kScopeReference},
    {"PROPERTY", ICIMQualifierDecl::kScopeProperty},
    {"METHOD", ICIMQualifierDecl::kScopeMethod},
    {"PARAMETER", ICIMQualifierDecl::kScopeParameter},
    {"INDICATION", ICIMQualifierDecl::kScopeIndication},
};

// What an absent attribute says.
struct TFlavor {
  std::string_view attribute;
  ICIMQualifierDecl::EFlavor bit;
  bool otherwise;
};
constexpr TFlavor kFlavors[] = {
    {"OVERRIDABLE", ICIMQualifierDecl::kFlavorOverridable, true},
    {"TOSUBCLASS", ICIMQualifierDecl::kFlavorToSubclass, true},
    {"TOINSTANCE", ICIMQualifierDecl::kFlavorToInstance, false},
    {"TRANSLATABLE", ICIMQualifierDecl::kFlavorTranslatable, false},
};

TDeclPtr FindQualifierDecl(TCall& call, const std::string& name) {
  return call.home->GetQualifierDecl(name, {});
}

TDeclPtr RequireQualifierDecl(TCall& call, const std::string& name) {
  auto decl = FindQualifierDecl(call, name);
  if (!decl)
    throw TCimError(ECimStatus::kNotFound,
                    "there is no qualifier '" + name + "' in namespace " + call.homeName);
  return decl;
}

std::uint32_t ReadScope(const TXmlElement& element) {
  const auto* const scope = element.Child("SCOPE");
  if (!scope) return ICIMQualifierDecl::kScopeAny;
  std::uint32_t bits = ICIMQualifierDecl::kScopeNone;
  for (const auto& [attribute, bit] : kScopes)
    if (ReadFlag(*scope, attribute, false)) bits |= bit;
  return bits;
}

std::uint32_t ReadFlavor(const TXmlElement& element) {
  std::uint32_t bits = ICIMQualifierDecl::kFlavorNone;
  for (const auto& flavor : kFlavors)
    if (ReadFlag(element, flavor.attribute, flavor.otherwise)) bits |= flavor.bit;
  return bits;
}

// Type and scope of a declaration stand once it is made.
void Change(ICIMQualifierDecl& decl, const TCIMValue& value, std::uint32_t scope,
            std::uint32_t flavor) {
  if (decl.GetType({}) != value.GetType() || decl.GetScope({}) != scope)
    throw TCimError(ECimStatus::kNotSupported, "type and scope of the declared qualifier " +
                                                   decl.GetName({}) + " cannot be changed");
  decl.SetDefaultValue(value, {});
  for (const auto& one : kFlavors) {
    if ((flavor & one.bit) != 0)
      decl.AddFlavor(one.bit, {});
    else
      decl.RemoveFlavor(one.bit, {});
  }
}

}  // namespace

TAnswer GetQualifier(TCall& call) {
  const auto name = call.parameters.RequiredText("QualifierName");
  call.parameters.RequireAllKnown();
  return TAnswer::One([decl = RequireQualifierDecl(call, name)](TElementWriter& writer) {
    writer.QualifierDecl(*decl);
  });
}

TAnswer EnumerateQualifiers(TCall& call) {
  call.parameters.RequireAllKnown();
  auto decls = Collect<ICIMQualifierDecl>(
      [&](const auto& callback) { call.home->EnumerateQualifierDecls(callback, {}); });
  return TAnswer::Of(ListOf(std::move(decls), [](const TDeclPtr& decl, TElementWriter& writer) {
    writer.QualifierDecl(*decl);
  }));
}

TAnswer SetQualifier(TCall& call) {
  const auto& element = call.parameters.Object("QualifierDeclaration");
  if (!element.Is("QUALIFIER.DECLARATION"))
    throw TCimError(ECimStatus::kInvalidParameter,
                    "QUALIFIER.DECLARATION is expected, not " + element.name);
  call.parameters.RequireAllKnown();
  const auto& name = Required(element, "NAME");
  const auto value = ReadValue(element, ReadType(element), call.home);
  const auto scope = ReadScope(element);
  const auto flavor = ReadFlavor(element);
  if (const auto decl = FindQualifierDecl(call, name))
    Change(*decl, value, scope, flavor);
  else
    call.home->AllocateQualifierDecl(name, value, static_cast<ICIMQualifierDecl::EScope>(scope),
                                     static_cast<ICIMQualifierDecl::EFlavor>(flavor), {});
  return TAnswer::Nothing();
}

TAnswer DeleteQualifier(TCall& call) {
  const auto name = call.parameters.RequiredText("QualifierName");
  call.parameters.RequireAllKnown();
  RequireQualifierDecl(call, name)->Delete({});
  if (FindQualifierDecl(call, name))
    throw TCimError(ECimStatus::kNotSupported, "this repository keeps qualifiers once declared");
  return TAnswer::Nothing();
}

}  // namespace hav::wbem
