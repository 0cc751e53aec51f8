// Declared: what an author said of a class that the contract does not keep: the order of its
// declarations, the sizes of its arrays, the classes of parameters that are references.
//
// It is kept in qualifiers of the elements, whose names begin with kReserved. Their
// declarations belong to no namespace, they do not propagate, and whoever shows qualifiers
// takes them from QualifiersOf, which leaves these out. What nobody kept has an answer too:
// the order of the names, no size, any class.
//
// Ownership: elements are shared with the namespace.
// Errors:    those of the elements pass through.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "havcore/havcore.h"

namespace hav::client {

// No qualifier of an author's own begins like this, in whatever case.
inline constexpr std::string_view kReserved = "HAV_";
bool IsReserved(std::string_view qualifier) noexcept;

// The qualifiers of an element that are its author's: ASSOCIATION and INDICATION first, as
// the language has them, then the others by name.
std::vector<boost::shared_ptr<NORVHAV20::ICIMQualifier>> QualifiersOf(
    NORVHAV20::ICIMNamedElement& element);

// All declarations of a class, what the topmost class declares first, each class's in the
// order of its author. Complexity: O(n log n), and the depth of the class.
std::vector<boost::shared_ptr<NORVHAV20::ICIMPropertyDecl>> PropertyDeclsOf(
    NORVHAV20::ICIMClass& cls);
std::vector<boost::shared_ptr<NORVHAV20::ICIMMethodDecl>> MethodDeclsOf(NORVHAV20::ICIMClass& cls);

// One of the two.
struct TMemberDecl {
  boost::shared_ptr<NORVHAV20::ICIMPropertyDecl> property;
  boost::shared_ptr<NORVHAV20::ICIMMethodDecl> method;
};
// What the class declares itself, properties and methods in the order of their author.
std::vector<TMemberDecl> OwnDeclsOf(NORVHAV20::ICIMClass& cls);

std::vector<boost::shared_ptr<NORVHAV20::ICIMParameterDecl>> ParametersOf(
    NORVHAV20::ICIMMethodDecl& method);

// The size of a fixed array, 0 when it has none.
std::uint32_t ArraySizeOf(NORVHAV20::ICIMNamedElement& element);
// The class of a parameter that is a reference, empty for any class.
std::string ReferencedClassOf(NORVHAV20::ICIMNamedElement& parameter);

// Keeps it, while classes are made.
class TDeclaredKeeper {
 public:
  // The provider must outlive the keeper.
  explicit TDeclaredKeeper(const NORVHAV20::INamespaceProvider& provider) : m_provider(provider) {}

  // What `cls` declares itself, in order.
  void KeepOrder(NORVHAV20::ICIMClass& cls, const std::vector<TMemberDecl>& members);
  void KeepOrder(NORVHAV20::ICIMMethodDecl& method, const std::vector<std::string>& parameters);
  void KeepArraySize(NORVHAV20::ICIMNamedElement& element, std::uint32_t size);
  void KeepReferencedClass(NORVHAV20::ICIMNamedElement& parameter, const std::string& name);

 private:
  using TDecl = boost::shared_ptr<NORVHAV20::ICIMQualifierDecl>;
  void Keep(NORVHAV20::ICIMNamedElement& element, TDecl& decl, std::string_view name,
            const NORVHAV20::TCIMValue& value);

  const NORVHAV20::INamespaceProvider& m_provider;
  TDecl m_order;
  TDecl m_arraySize;
  TDecl m_referencedClass;
};

}  // namespace hav::client
