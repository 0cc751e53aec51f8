#include "havhost/report/ClassReport.h"

#include <set>

#include "havcore/ICIMMethodDecl.h"
#include "havcore/ICIMParameterDecl.h"
#include "havcore/ICIMPropertyDecl.h"
#include "havcore/ICIMQualifier.h"
#include "havcore/client/Enumerate.h"
#include "havhost/report/TypeText.h"

namespace havhost {

using namespace hav::client;

using namespace NORVHAV20;

namespace {

constexpr char kTopClass[] = "<root>";

std::vector<TQualifierReport> QualifiersOf(ICIMNamedElement& element) {
  std::vector<TQualifierReport> reports;
  const auto qualifiers = Collect<ICIMQualifier>([&](const TEnumCallback<ICIMQualifier>& callback) {
    element.EnumerateQualifiers(callback, {});
  });
  for (const auto& qualifier : qualifiers)
    reports.push_back({qualifier->GetName({}), qualifier->GetValue({})});
  return reports;
}

std::set<std::string> KeysOf(const ICIMClass& cls) {
  std::set<std::string> keys;
  cls.EnumerateKeyNames(
      [&](const std::string* name) {
        keys.insert(*name);
        return true;
      },
      {});
  return keys;
}

// What properties and methods have in common.
template <class Report, class Decl>
Report DeclReportOf(Decl& decl, const std::string& type) {
  Report report;
  report.name = decl.GetName({});
  report.type = type;
  if (const auto origin = decl.GetClass({})) report.origin = origin->GetName({});
  report.qualifiers = QualifiersOf(decl);
  return report;
}

std::vector<TPropertyDeclReport> PropertiesOf(const ICIMClass& cls) {
  std::vector<TPropertyDeclReport> reports;
  const auto keys = KeysOf(cls);
  const auto decls =
      Collect<ICIMPropertyDecl>([&](const TEnumCallback<ICIMPropertyDecl>& callback) {
        cls.EnumeratePropertyDecls(callback, {});
      });
  for (const auto& decl : decls) {
    const auto& value = decl->GetDefaultValue({});
    const bool isReference = decl->GetType({}) == kCIMReference;
    auto report = DeclReportOf<TPropertyDeclReport>(
        *decl, isReference ? value.GetReferencedClassName() + " REF" : TypeText(decl->GetType({})));
    report.isKey = keys.count(report.name) != 0;
    report.defaultValue = value;
    reports.push_back(std::move(report));
  }
  return reports;
}

std::vector<TParameterReport> ParametersOf(const ICIMMethodDecl& method) {
  std::vector<TParameterReport> reports;
  const auto parameters =
      Collect<ICIMParameterDecl>([&](const TEnumCallback<ICIMParameterDecl>& callback) {
        method.EnumerateParameters(callback, {});
      });
  for (const auto& parameter : parameters)
    reports.push_back(
        {parameter->GetName({}), TypeText(parameter->GetType({})), QualifiersOf(*parameter)});
  return reports;
}

std::vector<TMethodDeclReport> MethodsOf(const ICIMClass& cls) {
  std::vector<TMethodDeclReport> reports;
  const auto decls = Collect<ICIMMethodDecl>([&](const TEnumCallback<ICIMMethodDecl>& callback) {
    cls.EnumerateMethodDecls(callback, {});
  });
  for (const auto& decl : decls) {
    auto report = DeclReportOf<TMethodDeclReport>(*decl, TypeText(decl->GetType({})));
    report.parameters = ParametersOf(*decl);
    reports.push_back(std::move(report));
  }
  return reports;
}

}  // namespace

std::string TClassKind::ToString() const {
  std::string text = isAbstract ? "abstract " : "";
  return text + (isAssociation ? "association" : isIndication ? "indication" : "class");
}

TClassKind KindOf(const ICIMClass& cls) {
  return {cls.IsAssociation({}), cls.IsAbstract({}), cls.IsIndication({})};
}

std::string SuperclassName(const ICIMClass& cls) {
  const auto superclass = cls.GetSuperClass({});
  if (!superclass || superclass->GetName({}) == kTopClass) return {};
  return superclass->GetName({});
}

TClassReport ReportOf(ICIMClass& cls) {
  TClassReport report{cls.GetName({}),
                      SuperclassName(cls),
                      {},
                      KindOf(cls),
                      InstancesOf(cls, false).size(),
                      QualifiersOf(cls),
                      PropertiesOf(cls),
                      MethodsOf(cls)};
  for (const auto& subclass : SubclassesOf(cls)) report.subclasses.push_back(subclass->GetName({}));
  return report;
}

}  // namespace havhost
