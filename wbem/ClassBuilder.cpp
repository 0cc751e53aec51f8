#include "wbem/ClassBuilder.h"

#include "havcore/client/Declared.h"
#include "havcore/client/Enumerate.h"
#include "wbem/TCimError.h"
#include "wbem/TElementWriter.h"
#include "wbem/ValueText.h"

namespace hav::wbem {

using namespace client;
using namespace NORVHAV20;

namespace {

class TClassBuilder {
 public:
  explicit TClassBuilder(const TNamespacePtr& home)
      : m_home(home), m_provider(home->GetNamespaceProvider({})) {}

  boost::shared_ptr<ICIMClass> Build(const TXmlElement& element) {
    m_superclass = FindSuperclass(element);
    m_class = m_home->AllocateClass(Required(element, "NAME"), m_superclass, {});
    Qualify(*m_class, element);
    for (const auto& child : element.children) {
      if (ReadFlag(child, "PROPAGATED", false)) continue;
      if (child.name.rfind("PROPERTY", 0) == 0)
        AddProperty(child);
      else if (child.Is("METHOD"))
        AddMethod(child);
      else if (!child.Is("QUALIFIER"))
        Refuse(child.name + " has no place in a class");
    }
    return m_class;
  }

 private:
  [[noreturn]] static void Refuse(const std::string& what) {
    throw TCimError(ECimStatus::kInvalidParameter, what);
  }

  boost::shared_ptr<ICIMClass> FindSuperclass(const TXmlElement& element) const {
    const auto name = element.Get("SUPERCLASS");
    if (name.empty()) return {};
    auto superclass = FindClass(*m_home, name);
    if (!superclass)
      throw TCimError(ECimStatus::kInvalidSuperclass, "there is no superclass '" + name + "'");
    return superclass;
  }

  boost::shared_ptr<ICIMClass> ReferencedClass(const TXmlElement& element) const {
    const auto name = element.Get("REFERENCECLASS");
    if (name.empty()) return {};
    auto cls = FindClass(*m_home, name);
    if (!cls) Refuse("there is no class '" + name + "' to refer to");
    return cls;
  }

  // Runs a look-up that throws 15 where there is nothing.
  template <class F>
  static auto FoundBy(F&& lookUp) -> decltype(lookUp()) {
    try {
      return lookUp();
    } catch (const THAVException& failure) {
      if (failure.GetStatusCode() != kHAVNotFound) throw;
      return {};
    }
  }

  static bool Overrides(const TXmlElement& element) {
    for (const auto& child : element.children)
      if (child.Is("QUALIFIER") && SameName(child.Get("NAME"), "Override")) return true;
    return false;
  }

  void AddProperty(const TXmlElement& element) {
    const auto& name = Required(element, "NAME");
    const auto type = ReadType(element);
    boost::shared_ptr<ICIMPropertyDecl> overridden;
    if (m_superclass && Overrides(element))
      overridden = FoundBy([&] { return m_superclass->GetPropertyDecl(name, {}); });
    const auto decl = type == kCIMReference
                          ? AllocateReference(name, element)
                          : m_class->AllocatePropertyDecl(
                                name, DefaultValue(element, type, overridden.get()), {});
    if (overridden) Inherit(*overridden, *decl);
    Qualify(*decl, element);
    decl->AddToClass({});
    if (m_class->GetPropertyDecl(name, {}) != decl)
      Refuse("property " + name + " is inherited, and this one does not override it");
  }

  boost::shared_ptr<ICIMPropertyDecl> AllocateReference(const std::string& name,
                                                        const TXmlElement& element) const {
    const auto referenced = ReferencedClass(element);
    return referenced ? m_class->AllocateReferenceDecl(name, referenced, {})
                      : m_class->AllocatePropertyDecl(name, TCIMValue::NullReference({}), {});
  }

  TCIMValue DefaultValue(const TXmlElement& element, ECIMType type,
                         const ICIMPropertyDecl* overridden) const {
    auto value = ReadValue(element, type, m_home);
    const bool inherits = value.IsNull() && overridden && overridden->GetType({}) == type;
    return inherits ? overridden->GetDefaultValue({}) : value;
  }

