#include "inmem/model/TClassCensus.h"

#include <algorithm>

#include "inmem/model/INamespaceRegistry.h"
#include "inmem/model/TInmemClass.h"

namespace NORVHAV20 {

TClassCensus::~TClassCensus() {
  // By index and one class at a time: nothing here may allocate.
  for (const auto& entry : m_classes)
    if (const auto cls = entry.lock()) cls->BreakCircles();
}

void TClassCensus::Replace(const INamespaceRegistry& member, INamespaceRegistry& by) noexcept {
  *std::find(m_members.begin(), m_members.end(), &member) = &by;
}

void TClassCensus::Leave(const INamespaceRegistry& member) noexcept {
  m_members.erase(std::find(m_members.begin(), m_members.end(), &member));
}

boost::shared_ptr<INamespaceRegistry> TClassCensus::Living() const {
  for (INamespaceRegistry* member : m_members)
    if (auto living = member->Registry()) return living;
  return {};
}

void TClassCensus::Enter(const boost::shared_ptr<TInmemClass>& cls) {
  if (m_classes.size() >= m_pruneAt) {
    m_classes.erase(std::remove_if(m_classes.begin(), m_classes.end(),
                                   [](const auto& entry) { return entry.expired(); }),
                    m_classes.end());
    m_pruneAt = std::max<std::size_t>(64, 2 * m_classes.size());
  }
  m_classes.push_back(cls);
}

}  // namespace NORVHAV20
