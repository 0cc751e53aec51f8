#include "inmem/model/TClassSet.h"

#include <algorithm>
#include <new>
#include <utility>

#include "havcore/ICIMClass.h"

namespace NORVHAV20 {

namespace {

// Up to here looking at each is as fast as looking one up, and costs no memory.
constexpr std::size_t kFew = 16;

std::size_t Search(const TClassSet::TClasses& classes, const ICIMClass* cls) noexcept {
  const auto found = std::find_if(classes.begin(), classes.end(),
                                  [&](const auto& entry) { return entry.get() == cls; });
  return static_cast<std::size_t>(found - classes.begin());
}

}  // namespace

TClassSet::~TClassSet() { BeforeChange(); }

void TClassSet::Add(const boost::shared_ptr<ICIMClass>& cls) {
  if (Contains(cls.get())) return;
  BeforeChange();
  if (!m_places && m_classes.size() >= kFew) {
    CloseGaps();
    auto places = std::make_unique<TPlaces>();
    for (std::size_t i = 0; i < m_classes.size(); ++i) places->emplace(m_classes[i].get(), i);
    m_places = std::move(places);
  }
  m_classes.push_back(cls);
  if (!m_places) return;
  try {
    m_places->emplace(cls.get(), m_classes.size() - 1);
  } catch (...) {
    m_classes.pop_back();
    throw;
  }
}

bool TClassSet::Remove(const ICIMClass* cls) noexcept {
  const std::size_t place = PlaceOf(cls);
  if (place == m_classes.size()) return false;
  BeforeChange();
  const auto last = std::move(m_classes[place]);
  ++m_gaps;
  if (m_places) m_places->erase(cls);
  if (m_gaps > m_classes.size() / 2) CloseGaps();
  return true;
}

bool TClassSet::Contains(const ICIMClass* cls) const noexcept {
  return PlaceOf(cls) != m_classes.size();
}

std::size_t TClassSet::PlaceOf(const ICIMClass* cls) const noexcept {
  if (!m_places) return cls ? Search(m_classes, cls) : m_classes.size();
  const auto found = m_places->find(cls);
  return found == m_places->end() ? m_classes.size() : found->second;
}

TClassSet::TClasses TClassSet::All() const {
  TClasses all;
  all.reserve(Size());
  for (const auto& cls : m_classes)
    if (cls) all.push_back(cls);
  return all;
}

void TClassSet::Swap(TClassSet& other) noexcept {
  BeforeChange();
  other.BeforeChange();
  m_classes.swap(other.m_classes);
  std::swap(m_gaps, other.m_gaps);
  m_places.swap(other.m_places);
}

TClassSet::TClasses TClassSet::TakeAll() noexcept {
  BeforeChange();
  m_gaps = 0;
  m_places.reset();
  return std::exchange(m_classes, {});
}

void TClassSet::CloseGaps() noexcept {
  std::size_t kept = 0;
  for (std::size_t i = 0; i < m_classes.size(); ++i) {
    if (!m_classes[i]) continue;
    if (m_places) m_places->find(m_classes[i].get())->second = kept;
    if (kept != i) m_classes[kept] = std::move(m_classes[i]);
    ++kept;
  }
  m_classes.resize(kept);
  m_gaps = 0;
}

void TClassSet::BeforeChange() noexcept {
  while (m_walk) m_walk->Keep();
}

TClassSet::TWalk::TWalk(const TClassSet& set) noexcept
    : m_set(&set), m_other(std::exchange(set.m_walk, this)) {}

TClassSet::TWalk::~TWalk() { Leave(); }

ICIMClass* TClassSet::TWalk::Next() {
  if (m_lost) throw std::bad_alloc();
  const TClasses& classes = Classes();
  while (m_next < classes.size())
    if (ICIMClass* cls = classes[m_next++].get()) return cls;
  return nullptr;
}

bool TClassSet::TWalk::Covers(const ICIMClass* cls) const noexcept {
  return m_set ? m_set->Contains(cls) : Search(m_kept, cls) != m_kept.size();
}

void TClassSet::TWalk::Prepare() {
  if (m_set) m_kept.reserve(m_set->m_classes.size());
}

// The set is about to change, whatever becomes of the walk.
void TClassSet::TWalk::Keep() noexcept {
  try {
    m_kept.assign(m_set->m_classes.begin(), m_set->m_classes.end());
  } catch (const std::bad_alloc&) {
    m_lost = true;
  }
  Leave();
}

void TClassSet::TWalk::Leave() noexcept {
  if (!m_set) return;
  TWalk** link = &m_set->m_walk;
  while (*link != this) link = &(*link)->m_other;
  *link = m_other;
  m_set = nullptr;
}

}  // namespace NORVHAV20
