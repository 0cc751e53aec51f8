#include "havhost/report/ClassReport.h"

#include <set>

#include "havcore/ICIMMethodDecl.h"
#include "havcore/ICIMParameterDecl.h"
#include "havcore/ICIMPropertyDecl.h"
#include "havcore/ICIMQualifier.h"
#include "havcore/client/Declared.h"
#include "havcore/client/Enumerate.h"
#include "havhost/report/TypeText.h"

namespace havhost {

using namespace hav::client;

using namespace NORVHAV20;

namespace {

constexpr char kTopClass[] = "<root>";

std::vector<TQualifierReport> QualifierReportsOf(ICIMNamedElement& element) {
  std::vector<TQualifierReport> reports;
  for (const auto& qualifier : hav::client::QualifiersOf(element))
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
  report.qualifiers = QualifierReportsOf(decl);
  return report;
}

// As MOF writes it; `referenced` is the class of a reference, empty for any.
template <class Decl>
std::string TypeOf(Decl& decl, const std::string& referenced) {
  const auto type = decl.GetType({});
  const auto size = ArraySizeOf(decl);
  auto text = ElementOf(type) == kCIMReference
                  ? (referenced.empty() ? "object" : referenced) + " REF"
                  : TypeText(ElementOf(type));
  if (decl.IsArray({})) text += size == 0 ? "[]" : "[" + std::to_string(size) + "]";
  return text;
}

std::vector<TPropertyDeclReport> PropertiesOf(ICIMClass& cls) {
  std::vector<TPropertyDeclReport> reports;
  const auto keys = KeysOf(cls);
  for (const auto& decl : PropertyDeclsOf(cls)) {
    const auto& value = decl->GetDefaultValue({});
    auto report = DeclReportOf<TPropertyDeclReport>(
        *decl,
        TypeOf(*decl, decl->GetType({}) == kCIMReference ? value.GetReferencedClassName() : ""));
    report.isKey = keys.count(report.name) != 0;
    report.defaultValue = value;
    reports.push_back(std::move(report));
  }
  return reports;
}

std::vector<TParameterReport> ParameterReportsOf(ICIMMethodDecl& method) {
  std::vector<TParameterReport> reports;
  for (const auto& parameter : ParametersOf(method))
    reports.push_back({parameter->GetName({}), TypeOf(*parameter, ReferencedClassOf(*parameter)),
                       QualifierReportsOf(*parameter)});
  return reports;
}

std::vector<TMethodDeclReport> MethodsOf(ICIMClass& cls) {
  std::vector<TMethodDeclReport> reports;
  for (const auto& decl : MethodDeclsOf(cls)) {
    auto report = DeclReportOf<TMethodDeclReport>(*decl, TypeText(decl->GetType({})));
    report.parameters = ParameterReportsOf(*decl);
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
                      QualifierReportsOf(cls),
                      PropertiesOf(cls),
                      MethodsOf(cls)};
  for (const auto& subclass : SubclassesOf(cls)) report.subclasses.push_back(subclass->GetName({}));
  return report;
}

}  // namespace havhost
