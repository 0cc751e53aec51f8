#include "havcore/client/Declared.h"

#include <algorithm>
#include <map>
#include <tuple>
#include <utility>

#include "havcore/client/Enumerate.h"
#include "havcore/client/FoldedName.h"

namespace hav::client {

using namespace NORVHAV20;

namespace {

constexpr std::string_view kOrder = "HAV_DeclaredOrder";
constexpr std::string_view kArraySize = "HAV_ArraySize";
constexpr std::string_view kReferencedClass = "HAV_ReferenceClass";

using TNames = std::vector<std::string>;

std::string Folded(std::string name) {
  std::transform(name.begin(), name.end(), name.begin(), FoldCharacter);
  return name;
}

// A method and a property may have one name; properties come first where nobody kept an order.
std::string NameOf(const TMemberDecl& member) {
  return member.property ? member.property->GetName({}) : member.method->GetName({}) + "()";
}

bool ComesBefore(const TMemberDecl& a, const TMemberDecl& b) {
  const bool isMethod = !a.property;
  if (isMethod != !b.property) return !isMethod;
  return Folded(NameOf(a)) < Folded(NameOf(b));
}

boost::shared_ptr<ICIMQualifier> Kept(ICIMNamedElement& element, std::string_view name) {
  for (const auto& qualifier : Collect<ICIMQualifier>(
           [&](const auto& callback) { element.EnumerateQualifiers(callback, {}); }))
    if (qualifier->GetName({}) == name) return qualifier;
  return {};
}

// The place of each name in the order that its element keeps; those that are not in it follow.
class TOrder {
 public:
  explicit TOrder(ICIMNamedElement& element) {
    const auto kept = Kept(element, kOrder);
    if (!kept) return;
    for (const auto& name : static_cast<const std::vector<TCIMValue>&>(kept->GetValue({})))
      m_places.emplace(Folded(name.ToString(10)), m_places.size());
  }
  std::size_t PlaceOf(const std::string& name) const {
    const auto found = m_places.find(Folded(name));
    return found == m_places.end() ? m_places.size() : found->second;
  }

 private:
  std::map<std::string, std::size_t> m_places;
};

// The classes from `cls` upwards with the orders that they keep, each looked up once.
class TAncestry {
 public:
  explicit TAncestry(ICIMClass& cls) {
    m_distances.emplace(&cls, 0);
    for (auto at = cls.GetSuperClass({}); at; at = at->GetSuperClass({}))
      m_distances.emplace(at.get(), m_distances.size());
  }
  // Smaller for what comes first: the topmost class, then its order.
  std::pair<std::size_t, std::size_t> PlaceOf(const boost::shared_ptr<ICIMClass>& origin,
                                              const std::string& name) {
    const auto found = m_distances.find(origin.get());
    if (found == m_distances.end()) return {m_distances.size(), 0};
    const auto order = m_orders.try_emplace(origin.get(), *origin).first;
    return {m_distances.size() - found->second, order->second.PlaceOf(name)};
  }

