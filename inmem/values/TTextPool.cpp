#include "inmem/values/TTextPool.h"

#include <functional>

namespace NORVHAV20 {

const TCIMValue& TTextPool::Share(std::size_t slot, const TCIMValue& text) noexcept {
  TRecord& record = m_records[slot];
  if (record.leftAlone) return text;
  const auto& wanted = HeldText(text);
  const std::size_t hash = std::hash<std::string_view>()(wanted);
  const auto tag = static_cast<std::uint32_t>(hash >> 16) | 1U;  // none is that of a free place
  const std::size_t set = hash % kSets;
  for (std::size_t i = set * kWays; i < (set + 1) * kWays; ++i) {
    if (m_hashes[i] != tag || HeldText(m_texts[i]) != wanted) continue;
    Count(record, true);
    return m_texts[i];
  }
  Count(record, false);
  const std::size_t place = set * kWays + m_oldest[set];
  m_oldest[set] = static_cast<std::uint8_t>((m_oldest[set] + 1) % kWays);
  m_hashes[place] = tag;
  m_texts[place] = text;
  return text;
}

void TTextPool::Count(TRecord& record, bool found) noexcept {
  ++record.given;
  if (found) ++record.found;
  if (record.given < kWindow) return;
  record.leftAlone = record.found < kWindow / 4;
  record.given = record.found = 0;
}

}  // namespace NORVHAV20
