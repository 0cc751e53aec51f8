// Interop: the namespace by which clients find the others, with the classes CIM_ObjectManager,
// CIM_Namespace and CIM_NamespaceInManager and what there is of them.
#pragma once

#include <string>
#include <vector>

#include "havcore/INamespaceProvider.h"
#include "wbem/ElementReader.h"

namespace hav::wbem {

// The names under which clients look for it; the first is its own.
inline constexpr const char* kInteropNames[] = {"root/interop", "interop"};

struct TManager {
  std::string systemName;
  std::string name;     // of the object manager
  std::string version;  // of the program
};

// `names`: the namespaces that are served, without itself.
TNamespacePtr MakeInterop(const NORVHAV20::INamespaceProvider& provider, const TManager& manager,
                          const std::vector<std::string>& names);

}  // namespace hav::wbem
