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
  Take(kAny);
  if (entry) Take(index.TargetNaming(path));
  for (const TDefault& it : index.m_defaults)
    if (MayLeadTo(path, *it.decl)) Take(it.target);
  m_other = std::exchange(index.m_walk, this);
}

// Of two walks under way the one that began last ends first.
TLinkIndex::TWalk::~TWalk() {
  if (m_index) m_index->m_walk = m_other;
}

void TLinkIndex::TWalk::Take(std::uint32_t target) {
  if (target == kNone) return;
  const auto& links = m_index->InOrder(target);
  const auto before = static_cast<std::ptrdiff_t>(m_candidates.size());
  m_candidates.reserve(m_candidates.size() + links.size());
  for (const std::uint32_t id : links)
    m_candidates.push_back({m_index->EntryOf(id), m_index->m_links[id].slot, id});
  // Mostly there is one target that has any.
  std::inplace_merge(m_candidates.begin(), m_candidates.begin() + before, m_candidates.end(),
                     [this](const TCandidate& a, const TCandidate& b) {
                       return m_index->IsBefore(a.link, b.link);
                     });
}

void TLinkIndex::TWalk::FetchEnds() const noexcept {
  for (const TCandidate& candidate : m_candidates) {
    for (std::uint32_t link = m_index->FirstLinkOf(candidate.link); link != kNone;
         link = m_index->m_links[link].next) {
      const auto* end = m_index->m_targets[m_index->m_links[link].target].end;
      if (end) Prefetch(end, sizeof(TInmemInstance));
    }
  }
}

bool TLinkIndex::TWalk::IsKnown(const TCandidate& candidate) const noexcept {
  return IsKnown(candidate.link);
}

bool TLinkIndex::TWalk::IsKnown(std::uint32_t id) const noexcept {
  const TLink& link = m_index->m_links[id];
  const TTarget& target = m_index->m_targets[link.target];
  return link.known == target.known && target.Is(m_target);
}

void TLinkIndex::TWalk::Found(const TCandidate& candidate) noexcept {
  if (!IsCurrent()) return;
  DropExceptions([&] { m_index->Know(candidate.link, m_target); });
}

bool TLinkIndex::TWalk::IsCurrent() const noexcept {
  return m_index && m_moves == m_target.Moves() && m_defaults == ReferenceDefaults::Changed();
}

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
