#include "inmem/model/TLinkIndex.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <typeinfo>
#include <utility>

#include "havcore/ICIMClass.h"
#include "havcore/ICIMNamespace.h"
#include "havcore/TCIMReference.h"
#include "inmem/model/INamespaceRegistry.h"
#include "inmem/model/TInmemClass.h"
#include "inmem/model/TInmemInstance.h"
#include "inmem/model/TInmemPropertyDecl.h"
#include "inmem/values/CimName.h"
#include "inmem/values/Failure.h"
#include "inmem/values/HostServices.h"
#include "inmem/values/ReferenceDefaults.h"

namespace NORVHAV20 {

namespace {

std::uint64_t Mixed(std::uint64_t hash, std::uint64_t word) noexcept {
  hash = (hash ^ word) * 0x9E3779B97F4A7C15ULL;
  return hash ^ (hash >> 29);
}

// Equal for texts that differ in the case of letters. Some other bytes are folded with them,
// which does no harm: what has the same hash is only offered.
std::uint64_t HashOfPath(std::string_view path) noexcept {
  constexpr std::uint64_t kFold = 0x2020202020202020ULL;
  std::uint64_t hash = path.size();
  while (path.size() >= sizeof hash) {
    std::uint64_t word;
    std::memcpy(&word, path.data(), sizeof word);
    hash = Mixed(hash, word | kFold);
    path.remove_prefix(sizeof word);
  }
  std::uint64_t rest = 0;
  if (!path.empty()) std::memcpy(&rest, path.data(), path.size());
  return Mixed(hash, rest | kFold);
}

std::uint64_t HashOfKey(const void* key) noexcept {
  return Mixed(0, static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(key)));
}

// Whether the text of its path tells where a reference can lead, and asking leaves no trace.
bool IsToldByText(const TCIMValue& reference) {
  if (!kTellsNamespace<TCIMReference>) return false;
  const TCIMReference& path = Held<TCIMReference>(reference);
  const auto home = NamespaceOf(path);
  if (home && !dynamic_cast<const INamespaceRegistry*>(home.get())) return false;
  if (!IsCimName(path.GetClassName())) return false;
  const auto cls = reference.GetReferencedClass();
  return !cls || TInmemClass::Own(*cls);
}

std::uint64_t HashOfReference(const TCIMValue& reference) {
  return HashOfPath(Held<TCIMReference>(reference).GetPath());
}

}  // namespace

boost::shared_ptr<ICIMElement> Resolve(const TCIMValue& reference) {
  return Held<TCIMReference>(reference).GetCIMElement(false);
}

TLinkIndex::TLinkIndex(const ICIMClass& cls, TInstanceStore& store)
    : m_class(cls), m_store(store), m_retyped(ReferenceDefaults::Retyped()) {
  NewTarget();  // kAny
  try {
    // In the order of the paths, so that nothing has to be sorted.
    m_records.reserve(store.Size());
    store.ForEachEntry([this](const TEntry& entry) { Enter(entry); });
  } catch (...) {
    for (const auto& layout : m_layouts) layout->Watch(nullptr);
    throw;
  }
  store.Tell(this);
}

TLinkIndex::~TLinkIndex() {
  BeforeChange();
  m_store.Tell(nullptr);
  for (const auto& layout : m_layouts) layout->Watch(nullptr);
}

bool TLinkIndex::IsWhole() const noexcept {
  return !m_broken && m_retyped == ReferenceDefaults::Retyped();
}

void TLinkIndex::BeforeChange() noexcept {
  while (m_walk) m_walk->Keep();
}

void TLinkIndex::Entered(const TEntry& entry) noexcept {
  if (m_broken) return;
  m_broken = true;
  DropExceptions([&] {
    Enter(entry);
    m_broken = false;
  });
}

