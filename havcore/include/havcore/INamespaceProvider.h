// INamespaceProvider: a plug-in that stores namespaces.
//
// Ownership: shared with the provider manager; the namespaces belong to those who hold them.
// Threads:   one thread at a time.
#pragma once

#include <string>

#include <boost/shared_ptr.hpp>

#include "havcore/Export.h"
#include "havcore/TOptions.h"

namespace NORVHAV20 {

class ICIMNamespace;

class HAV_TYPE INamespaceProvider {
 public:
  // What backs the provider's namespaces.
  enum EType : std::uint32_t { kForwarding = 0, kPersistent = 1, kInMemory = 2 };

  virtual ~INamespaceProvider() = default;                         // 0
  virtual const std::string& GetName(TOptions options) const = 0;  // 1
  // Returns a new namespace. `redefinitionAllowed`: a class or qualifier declaration may be
  // registered again under a taken name and then replaces the one that stands there.
  virtual boost::shared_ptr<ICIMNamespace> AllocateNamespace(TOptions options,
                                                             bool redefinitionAllowed,
                                                             std::string name) const = 0;  // 2
  virtual EType GetType(TOptions options) const = 0;                                       // 3
  virtual bool IsIndicationsSupported(TOptions options) const = 0;                         // 4
};

}  // namespace NORVHAV20
