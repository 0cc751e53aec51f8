#include "havhost/report/TPathOrder.h"

#include <algorithm>
#include <utility>

#include "havhost/report/Text.h"

namespace havhost {

using namespace NORVHAV20;

namespace {

bool IsNumber(ECIMType type) { return type >= kCIMUInt8 && type <= kCIMReal64; }

int CompareTexts(const std::string& a, const std::string& b) {
  return NaturalLess(a, b) ? -1 : NaturalLess(b, a) ? 1 : 0;
}

}  // namespace

TPathOrder::TPathOrder(const TCIMReference& path) : m_className(path.GetClassName()) {
  for (auto& [name, value] : path.GetKeyValues()) m_keys.push_back(value);
}

int TPathOrder::Compare(const TPathOrder& a, const TPathOrder& b) {
  if (const int classes = CompareTexts(a.m_className, b.m_className)) return classes;
  const auto common = std::min(a.m_keys.size(), b.m_keys.size());
  for (std::size_t i = 0; i < common; ++i)
    if (const int keys = Compare(a.m_keys[i], b.m_keys[i])) return keys;
  return a.m_keys.size() < b.m_keys.size() ? -1 : a.m_keys.size() > b.m_keys.size() ? 1 : 0;
}

int TPathOrder::Compare(const TCIMValue& a, const TCIMValue& b) {
  if (a.IsReference() && b.IsReference())
    return Compare(TPathOrder(static_cast<const TCIMReference&>(a)),
                   TPathOrder(static_cast<const TCIMReference&>(b)));
  if (a.GetType() == b.GetType() && IsNumber(a.GetType())) return a < b ? -1 : b < a ? 1 : 0;
  return CompareTexts(a.ToString(10), b.ToString(10));
}

void SortByPath(std::vector<boost::shared_ptr<ICIMInstance>>& instances) {
  std::vector<std::pair<TPathOrder, boost::shared_ptr<ICIMInstance>>> places;
  places.reserve(instances.size());
  for (auto& instance : instances)
    places.emplace_back(TPathOrder(instance->GetReference({})), std::move(instance));
  std::stable_sort(places.begin(), places.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  for (std::size_t i = 0; i < places.size(); ++i) instances[i] = std::move(places[i].second);
}

}  // namespace havhost
