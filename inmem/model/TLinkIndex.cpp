#include "inmem/model/TLinkIndex.h"

#include <limits>

#include "havcore/ICIMClass.h"
#include "havcore/ICIMNamespace.h"
#include "havcore/ICIMPropertyDecl.h"
#include "havcore/TCIMReference.h"
#include "havcore/THAVException.h"
#include "inmem/model/INamespaceRegistry.h"
#include "inmem/model/TInmemClass.h"
#include "inmem/model/TInmemInstance.h"
#include "inmem/model/TInmemPropertyDecl.h"
#include "inmem/values/Failure.h"
#include "inmem/values/HostServices.h"
#include "inmem/values/ModelClock.h"

namespace NORVHAV20 {

namespace {

std::size_t HashOf(const TInmemInstance* target) noexcept {
  const auto bits = static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(target));
  return static_cast<std::size_t>((bits * 0x9E3779B97F4A7C15ULL) >> 20);
}

// A class or namespace of another make may resolve the same path to something else the next
// time, without a clock having moved.
bool IsResolvedByOurs(const TCIMValue& reference) {
  if (!kTellsNamespace<TCIMReference>) return false;
  const auto home = NamespaceOf<TCIMReference>(Held<TCIMReference>(reference));
  if (home && !dynamic_cast<const INamespaceRegistry*>(home.get())) return false;
  const auto cls = reference.GetReferencedClass();
  return !cls || dynamic_cast<const TInmemClass*>(cls.get());
}

}  // namespace

boost::shared_ptr<ICIMElement> Resolve(const TCIMValue& reference) {
  return Held<TCIMReference>(reference).GetCIMElement(false);
}

TLinkIndex::TLinkIndex(const TInstanceStore::TInstances& associations)
    : m_schema(ModelClock::Schema()), m_linksClock(ModelClock::Links()) {
  m_associations.reserve(associations.Size());
  associations.ForEach([&](const auto& association) {
    m_positions[association.get()] = static_cast<std::uint32_t>(m_associations.size());
    m_associations.push_back(association);
  });
}

std::uint32_t TLinkIndex::PositionOf(const ICIMInstance& association) const noexcept {
  const auto found = m_positions.find(&association);
  return found == m_positions.end() ? kNone : found->second;
}

boost::shared_ptr<const TLinkIndex> TLinkIndex::Make(
    const boost::shared_ptr<const TInstanceStore::TInstances>& associations) {
  if (associations->Size() >= kNone) return {};
  boost::shared_ptr<TLinkIndex> index(new TLinkIndex(*associations));
  index->m_first.reserve(associations->Size() + 1);
  bool complete = false;
  DropExceptions([&] {
    for (const auto& association : index->m_associations)
      if (!index->AddLinksOf(*association)) return;
    index->m_first.push_back(static_cast<std::uint32_t>(index->m_links.size()));
    index->ChainByTarget();
    complete = true;
  });
  // Resolving may have run somebody's code.
  if (!complete || !index->IsCurrent()) return {};
  return index;
}

bool TLinkIndex::AddLinksOf(ICIMInstance& association) {
  const auto* own = TInmemInstance::Own(association);
  if (!own) return false;
  const auto position = static_cast<std::uint32_t>(m_first.size());
  m_first.push_back(static_cast<std::uint32_t>(m_links.size()));
  for (std::size_t slot = 0; slot < own->SlotCount(); ++slot) {
    const TCIMValue& value = own->SlotHandle(slot).GetValue(TOptions());
    if (!value.IsReference()) continue;
    if (m_links.size() >= kNone - 1 || !IsResolvedByOurs(value)) return false;
    if (!own->IsAssigned(slot) && !dynamic_cast<const TInmemPropertyDecl*>(&own->DeclAt(slot)))
      return false;
    TLink link{nullptr, position, kNone, static_cast<std::uint32_t>(slot), TLink::kNothing};
    try {
      const auto element = Resolve(value);
      auto* instance = dynamic_cast<ICIMInstance*>(element.get());
      link.target = instance ? TInmemInstance::Own(*instance) : nullptr;
      if (instance && !link.target) return false;
      link.kind = instance ? TLink::kInstance : TLink::kNoInstance;
    } catch (const THAVException& failure) {
      if (failure.GetStatusCode() != kHAVNotFound) return false;
    }
    m_links.push_back(link);
  }
  return true;
}

void TLinkIndex::ChainByTarget() {
  std::size_t size = 16;
  while (size < 2 * m_links.size()) size *= 2;
  m_heads.assign(size, kNone);
  // From the back, so that each chain runs forward.
  for (std::size_t i = m_links.size(); i-- > 0;) {
    TLink& link = m_links[i];
    if (!link.target) continue;
    std::size_t head = HashOf(link.target) & (size - 1);
    while (m_heads[head] != kNone && m_links[m_heads[head]].target != link.target)
      head = (head + 1) & (size - 1);
    link.next = m_heads[head];
    m_heads[head] = static_cast<std::uint32_t>(i);
  }
}

bool TLinkIndex::IsCurrent() const noexcept {
  return m_schema == ModelClock::Schema() && m_linksClock == ModelClock::Links();
}

std::uint32_t TLinkIndex::FirstTo(const TInmemInstance& target) const noexcept {
  const std::size_t mask = m_heads.size() - 1;
  std::size_t head = HashOf(&target) & mask;
  while (m_heads[head] != kNone && m_links[m_heads[head]].target != &target)
    head = (head + 1) & mask;
  return m_heads[head];
}

const TLinkIndex::TLink* TLinkIndex::Find(std::uint32_t position, std::size_t slot) const noexcept {
  for (std::uint32_t link = m_first[position]; link < m_first[position + 1]; ++link)
    if (m_links[link].slot == slot) return &m_links[link];
  return nullptr;
}

}  // namespace NORVHAV20
