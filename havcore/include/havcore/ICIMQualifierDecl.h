// ICIMQualifierDecl: that a qualifier of a name exists in a namespace, with its type,
// default value, scope and flavor.
//
// Ownership: shared by its namespace and by every qualifier made of it.
// Errors:    THAVException; the status with each operation.
#pragma once

#include <cstdint>
#include <string>

#include <boost/shared_ptr.hpp>

#include "havcore/Export.h"
#include "havcore/TOptions.h"

namespace NORVHAV20 {

class ICIMNamespace;

class HAV_TYPE ICIMQualifierDecl {
 public:
  // The kinds of element to which the qualifier may be attached; a set of bits.
  enum EScope : std::uint32_t {
    kScopeNone = 0,
    kScopeClass = 1,
    kScopeAssociation = 2,
    kScopeIndication = 4,
    kScopeProperty = 8,
    kScopeReference = 16,
    kScopeMethod = 32,
    kScopeParameter = 64,
    kScopeAny = 127
  };
  // How a qualifier behaves down the class hierarchy; a set of bits.
  enum EFlavor : std::uint32_t {
    kFlavorNone = 0,
    kFlavorOverridable = 1,
    kFlavorToSubclass = 2,
    kFlavorToInstance = 4,
    kFlavorTranslatable = 8
  };

  virtual ~ICIMQualifierDecl() = default;       // 0
  virtual void Validate(TOptions options) = 0;  // 1
  // Registers the declaration. Throws 16 when the name is taken, 15 when the namespace is
  // gone.
  virtual void AddToNamespace(TOptions options) = 0;               // 2
  virtual void Delete(TOptions options) = 0;                       // 3
  virtual const std::string& GetName(TOptions options) const = 0;  // 4
  // Returns the namespace, empty when it is gone.
  virtual boost::shared_ptr<ICIMNamespace> GetNamespace(TOptions options) const = 0;  // 5
  virtual TCIMValue::TCIMType GetType(TOptions options) const = 0;                    // 6
  virtual bool IsArray(TOptions options) const = 0;                                   // 7
  virtual const TCIMValue& GetDefaultValue(TOptions options) const = 0;               // 8
  virtual void SetDefaultValue(const TCIMValue& value, TOptions options) = 0;         // 9
  virtual EScope GetScope(TOptions options) const = 0;                                // 10
  virtual void AddFlavor(EFlavor flavor, TOptions options) = 0;                       // 11
  virtual void RemoveFlavor(EFlavor flavor, TOptions options) = 0;                    // 12
  virtual EFlavor GetFlavor(TOptions options) const = 0;                              // 13
  // By case-folded name alone. Throws 25 when a name is no CIM name.
  virtual bool operator==(const ICIMQualifierDecl& other) const = 0;  // 14
  virtual bool operator<(const ICIMQualifierDecl& other) const = 0;   // 15
  // Returns itself, copies nothing.
  virtual ICIMQualifierDecl& operator=(const ICIMQualifierDecl& other) = 0;  // 16
};

inline constexpr ICIMQualifierDecl::EScope operator|(ICIMQualifierDecl::EScope a,
                                                     ICIMQualifierDecl::EScope b) {
  return static_cast<ICIMQualifierDecl::EScope>(static_cast<std::uint32_t>(a) |
                                                static_cast<std::uint32_t>(b));
}
inline constexpr ICIMQualifierDecl::EFlavor operator|(ICIMQualifierDecl::EFlavor a,
                                                      ICIMQualifierDecl::EFlavor b) {
  return static_cast<ICIMQualifierDecl::EFlavor>(static_cast<std::uint32_t>(a) |
                                                 static_cast<std::uint32_t>(b));
}

}  // namespace NORVHAV20
