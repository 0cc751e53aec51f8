// TCIMValueShared: what the copies of a TCIMValue share when it does not stand in the value
// itself. Immutable once made; private to TCIMValue.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "havcore/TCIMDateTime.h"
#include "havcore/TCIMReference.h"
#include "havcore/TCIMValue.h"

namespace NORVHAV20 {

struct TCIMValue::TSharedText : TShared {
  explicit TSharedText(std::string text) noexcept : value(std::move(text)) {}
  const std::string value;
};

struct TCIMValue::TSharedDateTime : TShared {
  explicit TSharedDateTime(const TCIMDateTime& time) noexcept : value(time) {}
  const TCIMDateTime value;
};

struct TCIMValue::TSharedReference : TShared {
  explicit TSharedReference(const TCIMReference& reference) : value(reference) {}
  const TCIMReference value;
};

struct TCIMValue::TSharedArray : TShared {
  explicit TSharedArray(std::vector<TCIMValue> elements) noexcept : value(std::move(elements)) {}
  const std::vector<TCIMValue> value;
};

}  // namespace NORVHAV20