void TLinkIndex::Leaving(const TEntry& entry) noexcept {
  if (m_broken) return;
  ICIMInstance& association = *TInstanceStore::InstanceOf(entry);
  const auto* own = TInmemInstance::Own(association);
  const std::uint32_t record = RecordOf(own ? static_cast<const void*>(&own->Values())
                                            : static_cast<const void*>(&association));
  UnlinkAll(record);
  m_byKey.Erase(record, [this](std::uint32_t id) { return HashOfRecord(id); });
  m_records[record] = {nullptr, nullptr, std::exchange(m_freeRecord, record)};
}

void TLinkIndex::Assigning(const TSlotTable& values) noexcept {
  if (RecordOf(&values) != kNone) BeforeChange();
}

void TLinkIndex::Assigned(const TSlotTable& values) noexcept {
  const std::uint32_t record = m_broken ? kNone : RecordOf(&values);
  if (record == kNone) return;
  m_broken = true;
  DropExceptions([&] {
    UnlinkAll(record);
    LinkAll(record);
    m_broken = false;
  });
}

std::uint32_t TLinkIndex::RecordOf(const void* key) const noexcept {
  return m_byKey.Find(HashOfKey(key), [&](std::uint32_t id) { return m_records[id].key == key; });
}

std::uint64_t TLinkIndex::HashOfRecord(std::uint32_t record) const noexcept {
  return HashOfKey(m_records[record].key);
}

void TLinkIndex::Enter(const TEntry& entry) {
  ICIMInstance& association = *TInstanceStore::InstanceOf(entry);
  const auto* own = TInmemInstance::Own(association);
  const void* key =
      own ? static_cast<const void*>(&own->Values()) : static_cast<const void*>(&association);
  if (m_freeRecord == kNone) {
    if (m_records.size() >= kNone) throw std::bad_alloc();
    m_records.push_back({nullptr, nullptr, kNone});
    m_freeRecord = static_cast<std::uint32_t>(m_records.size() - 1);
  }
  const std::uint32_t record = m_freeRecord;
  m_freeRecord = m_records[record].first;
  m_records[record] = {key, &entry, kNone};
  m_byKey.Insert(record, [this](std::uint32_t id) { return HashOfRecord(id); });
  LinkAll(record);
}

void TLinkIndex::LinkAll(std::uint32_t record) {
  ICIMInstance& association = *TInstanceStore::InstanceOf(*m_records[record].entry);
  const auto* own = TInmemInstance::Own(association);
  if (own && own->GetClass(TOptions()).get() == &m_class) {
    Watch(own->Values().Layout());
    if (LinkSlots(record, *own)) return;
    UnlinkAll(record);
  }
  Link(record, TWalk::kEvery, kAny);
}

// False when the association has to be offered to everybody.
bool TLinkIndex::LinkSlots(std::uint32_t record, const TInmemInstance& association) {
  const TSlotTable& values = association.Values();
  // From the last, so that the list of its links has them in order.
  for (std::size_t slot = association.SlotCount(); slot-- > 0;) {
    if (const TCIMValue* value = values.Assigned(slot)) {
      if (!value->IsReference()) continue;
      if (!IsToldByText(*value)) return false;
      Link(record, static_cast<std::uint32_t>(slot), TargetOf(HashOfReference(*value)));
      continue;
    }
    const ICIMPropertyDecl& decl = association.DeclAt(slot);
    if (typeid(decl) != typeid(TInmemPropertyDecl)) return false;
    if (decl.GetType(TOptions()) == kCIMReference)
      Link(record, static_cast<std::uint32_t>(slot),
           TargetOf(static_cast<const TInmemPropertyDecl&>(decl)));
  }
  return true;
}

std::uint32_t TLinkIndex::NewLink() {
  if (m_freeLink != kNone) return std::exchange(m_freeLink, m_links[m_freeLink].next);
  if (m_links.size() >= kNone) throw std::bad_alloc();
  m_links.emplace_back();
  return static_cast<std::uint32_t>(m_links.size() - 1);
}

