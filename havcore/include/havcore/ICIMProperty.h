// ICIMProperty: the value slot of one property of one instance: a value, a previous value,
// and their text for people.
//
// Ownership: shared by its instance; the declaration is held weakly.
// Threads:   one thread at a time per namespace.
// Errors:    THAVException: 14 for a value of the wrong type, 15 from every operation that
//            needs the declaration when it is gone.
#pragma once

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "havcore/Export.h"
#include "havcore/TOptions.h"

namespace NORVHAV20 {

class ICIMPropertyDecl;

class HAV_TYPE ICIMProperty {
 public:
  virtual ~ICIMProperty() = default;                                // 0
  virtual TCIMValue::TCIMType GetType(TOptions options) const = 0;  // 1
  virtual bool IsArray(TOptions options) const = 0;                 // 2
  // True while no value has been assigned.
  virtual bool IsValueDefault(TOptions options) const = 0;  // 3
  // Returns the assigned value, or the declaration's default. Good until the slot is
  // assigned to or destroyed, or the declaration's default is replaced.
  virtual const TCIMValue& GetValue(TOptions options) const = 0;  // 4
  // Assigns a value of exactly the declared type, NULL included; any other throws 14.
  virtual void SetValue(const TCIMValue& value, TOptions options) = 0;  // 5
  virtual bool IsValueUnassigned(TOptions options) const = 0;           // 6
  // Returns the declaration, empty when it is gone.
  virtual boost::shared_ptr<ICIMPropertyDecl> GetDecl(TOptions options) const = 0;  // 7
  // Same declaration object and same value; ordered by declaration, then value.
  virtual bool operator==(const ICIMProperty& other) const = 0;  // 8
  virtual bool operator<(const ICIMProperty& other) const = 0;   // 9
  // Returns itself, copies nothing.
  virtual ICIMProperty& operator=(const ICIMProperty& other) = 0;  // 10
  // Returns the previous value; without one, GetValue.
  virtual const TCIMValue& GetPrevValue(TOptions options) const = 0;  // 11
  // Makes the previous value NULL.
  virtual void ClearPrevValue(TOptions options) = 0;  // 12
  // Assigns a NULL of any type, or a value of the declared type whose class, for a
  // reference, is or derives from the declared one; any other throws 14.
  virtual void SetPrevValue(const TCIMValue& value, TOptions options) = 0;  // 13
  virtual bool HasPrevValue(TOptions options) const = 0;                    // 14
  // The value, the previous value, and each element of an array value, for people.
  virtual std::string GetDisplayValue(TOptions options) const = 0;                // 15
  virtual std::string GetPrevDisplayValue(TOptions options) const = 0;            // 16
  virtual std::vector<std::string> GetDisplayValues(TOptions options) const = 0;  // 17
};

}  // namespace NORVHAV20
