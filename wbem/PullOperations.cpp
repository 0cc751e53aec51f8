// The operations that open an enumeration, pull from it and close it.
#include <utility>

#include "wbem/Operations.h"
#include "wbem/TCimError.h"

namespace hav::wbem {

using namespace NORVHAV20;

namespace {

using EKind = TEnumerations::EKind;

// What every operation that opens has in common.
struct TOpening {
  std::optional<std::uint32_t> timeout;
  std::uint32_t count;
};

TOpening ReadOpening(TCall& call) {
  auto& parameters = call.parameters;
  if (!parameters.Text("FilterQueryLanguage").empty() || !parameters.Text("FilterQuery").empty())
    throw TCimError(ECimStatus::kFilteredEnumerationNotSupported,
                    "enumerations are not filtered by queries here");
  if (parameters.Flag("ContinueOnError", false))
    throw TCimError(ECimStatus::kContinuationOnErrorNotSupported,
                    "an enumeration ends with its first error here");
  return {parameters.Number("OperationTimeout"), parameters.Number("MaxObjectCount").value_or(0)};
}

TAnswer OpenInstances(TCall& call, const TOpening& opening, std::vector<TInstancePtr> instances,
                      const TDetail& detail) {
  call.parameters.RequireAllKnown();
  auto list =
      ListOf(std::move(instances), [detail](const TInstancePtr& instance, TElementWriter& writer) {
        writer.Xml().Open("VALUE.INSTANCEWITHPATH");
        writer.InstancePath(instance->GetReference({}));
        writer.Instance(*instance, detail);
        writer.Xml().Close("VALUE.INSTANCEWITHPATH");
      });
  return call.enumerations.Open(EKind::kInstances, call.homeName, std::move(list), opening.timeout,
                                opening.count);
}

TAnswer OpenPaths(TCall& call, const TOpening& opening, std::vector<TInstancePtr> instances) {
  call.parameters.RequireAllKnown();
  auto list =
      ListOf(std::move(instances), [](const TInstancePtr& instance, TElementWriter& writer) {
        writer.InstancePath(instance->GetReference({}));
      });
  return call.enumerations.Open(EKind::kPaths, call.homeName, std::move(list), opening.timeout,
                                opening.count);
}

TInstancePtr Source(TCall& call) {
  return RequireInstance(call, call.parameters.Object("InstanceName"));
}

TAnswer Pull(TCall& call, EKind kind) {
  const auto context = call.parameters.RequiredText("EnumerationContext");
  const auto count = call.parameters.Number("MaxObjectCount");
  call.parameters.RequireAllKnown();
  if (!count) throw TCimError(ECimStatus::kInvalidParameter, "MaxObjectCount is missing");
  return call.enumerations.Pull(kind, call.homeName, context, *count);
}

}  // namespace

TAnswer OpenEnumerateInstances(TCall& call) {
  const auto opening = ReadOpening(call);
  TClassPtr cls;
  auto detail = InstanceDetail(call);
  auto instances = InstancesOfClass(call, cls);
  ReadDeepInheritance(call, *cls, detail);
  return OpenInstances(call, opening, std::move(instances), detail);
}

TAnswer OpenEnumerateInstancePaths(TCall& call) {
  const auto opening = ReadOpening(call);
  TClassPtr cls;
  return OpenPaths(call, opening, InstancesOfClass(call, cls));
}

TAnswer OpenAssociatorInstances(TCall& call) {
  const auto opening = ReadOpening(call);
  const auto detail = InstanceDetail(call);
  return OpenInstances(call, opening, AssociatorsOf(call, *Source(call)), detail);
}

TAnswer OpenAssociatorInstancePaths(TCall& call) {
  const auto opening = ReadOpening(call);
  return OpenPaths(call, opening, AssociatorsOf(call, *Source(call)));
}

TAnswer OpenReferenceInstances(TCall& call) {
  const auto opening = ReadOpening(call);
  const auto detail = InstanceDetail(call);
  return OpenInstances(call, opening, ReferencesOf(call, *Source(call)), detail);
}

TAnswer OpenReferenceInstancePaths(TCall& call) {
  const auto opening = ReadOpening(call);
  return OpenPaths(call, opening, ReferencesOf(call, *Source(call)));
}

TAnswer PullInstancesWithPath(TCall& call) { return Pull(call, EKind::kInstances); }

TAnswer PullInstancePaths(TCall& call) { return Pull(call, EKind::kPaths); }

TAnswer CloseEnumeration(TCall& call) {
  const auto context = call.parameters.RequiredText("EnumerationContext");
  call.parameters.RequireAllKnown();
  call.enumerations.Close(call.homeName, context);
  return TAnswer::Nothing();
}

TAnswer EnumerationCount(TCall& call) {
  const auto context = call.parameters.RequiredText("EnumerationContext");
  call.parameters.RequireAllKnown();
  const std::uint64_t left = call.enumerations.Left(call.homeName, context);
  return TAnswer::One([left](TElementWriter& writer) { writer.Value(TCIMValue(left)); });
}

}  // namespace hav::wbem
