// The operations on instances.
//
// "LocalOnly" of these operations is deprecated and counts as FALSE: every property is given.
#include <utility>

#include "havcore/client/Enumerate.h"
#include "wbem/Operations.h"
#include "wbem/TCimError.h"
#include "wbem/ValueText.h"

namespace hav::wbem {

using namespace client;
using namespace NORVHAV20;

namespace {

using TValues = std::vector<std::pair<std::string, TCIMValue>>;

[[noreturn]] void Refuse(ECimStatus status, const std::string& what) {
  throw TCimError(status, what);
}

boost::shared_ptr<ICIMPropertyDecl> RequireProperty(const ICIMClass& cls, const std::string& name) {
  try {
    return cls.GetPropertyDecl(name, {});
  } catch (const THAVException& failure) {
    if (failure.GetStatusCode() != kHAVNotFound && failure.GetStatusCode() != kHAVInvalidName)
      throw;
    Refuse(ECimStatus::kNoSuchProperty,
           "class " + cls.GetName({}) + " has no property '" + name + "'");
  }
}

bool IsKey(const ICIMClass& cls, const std::string& name) {
  bool found = false;
  cls.EnumerateKeyNames(
      [&](const std::string* key) {
        found = found || (key && SameName(*key, name));
        return true;
      },
      {});
  return found;
}

// The properties that INSTANCE gives, with values of the types that the class declares.
TValues ReadProperties(TCall& call, const ICIMClass& cls, const TXmlElement& instance) {
  TValues values;
  for (const auto& element : instance.children) {
    if (element.Is("QUALIFIER")) continue;
    if (element.name.rfind("PROPERTY", 0) != 0)
      Refuse(ECimStatus::kInvalidParameter, element.name + " has no place in an instance");
    const auto decl = RequireProperty(cls, Required(element, "NAME"));
    const ECIMType type = decl->GetType({});
    const auto given = ReadType(element);
    if (given != type)
      Refuse(ECimStatus::kTypeMismatch, "property " + decl->GetName({}) + " is of type " +
                                            TypeName(type) + (decl->IsArray({}) ? "[]" : ""));
    values.emplace_back(decl->GetName({}), ReadValue(element, type, call.home));
  }
  return values;
}

const TXmlElement& InstanceElement(const TXmlElement& element) {
  if (!element.Is("INSTANCE"))
    Refuse(ECimStatus::kInvalidParameter, "INSTANCE is expected, not " + element.name);
  return element;
}

// Assigns all of them or none.
void Assign(ICIMInstance& instance, const TValues& values) {
  TValues before;
  try {
    for (const auto& [name, value] : values) {
      before.emplace_back(name, instance.GetProperty(name, {})->GetValue({}));
      instance.SetPropertyValue(name, value, {});
    }
  } catch (...) {
    for (const auto& [name, value] : before) instance.SetPropertyValue(name, value, {});
    throw;
  }
}

void RequireSame(const TCIMReference& path, const ICIMClass& cls, const std::string& key,
                 const TCIMValue& value) {
  for (const auto& [name, known] : path.GetKeyValues())
    if (SameName(name, key) && known == value) return;
  Refuse(ECimStatus::kInvalidParameter,
         "the key " + key + " of class " + cls.GetName({}) + " cannot be changed");
}

// What of the values is to be assigned: those of the list, and the default for those of the
// list that have no value.
TValues Selected(const ICIMClass& cls, TValues values, const std::optional<TNameSet>& list) {
  if (!list) return values;
  TValues selected;
  TNameSet given;
  for (auto& value : values) {
    given.insert(value.first);
    if (list->count(value.first) != 0) selected.push_back(std::move(value));
  }
  for (const auto& name : *list) {
    const auto decl = RequireProperty(cls, name);
    if (given.count(name) == 0 && !IsKey(cls, name))
      selected.emplace_back(decl->GetName({}), decl->GetDefaultValue({}));
  }
  return selected;
}

}  // namespace

TInstancePtr RequireInstance(TCall& call, const TXmlElement& name) {
  const auto path = ReadInstanceName(name, call.home);
  RequireClass(call, path.GetClassName(), ECimStatus::kInvalidClass);
  auto instance = call.home->GetInstance(path, {});
  if (!instance)
    Refuse(ECimStatus::kNotFound,
           "there is no instance " + path.GetPath() + " in namespace " + call.homeName);
  return instance;
}

std::vector<TInstancePtr> InstancesOfClass(TCall& call, TClassPtr& cls) {
  cls =
      RequireClass(call, call.parameters.RequiredClassName("ClassName"), ECimStatus::kInvalidClass);
  return InstancesOf(*cls, true);
}

TDetail InstanceDetail(TCall& call) {
  TDetail detail;
  detail.classOrigin = call.parameters.Flag("IncludeClassOrigin", false);
  detail.properties = call.parameters.PropertyList();
  return detail;
}

void ReadDeepInheritance(TCall& call, const ICIMClass& cls, TDetail& detail) {
  if (call.parameters.Flag("DeepInheritance", true)) return;
  TNameSet shown;
  for (const auto& decl : Collect<ICIMPropertyDecl>(
           [&](const auto& callback) { cls.EnumeratePropertyDecls(callback, {}); }))
    if (detail.Shows(decl->GetName({}))) shown.insert(decl->GetName({}));
  detail.properties = std::move(shown);
}

TAnswer GetInstance(TCall& call) {
  auto detail = InstanceDetail(call);
  call.parameters.Flag("LocalOnly", false);
  detail.qualifiers = call.parameters.Flag("IncludeQualifiers", false);
  const auto& name = call.parameters.Object("InstanceName");
  call.parameters.RequireAllKnown();
  return TAnswer::One([instance = RequireInstance(call, name), detail](TElementWriter& writer) {
    writer.Instance(*instance, detail);
  });
}

TAnswer EnumerateInstances(TCall& call) {
  TClassPtr cls;
  auto detail = InstanceDetail(call);
  call.parameters.Flag("LocalOnly", false);
  detail.qualifiers = call.parameters.Flag("IncludeQualifiers", false);
  auto instances = InstancesOfClass(call, cls);
  ReadDeepInheritance(call, *cls, detail);
  call.parameters.RequireAllKnown();
  return TAnswer::Of(
      ListOf(std::move(instances), [detail](const TInstancePtr& instance, TElementWriter& writer) {
        writer.Xml().Open("VALUE.NAMEDINSTANCE");
        writer.InstanceName(instance->GetReference({}));
        writer.Instance(*instance, detail);
        writer.Xml().Close("VALUE.NAMEDINSTANCE");
      }));
}

TAnswer EnumerateInstanceNames(TCall& call) {
  TClassPtr cls;
  auto instances = InstancesOfClass(call, cls);
  call.parameters.RequireAllKnown();
  return TAnswer::Of(
      ListOf(std::move(instances), [](const TInstancePtr& instance, TElementWriter& writer) {
        writer.InstanceName(instance->GetReference({}));
      }));
}

TAnswer CreateInstance(TCall& call) {
  const auto& element = InstanceElement(call.parameters.Object("NewInstance"));
  call.parameters.RequireAllKnown();
  const auto cls = RequireClass(call, Required(element, "CLASSNAME"), ECimStatus::kInvalidClass);
  if (cls->IsAbstract({}))
    Refuse(ECimStatus::kNotSupported,
           "class " + cls->GetName({}) + " is abstract and has no instances of its own");
  const auto instance = cls->AllocateInstance({});
  for (const auto& [name, value] : ReadProperties(call, *cls, element))
    instance->SetPropertyValue(name, value, {});
  instance->Validate({});
  const auto path = instance->GetReference({});
  if (call.home->GetInstance(path, {}))
    Refuse(ECimStatus::kAlreadyExists, "there is an instance " + path.GetPath() + " already");
  instance->AddToNamespace({});
  return TAnswer::One([path](TElementWriter& writer) { writer.InstanceName(path); });
}

TAnswer ModifyInstance(TCall& call) {
  const auto& element = call.parameters.Object("ModifiedInstance");
  const auto* const name = element.Child("INSTANCENAME");
  const auto* const described = element.Child("INSTANCE");
  if (!element.Is("VALUE.NAMEDINSTANCE") || !name || !described)
    Refuse(ECimStatus::kInvalidParameter, "ModifiedInstance is a VALUE.NAMEDINSTANCE");
  call.parameters.Flag("IncludeQualifiers", true);
  const auto list = call.parameters.PropertyList();
  call.parameters.RequireAllKnown();
  const auto instance = RequireInstance(call, *name);
  const auto cls = instance->GetClass({});
  if (!SameName(described->Get("CLASSNAME"), cls->GetName({})))
    Refuse(ECimStatus::kInvalidParameter, "path and instance are of different classes");
  TValues changes;
  const auto path = instance->GetReference({});
  for (auto& value : Selected(*cls, ReadProperties(call, *cls, *described), list)) {
    if (IsKey(*cls, value.first))
      RequireSame(path, *cls, value.first, value.second);
    else
      changes.push_back(std::move(value));
  }
  Assign(*instance, changes);
  return TAnswer::Nothing();
}

TAnswer DeleteInstance(TCall& call) {
  const auto& name = call.parameters.Object("InstanceName");
  call.parameters.RequireAllKnown();
  RequireInstance(call, name)->Delete({});
  return TAnswer::Nothing();
}

TAnswer GetProperty(TCall& call) {
  const auto name = call.parameters.RequiredText("PropertyName");
  const auto& path = call.parameters.Object("InstanceName");
  call.parameters.RequireAllKnown();
  const auto instance = RequireInstance(call, path);
  RequireProperty(*instance->GetClass({}), name);
  return TAnswer::One([value = instance->GetProperty(name, {})->GetValue({})](
                          TElementWriter& writer) { writer.Value(value); });
}

TAnswer SetProperty(TCall& call) {
  const auto name = call.parameters.RequiredText("PropertyName");
  const auto& path = call.parameters.Object("InstanceName");
  const auto* const given = call.parameters.Find("NewValue");
  call.parameters.RequireAllKnown();
  const auto instance = RequireInstance(call, path);
  const auto cls = instance->GetClass({});
  const ECIMType type = RequireProperty(*cls, name)->GetType({});
  const auto value = given ? ReadValue(*given, type, call.home) : TCIMValue::Null(type);
  if (IsKey(*cls, name))
    RequireSame(instance->GetReference({}), *cls, name, value);
  else
    instance->SetPropertyValue(name, value, {});
  return TAnswer::Nothing();
}

}  // namespace hav::wbem
