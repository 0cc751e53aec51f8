#include "inmem/values/TInmemProperty.h"

#include <sstream>

#include <boost/make_shared.hpp>

#include "havcore/ICIMClass.h"
#include "havcore/ICIMPropertyDecl.h"
#include "inmem/values/DisplayText.h"
#include "inmem/values/Failure.h"
#include "inmem/values/HostServices.h"

namespace NORVHAV20 {

namespace {

// A slot that belongs to no instance, with what it needs.
struct TStandaloneSlot {
  explicit TStandaloneSlot(const boost::shared_ptr<ICIMPropertyDecl>& declaration)
      : decl(declaration),
        slot(TSlotTable::Make(new TSlotLayout({{std::string(), declaration}})), 0) {}

  boost::shared_ptr<ICIMPropertyDecl> decl;
  TInmemProperty slot;
};

void RequireType(const char* operation, TCIMValue::TCIMType declared, TCIMValue::TCIMType given) {
  if (static_cast<ECIMType>(declared) == static_cast<ECIMType>(given)) return;
  std::ostringstream text;
  text.exceptions(std::ios::badbit);  // lack of memory is told, and cuts no line short
  text.imbue(std::locale::classic());
  text << operation << ": decl is type " << declared << " but value is type " << given;
  LogError(text.str());
  Throw(kHAVTypesDiffer);
}

// A reference that is declared to no class takes one to any.
void RequireReferencedClass(const TCIMValue& declared, const TCIMValue& given) {
  const auto declaredClass = declared.GetReferencedClass();
  if (!declaredClass && IsToNoClass(declared)) return;
  const auto givenClass = Require(given.GetReferencedClass());
  Require(declaredClass);
  if (givenClass->IsA(declaredClass, TOptions())) return;
  LogError("SetPrevValue: decl references type " + declaredClass->GetName(TOptions()) +
           " but value references " + givenClass->GetName(TOptions()));
  Throw(kHAVTypesDiffer);
}

}  // namespace

boost::shared_ptr<ICIMProperty> TInmemProperty::Standalone(
    const boost::shared_ptr<ICIMPropertyDecl>& decl) {
  const auto owner = boost::make_shared<TStandaloneSlot>(Require(decl));
  return {owner, &owner->slot};
}

boost::shared_ptr<ICIMPropertyDecl> TInmemProperty::Decl() const {
  return Require(GetDecl(TOptions()));
}

TCIMValue::TCIMType TInmemProperty::GetType(TOptions) const { return Decl()->GetType(TOptions()); }

bool TInmemProperty::IsArray(TOptions) const { return Decl()->IsArray(TOptions()); }

bool TInmemProperty::IsValueDefault(TOptions) const { return !m_table->Assigned(m_index); }

bool TInmemProperty::IsValueUnassigned(TOptions options) const {
  return IsValueDefault(std::move(options));
}

const TCIMValue& TInmemProperty::GetValue(TOptions) const {
  if (const TCIMValue* assigned = m_table->Assigned(m_index)) return *assigned;
  return Decl()->GetDefaultValue(TOptions());
}

void TInmemProperty::SetValue(const TCIMValue& value, TOptions) {
  const boost::intrusive_ptr<TSlotTable> table(m_table);
  const std::size_t index = m_index;
  RequireType("Inmem: SetValue", GetType(TOptions()), value.GetType());
  table->Assign(index, value);
}

boost::shared_ptr<ICIMPropertyDecl> TInmemProperty::GetDecl(TOptions) const {
  return m_table->Layout()[m_index].decl.lock();
}

bool TInmemProperty::operator==(const ICIMProperty& other) const {
  const auto decl = Decl();
  const TCIMValue value = GetValue(TOptions());
  return decl == other.GetDecl(TOptions()) && value == other.GetValue(TOptions());
}

bool TInmemProperty::operator<(const ICIMProperty& other) const {
  const auto decl = Decl();
  const TCIMValue value = GetValue(TOptions());
  const auto otherDecl = other.GetDecl(TOptions());
  if (decl < otherDecl) return true;
  return decl == otherDecl && value < other.GetValue(TOptions());
}

const TCIMValue& TInmemProperty::GetPrevValue(TOptions) const {
  if (const TCIMValue* previous = m_table->Previous(m_index)) return *previous;
  return GetValue(TOptions());
}

void TInmemProperty::ClearPrevValue(TOptions) { m_table->SetPrevious(m_index, TCIMValue()); }

void TInmemProperty::SetPrevValue(const TCIMValue& value, TOptions) {
  const boost::intrusive_ptr<TSlotTable> table(m_table);
  const std::size_t index = m_index;
  if (!value.IsNull()) {
    const auto decl = Decl();
    RequireType("SetPrevValue", decl->GetType(TOptions()), value.GetType());
    if (value.IsReference()) RequireReferencedClass(decl->GetDefaultValue(TOptions()), value);
  }
  table->SetPrevious(index, value);
}

bool TInmemProperty::HasPrevValue(TOptions) const { return m_table->Previous(m_index) != nullptr; }

std::string TInmemProperty::GetDisplayValue(TOptions) const {
  const auto decl = Decl();
  return DisplayText(*decl, GetValue(TOptions()));
}

std::string TInmemProperty::GetPrevDisplayValue(TOptions) const {
  const auto decl = Decl();
  return DisplayText(*decl, GetPrevValue(TOptions()));
}

std::vector<std::string> TInmemProperty::GetDisplayValues(TOptions) const {
  const auto decl = Decl();
  return DisplayTexts(*decl, GetValue(TOptions()));
}

}  // namespace NORVHAV20
