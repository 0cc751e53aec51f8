// LinkModel: nodes, an association between them, and what the index of its links says.
#pragma once

#include <string>
#include <vector>

#include "inmem/model/TInmemClass.h"
#include "inmem/model/TInmemInstance.h"
#include "inmem/model/TLinkIndex.h"
#include "support/Instances.h"

namespace havtest {

struct LinkModel {
  Repository repository{true};
  ClassPtr node = repository.Class("Node");
  ClassPtr link = repository.Association("Link", "From", node, "To", node);

  InstancePtr Node(const std::string& name) const {
    return repository.Instance(node, {{"Name", TCIMValue(name)}});
  }
  InstancePtr Link(const InstancePtr& from, const InstancePtr& to) const {
    return repository.Link(link, "From", from, "To", to);
  }
  // An association from a reference of any kind, stored without being asked whether it is valid.
  InstancePtr LinkFrom(const TCIMValue& from, const InstancePtr& to) const {
    const auto association = link->AllocateInstance({});
    association->SetPropertyValue("From", from, {});
    association->SetPropertyValue("To", TCIMValue(to->GetReference({})), {});
    link->AddInstance(association, {});
    return association;
  }
};

inline const TInmemInstance& Own(const InstancePtr& instance) {
  return *TInmemInstance::Own(*instance);
}

// The index of an association class, made where there is none yet.
inline TLinkIndex& IndexOf(const ClassPtr& association) {
  const auto& own = *TInmemClass::Own(*association);
  own.Links();
  return *own.Links();
}

// The association of a candidate and the property that is to be looked at, `*` for any.
inline std::string OfferOf(const TLinkIndex::TWalk::TCandidate& candidate) {
  const auto& association = TInstanceStore::InstanceOf(*candidate.entry);
  if (candidate.slot == TLinkIndex::TWalk::kEvery) return PathOf(association) + " *";
  return PathOf(association) + " " + Own(association).SlotName(candidate.slot);
}

// What the index of an association class offers as that which may refer to `instance`.
inline std::vector<std::string> Offers(const ClassPtr& association, const InstancePtr& instance) {
  std::vector<std::string> offers;
  const TLinkIndex::TWalk walk(IndexOf(association), Own(instance));
  for (const auto& candidate : walk.Candidates()) offers.push_back(OfferOf(candidate));
  return offers;
}

// What the index knows a reference of a stored association to lead to, empty when nothing.
inline InstancePtr KnownEnd(const InstancePtr& association, const std::string& role) {
  const auto& own = Own(association);
  const auto* links = own.OwnClass()->CurrentLinks();
  return links ? links->KnownEnd(own.Values(), own.Values().Layout().FindSpelt(role)) : nullptr;
}

}  // namespace havtest
