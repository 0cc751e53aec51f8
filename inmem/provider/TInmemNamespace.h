// TInmemNamespace: one namespace in memory: its classes, its qualifier declarations and the
// pseudo-class "<root>", above every class that has no other superclass. Instances live in
// their classes.
//
// A copy shares the classes and declarations of the original, and what becomes of them: they
// belong to the copy when the original is gone, and are let go when the last of the copies is.
//
// Ownership: belongs to whoever holds it; owns its classes and declarations.
// Threads:   one thread at a time.
// Errors:    THAVException; the status with each operation of the interface.
#pragma once

#include <map>
#include <string>

#include <boost/enable_shared_from_this.hpp>
#include <boost/shared_ptr.hpp>

#include "havcore/ICIMNamespace.h"
#include "inmem/model/INamespaceRegistry.h"
#include "inmem/model/TClassCensus.h"

namespace NORVHAV20 {
class TInmemNamespace;
}

// The base belongs to what the plug-in exports, HostContractExports.cpp has its members.
// Without this every source would have hidden ones of its own.
#if !defined(_WIN32)
extern template class INMEM_API boost::enable_shared_from_this<NORVHAV20::TInmemNamespace>;
#endif

namespace NORVHAV20 {

class INMEM_API TInmemNamespace final : public ICIMNamespace,
                                        public boost::enable_shared_from_this<TInmemNamespace>,
                                        public INamespaceRegistry {
 public:
  // `redefinitionAllowed`: a class or declaration may be registered under a taken name.
  explicit TInmemNamespace(bool redefinitionAllowed);
  // A copy has no shared pointer to itself before one is made to own it.
  TInmemNamespace(const TInmemNamespace& other);
  TInmemNamespace& operator=(const TInmemNamespace& other);
  ~TInmemNamespace() override;

  // Makes "<root>". To be called once, when a shared pointer owns the namespace.
  void Initialize();

  // Returns `name` folded to lower case. Throws 25, logged, when it is no CIM name: '_' or an
  // ASCII letter first, then '_', letters and digits; the empty name is one.
  static std::string NormalizeName(const std::string& name);

  boost::shared_ptr<INamespaceProvider> GetNamespaceProvider(TOptions options) const override;
  void SetUpcallNamespace(boost::shared_ptr<ICIMNamespace> upcall, TOptions options) override;
  void AddUnderlyingNamespace(boost::shared_ptr<ICIMNamespace> underlying,
                              TOptions options) override;
  boost::shared_ptr<ICIMClass> AllocateClass(const std::string& name,
                                             boost::shared_ptr<ICIMClass> superclass,
                                             TOptions options) override;
  boost::shared_ptr<ICIMClass> GetClass(const std::string& name, TOptions options) override;
  void EnumerateRootClasses(const TEnumCallback<ICIMClass>& callback, TOptions options) override;
  void EnumerateProviders(const TEnumCallback<IProvider>& callback, TOptions options) override;
  boost::shared_ptr<ICIMQualifierDecl> AllocateQualifierDecl(const std::string& name,
                                                             const TCIMValue& defaultValue,
                                                             ICIMQualifierDecl::EScope scope,
                                                             ICIMQualifierDecl::EFlavor flavor,
                                                             TOptions options) override;
  boost::shared_ptr<ICIMQualifierDecl> GetQualifierDecl(const std::string& name,
                                                        TOptions options) const override;
  void EnumerateQualifierDecls(const TEnumCallback<ICIMQualifierDecl>& callback,
                               TOptions options) const override;
  void Subscribe(boost::shared_ptr<ICIMIndicationFilter> filter,
                 const TEnumCallback<ICIMInstance>& callback, TOptions options) override;
  boost::shared_ptr<ICIMInstance> GetInstance(const TCIMReference& path,
                                              TOptions options) const override;
  void DeleteInstance(const TCIMReference& path, TOptions options) override;
  void ModifyInstance(const TCIMReference& path, TOptions values, TOptions options) override;
  void ExecuteQuery(const TEnumCallback<ICIMInstance>& callback, std::string& query,
                    const TEnumCallback<ICIMInstance>& changed, TOptions options) override;
  void ClearInstances() override;
  ICIMNamespace& operator=(ICIMNamespace& other) override;

 private:
  using TQualifierDecls =
      std::map<std::string, boost::shared_ptr<TInmemQualifierDecl>, std::less<>>;
  using TClassesByName = std::map<std::string, boost::shared_ptr<TInmemClass>, std::less<>>;

  TAdmission AdmitClass(const boost::shared_ptr<TInmemClass>& cls) const override;
  void AddClass(boost::shared_ptr<TInmemClass> cls) override;
  void RemoveClass(boost::shared_ptr<TInmemClass> cls) override;
  void AddQualifierDecl(boost::shared_ptr<TInmemQualifierDecl> decl) override;
  boost::shared_ptr<ICIMNamespace> AsNamespace() override;
  boost::shared_ptr<INamespaceRegistry> Registry() override;

  boost::shared_ptr<TInmemClass> FindClass(const std::string& name) const;

  TQualifierDecls m_qualifierDecls;
  TClassesByName m_classes;
  // The class found last, a place in the table: usually it is asked for again.
  mutable const boost::shared_ptr<TInmemClass>* m_lastFound = nullptr;
  boost::shared_ptr<TInmemClass> m_root;
  bool m_redefinitionAllowed;
  boost::shared_ptr<TClassCensus> m_census;
};

}  // namespace NORVHAV20
