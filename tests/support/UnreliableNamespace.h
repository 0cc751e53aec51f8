// UnreliableNamespace: a host's own namespace in front of another one. It passes look-ups on
// until it is told to fail; everything else of a namespace it refuses.
//
// Ownership: shares the namespace behind it.
#pragma once

#include <functional>
#include <string>

#include "support/Repository.h"

namespace havtest {

class UnreliableNamespace : public ICIMNamespace {
 public:
  explicit UnreliableNamespace(NamespacePtr behind) : m_behind(std::move(behind)) {}

  // From now on every look-up throws `failure`.
  template <class Failure>
  void FailWith(Failure failure) {
    m_fail = [failure] { throw failure; };
  }
  void FailWithStatus(unsigned status) {
    FailWith(THAVException(static_cast<EHAVStatusCode>(status)));
  }

  ClassPtr GetClass(const std::string& name, TOptions options) override {
    MaybeFail();
    return m_behind->GetClass(name, options);
  }
  InstancePtr GetInstance(const TCIMReference& path, TOptions options) const override {
    MaybeFail();
    return m_behind->GetInstance(path, options);
  }

  boost::shared_ptr<INamespaceProvider> GetNamespaceProvider(TOptions) const override { Refuse(); }
  void SetUpcallNamespace(NamespacePtr, TOptions) override { Refuse(); }
  void AddUnderlyingNamespace(NamespacePtr, TOptions) override { Refuse(); }
  ClassPtr AllocateClass(const std::string&, ClassPtr, TOptions) override { Refuse(); }
  void EnumerateRootClasses(const TEnumCallback<ICIMClass>&, TOptions) override { Refuse(); }
  void EnumerateProviders(const TEnumCallback<IProvider>&, TOptions) override { Refuse(); }
  QualifierDeclPtr AllocateQualifierDecl(const std::string&, const TCIMValue&,
                                         ICIMQualifierDecl::EScope, ICIMQualifierDecl::EFlavor,
                                         TOptions) override {
    Refuse();
  }
  QualifierDeclPtr GetQualifierDecl(const std::string&, TOptions) const override { Refuse(); }
  void EnumerateQualifierDecls(const TEnumCallback<ICIMQualifierDecl>&, TOptions) const override {
    Refuse();
  }
  void Subscribe(boost::shared_ptr<ICIMIndicationFilter>, const TEnumCallback<ICIMInstance>&,
                 TOptions) override {
    Refuse();
  }
  void DeleteInstance(const TCIMReference&, TOptions) override { Refuse(); }
  void ModifyInstance(const TCIMReference&, TOptions, TOptions) override { Refuse(); }
  void ExecuteQuery(const TEnumCallback<ICIMInstance>&, std::string&,
                    const TEnumCallback<ICIMInstance>&, TOptions) override {
    Refuse();
  }
  void ClearInstances() override { Refuse(); }
  ICIMNamespace& operator=(ICIMNamespace&) override { return *this; }

 private:
  [[noreturn]] static void Refuse() { throw THAVException(kHAVNotSupported); }
  void MaybeFail() const {
    if (m_fail) m_fail();
  }

  NamespacePtr m_behind;
  std::function<void()> m_fail;
};

}  // namespace havtest
