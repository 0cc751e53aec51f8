// The walks over what an index offers, and what ends them.

#include <algorithm>
#include <new>
#include <utility>

#include "inmem/model/TInmemClass.h"
#include "inmem/model/TInmemInstance.h"
#include "inmem/model/TLinkIndex.h"
#include "inmem/values/Failure.h"
#include "inmem/values/Prefetch.h"
#include "inmem/values/ReferenceDefaults.h"

namespace NORVHAV20 {

TLinkIndex::TWalk::TWalk(TLinkIndex& index, const TInmemInstance& target)
    : m_index(&index),
      m_target(target),
      m_moves(target.Moves()),
      m_defaults(ReferenceDefaults::Changed()) {
  const TEntry* entry = target.StoreEntry();
  const std::string_view path = entry ? TInstanceStore::PathOf(*entry) : std::string_view();
  int sources = Take(kAny);
  if (entry) sources += Take(index.TargetNaming(path));
  for (const TDefault& it : index.m_defaults)
    if (MayLeadTo(path, *it.decl)) sources += Take(it.target);
  if (sources > 1)
    std::sort(m_candidates.begin(), m_candidates.end(), [](const auto& a, const auto& b) {
      if (a.entry == b.entry) return a.slot < b.slot;
      return TInstanceStore::PathOf(*a.entry) < TInstanceStore::PathOf(*b.entry);
    });
  m_other = std::exchange(index.m_walk, this);
}

TLinkIndex::TWalk::~TWalk() {
  if (!m_index) return;
  TWalk** link = &m_index->m_walk;
  while (*link != this) link = &(*link)->m_other;
  *link = m_other;
}

// Returns whether that has added any candidates.
bool TLinkIndex::TWalk::Take(std::uint32_t target) {
  if (target == kNone || m_index->m_targets[target].live == 0) return false;
  const auto& links = m_index->InOrder(target);
  const bool byPath = target != kAny && !m_index->IsDefault(target);
  m_candidates.reserve(m_candidates.size() + links.size());
  for (const std::uint32_t id : links) {
    const std::size_t slot = target == kAny ? kEvery : m_index->m_links[id].slot;
    m_candidates.push_back({m_index->EntryOf(id), slot, byPath ? id : kNone});
  }
  return true;
}

void TLinkIndex::TWalk::FetchEnds() const noexcept {
  for (const TCandidate& candidate : m_candidates) {
    if (candidate.link == kNone) continue;
    for (std::uint32_t link = m_index->FirstLinkOf(candidate.link); link != kNone;
         link = m_index->m_links[link].next) {
      const auto* end = m_index->m_targets[m_index->m_links[link].target].end;
      if (end && link != candidate.link) Prefetch(end, sizeof(TInmemInstance));
    }
  }
}

bool TLinkIndex::TWalk::IsKnown(const TCandidate& candidate) const noexcept {
  return candidate.link != kNone && IsKnown(candidate.link);
}

bool TLinkIndex::TWalk::IsKnown(std::uint32_t id) const noexcept {
  const TLink& link = m_index->m_links[id];
  const TTarget& target = m_index->m_targets[link.target];
  return link.known == target.known && target.Is(m_target);
}

void TLinkIndex::TWalk::Found(const TCandidate& candidate) noexcept {
  if (candidate.link == kNone || !IsCurrent()) return;
  DropExceptions([&] { m_index->Know(candidate.link, m_target); });
}

bool TLinkIndex::TWalk::IsCurrent() const noexcept {
  return m_index && m_moves == m_target.Moves() && m_defaults == ReferenceDefaults::Changed();
}

// Of two walks under way the one that began last stands first: it leaves first.
void TLinkIndex::TWalk::Keep() noexcept {
  DropExceptions([&] { m_kept = m_index->m_store.All(); });
  m_index->m_walk = m_other;
  m_index = nullptr;
}

std::vector<boost::shared_ptr<ICIMInstance>> TLinkIndex::TWalk::After(const TCandidate& candidate) {
  if (m_index) m_index->BeforeChange();
  if (!m_kept) throw std::bad_alloc();
  std::vector<boost::shared_ptr<ICIMInstance>> after;
  bool passed = false;
  m_kept->ForEachItem([&](const auto& item) {
    if (passed) after.push_back(item.instance);
    passed = passed || item.entry == candidate.entry;
  });
  return after;
}

}  // namespace NORVHAV20
