#include "inmem/values/ValueMap.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <limits>
#include <optional>
#include <queue>
#include <string_view>
#include <utility>

#include <boost/make_shared.hpp>

#include "havcore/ICIMPropertyDecl.h"
#include "inmem/values/Failure.h"
#include "inmem/values/IQualifierFinder.h"
#include "inmem/values/QualifierValue.h"
#include "inmem/values/TPatternReader.h"
#include "inmem/values/UnsignedInteger.h"

namespace NORVHAV20 {

namespace {

using TElements = std::vector<TCIMValue>;

constexpr std::uint64_t kLargest = std::numeric_limits<std::uint64_t>::max();

// Whether a qualifier is there that holds strings.
bool HoldsStrings(const std::optional<TCIMValue>& value) {
  return value && !value->IsNull() && value->GetType() == ArrayOf(kCIMString);
}

// Adds the entries that the patterns stand for, one after the other.
class TEntryBuilder {
 public:
  explicit TEntryBuilder(TValueMap& map) : m_map(map) {}

  void Add(std::string_view pattern, const TCIMValue& text) {
    if (pattern == "..")
      m_map.defaultText = &text;
    else if (pattern.substr(0, 2) == "..")
      AddUpTo(TPatternReader(pattern.substr(2)).ReadNumber(), text);
    else
      AddFrom(TPatternReader(pattern), text);
  }

 private:
  void Append(std::uint64_t low, std::uint64_t high, const TCIMValue& text) {
    TValueMap::TEntry& entry = m_map.entries.emplace_back();
    entry.low = low;
    entry.high = high;
    entry.text = &text;
  }

  void AddUpTo(std::uint64_t high, const TCIMValue& text) {
    Append(m_next, high, text);
    m_next = high + 1;
  }

  void AddFrom(TPatternReader pattern, const TCIMValue& text) {
    const std::uint64_t low = pattern.ReadNumber();
    CloseOpenEntry(low);
    // Both dots are read as numbers are, past blanks: "3 .. 5" is a range too.
    const bool range = pattern.ReadCharacter('.') && pattern.ReadCharacter('.');
    if (range && pattern.IsAtEnd()) {
      Append(low, kLargest, text);
      m_next = low + 1;
    } else {
      m_next = low;
      AddUpTo(range ? pattern.ReadNumber() : low, text);
    }
  }

  void CloseOpenEntry(std::uint64_t next) {
    if (!m_map.entries.empty() && m_map.entries.back().high == kLargest)
      m_map.entries.back().high = next - 1;
  }

