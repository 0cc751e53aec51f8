// TRepository: the namespaces that are served, and the operations on them.
//
// Ownership: shares the namespaces.
// Threads:   one at a time, that of the namespaces.
// Errors:    TCimError.
#pragma once

#include <string>
#include <vector>

#include "wbem/Operations.h"
#include "wbem/TRequest.h"

namespace hav::wbem {

class TRepository {
 public:
  explicit TRepository(TEnumerations::TClock clock = std::chrono::steady_clock::now)
      : m_enumerations(std::move(clock)) {}

  // Serves `home` under `name`; operations that change something are refused unless
  // `writable`.
  void Add(const std::string& name, TNamespacePtr home, bool writable);

  // Does what the request asks for. Throws, besides what the operation throws, kNotSupported
  // for operations that are not offered, kInvalidNamespace, and kAccessDenied.
  TAnswer Execute(TRequest request);

  // Lets go of enumerations whose time is over.
  void Expire() { m_enumerations.Expire(); }

 private:
  struct TNamespace {
    std::string name;
    TNamespacePtr home;
    bool writable;
  };

  const TNamespace& Find(const std::string& name) const;
  [[noreturn]] void RefuseMethod(TCall& call, const TRequest& request) const;

  std::vector<TNamespace> m_namespaces;
  TEnumerations m_enumerations;
};

}  // namespace hav::wbem
