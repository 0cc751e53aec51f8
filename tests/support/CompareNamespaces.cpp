#include "support/CompareNamespaces.h"

#include <sstream>
#include <utility>

#include <boost/shared_ptr.hpp>

#include "havcore/havcore.h"

namespace havtest {

using namespace NORVHAV20;

namespace {

// An enumeration drops what its callback throws, so nothing but collecting is done in one.
template <class T, class Enumerate>
std::vector<boost::shared_ptr<T>> Collect(Enumerate&& enumerate) {
  std::vector<boost::shared_ptr<T>> elements;
  enumerate(TEnumCallback<T>([&](boost::shared_ptr<T> element) {
    elements.push_back(std::move(element));
    return true;
  }));
  return elements;
}

std::string Text(const TCIMValue& value) {
  std::ostringstream text;
  text << value.GetType() << ' ' << (value.IsNull() ? "is NULL" : value.ToString(10));
  if (value.IsArray() && !value.IsNull())
    text << " of " << static_cast<const std::vector<TCIMValue>&>(value).size();
  if (value.GetType() == kCIMReference) text << " to " << value.GetReferencedClassName();
  return text.str();
}

std::string Text(ICIMQualifierDecl::EFlavor flavor) { return " flavor " + std::to_string(flavor); }

template <class Decl>
std::string Origin(const Decl& decl) {
  const auto cls = decl.GetClass({});
  return " from " + (cls ? cls->GetName({}) : std::string("nowhere"));
}

// A namespace as lines "element: what it holds", in the order of its enumerations.
class Description {
 public:
  struct Line {
    std::string element;
    std::string content;
  };

  explicit Description(ICIMNamespace& ns) {
    for (const auto& decl : Collect<ICIMQualifierDecl>(
             [&](const auto& callback) { ns.EnumerateQualifierDecls(callback, {}); }))
      Add("qualifier declaration " + decl->GetName({}),
          Text(decl->GetDefaultValue({})) + " scope " + std::to_string(decl->GetScope({})) +
              Text(decl->GetFlavor({})));
    auto classes =
        Collect<ICIMClass>([&](const auto& callback) { ns.EnumerateRootClasses(callback, {}); });
    for (std::size_t i = 0; i < classes.size(); ++i) {
      const auto cls = classes[i];
      AddClass(*cls);
      const auto subclasses =
          Collect<ICIMClass>([&](const auto& callback) { cls->EnumerateSubclasses(callback, {}); });
      classes.insert(classes.end(), subclasses.begin(), subclasses.end());
    }
  }

  const std::vector<Line>& Lines() const { return m_lines; }

 private:
  void Add(std::string element, std::string content) {
    m_lines.push_back({std::move(element), std::move(content)});
  }

  void AddQualifiers(const std::string& owner, ICIMNamedElement& element) {
    for (const auto& qualifier : Collect<ICIMQualifier>(
             [&](const auto& callback) { element.EnumerateQualifiers(callback, {}); }))
      Add(owner + " qualifier " + qualifier->GetName({}),
          Text(qualifier->GetValue({})) + Text(qualifier->GetFlavor({})) +
              (qualifier->IsPropagated({}) ? " propagated" : ""));
  }

  void AddClass(ICIMClass& cls) {
    const auto name = cls.GetName({});
    const auto superclass = cls.GetSuperClass({});
    Add("class " + name, superclass ? superclass->GetName({}) : std::string("no superclass"));
    AddQualifiers(name, cls);
    for (const auto& decl : Collect<ICIMPropertyDecl>(
             [&](const auto& callback) { cls.EnumeratePropertyDecls(callback, {}); })) {
      const auto property = name + " property " + decl->GetName({});
      Add(property, Text(decl->GetDefaultValue({})) + Origin(*decl));
      AddQualifiers(property, *decl);
    }
    for (const auto& decl : Collect<ICIMMethodDecl>(
             [&](const auto& callback) { cls.EnumerateMethodDecls(callback, {}); }))
      AddMethod(name + " method " + decl->GetName({}), *decl);
    for (const auto& instance : Collect<ICIMInstance>(
             [&](const auto& callback) { cls.EnumerateInstances(callback, false, {}); }))
      AddInstance(*instance);
  }

  void AddMethod(const std::string& name, ICIMMethodDecl& decl) {
    Add(name, Text(TCIMValue::Null(decl.GetType({}))) + Origin(decl));
    AddQualifiers(name, decl);
    for (const auto& one : Collect<ICIMParameterDecl>(
             [&](const auto& callback) { decl.EnumerateParameters(callback, {}); })) {
      const auto parameter = name + " parameter " + one->GetName({});
      Add(parameter, Text(TCIMValue::Null(one->GetType({}))));
      AddQualifiers(parameter, *one);
    }
  }

  void AddInstance(ICIMInstance& instance) {
    const auto path = "instance " + instance.GetReference({}).GetPath();
    Add(path, "");
    for (const auto& slot : Collect<ICIMProperty>(
             [&](const auto& callback) { instance.EnumerateProperties(callback, {}); }))
      Add(path + " property " + slot->GetDecl({})->GetName({}),
          Text(slot->GetValue({})) + (slot->IsValueDefault({}) ? " by default" : ""));
  }

  std::vector<Line> m_lines;
};

}  // namespace

std::vector<std::string> Differences(ICIMNamespace& a, ICIMNamespace& b, std::size_t limit) {
  const Description first(a);
  const Description second(b);
  const auto& left = first.Lines();
  const auto& right = second.Lines();
  std::vector<std::string> differences;
  for (std::size_t i = 0; i < left.size() || i < right.size(); ++i) {
    if (differences.size() >= limit) break;
    if (i >= left.size() || i >= right.size() || left[i].element != right[i].element) {
      // From here on the two walks are out of step.
      differences.push_back("first: " + (i < left.size() ? left[i].element : "nothing more") +
                            "; second: " + (i < right.size() ? right[i].element : "nothing more"));
      break;
    }
    if (left[i].content != right[i].content)
      differences.push_back(left[i].element + ": first: " + left[i].content +
                            "; second: " + right[i].content);
  }
  return differences;
}

}  // namespace havtest
