// The properties of an instance by name: its slots, and the few standard properties that
// readers ask every instance for, whether its class declares them or not.

#include <boost/make_shared.hpp>

#include "havcore/ICIMClass.h"
#include "havcore/ICIMPropertyDecl.h"
#include "havcore/THAVException.h"
#include "inmem/model/TInmemClass.h"
#include "inmem/model/TInmemInstance.h"
#include "inmem/model/TInmemPropertyDecl.h"
#include "inmem/values/CimName.h"
#include "inmem/values/Failure.h"
#include "inmem/values/TInmemProperty.h"

namespace NORVHAV20 {

namespace {

bool Holds(const std::string& name, const char* part) {
  return name.find(part) != std::string::npos;
}

bool IsStatusName(const std::string& name) {
  for (const char* status :
       {"CommunicationStatus", "DetailedStatus", "HealthState", "OperatingStatus", "PrimaryStatus"})
    if (Holds(name, status)) return true;
  return false;
}

// Hands the class a declaration, and returns what it then has under the name.
boost::shared_ptr<ICIMPropertyDecl> Declare(ICIMClass& cls,
                                            const boost::shared_ptr<ICIMPropertyDecl>& decl) {
  if (auto* own = dynamic_cast<TInmemClass*>(&cls)) return own->Declare(decl);
  cls.AddPropertyDecl(decl, TOptions());
  return cls.GetPropertyDecl(decl->GetName(TOptions()), TOptions());
}

}  // namespace

// A name that is not there has to be a name.
std::size_t TInmemInstance::SlotOf(const std::string& name) const {
  const std::size_t index = m_values->Layout().FindSpelt(name);
  if (index == TSlotLayout::kNone) static_cast<void>(CimName(name));
  return index;
}

TCIMValue TInmemInstance::ValueOf(const std::string& name) const {
  const std::size_t index = SlotOf(name);
  if (index != TSlotLayout::kNone) return SlotHandle(index).GetValue(TOptions());
  return GetProperty(name, TOptions())->GetValue(TOptions());
}

boost::shared_ptr<ICIMProperty> TInmemInstance::GetProperty(const std::string& name,
                                                            TOptions) const {
  const std::size_t index = SlotOf(name);
  if (index != TSlotLayout::kNone) return m_values->Slot(index);
  if (Holds(name, "speedDuplex"))
    return DerivedProperty("speedDuplex", TCIMValue(std::string("Unknown")));
  if (Holds(name, "Description"))
    return DerivedProperty("Description", TCIMValue(std::string(" ")));
  if (IsStatusName(name)) return DerivedProperty(name, TCIMValue(std::uint16_t{0}));
  Throw(kHAVNotFound);
}

// The class decides what becomes of a second declaration of the name; the slot is made on
// what the class has then, and is not kept in the instance. It is made first, for once the
// class has taken the declaration nothing may fail.
boost::shared_ptr<ICIMProperty> TInmemInstance::DerivedProperty(
    const std::string& name, const TCIMValue& defaultValue) const {
  const auto cls = m_class;
  const boost::shared_ptr<ICIMPropertyDecl> decl =
      boost::make_shared<TInmemPropertyDecl>(cls, name, defaultValue);
  const auto slot = TInmemProperty::Standalone(decl);
  const auto declared = Declare(*cls, decl);
  return declared == decl ? slot : TInmemProperty::Standalone(declared);
}

bool TInmemInstance::IsDerivedName(const std::string& name) {
  return Holds(name, "speedDuplex") || Holds(name, "Description") || IsStatusName(name);
}

void TInmemInstance::SetPropertyValue(const std::string& name, const TCIMValue& value, TOptions) {
  const std::size_t index = SlotOf(name);
  if (index != TSlotLayout::kNone) return SetSlot(index, value);
  if (!Holds(name, "speedDuplex")) Throw(kHAVNotFound);
}

// The usual case without going through the declaration's weak link: nothing that it calls may
// let the instance go, and nothing is to be said.
void TInmemInstance::SetSlot(std::size_t index, const TCIMValue& value) {
  const auto* own = TInmemPropertyDecl::Own(DeclAt(index));
  if (own && own->Type() == value.GetType())
    m_values->Assign(index, value);
  else
    SlotHandle(index).SetValue(value, TOptions());
}

void TInmemInstance::EnumerateProperties(
    const boost::function<bool(boost::shared_ptr<ICIMProperty>)>& callback, TOptions) {
  const auto self = shared_from_this();
  for (std::size_t i = 0; i < m_values->Layout().Size(); ++i) {
    try {
      callback(m_values->Slot(i));
    } catch (const THAVException&) {
      LogError("TInmemInstance::EnumerateProperties: Failed in Enumerate the Property \"" +
               m_declarations->decls[i]->GetName(TOptions()) + "\" of Class " +
               m_class->GetName(TOptions()));
    }
  }
}

}  // namespace NORVHAV20
