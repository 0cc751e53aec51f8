// TSlotTable: the property values of one instance, without the rules for them (those are
// TInmemProperty's). What is the same for all instances of a class, names, order and
// declarations, stands once, in a layout that they share; a value costs 16 bytes whether it
// is assigned or not, and the slot objects that callers see are made when one first asks.
//
// Ownership: owns the values; the layout holds the declarations weakly, and those who need
//            them kept alive share a TSlotDeclarations.
// Threads:   one thread at a time per namespace.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include "havcore/TCIMValue.h"

namespace NORVHAV20 {

class ICIMPropertyDecl;
class TInmemProperty;

// The names of a class's properties, folded and in order, and their declarations.
class TSlotLayout {
 public:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  struct TEntry {
    std::string name;
    boost::weak_ptr<ICIMPropertyDecl> decl;
  };

  // `entries` are sorted by name, each name once.
  explicit TSlotLayout(std::vector<TEntry> entries) : m_entries(std::move(entries)) {}

  std::size_t Size() const noexcept { return m_entries.size(); }
  const TEntry& operator[](std::size_t index) const noexcept { return m_entries[index]; }
  // Returns the index of a folded name, kNone when there is none. Complexity: O(log n).
  std::size_t Find(std::string_view folded) const noexcept;

 private:
  std::vector<TEntry> m_entries;
};

// A layout together with the ownership of its declarations, in the same order.
struct TSlotDeclarations {
  using TNamed = std::pair<std::string, boost::shared_ptr<ICIMPropertyDecl>>;

  // `named` are sorted by folded name, each name once.
  explicit TSlotDeclarations(std::vector<TNamed> named);

  boost::shared_ptr<const TSlotLayout> layout;
  std::vector<boost::shared_ptr<ICIMPropertyDecl>> decls;
};

class TSlotTable {
 public:
  explicit TSlotTable(const boost::shared_ptr<const TSlotLayout>& layout);
  ~TSlotTable();
  TSlotTable(const TSlotTable&) = delete;
  TSlotTable& operator=(const TSlotTable&) = delete;

  const TSlotLayout& Layout() const noexcept { return *m_layout; }

  // The value assigned to a slot, null while none is.
  const TCIMValue* Assigned(std::size_t index) const noexcept;
  void Assign(std::size_t index, const TCIMValue& value) noexcept;

  // The previous value of a slot, null while it has none. It keeps its place.
  const TCIMValue* Previous(std::size_t index) const noexcept;
  void SetPrevious(std::size_t index, const TCIMValue& value);

  // The slot object, which lives as long as the table.
  TInmemProperty& Slot(std::size_t index);

 private:
  boost::shared_ptr<const TSlotLayout> m_layout;
  std::unique_ptr<TCIMValue[]> m_values;
  std::vector<bool> m_assigned;
  std::unique_ptr<std::map<std::size_t, TCIMValue>> m_previous;
  std::vector<TInmemProperty> m_slots;
};

}  // namespace NORVHAV20
