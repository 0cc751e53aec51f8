// ForeignInstance: an instance that is not the plug-in's own: a host's wrapper around one of
// its instances. It shows what that instance shows, and tells when it is gone.
//
// Ownership: shares the instance behind it.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <utility>

#include "support/Repository.h"

namespace havtest {

class ForeignInstance : public ICIMInstance {
 public:
  explicit ForeignInstance(InstancePtr behind, std::function<void()> whenGone = {})
      : m_behind(std::move(behind)), m_whenGone(std::move(whenGone)) {}
  ~ForeignInstance() override {
    if (m_whenGone) m_whenGone();
  }

  void Validate(TOptions o) const override { m_behind->Validate(o); }
  void AddToNamespace(TOptions o) override { m_behind->AddToNamespace(o); }
  void ModifyInstance(InstancePtr instance, TOptions o) override {
    m_behind->ModifyInstance(instance, o);
  }
  void Delete(TOptions o) override { m_behind->Delete(o); }
  TCIMReference GetReference(TOptions o) const override { return m_behind->GetReference(o); }
  TCIMReference GetInstanceReference(TOptions o) override {
    return m_behind->GetInstanceReference(o);
  }
  ClassPtr GetClass(TOptions o) const override { return m_behind->GetClass(o); }
  std::string GetPegasusNSPStr() const override { return m_behind->GetPegasusNSPStr(); }
  void EnumerateAssociatedInstances(const TEnumCallback<ICIMInstance>& callback,
                                    const std::string& associationClass,
                                    const std::string& resultClass, const std::string& role,
                                    const std::string& resultRole, TOptions o) override {
    m_behind->EnumerateAssociatedInstances(callback, associationClass, resultClass, role,
                                           resultRole, o);
  }
  void EnumerateAssociationInstances(const TEnumCallback<ICIMInstance>& callback,
                                     const std::string& resultClass, const std::string& role,
                                     TOptions o) override {
    m_behind->EnumerateAssociationInstances(callback, resultClass, role, o);
  }
  PropertyPtr GetProperty(const std::string& name, TOptions o) const override {
    return m_behind->GetProperty(name, o);
  }
  void SetPropertyValue(const std::string& name, const TCIMValue& value, TOptions o) override {
    m_behind->SetPropertyValue(name, value, o);
  }
  void EnumerateProperties(const boost::function<bool(PropertyPtr)>& callback,
                           TOptions o) override {
    m_behind->EnumerateProperties(callback, o);
  }
  TCIMValue InvokeMethod(const std::string& method, std::map<std::string, TCIMValue>& parameters,
                         TOptions o) override {
    return m_behind->InvokeMethod(method, parameters, o);
  }
  bool operator==(ICIMInstance& other) const override { return *m_behind == other; }
  bool operator<(ICIMInstance& other) const override { return *m_behind < other; }
  ICIMInstance& operator=(const ICIMInstance&) override { return *this; }

 private:
  InstancePtr m_behind;
  std::function<void()> m_whenGone;
};

}  // namespace havtest
