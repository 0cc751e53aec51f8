// TSlotLayout: what is the same for all instances of a class: the names of its properties,
// folded and in order, and their declarations.
//
// Ownership: shared by instances and slots; holds the declarations weakly. Those who need
//            them kept alive share a TSlotDeclarations.
// Threads:   immutable, but for the watcher and shared texts: one thread at a time per namespace.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <boost/shared_ptr.hpp>
#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <boost/smart_ptr/intrusive_ref_counter.hpp>
#include <boost/weak_ptr.hpp>

#include "inmem/values/TTextPool.h"

namespace NORVHAV20 {

class ICIMPropertyDecl;
class TSlotTable;

// Who is told when references are assigned.
class IReferenceWatcher {
 public:
  // Before a reference of this table is assigned, and after.
  virtual void Assigning(const TSlotTable& values) noexcept = 0;
  virtual void Assigned(const TSlotTable& values) noexcept = 0;

 protected:
  ~IReferenceWatcher() = default;
};

class TSlotLayout : public boost::intrusive_ref_counter<TSlotLayout> {
 public:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  struct TEntry {
    std::string name;
    boost::weak_ptr<ICIMPropertyDecl> decl;
  };

  // `entries` are sorted by folded name, each name once.
  explicit TSlotLayout(std::vector<TEntry> entries);

  std::size_t Size() const noexcept { return m_entries.size(); }
  const TEntry& operator[](std::size_t index) const noexcept { return m_entries[index]; }
  // Returns the index of a folded name, kNone when there is none. Complexity: O(1) on
  // average; allocates nothing.
  std::size_t Find(std::string_view folded) const noexcept;
  // The same for a name in any spelling, which is not checked: what is no name is not there.
  std::size_t FindSpelt(std::string_view name) const noexcept;

  // Returns what an instance keeps for a value given to a slot: one equal to it that another
  // instance has, or else the value itself. Good until the next call.
  const TCIMValue& Share(std::size_t index, const TCIMValue& value) const noexcept;

  // Who watches the instances of this layout, null when nobody does.
  IReferenceWatcher* Watcher() const noexcept { return m_watcher; }
  void Watch(IReferenceWatcher* watcher) const noexcept { m_watcher = watcher; }

 private:
  std::vector<TEntry> m_entries;
  // Open addressing with linear probing: indices plus one, 0 where there is none.
  std::vector<std::uint32_t> m_table;
  mutable IReferenceWatcher* m_watcher = nullptr;
  // Made when instances are many enough to gain by it.
  mutable std::unique_ptr<TTextPool> m_texts;
  mutable std::uint32_t m_textsGiven = 0;
};

// A layout together with the ownership of its declarations, in the same order.
struct TSlotDeclarations : boost::intrusive_ref_counter<TSlotDeclarations> {
  using TNamed = std::pair<std::string, boost::shared_ptr<ICIMPropertyDecl>>;

  // `named` are sorted by folded name, each name once.
  explicit TSlotDeclarations(std::vector<TNamed> named);

  boost::intrusive_ptr<const TSlotLayout> layout;
  std::vector<boost::shared_ptr<ICIMPropertyDecl>> decls;
};

}  // namespace NORVHAV20
