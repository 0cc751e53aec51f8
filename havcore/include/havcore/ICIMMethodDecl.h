// ICIMMethodDecl: that a class has a method of a name, with a return type, parameters and
// qualifiers. It describes; nothing runs.
//
// Ownership: shared by the class and by those that inherit it; its class is held weakly.
// Errors:    THAVException; the status with each operation. FindQualifier is not offered: 1.
#pragma once

#include <string>

#include <boost/shared_ptr.hpp>

#include "havcore/Export.h"
#include "havcore/ICIMNamedElement.h"
#include "havcore/TOptions.h"

namespace NORVHAV20 {

class ICIMClass;
class ICIMParameterDecl;

class HAV_TYPE ICIMMethodDecl : public ICIMNamedElement {  // slots 0 to 6
 public:
  virtual void Validate(TOptions options) = 0;  // 7
  // Hands the declaration to its class, where the override rules decide. Throws what the
  // class's AddMethodDecl throws, and 15 when the class is gone.
  virtual void AddToClass(TOptions options) = 0;                   // 8
  virtual const std::string& GetName(TOptions options) const = 0;  // 9
  // Returns the class that declares it (its class of origin), empty when it is gone.
  virtual boost::shared_ptr<ICIMClass> GetClass(TOptions options) const = 0;  // 10
  virtual TCIMValue::TCIMType GetType(TOptions options) const = 0;            // 11
  // Makes a parameter of the type of `defaultValue`, adds and returns it. Throws 16 when
  // the method has one of that name.
  virtual boost::shared_ptr<ICIMParameterDecl> AllocateParameter(const std::string& name,
                                                                 const TCIMValue& defaultValue,
                                                                 TOptions options) = 0;  // 12
  // Returns the parameter; throws 15 when there is none.
  virtual boost::shared_ptr<ICIMParameterDecl> GetParameter(const std::string& name,
                                                            TOptions options) const = 0;  // 13
  // Visits the parameters in the order of their case-folded names.
  virtual void EnumerateParameters(const TEnumCallback<ICIMParameterDecl>& callback,
                                   TOptions options) const = 0;  // 14
  // By case-folded name alone. Throws 25 when a name is no CIM name.
  virtual bool operator==(const ICIMMethodDecl& other) const = 0;  // 15
  virtual bool operator<(const ICIMMethodDecl& other) const = 0;   // 16
  // Returns itself, copies nothing.
  virtual ICIMMethodDecl& operator=(const ICIMMethodDecl& other) = 0;  // 17
};

}  // namespace NORVHAV20
