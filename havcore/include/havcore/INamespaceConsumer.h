// INamespaceConsumer: one who wants to hear of namespaces coming and going. The host
// implements it; the plug-in only exports it.
#pragma once

#include <string>

#include <boost/shared_ptr.hpp>

#include "havcore/Export.h"
#include "havcore/TOptions.h"

namespace NORVHAV20 {

class ICIMNamespace;

class HAV_TYPE INamespaceConsumer {
 public:
  INMEM_INLINE_API INamespaceConsumer() {}
  INMEM_INLINE_API INamespaceConsumer(const INamespaceConsumer&) {}
  INMEM_INLINE_API INamespaceConsumer& operator=(const INamespaceConsumer&) { return *this; }

  INMEM_INLINE_API virtual ~INamespaceConsumer() {}                // 0
  virtual const std::string& GetName(TOptions options) const = 0;  // 1
  virtual void OnNamespaceAdded(boost::shared_ptr<ICIMNamespace> added,
                                TOptions options) = 0;  // 2
  virtual void OnNamespaceRemoved(boost::shared_ptr<ICIMNamespace> removed,
                                  TOptions options) = 0;  // 3
};

}  // namespace NORVHAV20
