// The host's own small classes that the plug-in exports along with its own: their members are
// inline, and including them here is what puts them into the library.

#include "havcore/INamespaceConsumer.h"
#include "havcore/THAVStatusCode.h"
