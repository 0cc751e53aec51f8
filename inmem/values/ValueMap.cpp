#include "inmem/values/ValueMap.h"

#include <limits>
#include <optional>
#include <string_view>
#include <utility>

#include "havcore/ICIMPropertyDecl.h"
#include "inmem/values/Failure.h"
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

bool BuildValueMap(ICIMPropertyDecl& decl, TValueMap& map) {
  std::optional<TCIMValue> values = QualifierValue(decl, "Values");
  if (!HoldsStrings(values)) return false;
  const TElements& texts = *map.texts.emplace(*std::move(values));

  const std::optional<TCIMValue> valueMap = QualifierValue(decl, "ValueMap");
  if (!HoldsStrings(valueMap)) {
    BuildImplicitMap(texts, map);
    return true;
  }
  const TElements& patterns = Held<TElements>(*valueMap);
  if (patterns.size() != texts.size()) return false;
  map.entries.reserve(texts.size());
  TEntryBuilder builder(map);
  for (std::size_t i = 0; i < texts.size(); ++i) builder.Add(TextOf(patterns[i]), texts[i]);
  return true;
}

std::string LookupValueMap(const TCIMValue& value, const TValueMap& map) {
  const std::uint64_t number = NumberOf(value);
  for (const TValueMap::TEntry& entry : map.entries)
    if (entry.low <= number && number <= entry.high) return std::string(TextOf(*entry.text));
  if (map.defaultText) {
    std::string text(TextOf(*map.defaultText));
    if (!text.empty()) return text;
  }
  return value.ToString(10);
}

}  // namespace NORVHAV20
