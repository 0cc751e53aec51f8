// The operations that follow associations, from an instance or from a class.
#include "havcore/client/Associations.h"
#include "wbem/Operations.h"
#include "wbem/TCimError.h"

namespace hav::wbem {

using namespace NORVHAV20;

namespace {

client::TReferenceFilter ReferenceFilter(TCall& call) {
  client::TReferenceFilter filter;
  filter.resultClass = call.parameters.ClassName("ResultClass");
  filter.role = call.parameters.Text("Role");
  return filter;
}

client::TAssociatorFilter AssociatorFilter(TCall& call) {
  client::TAssociatorFilter filter;
  filter.associationClass = call.parameters.ClassName("AssocClass");
  filter.resultClass = call.parameters.ClassName("ResultClass");
  filter.role = call.parameters.Text("Role");
  filter.resultRole = call.parameters.Text("ResultRole");
  return filter;
}

struct TObject {
  TClassPtr cls;
  TInstancePtr instance;  // empty when the class itself is meant
};

// "ObjectName". Some clients give a class as an INSTANCENAME without keys.
TObject FindObject(TCall& call) {
  const auto& name = call.parameters.Object("ObjectName");
  const bool isClass = name.Is("CLASSNAME");
  const auto className = Required(name, isClass ? "NAME" : "CLASSNAME");
  TObject object{RequireClass(call, className, ECimStatus::kInvalidParameter), {}};
  if (isClass) return object;
  if (name.children.empty())
    object.instance = call.home->GetInstance(ReadInstanceName(name, call.home), {});
  else
    object.instance = RequireInstance(call, name);
  return object;
}

TAnswer InstanceNames(std::vector<TInstancePtr> instances) {
  return TAnswer::Of(
      ListOf(std::move(instances), [](const TInstancePtr& instance, TElementWriter& writer) {
        writer.Xml().Open("OBJECTPATH");
        writer.InstancePath(instance->GetReference({}));
        writer.Xml().Close("OBJECTPATH");
      }));
}

TAnswer ClassNames(std::vector<TClassPtr> classes) {
  return TAnswer::Of(ListOf(std::move(classes), [](const TClassPtr& cls, TElementWriter& writer) {
    writer.Xml().Open("OBJECTPATH");
    writer.ClassPath(cls->GetName({}));
    writer.Xml().Close("OBJECTPATH");
  }));
}

TAnswer Instances(std::vector<TInstancePtr> instances, const TDetail& detail) {
  return TAnswer::Of(
      ListOf(std::move(instances), [detail](const TInstancePtr& instance, TElementWriter& writer) {
        writer.Xml().Open("VALUE.OBJECTWITHPATH");
        writer.InstancePath(instance->GetReference({}));
        writer.Instance(*instance, detail);
        writer.Xml().Close("VALUE.OBJECTWITHPATH");
      }));
}

TAnswer Classes(std::vector<TClassPtr> classes, const TDetail& detail) {
  return TAnswer::Of(
      ListOf(std::move(classes), [detail](const TClassPtr& cls, TElementWriter& writer) {
        writer.Xml().Open("VALUE.OBJECTWITHPATH");
        writer.ClassPath(cls->GetName({}));
        writer.Class(*cls, detail);
        writer.Xml().Close("VALUE.OBJECTWITHPATH");
      }));
}

TDetail ObjectDetail(TCall& call) {
  auto detail = InstanceDetail(call);
  detail.qualifiers = call.parameters.Flag("IncludeQualifiers", false);
  return detail;
}

}  // namespace

std::vector<TInstancePtr> AssociatorsOf(TCall& call, ICIMInstance& object) {
  const auto filter = AssociatorFilter(call);
  call.parameters.RequireAllKnown();
  return client::Associators(object, filter);
}

std::vector<TInstancePtr> ReferencesOf(TCall& call, ICIMInstance& object) {
  const auto filter = ReferenceFilter(call);
  call.parameters.RequireAllKnown();
  return client::References(object, filter);
}

TAnswer Associators(TCall& call) {
  const auto object = FindObject(call);
  const auto detail = ObjectDetail(call);
  if (object.instance) return Instances(AssociatorsOf(call, *object.instance), detail);
  const auto filter = AssociatorFilter(call);
  call.parameters.RequireAllKnown();
  return Classes(client::Associators(*object.cls, filter), detail);
}

TAnswer AssociatorNames(TCall& call) {
  const auto object = FindObject(call);
  if (object.instance) return InstanceNames(AssociatorsOf(call, *object.instance));
  const auto filter = AssociatorFilter(call);
  call.parameters.RequireAllKnown();
  return ClassNames(client::Associators(*object.cls, filter));
}

TAnswer References(TCall& call) {
  const auto object = FindObject(call);
  const auto detail = ObjectDetail(call);
  if (object.instance) return Instances(ReferencesOf(call, *object.instance), detail);
  const auto filter = ReferenceFilter(call);
  call.parameters.RequireAllKnown();
  return Classes(client::References(*object.cls, filter), detail);
}

TAnswer ReferenceNames(TCall& call) {
  const auto object = FindObject(call);
  if (object.instance) return InstanceNames(ReferencesOf(call, *object.instance));
  const auto filter = ReferenceFilter(call);
  call.parameters.RequireAllKnown();
  return ClassNames(client::References(*object.cls, filter));
}

}  // namespace hav::wbem
