// TInmemProperty: the value slot of one property of one instance, and every rule for it.
// The value itself stands in a slot table; the slot is a handle to its place there, so that
// the plug-in can make one on the stack wherever it needs the rules.
//
// Ownership: a handle refers to its table; a slot handed out shares the table. Neither owns
//            its declaration.
// Threads:   one thread at a time per namespace.
// Errors:    THAVException: 14 for a value of the wrong type, 15 from every operation that
//            needs the declaration when it is gone.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "havcore/ICIMProperty.h"
#include "inmem/values/TSlotTable.h"

namespace NORVHAV20 {

class TInmemProperty final : public ICIMProperty {
 public:
  // A handle, good as long as the table is.
  TInmemProperty(TSlotTable& table, std::size_t index) noexcept
      : m_table(&table), m_index(static_cast<std::uint32_t>(index)) {}
  // A slot that keeps the table.
  TInmemProperty(const boost::intrusive_ptr<TSlotTable>& table, std::size_t index) noexcept
      : TInmemProperty(*table, index) {
    intrusive_ptr_add_ref(m_table);
    m_keepsTable = true;
  }
  TInmemProperty(const TInmemProperty&) = delete;
  ~TInmemProperty() override {
    if (m_keepsTable) intrusive_ptr_release(m_table);
  }

  // Returns a slot that belongs to no instance and keeps `decl` alive.
  static boost::shared_ptr<ICIMProperty> Standalone(
      const boost::shared_ptr<ICIMPropertyDecl>& decl);

  TCIMValue::TCIMType GetType(TOptions options) const override;
  bool IsArray(TOptions options) const override;
  bool IsValueDefault(TOptions options) const override;
  const TCIMValue& GetValue(TOptions options) const override;
  void SetValue(const TCIMValue& value, TOptions options) override;
  bool IsValueUnassigned(TOptions options) const override;
  boost::shared_ptr<ICIMPropertyDecl> GetDecl(TOptions options) const override;
  bool operator==(const ICIMProperty& other) const override;
  bool operator<(const ICIMProperty& other) const override;
  ICIMProperty& operator=(const ICIMProperty&) override { return *this; }
  TInmemProperty& operator=(const TInmemProperty&) = delete;
  const TCIMValue& GetPrevValue(TOptions options) const override;
  void ClearPrevValue(TOptions options) override;
  void SetPrevValue(const TCIMValue& value, TOptions options) override;
  bool HasPrevValue(TOptions options) const override;
  std::string GetDisplayValue(TOptions options) const override;
  std::string GetPrevDisplayValue(TOptions options) const override;
  std::vector<std::string> GetDisplayValues(TOptions options) const override;

 private:
  boost::shared_ptr<ICIMPropertyDecl> Decl() const;

  TSlotTable* m_table;
  std::uint32_t m_index;
  bool m_keepsTable = false;
};

}  // namespace NORVHAV20
