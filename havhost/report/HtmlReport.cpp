#include "havhost/report/HtmlReport.h"

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <utility>
#include <vector>

#include "havcore/TCIMDateTime.h"
#include "havcore/client/Enumerate.h"
#include "havhost/report/ClassReport.h"
#include "havhost/report/HtmlPage.h"
#include "havhost/report/InstanceReport.h"
#include "havhost/report/Json.h"
#include "havhost/report/TInventoryTree.h"
#include "havhost/report/Text.h"
#include "havhost/report/TypeText.h"

namespace havhost {

using namespace hav::client;

using namespace NORVHAV20;

namespace {

// Beyond it a number of JavaScript is not exact.
constexpr std::uint64_t kLargestExact = 1ull << 53;

TJson ExactJson(TJson value) {
  if (value.is_array())
    for (auto& element : value) element = ExactJson(std::move(element));
  const bool isLarge =
      value.is_number_unsigned()
          ? value.get<std::uint64_t>() > kLargestExact
          : value.is_number_integer() && value.get<std::int64_t>() < -std::int64_t{kLargestExact};
  return isLarge ? TJson(value.dump()) : value;
}

TJson QualifiersJson(const std::vector<TQualifierReport>& qualifiers) {
  TJson list = TJson::array();
  for (const auto& qualifier : qualifiers)
    list.push_back(TJson::array({qualifier.name, ExactJson(ToJson(qualifier.value))}));
  return list;
}

TJson DeclJson(const TDeclReport& decl) {
  return {
      {"name", decl.name}, {"type", decl.type}, {"qualifiers", QualifiersJson(decl.qualifiers)}};
}

TJson PropertyJson(const TPropertyDeclReport& property) {
  auto json = DeclJson(property);
  if (property.isKey) json["key"] = true;
  if (!property.defaultValue.IsNull() && !property.defaultValue.IsReference())
    json["default"] = ExactJson(ToJson(property.defaultValue));
  return json;
}

TJson MethodJson(const TMethodDeclReport& method) {
  auto json = DeclJson(method);
  json["parameters"] = TJson::array();
  for (const auto& parameter : method.parameters)
    json["parameters"].push_back({{"name", parameter.name},
                                  {"type", parameter.type},
                                  {"qualifiers", QualifiersJson(parameter.qualifiers)}});
  return json;
}

const char* KindName(const TClassKind& kind) {
  return kind.isAssociation ? "association" : kind.isIndication ? "indication" : "class";
}

TJson CellJson(const TPropertyReport& property) {
  const auto value = ExactJson(ToJson(property.value));
  if (!value.is_array()) {
    const TJson text = Join(property.display);
    return text == value ? text : TJson::array({text, value});
  }
  return TJson::array({TJson(property.display), value});
}

// The classes and the instances as the page reads them, by index.
class TPageData {
 public:
  explicit TPageData(ICIMNamespace& target) { AddClasses(target); }

  void Add(const TInventoryTree& tree);
  TJson ToJson(const std::string& namespaceName) &&;

 private:
  struct TColumns {
    std::unordered_map<std::string, std::size_t> byName;
    TJson list = TJson::array();
  };

  void AddClasses(ICIMNamespace& target);
  void AddClass(ICIMClass& cls);
  std::size_t ClassOf(const std::string& name) const;
  TJson InstanceJson(const TInstanceReport& instance);

  std::vector<TJson> m_classes;
  std::vector<TColumns> m_columns;  // of the class of that index
  std::unordered_map<std::string, std::size_t> m_classByName;
  TJson m_instances = TJson::array();
};

void TPageData::AddClasses(ICIMNamespace& target) {
  std::vector<boost::shared_ptr<ICIMClass>> next = SubclassesOf(*target.GetClass("<root>", {}));
  while (!next.empty()) {
    const auto cls = next.back();
    next.pop_back();
    AddClass(*cls);
    for (auto& subclass : SubclassesOf(*cls)) next.push_back(std::move(subclass));
  }
  m_columns.resize(m_classes.size());
}

void TPageData::AddClass(ICIMClass& cls) {
  const auto report = ReportOf(cls);
  // Its superclasses stand in the list before it, with what they declare.
  const auto isInherited = [&](const TDeclReport& decl) {
    return decl.origin != report.name && m_classByName.count(decl.origin) != 0;
  };
  TJson properties = TJson::array();
  for (const auto& property : report.properties)
    if (!isInherited(property)) properties.push_back(PropertyJson(property));
  TJson methods = TJson::array();
  for (const auto& method : report.methods)
    if (!isInherited(method)) methods.push_back(MethodJson(method));
  m_classByName.emplace(report.name, m_classes.size());
  m_classes.push_back({{"name", report.name},
                       {"superclass", report.superclass},
                       {"kind", KindName(report.kind)},
                       {"abstract", report.kind.isAbstract},
                       {"qualifiers", QualifiersJson(report.qualifiers)},
                       {"properties", std::move(properties)},
                       {"methods", std::move(methods)}});
}

std::size_t TPageData::ClassOf(const std::string& name) const { return m_classByName.at(name); }

TJson TPageData::InstanceJson(const TInstanceReport& instance) {
  const auto cls = ClassOf(instance.className);
  auto& columns = m_columns[cls];
  TJson cells = TJson::array();
  for (const auto& property : instance.properties) {
    const auto [column, isNew] = columns.byName.emplace(property.name, columns.list.size());
    if (isNew) columns.list.push_back(TJson::array({property.name, TypeText(property.type)}));
    while (cells.size() <= column->second) cells.push_back(nullptr);
    cells[column->second] = CellJson(property);
  }
  return {{"class", cls},
          {"path", WithoutStrayBytes(instance.path)},
          {"title", instance.Title()},
          {"cells", std::move(cells)}};
}

void TPageData::Add(const TInventoryTree& tree) {
  for (const auto& node : tree.Nodes()) {
    auto json = InstanceJson(node.instance);
    if (node.parent != TInventoryTree::kNone) {
      json["parent"] = node.parent;
      json["via"] = ClassOf(node.association);
    }
    m_instances.push_back(std::move(json));
  }
  for (const auto& association : tree.Associations())
    m_instances.push_back(InstanceJson(association));
}

TJson TPageData::ToJson(const std::string& namespaceName) && {
  for (std::size_t i = 0; i < m_classes.size(); ++i)
    m_classes[i]["columns"] = std::move(m_columns[i].list);
  return {{"program", "havhost " HAVHOST_VERSION},
          {"namespace", namespaceName},
          {"classes", std::move(m_classes)},
          {"instances", std::move(m_instances)}};
}

// JSON that a page can hold: no text of it can end the element that it stands in.
void AppendEmbedded(std::string& page, const TJson& data) {
  for (const char c : data.dump(-1, ' ', false, TJson::error_handler_t::replace))
    if (c == '<')
      page += "\\u003c";
    else
      page += c;
}

}  // namespace

std::string HtmlReport(ICIMNamespace& target, const std::string& namespaceName,
                       const boost::shared_ptr<ICIMClass>& top) {
  TPageData data(target);
  data.Add(TInventoryTree(target, top));
  std::string page(kHtmlBeforeData);
  AppendEmbedded(page, std::move(data).ToJson(namespaceName));
  page += kHtmlAfterData;
  return page;
}

std::string_view HtmlReportPolicy() { return kHtmlPolicy; }

}  // namespace havhost
