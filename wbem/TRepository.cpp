#include "wbem/TRepository.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

#include "havcore/client/FoldedName.h"
#include "wbem/TCimError.h"

namespace hav::wbem {

using namespace client;
using namespace NORVHAV20;

namespace {

struct TOperation {
  std::string_view name;
  TAnswer (*run)(TCall& call);
  bool changes;
};

constexpr TOperation kOperations[] = {
    {"GetClass", GetClass, false},
    {"EnumerateClasses", EnumerateClasses, false},
    {"EnumerateClassNames", EnumerateClassNames, false},
    {"CreateClass", CreateClass, true},
    {"ModifyClass", ModifyClass, true},
    {"DeleteClass", DeleteClass, true},
    {"GetInstance", GetInstance, false},
    {"EnumerateInstances", EnumerateInstances, false},
    {"EnumerateInstanceNames", EnumerateInstanceNames, false},
    {"CreateInstance", CreateInstance, true},
    {"ModifyInstance", ModifyInstance, true},
    {"DeleteInstance", DeleteInstance, true},
    {"GetProperty", GetProperty, false},
    {"SetProperty", SetProperty, true},
    {"Associators", Associators, false},
    {"AssociatorNames", AssociatorNames, false},
    {"References", References, false},
    {"ReferenceNames", ReferenceNames, false},
    {"GetQualifier", GetQualifier, false},
    {"EnumerateQualifiers", EnumerateQualifiers, false},
    {"SetQualifier", SetQualifier, true},
    {"DeleteQualifier", DeleteQualifier, true},
    {"OpenEnumerateInstances", OpenEnumerateInstances, false},
    {"OpenEnumerateInstancePaths", OpenEnumerateInstancePaths, false},
    {"OpenAssociatorInstances", OpenAssociatorInstances, false},
    {"OpenAssociatorInstancePaths", OpenAssociatorInstancePaths, false},
    {"OpenReferenceInstances", OpenReferenceInstances, false},
    {"OpenReferenceInstancePaths", OpenReferenceInstancePaths, false},
    {"PullInstancesWithPath", PullInstancesWithPath, false},
    {"PullInstancePaths", PullInstancePaths, false},
    {"CloseEnumeration", CloseEnumeration, false},
    {"EnumerationCount", EnumerationCount, false},
};

const TOperation& FindOperation(const std::string& name) {
  const auto* const found =
      std::find_if(std::begin(kOperations), std::end(kOperations),
                   [&](const TOperation& operation) { return SameName(operation.name, name); });
  if (found == std::end(kOperations))
    throw TCimError(ECimStatus::kNotSupported, "the operation '" + name + "' is not offered");
  return *found;
}

}  // namespace

void TRepository::Add(const std::string& name, TNamespacePtr home, bool writable) {
  m_namespaces.push_back({name, std::move(home), writable});
}

TAnswer TRepository::Execute(TRequest request) {
  const auto* const operation = request.isMethodCall ? nullptr : &FindOperation(request.name);
  const auto& target = Find(request.namespaceName);
  if (operation && operation->changes && !target.writable)
    throw TCimError(ECimStatus::kAccessDenied,
                    "the namespace " + target.name + " is served for reading only");
  try {
    TCall call{target.home, target.name, {}, m_enumerations};
    if (!operation) RefuseMethod(call, request);
    call.parameters = TParameters(std::move(request.parameters));
    return operation->run(call);
  } catch (const THAVException& failure) {
    throw TCimError(failure);
  }
}

const TRepository::TNamespace& TRepository::Find(const std::string& name) const {
  const auto found = std::find_if(m_namespaces.begin(), m_namespaces.end(),
                                  [&](const TNamespace& one) { return SameName(one.name, name); });
  if (found == m_namespaces.end())
    throw TCimError(ECimStatus::kInvalidNamespace, "there is no namespace '" + name + "'");
  return *found;
}

// Classes describe methods; nothing runs them.
void TRepository::RefuseMethod(TCall& call, const TRequest& request) const {
  TClassPtr cls;
  if (const auto* const path = request.object.Child("INSTANCENAME"))
    cls = RequireInstance(call, *path)->GetClass({});
  else if (const auto* const name = request.object.Child("CLASSNAME"))
    cls = RequireClass(call, Required(*name, "NAME"), ECimStatus::kInvalidClass);
  else
    throw TCimError(ECimStatus::kInvalidParameter, "the call names no object");
  try {
    cls->GetMethodDecl(request.name, {});
  } catch (const THAVException&) {
    throw TCimError(ECimStatus::kMethodNotFound,
                    "class " + cls->GetName({}) + " has no method '" + request.name + "'");
  }
  throw TCimError(ECimStatus::kMethodNotAvailable, "no method is run here");
}

}  // namespace hav::wbem