  void AddMethod(const TXmlElement& element) {
    const auto& name = Required(element, "NAME");
    boost::shared_ptr<ICIMMethodDecl> overridden;
    if (m_superclass && Overrides(element))
      overridden = FoundBy([&] { return m_superclass->GetMethodDecl(name, {}); });
    const auto decl =
        m_class->AllocateMethodDecl(name, element.Find("TYPE") ? ReadType(element) : kCIMNone, {});
    if (overridden) Inherit(*overridden, *decl);
    Qualify(*decl, element);
    for (const auto& child : element.children)
      if (child.name.rfind("PARAMETER", 0) == 0) AddParameter(*decl, child, overridden.get());
    decl->AddToClass({});
  }

  void AddParameter(ICIMMethodDecl& method, const TXmlElement& element,
                    ICIMMethodDecl* overridden) {
    const auto& name = Required(element, "NAME");
    const auto type = ReadType(element);
    const auto referenced = ReferencedClass(element);
    const auto parameter = method.AllocateParameter(name, TCIMValue::Null(type), {});
    const auto before = overridden ? FoundBy([&] { return overridden->GetParameter(name, {}); })
                                   : boost::shared_ptr<ICIMParameterDecl>();
    if (before) Inherit(*before, *parameter);
    Qualify(*parameter, element);
    if (referenced)
      TDeclaredKeeper(*m_provider).KeepReferencedClass(*parameter, referenced->GetName({}));
  }

  static void Inherit(ICIMNamedElement& from, ICIMNamedElement& to) {
    for (const auto& qualifier : Collect<ICIMQualifier>(
             [&](const auto& callback) { from.EnumerateQualifiers(callback, {}); }))
      if ((qualifier->GetFlavor({}) & ICIMQualifierDecl::kFlavorToSubclass) != 0)
        to.AllocateQualifier(qualifier->GetQualifierDecl({}), qualifier->GetValue({}),
                             qualifier->GetFlavor({}), {});
  }

  void Qualify(ICIMNamedElement& element, const TXmlElement& described) const {
    for (const auto& child : described.children) {
      if (!child.Is("QUALIFIER") || ReadFlag(child, "PROPAGATED", false)) continue;
      const auto& name = Required(child, "NAME");
      const auto decl = m_home->GetQualifierDecl(name, {});
      if (!decl) Refuse("qualifier " + name + " is not declared in this namespace");
      element.AllocateQualifier(decl, ReadValue(child, decl->GetType({}), m_home),
                                FlavorOf(child, decl->GetFlavor({})), {});
    }
  }

  static ICIMQualifierDecl::EFlavor FlavorOf(const TXmlElement& element, std::uint32_t declared) {
    std::uint32_t flavor = ICIMQualifierDecl::kFlavorNone;
    const auto take = [&](std::string_view attribute, std::uint32_t bit) {
      if (ReadFlag(element, attribute, (declared & bit) != 0)) flavor |= bit;
    };
    take("OVERRIDABLE", ICIMQualifierDecl::kFlavorOverridable);
    take("TOSUBCLASS", ICIMQualifierDecl::kFlavorToSubclass);
    take("TOINSTANCE", ICIMQualifierDecl::kFlavorToInstance);
    take("TRANSLATABLE", ICIMQualifierDecl::kFlavorTranslatable);
    return static_cast<ICIMQualifierDecl::EFlavor>(flavor);
  }

  TNamespacePtr m_home;
  boost::shared_ptr<INamespaceProvider> m_provider;
  boost::shared_ptr<ICIMClass> m_superclass;
  boost::shared_ptr<ICIMClass> m_class;
};

}  // namespace

boost::shared_ptr<ICIMClass> BuildClass(const TNamespacePtr& home, const TXmlElement& element) {
  return TClassBuilder(home).Build(element);
}

}  // namespace hav::wbem