void TLinkIndex::Link(std::uint32_t record, std::uint32_t slot, std::uint32_t target) {
  const std::uint32_t link = NewLink();
  TTarget& to = m_targets[target];
  if (to.links.size() > 2 * (std::size_t{to.live} + 8)) CloseGaps(to);
  to.links.push_back(link);
  ++to.live;
  m_links[link] = {record,
                   slot,
                   target,
                   static_cast<std::uint32_t>(to.links.size() - 1),
                   m_records[record].first,
                   kUnknown};
  m_records[record].first = link;
}

void TLinkIndex::UnlinkAll(std::uint32_t record) noexcept {
  std::uint32_t link = std::exchange(m_records[record].first, kNone);
  while (link != kNone) {
    const std::uint32_t next = m_links[link].next;
    TTarget& target = m_targets[m_links[link].target];
    target.links[m_links[link].place] = kNone;
    --target.live;
    if (target.live == 0) Release(m_links[link].target);
    m_links[link].next = std::exchange(m_freeLink, link);
    link = next;
  }
}

std::uint32_t TLinkIndex::TargetOf(std::uint64_t hash) {
  const auto isIt = [&](std::uint32_t id) { return m_targets[id].hash == hash; };
  const std::uint32_t known = m_byHash.Find(hash, isIt);
  if (known != kNone) return known;
  const std::uint32_t target = NewTarget();
  m_targets[target].hash = hash;
  m_byHash.Insert(target, [this](std::uint32_t id) { return m_targets[id].hash; });
  return target;
}

std::uint32_t TLinkIndex::TargetOf(const TInmemPropertyDecl& decl) {
  for (const TDefault& known : m_defaults)
    if (known.decl == &decl) return known.target;
  const std::uint32_t target = NewTarget();
  m_defaults.push_back({&decl, target});
  return target;
}

std::uint32_t TLinkIndex::NewTarget() {
  if (m_freeTarget == kNone) {
    m_targets.emplace_back();
    m_freeTarget = static_cast<std::uint32_t>(m_targets.size() - 1);
  }
  const std::uint32_t target = m_freeTarget;
  m_freeTarget = m_targets[target].ordered;
  m_targets[target].ordered = 0;
  return target;
}

// A target that nothing refers to any more.
void TLinkIndex::Release(std::uint32_t target) noexcept {
  m_targets[target].links = std::vector<std::uint32_t>();  // its memory goes as well
  m_targets[target].end = nullptr;
  m_targets[target].guard.reset();
  m_targets[target].ordered = 0;
  if (target == kAny) return;
  if (IsDefault(target))
    m_defaults.erase(std::find_if(m_defaults.begin(), m_defaults.end(),
                                  [&](const TDefault& it) { return it.target == target; }));
  else
    m_byHash.Erase(target, [this](std::uint32_t id) { return m_targets[id].hash; });
  m_targets[target].ordered = std::exchange(m_freeTarget, target);
}

// Every instance has the layout that its class had when it was made.
void TLinkIndex::Watch(const TSlotLayout& layout) {
  if (layout.Watcher() == this) return;
  m_layouts.emplace_back(&layout);
  layout.Watch(this);
}

void TLinkIndex::CloseGaps(TTarget& target) noexcept {
  if (target.live == target.links.size()) return;
  std::uint32_t kept = 0;
  std::uint32_t ordered = 0;
  for (std::uint32_t place = 0; place < target.links.size(); ++place) {
    const std::uint32_t link = target.links[place];
    if (link == kNone) continue;
    if (place < target.ordered) ++ordered;
    m_links[link].place = kept;
    target.links[kept++] = link;
  }
  target.links.resize(kept);
  target.ordered = ordered;
}

const std::vector<std::uint32_t>& TLinkIndex::InOrder(std::uint32_t id) {
  TTarget& target = m_targets[id];
  CloseGaps(target);
  auto& links = target.links;
  if (target.ordered == links.size()) return links;
  const auto before = [this](std::uint32_t a, std::uint32_t b) { return IsBefore(a, b); };
  const auto begin = links.begin();
  // What came in order stays in order.
  const auto last = std::max(target.ordered, std::uint32_t{1}) - 1;
  const auto added = std::is_sorted_until(begin + last, links.end(), before);
  // A look-up for each costs less than going over all.
  if (links.end() - added < 8) {
    for (auto it = added; it != links.end(); ++it)
      std::rotate(std::upper_bound(begin, it, *it, before), it, it + 1);
  } else {
    std::sort(added, links.end(), before);
    std::inplace_merge(begin, added, links.end(), before);
  }
  target.ordered = target.live;
  for (std::uint32_t place = 0; place < links.size(); ++place) m_links[links[place]].place = place;
  return links;
}

