// ICIMPropertyDecl: that a class has a property of a name, with a default value, whose
// type is the property's, and qualifiers.
//
// Ownership: shared by the class and by those that inherit it; its class is held weakly.
// Errors:    THAVException; the status with each operation.
#pragma once

#include <string>

#include <boost/shared_ptr.hpp>

#include "havcore/Export.h"
#include "havcore/ICIMNamedElement.h"
#include "havcore/TOptions.h"

namespace NORVHAV20 {

class ICIMClass;

class HAV_TYPE ICIMPropertyDecl : public ICIMNamedElement {  // slots 0 to 6
 public:
  virtual void Validate(TOptions options) = 0;  // 7
  // Hands the declaration to its class, where the override rules decide. Throws what the
  // class's AddPropertyDecl throws, and 15 when the class is gone.
  virtual void AddToClass(TOptions options) = 0;                   // 8
  virtual void Delete(TOptions options) = 0;                       // 9
  virtual const std::string& GetName(TOptions options) const = 0;  // 10
  // Returns the class that declares it (its class of origin), empty when it is gone.
  virtual boost::shared_ptr<ICIMClass> GetClass(TOptions options) const = 0;   // 11
  virtual TCIMValue::TCIMType GetType(TOptions options) const = 0;             // 12
  virtual bool IsArray(TOptions options) const = 0;                            // 13
  virtual const TCIMValue& GetDefaultValue(TOptions options) const = 0;        // 14
  virtual void SetDefaultValue(const TCIMValue& value, TOptions options) = 0;  // 15
  // By case-folded name alone. Throws 25 when a name is no CIM name.
  virtual bool operator==(const ICIMPropertyDecl& other) const = 0;  // 16
  virtual bool operator<(const ICIMPropertyDecl& other) const = 0;   // 17
  // Returns itself, copies nothing.
  virtual ICIMPropertyDecl& operator=(const ICIMPropertyDecl& other) = 0;  // 18
};

}  // namespace NORVHAV20
