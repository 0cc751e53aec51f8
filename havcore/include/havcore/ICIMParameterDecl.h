// ICIMParameterDecl: one parameter of a method, with its type and qualifiers.
//
// Ownership: shared by its method, which it holds weakly.
// Errors:    THAVException; the status with each operation. FindQualifier is not offered: 1.
#pragma once

#include <string>

#include <boost/shared_ptr.hpp>

#include "havcore/Export.h"
#include "havcore/ICIMNamedElement.h"
#include "havcore/TOptions.h"

namespace NORVHAV20 {

class ICIMMethodDecl;

class HAV_TYPE ICIMParameterDecl : public ICIMNamedElement {  // slots 0 to 6
 public:
  virtual void Validate(TOptions options) = 0;  // 7
  // Adds the parameter to its method. Throws 16 when the method has one of that name, 15
  // when the method is gone.
  virtual void AddToMethod(TOptions options) = 0;                  // 8
  virtual const std::string& GetName(TOptions options) const = 0;  // 9
  // Returns the method, empty when it is gone.
  virtual boost::shared_ptr<ICIMMethodDecl> GetMethod(TOptions options) const = 0;  // 10
  virtual TCIMValue::TCIMType GetType(TOptions options) const = 0;                  // 11
  virtual bool IsArray(TOptions options) const = 0;                                 // 12
  // By case-folded name alone. Throws 25 when a name is no CIM name.
  virtual bool operator==(const ICIMParameterDecl& other) const = 0;  // 13
  virtual bool operator<(const ICIMParameterDecl& other) const = 0;   // 14
  // Returns itself, copies nothing.
  virtual ICIMParameterDecl& operator=(const ICIMParameterDecl& other) = 0;  // 15
};

}  // namespace NORVHAV20
