// What the plug-in exports along with its own classes: the host's own small classes, whose
// members are inline, and the base that makes a namespace hand out pointers to itself.
// Compiling them here is what puts them into the library.

#include <boost/enable_shared_from_this.hpp>

#include "havcore/INamespaceConsumer.h"
#include "havcore/THAVStatusCode.h"
#include "inmem/provider/TInmemNamespace.h"

// MSVC exports the bases of an exported class by itself. Each member stands for itself,
// because MinGW exports no class template as a whole.
#if !defined(_MSC_VER)
namespace boost {

using NORVHAV20::TInmemNamespace;  // NOLINT(misc-unused-using-decls): used below

template INMEM_API enable_shared_from_this<TInmemNamespace>::enable_shared_from_this();
template INMEM_API enable_shared_from_this<TInmemNamespace>::enable_shared_from_this(
    const enable_shared_from_this<TInmemNamespace>&);
template INMEM_API enable_shared_from_this<TInmemNamespace>& enable_shared_from_this<
    TInmemNamespace>::operator=(const enable_shared_from_this<TInmemNamespace>&);
template INMEM_API enable_shared_from_this<TInmemNamespace>::~enable_shared_from_this();
template INMEM_API shared_ptr<TInmemNamespace>
enable_shared_from_this<TInmemNamespace>::shared_from_this();
template INMEM_API shared_ptr<const TInmemNamespace>
enable_shared_from_this<TInmemNamespace>::shared_from_this() const;
template INMEM_API weak_ptr<TInmemNamespace>
enable_shared_from_this<TInmemNamespace>::weak_from_this();
template INMEM_API weak_ptr<const TInmemNamespace>
enable_shared_from_this<TInmemNamespace>::weak_from_this() const;

}  // namespace boost
#endif
