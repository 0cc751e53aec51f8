// Namespaces, qualifiers and classes.
#include "tests/oracle/TRun.h"

#include <iterator>

#include <boost/make_shared.hpp>

#include "inmem/provider/TInmemNamespace.h"
#include "support/ForeignClass.h"

namespace havtest::oracle {

void TRun::NewNamespaceOp() {
  if (LivingNamespaces().size() > 3) return Nothing();
  const bool redefinition = Arg(0) % 2 == 0;
  m_what << "new namespace" << (redefinition ? ", redefinition allowed" : "");
  AddNamespace(redefinition);
  m_onPlugin = m_onModel = [] { return std::string("done"); };
}

void TRun::CopyNamespace() {
  if (LivingNamespaces().size() > 5) return Nothing();
  const auto ns = LivingNamespace(0);
  m_what << "copy namespace " << ns << " as " << m_namespaces.size();
  Both(
      [=] {
        m_namespaces.push_back(boost::make_shared<TInmemNamespace>(
            static_cast<const TInmemNamespace&>(*m_namespaces[ns])));
      },
      [=] { m_model.CopyNamespace(Number(ns)); });
}

void TRun::DropNamespace() {
  if (LivingNamespaces().size() < 2) return Nothing();
  const auto ns = LivingNamespace(0);
  m_what << "drop namespace " << ns;
  Both([=] { m_namespaces[ns].reset(); }, [=] { m_model.DropNamespace(Number(ns)); });
}

void TRun::AllocateQualifierDecl() {
  const auto ns = LivingNamespace(0);
  const std::string name = Pick(kQualifiers, Arg(1));
  const unsigned flavor = Arg(2) % 4;
  m_what << "namespace " << ns << ": allocate qualifier declaration " << Quoted(name)
         << " with flavor " << flavor;
  Both(
      [=] {
        m_qualifierDecls.push_back(m_namespaces[ns]->AllocateQualifierDecl(
            name, TCIMValue(false), ICIMQualifierDecl::kScopeAny,
            static_cast<ICIMQualifierDecl::EFlavor>(flavor), {}));
      },
      [=] {
        m_qualifierDeclIds.push_back(m_model.AllocateQualifierDecl(Number(ns), name, flavor));
      });
}

void TRun::GetQualifierDecl() {
  const auto ns = LivingNamespace(0);
  const std::string name = Pick(kQualifiers, Arg(1));
  m_what << "namespace " << ns << ": get qualifier declaration " << Quoted(name);
  Both(
      [=] {
        const auto decl = m_namespaces[ns]->GetQualifierDecl(name, {});
        return decl ? decl->GetName({}) + ' ' + std::to_string(decl->GetFlavor({})) : "none";
      },
      [=] {
        const Id decl = m_model.GetQualifierDecl(Number(ns), name);
        if (decl == kNone) return std::string("none");
        const auto& found = m_model.qualifierDecls[decl];
        return found.name + ' ' + std::to_string(found.flavor);
      });
}

void TRun::AllocateClass() {
  AllocateClass(Pick(kClassNames, Arg(1)), [](Id) { return true; });
}

void TRun::AllocateClass(const std::string& name, const std::function<bool(Id)>& mayBeSuperclass) {
  const auto ns = LivingNamespace(0);
  std::vector<std::size_t> supers;
  for (std::size_t i = 0; i < m_classes.size(); ++i)
    if (m_model.classes[m_classIds[i]].home == Number(ns) && mayBeSuperclass(m_classIds[i]))
      supers.push_back(i);
  const bool top = Arg(2) % 3 == 0 || supers.empty();
  const auto super = top ? 0 : supers[Arg(3) % supers.size()];
  m_what << "namespace " << ns << ": allocate class " << Quoted(name) << " under "
         << (top ? "nothing" : "C" + std::to_string(super));
  Both(
      [=] {
        const auto cls =
            m_namespaces[ns]->AllocateClass(name, top ? ClassPtr() : m_classes[super], {});
        if (m_placeOfClass.count(cls.get()) == 0) m_newClass = cls;
        return m_newClass ? "C" + std::to_string(m_classes.size()) : Text(cls);
      },
      [=] {
        const Id id = m_model.AllocateClass(Number(ns), name, top ? kNone : m_classIds[super]);
        if (m_newClass && m_placeOfClassId.count(id) == 0) {
          Keep(m_newClass, id);
          m_newClass.reset();
        }
        return TextOfClass(id);
      });
}

void TRun::GetClass() {
  const auto ns = LivingNamespace(0);
  const std::string name = Pick(kLookups, Arg(1));
  m_what << "namespace " << ns << ": get class " << Quoted(name);
  Both([=] { return Text(m_namespaces[ns]->GetClass(name, {})); },
       [=] { return TextOfClass(m_model.GetClass(Number(ns), name)); });
}

template <class Element>
void TRun::Qualify(const std::string& element, Element&& onPlugin,
                   const std::function<Id(Id, const TValue&, unsigned)>& onModel) {
  const auto decl = Place(m_qualifierDecls, 1);
  const auto spec = Arg(2) % 4 == 0 ? TValueSpec{0, 3, 0} : TValueSpec{2, Arg(2) % 4, 0};
  const unsigned flavor = Arg(3) % 5;
  m_what << element << ": allocate qualifier " << m_qualifierDecls[decl]->GetName({}) << " = "
         << Named(spec) << (flavor < 4 ? " with flavor " + std::to_string(flavor) : "");
  Both(
      [=] {
        const auto value = PluginValue(spec);
        auto& target = onPlugin();
        m_qualifiers.push_back(
            flavor < 4
                ? target.AllocateQualifier(m_qualifierDecls[decl], value,
                                           static_cast<ICIMQualifierDecl::EFlavor>(flavor), {})
                : target.AllocateQualifier(m_qualifierDecls[decl], value, {}));
      },
      [=] {
        const Id id = m_qualifierDeclIds[decl];
        m_qualifierIds.push_back(
            onModel(id, ModelValue(spec), flavor < 4 ? flavor : m_model.qualifierDecls[id].flavor));
      });
}

void TRun::QualifyClass() {
  const auto cls = OwnClass(0);
  Qualify(
      "C" + std::to_string(cls), [=]() -> ICIMClass& { return *m_classes[cls]; },
      [=](Id decl, const TValue& value, unsigned flavor) {
        return m_model.QualifyClass(m_classIds[cls], decl, value, flavor);
      });
}

void TRun::QualifyDecl() {
  if (m_decls.empty()) return Nothing();
  const auto owner = Place(m_decls, 0);
  Qualify(
      "declaration " + std::to_string(owner),
      [=]() -> ICIMPropertyDecl& { return *m_decls[owner]; },
      [=](Id decl, const TValue& value, unsigned flavor) {
        return m_model.QualifyDecl(m_declIds[owner], decl, value, flavor);
      });
}

void TRun::ChangeQualifier() {
  if (m_qualifiers.empty()) return Nothing();
  const auto qualifier = Place(m_qualifiers, 0);
  const unsigned change = Arg(1) % 3, flavor = Arg(2) % 4;
  const bool value = Arg(3) % 2 == 0;
  m_what << "qualifier " << qualifier << ": "
         << (change == 0   ? "set value"
             : change == 1 ? "add flavor"
                           : "remove flavor");
  Both(
      [=] {
        auto& target = *m_qualifiers[qualifier];
        const auto bits = static_cast<ICIMQualifierDecl::EFlavor>(flavor);
        if (change == 0) target.SetValue(TCIMValue(value), {});
        if (change == 1) target.AddFlavor(bits, {});
        if (change == 2) target.RemoveFlavor(bits, {});
      },
      [=] {
        const Id target = m_qualifierIds[qualifier];
        if (change == 0) m_model.SetQualifierValue(target, ModelValue({2, value ? 1u : 0u, 0}));
        if (change == 1) m_model.AddFlavor(target, flavor);
        if (change == 2) m_model.RemoveFlavor(target, flavor);
      });
}

std::size_t TRun::QualifierDeclNamed(const std::string& name) const {
  std::size_t i = 0;
  while (i < m_qualifierDecls.size() && m_qualifierDecls[i]->GetName({}) != name) ++i;
  return i;
}

void TRun::OnClass(const char* what, void (ICIMClass::*onPlugin)(TOptions),
                   void (TModel::*onModel)(Id)) {
  const auto cls = OwnClass(0);
  m_what << what << " C" << cls;
  if (m_model.classes[m_classIds[cls]].superclass == kNone) return Nothing();
  Both([=] { ((*m_classes[cls]).*onPlugin)({}); }, [=] { (m_model.*onModel)(m_classIds[cls]); });
}

void TRun::WrapClass() {
  if (m_subclassesByHand) return Nothing();
  const auto behind = OwnClass(0);
  m_what << "host's object around C" << behind << " as C" << m_classes.size();
  Both([=] { m_newClass = boost::make_shared<ForeignClass>(m_classes[behind]); },
       [=] {
         Keep(m_newClass, m_model.WrapClass(m_classIds[behind]));
         m_newClass.reset();
       });
}

void TRun::LinkClasses() {
  static constexpr struct {
    const char* what;
    void (ICIMClass::*onPlugin)(ClassPtr, TOptions);
    void (TModel::*onModel)(Id, Id);
  } kinds[] = {{"add subclass", &ICIMClass::AddSubclass, &TModel::AddSubclass},
               {"remove subclass", &ICIMClass::RemoveSubclass, &TModel::RemoveSubclass},
               {"add association", &ICIMClass::AddAssociation, &TModel::AddAssociation},
               {"remove association", &ICIMClass::RemoveAssociation, &TModel::RemoveAssociation}};
  const auto& kind = kinds[Arg(0) % std::size(kinds)];
  const auto cls = Place(m_classes, 1), other = OwnClass(2);
  // Through a host's object the plug-in does not see that a list leads back to where it began.
  const bool addsSubclass = Arg(0) % std::size(kinds) == 0;
  if (addsSubclass && OwnClasses().size() < m_classes.size()) return Nothing();
  m_subclassesByHand = m_subclassesByHand || addsSubclass;
  m_what << 'C' << cls << ": " << kind.what << " C" << other;
  Both([=, &kind] { ((*m_classes[cls]).*kind.onPlugin)(m_classes[other], {}); },
       [=, &kind] { (m_model.*kind.onModel)(m_classIds[cls], m_classIds[other]); });
}

void TRun::PassNothing() {
  static constexpr struct {
    const char* what;
    void (*call)(ICIMClass& cls);
  } kinds[] = {
      {"add subclass", [](ICIMClass& cls) { cls.AddSubclass({}, {}); }},
      {"remove subclass", [](ICIMClass& cls) { cls.RemoveSubclass({}, {}); }},
      {"add association", [](ICIMClass& cls) { cls.AddAssociation({}, {}); }},
      {"remove association", [](ICIMClass& cls) { cls.RemoveAssociation({}, {}); }},
      {"add property", [](ICIMClass& cls) { cls.AddPropertyDecl({}, {}); }},
      {"remove property", [](ICIMClass& cls) { cls.RemovePropertyDecl({}, {}); }},
      {"add method", [](ICIMClass& cls) { cls.AddMethodDecl({}, {}); }},
      {"remove method", [](ICIMClass& cls) { cls.RemoveMethodDecl({}, {}); }},
      {"add instance", [](ICIMClass& cls) { cls.AddInstance({}, {}); }},
      {"remove instance", [](ICIMClass& cls) { cls.RemoveInstance({}, {}); }},
      {"add qualifier", [](ICIMClass& cls) { cls.AddQualifier({}, {}); }},
      {"allocate qualifier", [](ICIMClass& cls) { cls.AllocateQualifier({}, {}, {}); }},
      {"declare reference", [](ICIMClass& cls) { cls.AllocateReferenceDecl("Left", {}, {}); }},
      {"is a", [](ICIMClass& cls) { cls.IsA({}, {}); }}};
  const auto& kind = kinds[Arg(0) % std::size(kinds)];
  const auto cls = OwnClass(1);
  m_what << 'C' << cls << ": " << kind.what << ": nothing";
  Both([=, &kind] { kind.call(*m_classes[cls]); }, [] { throw TStatus{kHAVNotFound}; });
}

void TRun::CompareClasses() {
  const auto a = Place(m_classes, 0), b = Place(m_classes, 1);
  m_what << 'C' << a << " beside C" << b;
  Both(
      [=] {
        const auto &left = *m_classes[a], &right = *m_classes[b];
        return std::string(left.IsA(m_classes[b], {}) ? "is a" : "is no") +
               (left == right ? ", equal" : "") + (left < right ? ", less" : "");
      },
      [=] {
        const auto &left = m_model.classes[m_classIds[a]], &right = m_model.classes[m_classIds[b]];
        return std::string(m_model.IsA(m_classIds[a], m_classIds[b]) ? "is a" : "is no") +
               (left.name == right.name ? ", equal" : "") +
               (left.name < right.name ? ", less" : "");
      });
}

void TRun::SetSwitch() {
  const int level = static_cast<int>(Arg(0) % 3), value = static_cast<int>(Arg(1) % 4) - 1;
  m_what << "switch " << level + 1 << " = " << value;
  Both([=] { CacheSwitch(level + 1) = value; }, [=] { m_model.switches[level] = value; });
}

}  // namespace havtest::oracle
