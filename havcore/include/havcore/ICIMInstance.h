// ICIMInstance: one instance of a class.
//
// Ownership: shared by its class once it is in the namespace; shares its class.
// Threads:   one thread at a time per namespace.
// Errors:    THAVException; the status with each operation.
#pragma once

#include <map>
#include <string>

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

#include "havcore/Export.h"
#include "havcore/ICIMElement.h"
#include "havcore/TCIMReference.h"
#include "havcore/TOptions.h"

namespace NORVHAV20 {

class ICIMClass;
class ICIMProperty;

class HAV_TYPE ICIMInstance : public ICIMElement {  // slots 0 and 1
 public:
  // Stores the instance in its class. An instance that does not validate is not stored,
  // which is logged and not thrown.
  virtual void AddToNamespace(TOptions options) = 0;                                            // 2
  virtual void ModifyInstance(boost::shared_ptr<ICIMInstance> instance, TOptions options) = 0;  // 3
  // Takes the instance out of its class's store.
  virtual void Delete(TOptions options) = 0;  // 4
  // Returns the object path. Option "ProvNSP": the namespace name to write into it.
  virtual TCIMReference GetReference(TOptions options) const = 0;             // 5
  virtual TCIMReference GetInstanceReference(TOptions options) = 0;           // 6
  virtual boost::shared_ptr<ICIMClass> GetClass(TOptions options) const = 0;  // 7
  virtual std::string GetPegasusNSPStr() const = 0;                           // 8
  // Visits the instances at the other end of this instance's associations.
  virtual void EnumerateAssociatedInstances(const TEnumCallback<ICIMInstance>& callback,
                                            const std::string& associationClass,
                                            const std::string& resultClass, const std::string& role,
                                            const std::string& resultRole,
                                            TOptions options) = 0;  // 9
  // Visits the association instances that refer to this instance.
  virtual void EnumerateAssociationInstances(const TEnumCallback<ICIMInstance>& callback,
                                             const std::string& resultClass,
                                             const std::string& role,
                                             TOptions options) = 0;  // 10
  // Returns the slot of a property (name ignoring case). Throws 15 when there is none and
  // the name is none that every instance answers.
  virtual boost::shared_ptr<ICIMProperty> GetProperty(const std::string& name,
                                                      TOptions options) const = 0;  // 11
  // Throws 15 when there is no such property, 14 for a value of the wrong type.
  virtual void SetPropertyValue(const std::string& name, const TCIMValue& value,
                                TOptions options) = 0;  // 12
  // Visits the slots in the order of their case-folded names.
  virtual void EnumerateProperties(
      const boost::function<bool(boost::shared_ptr<ICIMProperty>)>& callback,
      TOptions options) = 0;  // 13
  virtual TCIMValue InvokeMethod(const std::string& method,
                                 std::map<std::string, TCIMValue>& parameters,
                                 TOptions options) = 0;  // 14
  // By class: instances of one class are equal.
  virtual bool operator==(ICIMInstance& other) const = 0;  // 15
  virtual bool operator<(ICIMInstance& other) const = 0;   // 16
  // Returns itself, copies nothing.
  virtual ICIMInstance& operator=(const ICIMInstance& other) = 0;  // 17
};

}  // namespace NORVHAV20
