// ICIMQualifier: a named value attached to one element, made of a qualifier declaration.
//
// Ownership: shared by its element; the element is held weakly.
// Errors:    THAVException; the status with each operation.
#pragma once

#include <string>

#include <boost/shared_ptr.hpp>

#include "havcore/Export.h"
#include "havcore/ICIMQualifierDecl.h"
#include "havcore/TOptions.h"

namespace NORVHAV20 {

class ICIMNamedElement;

class HAV_TYPE ICIMQualifier {
 public:
  virtual ~ICIMQualifier() = default;           // 0
  virtual void Validate(TOptions options) = 0;  // 1
  // Attaches the qualifier to its element, as the element's AddQualifier does. Throws 15
  // when the element is gone.
  virtual void AddToElement(TOptions options) = 0;                 // 2
  virtual void Delete(TOptions options) = 0;                       // 3
  virtual const std::string& GetName(TOptions options) const = 0;  // 4
  // Returns the element, empty when it is gone.
  virtual boost::shared_ptr<ICIMNamedElement> GetElement(TOptions options) const = 0;         // 5
  virtual TCIMValue::TCIMType GetType(TOptions options) const = 0;                            // 6
  virtual bool IsArray(TOptions options) const = 0;                                           // 7
  virtual boost::shared_ptr<ICIMQualifierDecl> GetQualifierDecl(TOptions options) const = 0;  // 8
  virtual const TCIMValue& GetValue(TOptions options) const = 0;                              // 9
  // Each of the next three makes the qualifier its element's own: IsPropagated turns false.
  virtual void SetValue(const TCIMValue& value, TOptions options) = 0;                 // 10
  virtual void AddFlavor(ICIMQualifierDecl::EFlavor flavor, TOptions options) = 0;     // 11
  virtual void RemoveFlavor(ICIMQualifierDecl::EFlavor flavor, TOptions options) = 0;  // 12
  virtual ICIMQualifierDecl::EFlavor GetFlavor(TOptions options) const = 0;            // 13
  // By the declarations' case-folded names alone. Throws 25 when a name is no CIM name.
  virtual bool operator==(const ICIMQualifier& other) const = 0;  // 14
  virtual bool operator<(const ICIMQualifier& other) const = 0;   // 15
  // True for a qualifier that the element received from its superclass.
  virtual bool IsPropagated(TOptions options) const = 0;  // 16
  // Returns itself, copies nothing.
  virtual ICIMQualifier& operator=(const ICIMQualifier& other) = 0;  // 17
};

}  // namespace NORVHAV20
