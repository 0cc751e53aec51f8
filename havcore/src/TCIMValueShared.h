// TCIMValueShared: what the copies of a TCIMValue share when it does not stand in the value
// itself. Immutable once made; private to TCIMValue.
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>
#include <new>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "havcore/TCIMDateTime.h"
#include "havcore/TCIMReference.h"
#include "havcore/TCIMValue.h"

namespace NORVHAV20 {

// The text stands right behind the object, in the same block: most values of most models are
// short texts, and this is half of what a string object of its own takes.
struct TCIMValue::TSharedText : TShared {
  static TSharedText* Make(std::string_view text) {
    if (text.size() > std::numeric_limits<std::uint32_t>::max()) throw std::bad_alloc();
    void* block = ::operator new(sizeof(TSharedText) + text.size());
    auto* made = new (block) TSharedText(static_cast<std::uint32_t>(text.size()));
    std::copy(text.begin(), text.end(), reinterpret_cast<char*>(made + 1));
    return made;
  }
  static void Destroy(TSharedText* text) noexcept {
    static_assert(std::is_trivially_destructible_v<TSharedText>);
    ::operator delete(text);
  }
  std::string_view Text() const noexcept {
    return {reinterpret_cast<const char*>(this + 1), length};
  }

 private:
  explicit TSharedText(std::uint32_t size) noexcept : length(size) {}

  const std::uint32_t length;
};

struct TCIMValue::TSharedDateTime : TShared {
  explicit TSharedDateTime(const TCIMDateTime& time) noexcept : value(time) {}
  const TCIMDateTime value;
};

struct TCIMValue::TSharedReference : TShared {
  explicit TSharedReference(const TCIMReference& reference) : value(reference) {}
  TCIMReference value;
};

struct TCIMValue::TSharedArray : TShared {
  explicit TSharedArray(std::vector<TCIMValue> elements) noexcept : value(std::move(elements)) {}
  std::vector<TCIMValue> value;
};

}  // namespace NORVHAV20
