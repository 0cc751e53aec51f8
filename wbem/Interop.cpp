#include "wbem/Interop.h"

#include <utility>

namespace hav::wbem {

using namespace NORVHAV20;

namespace {

constexpr char kSystemClass[] = "CIM_ComputerSystem";
constexpr char kManagerClass[] = "CIM_ObjectManager";
constexpr char kNamespaceClass[] = "CIM_Namespace";
constexpr std::uint16_t kEnabled = 2;         // of "EnabledState"
constexpr std::uint16_t kClassInfoOther = 1;  // of "ClassInfo"

using TClassPtr = boost::shared_ptr<ICIMClass>;
using TInstancePtr = boost::shared_ptr<ICIMInstance>;

class TInterop {
 public:
  explicit TInterop(const INamespaceProvider& provider)
      : m_home(provider.AllocateNamespace({}, false, kInteropNames[0])) {
    const auto any = ICIMQualifierDecl::kScopeAny;
    const auto propagates =
        ICIMQualifierDecl::kFlavorOverridable | ICIMQualifierDecl::kFlavorToSubclass;
    m_key = m_home->AllocateQualifierDecl("Key", TCIMValue(false), any,
                                          ICIMQualifierDecl::kFlavorToSubclass, {});
    m_association = m_home->AllocateQualifierDecl("Association", TCIMValue(false), any,
                                                  ICIMQualifierDecl::kFlavorToSubclass, {});
    m_description = m_home->AllocateQualifierDecl("Description", TCIMValue::Null(kCIMString), any,
                                                  propagates, {});
  }

  TClassPtr Class(const char* name, const char* description) {
    auto cls = m_home->AllocateClass(name, {}, {});
    cls->AllocateQualifier(m_description, TCIMValue(description), TOptions());
    return cls;
  }
  void Keys(ICIMClass& cls, std::initializer_list<const char*> names) {
    for (const auto* const name : names) Add(*cls.AllocatePropertyDecl(name, kText, {}), true);
  }
  void Property(ICIMClass& cls, const char* name, const TCIMValue& example) {
    Add(*cls.AllocatePropertyDecl(name, example, {}), false);
  }
  void Reference(ICIMClass& cls, const char* name, const TClassPtr& referenced) {
    Add(*cls.AllocateReferenceDecl(name, referenced, {}), true);
  }
  TClassPtr Association(const char* name, const char* description) {
    auto cls = Class(name, description);
    cls->AllocateQualifier(m_association, TCIMValue(true), TOptions());
    return cls;
  }
  static TInstancePtr Instance(ICIMClass& cls,
                               const std::vector<std::pair<const char*, TCIMValue>>& values) {
    auto instance = cls.AllocateInstance({});
    for (const auto& [name, value] : values) instance->SetPropertyValue(name, value, {});
    instance->AddToNamespace({});
    return instance;
  }

  const TNamespacePtr& Home() const { return m_home; }

  const TCIMValue kText = TCIMValue::Null(kCIMString);

 private:
  void Add(ICIMPropertyDecl& decl, bool isKey) const {
    if (isKey) decl.AllocateQualifier(m_key, TCIMValue(true), TOptions());
    decl.AddToClass({});
  }

  TNamespacePtr m_home;
  boost::shared_ptr<ICIMQualifierDecl> m_key;
  boost::shared_ptr<ICIMQualifierDecl> m_association;
  boost::shared_ptr<ICIMQualifierDecl> m_description;
};

TClassPtr ManagerClass(TInterop& interop) {
  auto cls = interop.Class(kManagerClass, "What serves the namespaces.");
  interop.Keys(*cls, {"SystemCreationClassName", "SystemName", "CreationClassName", "Name"});
  interop.Property(*cls, "ElementName", interop.kText);
  interop.Property(*cls, "Description", interop.kText);
  interop.Property(*cls, "Version", interop.kText);
  interop.Property(*cls, "GatherStatisticalData", TCIMValue::Null(kCIMBoolean));
  interop.Property(*cls, "EnabledState", TCIMValue::Null(kCIMUInt16));
  interop.Property(*cls, "Started", TCIMValue::Null(kCIMBoolean));
  cls->AddToNamespace({});
  return cls;
}

TClassPtr NamespaceClass(TInterop& interop) {
  auto cls = interop.Class(kNamespaceClass, "A namespace that is served.");
  interop.Keys(*cls, {"SystemCreationClassName", "SystemName", "ObjectManagerCreationClassName",
                      "ObjectManagerName", "CreationClassName", "Name"});
  interop.Property(*cls, "ClassInfo", TCIMValue::Null(kCIMUInt16));
  interop.Property(*cls, "DescriptionOfClassInfo", interop.kText);
  cls->AddToNamespace({});
  return cls;
}

TClassPtr LinkClass(TInterop& interop, const TClassPtr& manager, const TClassPtr& served) {
  auto cls = interop.Association("CIM_NamespaceInManager", "Which namespaces the manager serves.");
  interop.Reference(*cls, "Antecedent", manager);
  interop.Reference(*cls, "Dependent", served);
  cls->AddToNamespace({});
  return cls;
}

}  // namespace

TNamespacePtr MakeInterop(const INamespaceProvider& provider, const TManager& manager,
                          const std::vector<std::string>& names) {
  TInterop interop(provider);
  const auto managerClass = ManagerClass(interop);
  const auto namespaceClass = NamespaceClass(interop);
  const auto linkClass = LinkClass(interop, managerClass, namespaceClass);
  const auto serving =
      TInterop::Instance(*managerClass, {{"SystemCreationClassName", kSystemClass},
                                         {"SystemName", manager.systemName},
                                         {"CreationClassName", kManagerClass},
                                         {"Name", manager.name},
                                         {"ElementName", manager.name},
                                         {"Description", "CIM operations over HTTP"},
                                         {"Version", manager.version},
                                         {"GatherStatisticalData", TCIMValue(false)},
                                         {"EnabledState", TCIMValue(kEnabled)},
                                         {"Started", TCIMValue(true)}});
  auto all = names;
  all.emplace_back(kInteropNames[0]);
  for (const auto& name : all) {
    const auto served =
        TInterop::Instance(*namespaceClass, {{"SystemCreationClassName", kSystemClass},
                                             {"SystemName", manager.systemName},
                                             {"ObjectManagerCreationClassName", kManagerClass},
                                             {"ObjectManagerName", manager.name},
                                             {"CreationClassName", kNamespaceClass},
                                             {"Name", name},
                                             {"ClassInfo", TCIMValue(kClassInfoOther)},
                                             {"DescriptionOfClassInfo", "as loaded"}});
    TInterop::Instance(*linkClass, {{"Antecedent", TCIMValue(serving->GetReference({}))},
                                    {"Dependent", TCIMValue(served->GetReference({}))}});
  }
  return interop.Home();
}

}  // namespace hav::wbem
