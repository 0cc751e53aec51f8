// The instances of a class: making, storing, finding and enumerating them, and the rule that
// gives processors their cache switches.

#include <utility>

#include <boost/make_shared.hpp>

#include "havcore/ICIMProperty.h"
#include "havcore/THAVException.h"
#include "inmem/model/CacheSwitches.h"
#include "inmem/model/TInmemClass.h"
#include "inmem/model/TInmemInstance.h"
#include "inmem/values/Failure.h"
#include "inmem/values/HostServices.h"
#include "inmem/values/Prefetch.h"

namespace NORVHAV20 {

namespace {

void SetSwitch(ICIMInstance& processor, const char* property, std::int32_t enabled) {
  if (enabled == 0 || enabled == 1)
    processor.SetPropertyValue(property, TCIMValue(enabled == 1), TOptions());
}

// Rewrites the cache properties of a processor whose status says that it is enabled.
void ApplyCacheSwitches(ICIMInstance& processor) {
  const TCIMValue status =
      Require(processor.GetProperty("CPUStatus", TOptions()))->GetValue(TOptions());
  const std::string text = status.ToString(10);
  LogError("cpuStatus is " + text);
  if (text != "1") return;
  const std::int32_t enabled[] = {g_L1Enabled, g_L2Enabled, g_L3Enabled};
  SetSwitch(processor, "L1Enabled", enabled[0]);
  SetSwitch(processor, "L2Enabled", enabled[1]);
  SetSwitch(processor, "L3Enabled", enabled[2]);
}

// The text of the path of an instance, asked of itself where it is of another make.
void PutPath(TPathText& text, const ICIMInstance& instance) {
  const auto* own = TInmemInstance::Own(instance);
  if (!own || !own->PutPath(text)) text.Set(instance.GetReference(TOptions()));
}

// Whether that could be done; a processor that does not let itself be read is left out.
bool IsRewritten(ICIMInstance& processor) {
  bool rewritten = false;
  DropFailures([&] {
    ApplyCacheSwitches(processor);
    rewritten = true;
  });
  return rewritten;
}

}  // namespace

// One class's turn in an enumeration: the instances that it had when the walk began, or a
// class of another make, which enumerates for itself.
struct TInmemClass::TVisit {
  boost::shared_ptr<const TInmemClass> cls;
  boost::shared_ptr<const TInstanceStore::TInstances> instances;
  boost::shared_ptr<ICIMClass> foreign;
};

boost::shared_ptr<ICIMInstance> TInmemClass::AllocateInstance(TOptions) {
  return boost::make_shared<TInmemInstance>(
      Self(), TInmemInstance::kValidateKeysNonNull | TInmemInstance::kValidateReferences);
}

// Once the namespace is gone nobody would ever empty the store, and a stored instance owns
// its class: so it is refused then.
void TInmemClass::AddInstance(boost::shared_ptr<ICIMInstance> instance, TOptions) {
  const auto self = Self();
  TPathText path;
  PutPath(path, *Require(instance));
  const auto census = Require(m_home.Census());
  auto* const own = TInmemInstance::Own(*instance);
  if (!own || !own->IsOf(*this)) NoteStranger();
  if (own && !own->IsOf(*this)) own->Stray();
  m_instances.Add(path, instance);
}

void TInmemClass::RemoveInstance(boost::shared_ptr<ICIMInstance> instance, TOptions) {
  Require(instance);
  const auto self = Self();
  try {
    TPathText path;
    PutPath(path, *instance);
    m_instances.Remove(path, *instance);
  } catch (const THAVException&) {
    // The class may have got a key since, for which the instance has no slot.
    if (!m_instances.Remove(*instance)) throw;
  }
}

boost::shared_ptr<ICIMInstance> TInmemClass::FindInstance(const TCIMReference& path) const {
  if (auto found = m_instances.Find(TPathText(path))) return found;
  // A path made from text spells its names as it likes; bound to the class it spells them as
  // they are declared.
  TCIMReference bound(path);
  bound.SetClass(Self());
  return m_instances.Find(TPathText(bound));
}

// The path of an instance of another make or class may be spelt anyhow.
void TInmemClass::NoteStranger() noexcept {
  if (!std::exchange(m_hadStrangers, true)) m_paths->Turn();
}

void TInmemClass::ClearInstances() noexcept {
  m_links.reset();
  m_linksAsked = false;
  // Before the instances know that they have gone.
  m_paths->Turn();
  TInstanceStore released;
  m_instances.Swap(released);
}

// Made for the second question: many a class is asked about once, or never.
TLinkIndex* TInmemClass::Links() const {
  if (m_links && m_links->IsWhole()) return m_links.get();
  m_links.reset();
  if (!std::exchange(m_linksAsked, true) || IsProcessor()) return nullptr;
  // Where there was no memory for it the answer comes without.
  DropExceptions([&] { m_links = std::make_unique<TLinkIndex>(*this, m_instances); });
  return m_links.get();
}

bool TInmemClass::IsProcessor() const {
  return m_name == "ORVSG_CPU" || m_name == "ORVSG_Processor";
}

void TInmemClass::EnumerateInstances(const TEnumCallback<ICIMInstance>& callback, bool deep,
                                     TOptions options) {
  if (!deep) {
    const auto instances = m_instances.All();
    return Visit(*instances, callback);
  }
  for (const auto& visit : PlanVisits()) {
    if (visit.foreign)
      DropFailures([&] { visit.foreign->EnumerateInstances(callback, deep, options); });
    else
      visit.cls->Visit(*visit.instances, callback);
  }
}

// This class, then each subclass with all of its own, depth first; with a stack of our own,
// because hierarchies can be deeper than the thread's.
std::vector<TInmemClass::TVisit> TInmemClass::PlanVisits() {
  std::vector<TVisit> visits;
  TClasses open{Self()};
  while (!open.empty()) {
    const auto current = std::move(open.back());
    open.pop_back();
    const auto own = boost::dynamic_pointer_cast<TInmemClass>(current);
    if (!own) {
      visits.push_back({{}, {}, current});
      continue;
    }
    visits.push_back({own, own->m_instances.All(), {}});
    const TClasses subclasses = own->m_subclasses.All();
    open.insert(open.end(), subclasses.rbegin(), subclasses.rend());
  }
  return visits;
}

void TInmemClass::Visit(const TInstanceStore::TInstances& instances,
                        const TEnumCallback<ICIMInstance>& callback) const {
  const bool processor = IsProcessor();
  // In the order of the paths instances stand all over the memory.
  const auto fetch = [](const ICIMInstance& instance, bool verySoon) {
    if (!verySoon)
      Prefetch(&instance, sizeof(TInmemInstance));
    else if (const auto* own = TInmemInstance::Own(instance))
      Prefetch(&own->Values());
  };
  instances.ForEachFetched(fetch, [&](const boost::shared_ptr<ICIMInstance>& instance) {
    if (!processor || IsRewritten(*instance)) DropExceptions([&] { callback(instance); });
  });
}

}  // namespace NORVHAV20
