// The operations on classes.
#include "havcore/client/Enumerate.h"
#include "wbem/ClassBuilder.h"
#include "wbem/Operations.h"
#include "wbem/TCimError.h"

namespace hav::wbem {

using namespace client;
using namespace NORVHAV20;

namespace {

TDetail ClassDetail(TCall& call) {
  TDetail detail;
  detail.localOnly = call.parameters.Flag("LocalOnly", true);
  detail.qualifiers = call.parameters.Flag("IncludeQualifiers", true);
  detail.classOrigin = call.parameters.Flag("IncludeClassOrigin", false);
  return detail;
}

// The classes below "ClassName", or all: each before its subclasses.
std::vector<TClassPtr> ClassesBelow(TCall& call) {
  const auto name = call.parameters.ClassName("ClassName");
  const bool deep = call.parameters.Flag("DeepInheritance", false);
  auto pending = name.empty() ? Collect<ICIMClass>([&](const auto& callback) {
    call.home->EnumerateRootClasses(callback, {});
  })
                              : SubclassesOf(*RequireClass(call, name, ECimStatus::kInvalidClass));
  if (!deep) return pending;
  std::vector<TClassPtr> classes;
  std::reverse(pending.begin(), pending.end());
  while (!pending.empty()) {
    classes.push_back(std::move(pending.back()));
    pending.pop_back();
    const auto subclasses = SubclassesOf(*classes.back());
    pending.insert(pending.end(), subclasses.rbegin(), subclasses.rend());
  }
  return classes;
}

void RequireUnused(ICIMClass& cls) {
  if (!SubclassesOf(cls).empty())
    throw TCimError(ECimStatus::kClassHasChildren, "class " + cls.GetName({}) + " has subclasses");
  if (!InstancesOf(cls, false).empty())
    throw TCimError(ECimStatus::kClassHasInstances, "class " + cls.GetName({}) + " has instances");
}

// A class that was deleted keeps its name from being used again.
void RequireUnusedName(TCall& call, const std::string& name) {
  try {
    if (!call.home->GetClass(name, {})) return;
  } catch (const THAVException& failure) {
    if (failure.GetStatusCode() == kHAVNotFound) return;
    throw;
  }
  throw TCimError(ECimStatus::kFailed,
                  "the name '" + name + "' belonged to a class that was deleted");
}

const TXmlElement& ClassElement(TCall& call, std::string_view parameter) {
  const auto& element = call.parameters.Object(parameter);
  if (!element.Is("CLASS"))
    throw TCimError(ECimStatus::kInvalidParameter, "CLASS is expected, not " + element.name);
  call.parameters.RequireAllKnown();
  return element;
}

}  // namespace

TClassPtr RequireClass(TCall& call, const std::string& name, ECimStatus absent) {
  auto cls = FindClass(*call.home, name);
  if (!cls)
    throw TCimError(absent, "there is no class '" + name + "' in namespace " + call.homeName);
  return cls;
}

TAnswer GetClass(TCall& call) {
  const auto name = call.parameters.RequiredClassName("ClassName");
  auto detail = ClassDetail(call);
  detail.properties = call.parameters.PropertyList();
  call.parameters.RequireAllKnown();
  return TAnswer::One([cls = RequireClass(call, name, ECimStatus::kNotFound),
                       detail](TElementWriter& writer) { writer.Class(*cls, detail); });
}

TAnswer EnumerateClasses(TCall& call) {
  const auto detail = ClassDetail(call);
  auto classes = ClassesBelow(call);
  call.parameters.RequireAllKnown();
  return TAnswer::Of(ListOf(
      std::move(classes),
      [detail](const TClassPtr& cls, TElementWriter& writer) { writer.Class(*cls, detail); }));
}

TAnswer EnumerateClassNames(TCall& call) {
  auto classes = ClassesBelow(call);
  call.parameters.RequireAllKnown();
  return TAnswer::Of(ListOf(std::move(classes), [](const TClassPtr& cls, TElementWriter& writer) {
    writer.ClassName(cls->GetName({}));
  }));
}

TAnswer CreateClass(TCall& call) {
  const auto& element = ClassElement(call, "NewClass");
  const auto& name = Required(element, "NAME");
  if (FindClass(*call.home, name))
    throw TCimError(ECimStatus::kAlreadyExists, "there is a class '" + name + "' already");
  RequireUnusedName(call, name);
  BuildClass(call.home, element)->AddToNamespace({});
  return TAnswer::Nothing();
}

// A registered name answers with the object that stands there, so that there is no way to make
// another in its place.
TAnswer ModifyClass(TCall& call) {
  const auto& element = ClassElement(call, "ModifiedClass");
  const auto cls = RequireClass(call, Required(element, "NAME"), ECimStatus::kNotFound);
  throw TCimError(ECimStatus::kNotSupported,
                  "class " + cls->GetName({}) + " stays as it is: classes are not modified here");
}

TAnswer DeleteClass(TCall& call) {
  const auto name = call.parameters.RequiredClassName("ClassName");
  call.parameters.RequireAllKnown();
  const auto cls = RequireClass(call, name, ECimStatus::kNotFound);
  RequireUnused(*cls);
  cls->Delete({});
  // The namespace goes on answering to the name.
  cls->SetHostMarked({});
  return TAnswer::Nothing();
}

}  // namespace hav::wbem