 private:
  std::map<const ICIMClass*, std::size_t> m_distances;
  std::map<const ICIMClass*, TOrder> m_orders;
};

template <class Decl>
void SortByAncestry(ICIMClass& cls, std::vector<boost::shared_ptr<Decl>>& decls,
                    const char* suffix) {
  TAncestry ancestry(cls);
  using TPlaced = std::pair<std::pair<std::size_t, std::size_t>, boost::shared_ptr<Decl>>;
  std::vector<TPlaced> placed;
  placed.reserve(decls.size());
  for (auto& decl : decls)
    placed.emplace_back(ancestry.PlaceOf(decl->GetClass({}), decl->GetName({}) + suffix), decl);
  std::stable_sort(placed.begin(), placed.end(),
                   [](const TPlaced& a, const TPlaced& b) { return a.first < b.first; });
  std::transform(placed.begin(), placed.end(), decls.begin(),
                 [](TPlaced& one) { return std::move(one.second); });
}

TCIMValue ValueOf(const TNames& names) {
  return TCIMValue(kCIMString, std::vector<TCIMValue>(names.begin(), names.end()));
}

}  // namespace

bool IsReserved(std::string_view qualifier) noexcept {
  return SameName(qualifier.substr(0, kReserved.size()), kReserved);
}

std::vector<boost::shared_ptr<ICIMQualifier>> QualifiersOf(ICIMNamedElement& element) {
  auto qualifiers = Collect<ICIMQualifier>(
      [&](const auto& callback) { element.EnumerateQualifiers(callback, {}); });
  qualifiers.erase(std::remove_if(qualifiers.begin(), qualifiers.end(),
                                  [](const auto& one) { return IsReserved(one->GetName({})); }),
                   qualifiers.end());
  std::stable_partition(qualifiers.begin(), qualifiers.end(), [](const auto& one) {
    return SameName(one->GetName({}), "Association") || SameName(one->GetName({}), "Indication");
  });
  return qualifiers;
}

std::vector<boost::shared_ptr<ICIMPropertyDecl>> PropertyDeclsOf(ICIMClass& cls) {
  auto decls = Collect<ICIMPropertyDecl>(
      [&](const auto& callback) { cls.EnumeratePropertyDecls(callback, {}); });
  SortByAncestry(cls, decls, "");
  return decls;
}

std::vector<boost::shared_ptr<ICIMMethodDecl>> MethodDeclsOf(ICIMClass& cls) {
  auto decls = Collect<ICIMMethodDecl>(
      [&](const auto& callback) { cls.EnumerateMethodDecls(callback, {}); });
  SortByAncestry(cls, decls, "()");
  return decls;
}

std::vector<TMemberDecl> OwnDeclsOf(ICIMClass& cls) {
  std::vector<TMemberDecl> members;
  for (auto& decl : Collect<ICIMPropertyDecl>(
           [&](const auto& callback) { cls.EnumeratePropertyDecls(callback, {}); }))
    if (decl->GetClass({}).get() == &cls) members.push_back({std::move(decl), {}});
  for (auto& decl : Collect<ICIMMethodDecl>(
           [&](const auto& callback) { cls.EnumerateMethodDecls(callback, {}); }))
    if (decl->GetClass({}).get() == &cls) members.push_back({{}, std::move(decl)});
  const TOrder order(cls);
  std::stable_sort(members.begin(), members.end(), [&](const auto& a, const auto& b) {
    return order.PlaceOf(NameOf(a)) < order.PlaceOf(NameOf(b));
  });
  return members;
}

std::vector<boost::shared_ptr<ICIMParameterDecl>> ParametersOf(ICIMMethodDecl& method) {
  auto parameters = Collect<ICIMParameterDecl>(
      [&](const auto& callback) { method.EnumerateParameters(callback, {}); });
  const TOrder order(method);
  std::stable_sort(parameters.begin(), parameters.end(), [&](const auto& a, const auto& b) {
    return order.PlaceOf(a->GetName({})) < order.PlaceOf(b->GetName({}));
  });
  return parameters;
}

std::uint32_t ArraySizeOf(ICIMNamedElement& element) {
  const auto kept = Kept(element, kArraySize);
  return kept ? static_cast<std::uint32_t>(kept->GetValue({})) : 0;
}

std::string ReferencedClassOf(ICIMNamedElement& parameter) {
  const auto kept = Kept(parameter, kReferencedClass);
  return kept ? kept->GetValue({}).ToString(10) : std::string();
}

// An order that is that of the names needs no keeping.
void TDeclaredKeeper::KeepOrder(ICIMClass& cls, const std::vector<TMemberDecl>& members) {
  if (std::is_sorted(members.begin(), members.end(), ComesBefore)) return;
  TNames names;
  std::transform(members.begin(), members.end(), std::back_inserter(names), NameOf);
  Keep(cls, m_order, kOrder, ValueOf(names));
}

void TDeclaredKeeper::KeepOrder(ICIMMethodDecl& method, const TNames& parameters) {
  const bool sorted = std::is_sorted(
      parameters.begin(), parameters.end(),
      [](const std::string& a, const std::string& b) { return Folded(a) < Folded(b); });
  if (!sorted) Keep(method, m_order, kOrder, ValueOf(parameters));
}

void TDeclaredKeeper::KeepArraySize(ICIMNamedElement& element, std::uint32_t size) {
  if (size != 0) Keep(element, m_arraySize, kArraySize, TCIMValue(size));
}

void TDeclaredKeeper::KeepReferencedClass(ICIMNamedElement& parameter, const std::string& name) {
  Keep(parameter, m_referencedClass, kReferencedClass, TCIMValue(name));
}

// A namespace of its own, gone at once, declares it: no other lists it.
void TDeclaredKeeper::Keep(ICIMNamedElement& element, TDecl& decl, std::string_view name,
                           const TCIMValue& value) {
  if (!decl)
    decl = m_provider.AllocateNamespace({}, false, {})
               ->AllocateQualifierDecl(std::string(name), TCIMValue::Null(value.GetType()),
                                       ICIMQualifierDecl::kScopeAny,
                                       ICIMQualifierDecl::kFlavorOverridable, {});
  element.AllocateQualifier(decl, value, {});
}

}  // namespace hav::client