  TValueMap& m_map;
  std::uint64_t m_next = 0;  // where an entry begins that does not say so
};

void BuildImplicitMap(const TElements& texts, TValueMap& map) {
  map.entries.reserve(texts.size());
  for (const TCIMValue& text : texts) {
    const std::uint64_t number = map.entries.size();
    map.entries.push_back({number, number, &text});
  }
}

std::uint64_t NumberOf(const TCIMValue& value) {
  if (value.GetType() == kCIMBoolean) return static_cast<bool>(value) ? 1 : 0;
  const std::optional<std::uint64_t> number = UnsignedInteger(value);
  if (!number) Throw(kHAVNotSupported);
  return *number;
}

}  // namespace

namespace {

// The qualifiers as they are; nothing when there is no "Values" that makes a map.
struct TMapQualifiers {
  std::optional<TCIMValue> values;
  std::optional<TCIMValue> valueMap;  // only if it holds strings
};

TMapQualifiers QualifiersOf(ICIMPropertyDecl& decl) {
  TMapQualifiers found;
  found.values = QualifierValue(decl, "Values");
  if (!HoldsStrings(found.values)) return {};
  found.valueMap = QualifierValue(decl, "ValueMap");
  if (!HoldsStrings(found.valueMap)) found.valueMap.reset();
  return found;
}

bool Read(const TMapQualifiers& qualifiers, TValueMap& map) {
  if (!qualifiers.values) return false;
  const TElements& texts = *map.texts.emplace(*qualifiers.values);
  if (!qualifiers.valueMap) {
    BuildImplicitMap(texts, map);
    return true;
  }
  const TElements& patterns = Held<TElements>(*qualifiers.valueMap);
  if (patterns.size() != texts.size()) return false;
  map.entries.reserve(texts.size());
  TEntryBuilder builder(map);
  for (std::size_t i = 0; i < texts.size(); ++i) builder.Add(TextOf(patterns[i]), texts[i]);
  return true;
}

boost::shared_ptr<const TValueMap> MapOf(const boost::shared_ptr<const TKnownValueMap>& known) {
  if (!known->isMap) return {};
  return {known, &known->map};
}

// The numbers at which another entry may begin to count.
std::vector<std::uint64_t> Bounds(const std::vector<TValueMap::TEntry>& entries) {
  std::vector<std::uint64_t> bounds{0};
  for (const auto& entry : entries) {
    if (entry.low > entry.high) continue;
    bounds.push_back(entry.low);
    if (entry.high != kLargest) bounds.push_back(entry.high + 1);
  }
  std::sort(bounds.begin(), bounds.end());
  bounds.erase(std::unique(bounds.begin(), bounds.end()), bounds.end());
  return bounds;
}

const TValueMap::TEntry* EntryFor(std::uint64_t number, const TValueMap& map) {
  if (map.steps.empty()) {
    const auto holds = [&](const auto& e) { return e.low <= number && number <= e.high; };
    const auto entry = std::find_if(map.entries.begin(), map.entries.end(), holds);
    return entry == map.entries.end() ? nullptr : &*entry;
  }
  const auto next =
      std::upper_bound(map.steps.begin(), map.steps.end(), number,
                       [](std::uint64_t n, const auto& step) { return n < step.low; });
  return std::prev(next)->entry;
}

}  // namespace

bool BuildValueMap(ICIMPropertyDecl& decl, TValueMap& map) { return Read(QualifiersOf(decl), map); }

// Goes through the numbers upwards, with the entries that have begun in a heap whose top is the
// one that stands first.
void IndexValueMap(TValueMap& map) {
  std::vector<const TValueMap::TEntry*> coming;
  for (const auto& entry : map.entries) coming.push_back(&entry);
  std::stable_sort(coming.begin(), coming.end(),
                   [](const auto* a, const auto* b) { return a->low < b->low; });
  std::priority_queue<const TValueMap::TEntry*, std::vector<const TValueMap::TEntry*>,
                      std::greater<>>
      begun;
  auto next = coming.begin();
  std::vector<TValueMap::TStep> steps;
  for (const std::uint64_t low : Bounds(map.entries)) {
    for (; next != coming.end() && (*next)->low <= low; ++next) begun.push(*next);
    while (!begun.empty() && begun.top()->high < low) begun.pop();
    steps.push_back({low, begun.empty() ? nullptr : begun.top()});
  }
  map.steps = std::move(steps);
}

boost::shared_ptr<const TValueMap> FindValueMap(ICIMPropertyDecl& decl) {
  TMapQualifiers qualifiers = QualifiersOf(decl);
  if (!qualifiers.values) return {};
  const auto* const finder = dynamic_cast<const IQualifierFinder*>(&decl);
  auto* const place = finder ? finder->KnownValueMap() : nullptr;
  // Declarations are shared by classes that inherit them, across namespaces, too.
  const auto known = place ? boost::atomic_load(place) : nullptr;
  if (known && known->values == *qualifiers.values && known->valueMap == qualifiers.valueMap)
    return MapOf(known);
  const auto made = boost::make_shared<TKnownValueMap>();
  made->isMap = Read(qualifiers, made->map);
  made->values = *std::move(qualifiers.values);
  made->valueMap = std::move(qualifiers.valueMap);
  if (place) IndexValueMap(made->map);
  boost::shared_ptr<const TKnownValueMap> kept = made;
  if (place) boost::atomic_store(place, kept);
  return MapOf(kept);
}

std::string LookupValueMap(const TCIMValue& value, const TValueMap& map) {
  const std::uint64_t number = NumberOf(value);
  if (const auto* const entry = EntryFor(number, map)) return std::string(TextOf(*entry->text));
  if (map.defaultText) {
    std::string text(TextOf(*map.defaultText));
    if (!text.empty()) return text;
  }
  return value.ToString(10);
}

}  // namespace NORVHAV20
