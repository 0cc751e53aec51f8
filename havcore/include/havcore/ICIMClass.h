// ICIMClass: one class of a namespace, with its declarations and its instances.
//
// Ownership: shared by its namespace and by its instances; owns its declarations and its
//            instance store; namespace and superclass are weak links.
// Threads:   one thread at a time per namespace.
// Errors:    THAVException; the status with each operation, and 25 for a name that is no
//            CIM name.
// Names:     ignore case in every look-up; IsA, == and < compare them as they are spelt.
#pragma once

#include <map>
#include <string>

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

#include "havcore/Export.h"
#include "havcore/ICIMElement.h"
#include "havcore/ICIMNamedElement.h"
#include "havcore/TOptions.h"

namespace NORVHAV20 {

class ICIMInstance;
class ICIMMethodDecl;
class ICIMNamespace;
class ICIMPropertyDecl;

class HAV_TYPE ICIMClass : public ICIMElement,        // slots 0 and 1
                           public ICIMNamedElement {  // a table of its own
 public:
  // Registers the class; it completes, or leaves everything as it was. Throws 16 when the
  // name is taken (and redefinition not allowed) or the class would be its own ancestor, 15
  // when the namespace is gone.
  virtual void AddToNamespace(TOptions options) = 0;  // 2
  // Unregisters the class. Throws 17 when it is not registered, has subclasses, or an
  // association refers to it.
  virtual void Delete(TOptions options) = 0;                                                    // 3
  virtual void ModifyInstance(boost::shared_ptr<ICIMInstance> instance, TOptions options) = 0;  // 4
  virtual const std::string& GetName(TOptions options) const = 0;                               // 5
  // Returns the namespace, empty when it is gone.
  virtual boost::shared_ptr<ICIMNamespace> GetNamespace(TOptions options) const = 0;  // 6
  virtual bool IsAssociation(TOptions options) const = 0;                             // 7
  virtual bool IsAbstract(TOptions options) const = 0;                                // 8
  virtual bool IsIndication(TOptions options) const = 0;                              // 9
  // Returns the superclass, empty when there is none or it is gone.
  virtual boost::shared_ptr<ICIMClass> GetSuperClass(TOptions options) const = 0;  // 10
  // Visits the direct subclasses in the order of their registration.
  virtual void EnumerateSubclasses(const TEnumCallback<ICIMClass>& callback,
                                   TOptions options) const = 0;  // 11
  // True when this class, or one of its ancestors, has the name of `other`.
  virtual bool IsA(boost::shared_ptr<ICIMClass> other, TOptions options) const = 0;  // 12
  // Visits the classes at the other end of this class's associations, each once. Empty
  // filters match everything; an unknown class name finds nothing.
  virtual void EnumerateAssociatedClasses(const TEnumCallback<ICIMClass>& callback,
                                          const std::string& associationClass,
                                          const std::string& resultClass, const std::string& role,
                                          const std::string& resultRole,
                                          TOptions options) const = 0;  // 13
  // Visits the association classes that refer to this class or an ancestor, each once: those
  // that are or derive from `resultClass`, and refer to it by `role`.
  virtual void EnumerateAssociationClasses(const TEnumCallback<ICIMClass>& callback,
                                           const std::string& resultClass, const std::string& role,
                                           TOptions options) const = 0;  // 14
  // Visits the names of the key properties in case-folded order. Lets the callback's
  // exceptions through.
  virtual void EnumerateKeyNames(const boost::function<bool(const std::string*)>& callback,
                                 TOptions options) const = 0;  // 15
  // Makes a declaration of this class. It is not in the class before its own AddToClass.
  virtual boost::shared_ptr<ICIMPropertyDecl> AllocatePropertyDecl(const std::string& name,
                                                                   const TCIMValue& defaultValue,
                                                                   TOptions options) = 0;  // 16
  // Returns the declaration, own or inherited. Throws 15 when there is none.
  virtual boost::shared_ptr<ICIMPropertyDecl> GetPropertyDecl(const std::string& name,
                                                              TOptions options) const = 0;  // 17
  // Visits own and inherited declarations in the order of their case-folded names.
  virtual void EnumeratePropertyDecls(const TEnumCallback<ICIMPropertyDecl>& callback,
                                      TOptions options) const = 0;  // 18
  // Makes the declaration of a reference to `referenced`; as AllocatePropertyDecl.
  virtual boost::shared_ptr<ICIMPropertyDecl> AllocateReferenceDecl(
      const std::string& name, boost::shared_ptr<ICIMClass> referenced,
      TOptions options) = 0;  // 19
  // Look-up and walk among the declarations of type reference. Absent: 15.
  virtual boost::shared_ptr<ICIMPropertyDecl> GetReferenceDecl(const std::string& name,
                                                               TOptions options) const = 0;  // 20
  virtual void EnumerateReferenceDecls(const TEnumCallback<ICIMPropertyDecl>& callback,
                                       TOptions options) const = 0;  // 21
  // Makes an instance. It is not in the namespace before its own AddToNamespace.
  virtual boost::shared_ptr<ICIMInstance> AllocateInstance(TOptions options) = 0;  // 22
  // Visits the instances in the order of their paths; `deep`: then those of each subclass.
  virtual void EnumerateInstances(const TEnumCallback<ICIMInstance>& callback, bool deep,
                                  TOptions options) = 0;  // 23
  // Makes a declaration of this class. It is not in the class before its own AddToClass.
  virtual boost::shared_ptr<ICIMMethodDecl> AllocateMethodDecl(const std::string& name,
                                                               TCIMValue::TCIMType returnType,
                                                               TOptions options) = 0;  // 24
  // Returns the declaration, own or inherited. Throws 15 when there is none.
  virtual boost::shared_ptr<ICIMMethodDecl> GetMethodDecl(const std::string& name,
                                                          TOptions options) const = 0;  // 25
  // Visits own and inherited declarations in the order of their case-folded names.
  virtual void EnumerateMethodDecls(const TEnumCallback<ICIMMethodDecl>& callback,
                                    TOptions options) const = 0;  // 26
  // Runs nothing and returns NULL.
  virtual TCIMValue InvokeMethod(const std::string& method,
                                 std::map<std::string, TCIMValue>& parameters,
                                 TOptions options) = 0;       // 27
  virtual bool operator==(const ICIMClass& other) const = 0;  // 28
  virtual bool operator<(const ICIMClass& other) const = 0;   // 29
  // Returns itself, copies nothing.
  virtual ICIMClass& operator=(const ICIMClass& other) = 0;  // 30
  // A mark for the host's own use; false until it is set.
  virtual bool IsHostMarked(TOptions options) const = 0;  // 31
  virtual void SetHostMarked(TOptions options) = 0;       // 32

  // What classes, declarations and instances of one namespace call on each other. An empty
  // pointer is refused with 15.
  virtual void AddSubclass(boost::shared_ptr<ICIMClass> subclass, TOptions options) = 0;     // 33
  virtual void RemoveSubclass(boost::shared_ptr<ICIMClass> subclass, TOptions options) = 0;  // 34
  // Stores an instance under its path, in place of the one stored there.
  virtual void AddInstance(boost::shared_ptr<ICIMInstance> instance, TOptions options) = 0;  // 35
  virtual void RemoveInstance(boost::shared_ptr<ICIMInstance> instance,
                              TOptions options) = 0;  // 36
  virtual void AddAssociation(boost::shared_ptr<ICIMClass> association,
                              TOptions options) = 0;  // 37
  // Throws 15 when the association is not registered.
  virtual void RemoveAssociation(boost::shared_ptr<ICIMClass> association,
                                 TOptions options) = 0;  // 38
  // Declares under the override rules: most violations by a property are logged and
  // tolerated, those by a method throw. 22: a reference in a class that is no association;
  // 14 and 16: a method of another type, or already defined.
  virtual void AddPropertyDecl(boost::shared_ptr<ICIMPropertyDecl> decl,
                               TOptions options) = 0;  // 39
  // Removes the entry of that name, own or inherited. Throws 15 when there is none.
  virtual void RemovePropertyDecl(boost::shared_ptr<ICIMPropertyDecl> decl,
                                  TOptions options) = 0;                                     // 40
  virtual void AddMethodDecl(boost::shared_ptr<ICIMMethodDecl> decl, TOptions options) = 0;  // 41
  virtual void RemoveMethodDecl(boost::shared_ptr<ICIMMethodDecl> decl,
                                TOptions options) = 0;  // 42
};

}  // namespace NORVHAV20
