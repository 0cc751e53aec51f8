// ICIMNamespace: one namespace: its classes, its qualifier declarations and, through its
// classes, its instances. Names ignore case.
//
// Ownership: belongs to whoever holds it; owns its classes and qualifier declarations.
// Threads:   one thread at a time.
// Errors:    THAVException; the status with each operation, and 25 for a name that is no
//            CIM name.
#pragma once

#include <string>

#include <boost/shared_ptr.hpp>

#include "havcore/Export.h"
#include "havcore/ICIMQualifierDecl.h"
#include "havcore/TCIMReference.h"
#include "havcore/TOptions.h"

namespace NORVHAV20 {

class ICIMClass;
class ICIMIndicationFilter;
class ICIMInstance;
class INamespaceProvider;
class IProvider;

class HAV_TYPE ICIMNamespace {
 public:
  virtual ~ICIMNamespace() = default;  // 0
  virtual boost::shared_ptr<INamespaceProvider> GetNamespaceProvider(
      TOptions options) const = 0;  // 1
  // Accepted and ignored.
  virtual void SetUpcallNamespace(boost::shared_ptr<ICIMNamespace> upcall,
                                  TOptions options) = 0;  // 2
  // Refused: 31.
  virtual void AddUnderlyingNamespace(boost::shared_ptr<ICIMNamespace> underlying,
                                      TOptions options) = 0;  // 3
  // Makes a class that inherits from `superclass` (empty: from "<root>"); it is registered
  // by its own AddToNamespace. The registered class of that name, if there is one, takes up
  // what it inherits afresh and is returned instead.
  virtual boost::shared_ptr<ICIMClass> AllocateClass(const std::string& name,
                                                     boost::shared_ptr<ICIMClass> superclass,
                                                     TOptions options) = 0;  // 4
  // Returns the registered class, or "<root>". Throws 15 when there is none.
  virtual boost::shared_ptr<ICIMClass> GetClass(const std::string& name,
                                                TOptions options) = 0;  // 5
  // Visits the classes directly under "<root>".
  virtual void EnumerateRootClasses(const TEnumCallback<ICIMClass>& callback,
                                    TOptions options) = 0;  // 6
  virtual void EnumerateProviders(const TEnumCallback<IProvider>& callback,
                                  TOptions options) = 0;  // 7
  // Makes and registers a declaration. Throws 16 when the name is taken.
  virtual boost::shared_ptr<ICIMQualifierDecl> AllocateQualifierDecl(
      const std::string& name, const TCIMValue& defaultValue, ICIMQualifierDecl::EScope scope,
      ICIMQualifierDecl::EFlavor flavor, TOptions options) = 0;  // 8
  // Returns the declaration, empty when there is none.
  virtual boost::shared_ptr<ICIMQualifierDecl> GetQualifierDecl(const std::string& name,
                                                                TOptions options) const = 0;  // 9
  // Visits the declarations in the order of their case-folded names.
  virtual void EnumerateQualifierDecls(const TEnumCallback<ICIMQualifierDecl>& callback,
                                       TOptions options) const = 0;  // 10
  // Not supported: 1.
  virtual void Subscribe(boost::shared_ptr<ICIMIndicationFilter> filter,
                         const TEnumCallback<ICIMInstance>& callback, TOptions options) = 0;  // 11
  // Returns the instance of that path, empty when there is none. Throws 15 when the class
  // is unknown.
  virtual boost::shared_ptr<ICIMInstance> GetInstance(const TCIMReference& path,
                                                      TOptions options) const = 0;  // 12
  // Not supported: 1.
  virtual void DeleteInstance(const TCIMReference& path, TOptions options) = 0;  // 13
  virtual void ModifyInstance(const TCIMReference& path, TOptions values,
                              TOptions options) = 0;  // 14
  virtual void ExecuteQuery(const TEnumCallback<ICIMInstance>& callback, std::string& query,
                            const TEnumCallback<ICIMInstance>& changed,
                            TOptions options) = 0;  // 15
  // Empties the instance store of every class.
  virtual void ClearInstances() = 0;  // 16
  // Returns itself, copies nothing.
  virtual ICIMNamespace& operator=(ICIMNamespace& other) = 0;  // 17
};

}  // namespace NORVHAV20
