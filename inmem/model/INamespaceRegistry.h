// INamespaceRegistry: what a namespace is to its own classes and declarations: the place
// where names are taken.
//
// Ownership: classes and declarations hold it weakly.
// Errors:    THAVException; the status with each operation.
#pragma once

#include <boost/shared_ptr.hpp>

namespace NORVHAV20 {

class ICIMNamespace;
class TInmemClass;
class TInmemQualifierDecl;

class INamespaceRegistry {
 public:
  // What becomes of a class that wants its name.
  struct TAdmission {
    // False when the class that has the name keeps it, which is no error.
    bool admitted;
    // The class that `admitted` one displaces, if any.
    boost::shared_ptr<TInmemClass> displaced;
  };

  // Asks whether `cls` may have its name, and changes nothing. Throws 16, logged, when the
  // name is taken for good, and 25 when it is no CIM name.
  virtual TAdmission AdmitClass(const boost::shared_ptr<TInmemClass>& cls) const = 0;
  // Enters an admitted class; on failure nothing has changed.
  virtual void AddClass(boost::shared_ptr<TInmemClass> cls) = 0;
  virtual void RemoveClass(boost::shared_ptr<TInmemClass> cls) = 0;
  // Enters a declaration. Throws as AdmitClass does.
  virtual void AddQualifierDecl(boost::shared_ptr<TInmemQualifierDecl> decl) = 0;
  virtual boost::shared_ptr<ICIMNamespace> AsNamespace() = 0;
  // Returns the namespace itself, empty when no shared pointer owns it.
  virtual boost::shared_ptr<INamespaceRegistry> Registry() = 0;

 protected:
  ~INamespaceRegistry() = default;
};

}  // namespace NORVHAV20
