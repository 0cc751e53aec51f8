// Properties, references and methods.
#include "tests/oracle/TRun.h"

namespace havtest::oracle {

void TRun::DeclareProperty(bool reference) {
  const auto cls = OwnClass(0);
  const std::string name = Pick(kProperties, Arg(1));
  const auto referenced = Place(m_classes, 2);
  TValueSpec spec = Spec(2);
  if (spec.kind > 3) spec = {0, spec.a, 0};
  // Reading a derived property that is a key makes it none: tried twice, that is another path.
  const bool derived = name == "speedDuplex" || name == "HealthState";
  const bool key = !(derived && m_memory != EMemory::kEnough) &&
                   (name == "Name" ? Arg(3) % 4 != 0 : Arg(3) % 4 == 1);
  const bool override_ = Arg(4) % 5 == 0;
  std::vector<std::size_t> qualifiers;
  if (key) qualifiers.push_back(QualifierDeclNamed("Key"));
  if (override_ && QualifierDeclNamed("Override") < m_qualifierDecls.size())
    qualifiers.push_back(QualifierDeclNamed("Override"));
  m_what << 'C' << cls << ": declare " << (reference ? "reference " : "property ") << Quoted(name);
  if (reference)
    m_what << " to C" << referenced;
  else
    m_what << " = " << Named(spec);
  for (const auto qualifier : qualifiers)
    m_what << " [" << m_qualifierDecls[qualifier]->GetName({}) << ']';
  Both(
      [=] {
        auto decl = reference
                        ? m_classes[cls]->AllocateReferenceDecl(name, m_classes[referenced], {})
                        : m_classes[cls]->AllocatePropertyDecl(name, PluginValue(spec), {});
        m_decls.push_back(decl);
        for (const auto qualifier : qualifiers)
          m_qualifiers.push_back(
              decl->AllocateQualifier(m_qualifierDecls[qualifier], TCIMValue(true), {}));
        decl->AddToClass({});
      },
      [=] {
        TValue value = reference ? TValue() : ModelValue(spec);
        if (reference) {
          value.type = kReference;
          value.path = std::make_shared<TPath>(m_model.PathOf(m_classIds[referenced]));
        }
        const Id decl = m_model.NewDecl(m_classIds[cls], name, value);
        m_declIds.push_back(decl);
        for (const auto qualifier : qualifiers) {
          const Id id = m_qualifierDeclIds[qualifier];
          m_qualifierIds.push_back(m_model.QualifyDecl(decl, id, ModelValue({2, 1, 0}),
                                                       m_model.qualifierDecls[id].flavor));
        }
        m_model.AddProperty(m_classIds[cls], decl);
      });
}

void TRun::DeclareMethod() {
  const auto cls = OwnClass(0);
  const std::string name = Pick(kMethods, Arg(1));
  const unsigned type = kTypes[Arg(2) % 4];
  const auto qualifier = QualifierDeclNamed("Override");
  const bool override_ = Arg(3) % 2 == 0 && qualifier < m_qualifierDecls.size();
  const std::string parameters[] = {Pick(kProperties, Arg(4)), Pick(kProperties, Arg(5))};
  m_what << 'C' << cls << ": declare method " << TypeName(type) << ' ' << Quoted(name) << '('
         << parameters[0] << ", " << parameters[1] << ')' << (override_ ? " [Override]" : "");
  Both(
      [=] {
        auto decl = m_classes[cls]->AllocateMethodDecl(
            name, TCIMValue::TCIMType(static_cast<ECIMType>(type)), {});
        m_methods.push_back(decl);
        if (override_) decl->AllocateQualifier(m_qualifierDecls[qualifier], TCIMValue(true), {});
        std::string refused;
        for (const auto& parameter : parameters)
          refused += Answer([&] {
            decl->AllocateParameter(parameter, TCIMValue(false), {});
            return std::string("parameter ");
          });
        decl->AddToClass({});
        return refused;
      },
      [=] {
        TValue value;
        value.type = type;
        const Id decl = m_model.NewDecl(m_classIds[cls], name, value);
        m_methodIds.push_back(decl);
        if (override_) {
          const Id id = m_qualifierDeclIds[qualifier];
          m_model.QualifyDecl(decl, id, ModelValue({2, 1, 0}), m_model.qualifierDecls[id].flavor);
        }
        std::string refused;
        for (const auto& parameter : parameters)
          refused += Answer([&] {
            m_model.AddParameter(decl, parameter);
            return std::string("parameter ");
          });
        m_model.AddMethod(m_classIds[cls], decl);
        return refused;
      });
}

void TRun::AddPropertyTo() {
  if (m_decls.empty()) return Nothing();
  const auto cls = OwnClass(0), decl = Place(m_decls, 1);
  m_what << 'C' << cls << ": add declaration " << decl;
  Both([=] { m_classes[cls]->AddPropertyDecl(m_decls[decl], {}); },
       [=] { m_model.AddProperty(m_classIds[cls], m_declIds[decl]); });
}

void TRun::RemoveProperty() {
  if (m_decls.empty()) return Nothing();
  const auto cls = OwnClass(0), decl = Place(m_decls, 1);
  m_what << 'C' << cls << ": remove declaration " << decl;
  Both([=] { m_classes[cls]->RemovePropertyDecl(m_decls[decl], {}); },
       [=] { m_model.RemoveProperty(m_classIds[cls], m_declIds[decl]); });
}

void TRun::RemoveMethod() {
  if (m_methods.empty()) return Nothing();
  const auto cls = OwnClass(0), method = Place(m_methods, 1);
  m_what << 'C' << cls << ": remove method " << method;
  Both([=] { m_classes[cls]->RemoveMethodDecl(m_methods[method], {}); },
       [=] { m_model.RemoveMethod(m_classIds[cls], m_methodIds[method]); });
}

void TRun::SetDefault() {
  if (m_decls.empty()) return Nothing();
  const auto decl = Place(m_decls, 0);
  const auto spec = Spec(1);
  m_what << "declaration " << decl << ": set default " << Named(spec);
  Both([=] { m_decls[decl]->SetDefaultValue(PluginValue(spec), {}); },
       [=] { m_model.decls[m_declIds[decl]].value = ModelValue(spec); });
}

}  // namespace havtest::oracle