bool TLinkIndex::IsBefore(std::uint32_t a, std::uint32_t b) const noexcept {
  const TLink& first = m_links[a];
  const TLink& second = m_links[b];
  if (first.record == second.record) return first.slot < second.slot;
  return TInstanceStore::PathOf(*m_records[first.record].entry) <
         TInstanceStore::PathOf(*m_records[second.record].entry);
}

std::uint32_t TLinkIndex::LinkOf(const TSlotTable& values, std::size_t slot) const noexcept {
  const std::uint32_t record = RecordOf(&values);
  std::uint32_t link = record == kNone ? kNone : m_records[record].first;
  while (link != kNone && m_links[link].slot != slot) link = m_links[link].next;
  return link;
}

boost::shared_ptr<TInmemInstance> TLinkIndex::KnownEnd(const TSlotTable& values,
                                                       std::size_t slot) const noexcept {
  const std::uint32_t link = LinkOf(values, slot);
  return link == kNone ? nullptr : KnownEnd(link);
}

boost::shared_ptr<TInmemInstance> TLinkIndex::KnownEnd(std::uint32_t link) const noexcept {
  const TTarget& target = m_targets[m_links[link].target];
  if (m_links[link].known != target.known) return {};
  auto end = target.guard.lock();
  return end && target.Is(*end) ? end : nullptr;
}

bool TLinkIndex::TTarget::Is(const TInmemInstance& instance) const noexcept {
  return end == &instance && standing == instance.Standing() &&
         paths == instance.OwnClass()->PathTime();
}

void TLinkIndex::Know(const TSlotTable& values, std::size_t slot, const TCIMValue& value,
                      const TInmemInstance& end) {
  const std::uint32_t link = LinkOf(values, slot);
  const TCIMValue* current = values.Assigned(slot);
  if (link != kNone && current && *current == value) Know(link, end);
}

void TLinkIndex::Know(std::uint32_t id, const TInmemInstance& end) {
  TLink& link = m_links[id];
  const auto* cls = end.OwnClass();
  if (IsDefault(link.target) || !cls || !cls->IsPredictable()) return;
  if (end.Standing() == TInmemInstance::kNotStanding) return;
  const auto& association =
      static_cast<const TInmemInstance&>(*TInstanceStore::InstanceOf(*EntryOf(id)));
  if (association.Values().Assigned(link.slot)->GetReferencedClass().get() != cls) return;
  TTarget& target = m_targets[link.target];
  if (!target.Is(end)) {
    if (target.known == kNone) return;
    target.guard = boost::const_pointer_cast<TInmemInstance>(end.shared_from_this());
    target.end = &end;
    target.standing = end.Standing();
    target.paths = cls->PathTime();
    ++target.known;
  }
  link.known = target.known;
}

bool TLinkIndex::IsDefault(std::uint32_t target) const noexcept {
  return std::any_of(m_defaults.begin(), m_defaults.end(),
                     [&](const TDefault& it) { return it.target == target; });
}

std::uint32_t TLinkIndex::TargetNaming(std::string_view path) const {
  const std::uint64_t hash = HashOfPath(path);
  return m_byHash.Find(hash, [&](std::uint32_t id) { return m_targets[id].hash == hash; });
}

bool TLinkIndex::MayLeadTo(std::string_view path, const TInmemPropertyDecl& decl) {
  const TCIMValue& value = decl.GetDefaultValue(TOptions());
  if (!value.IsReference()) return false;
  if (!IsToldByText(value)) return true;
  return HashOfReference(value) == HashOfPath(path);
}

}  // namespace NORVHAV20
