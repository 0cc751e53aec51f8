#include "inmem/model/TInmemInstance.h"

#include <algorithm>
#include <utility>

#include <boost/make_shared.hpp>

#include "havcore/ICIMClass.h"
#include "havcore/ICIMPropertyDecl.h"
#include "havcore/TCIMDateTime.h"
#include "havcore/THAVException.h"
#include "havcore/TOSSpecific.h"
#include "inmem/model/Snapshot.h"
#include "inmem/model/TInmemClass.h"
#include "inmem/values/CimName.h"
#include "inmem/values/Failure.h"
#include "inmem/values/HostServices.h"
#include "inmem/values/TInmemProperty.h"

namespace NORVHAV20 {

namespace {

// The slot declarations of a class of any make. Of two with one name the first stays.
boost::intrusive_ptr<const TSlotDeclarations> SlotDeclarationsOf(const ICIMClass& cls) {
  if (const auto* own = TInmemClass::Own(cls)) return own->SlotDeclarations();
  std::map<std::string, boost::shared_ptr<ICIMPropertyDecl>> slots;
  Walk<ICIMPropertyDecl>(
      [&](const auto& insert) { cls.EnumeratePropertyDecls(insert, TOptions()); },
      [&](const auto& decl) { slots.emplace(NormalizeCimName(decl->GetName(TOptions())), decl); });
  return new TSlotDeclarations(std::vector<TSlotDeclarations::TNamed>(slots.begin(), slots.end()));
}

}  // namespace

// Adds the value of one key after the other to a path under construction.
struct TBuildPathCallback {
  boost::shared_ptr<const TInmemInstance> instance;
  TCIMReference* path;

  bool operator()(const std::string* name) const {
    if (name) path->AddKeyValue(*name, instance->ValueOf(*name));
    return true;
  }
};

const int TInmemInstance::kValidateKeysNonNull;
const int TInmemInstance::kValidateReferences;

TInmemInstance::TInmemInstance(boost::shared_ptr<ICIMClass> cls, int flags)
    : m_class(Require(std::move(cls))),
      m_declarations(SlotDeclarationsOf(*m_class)),
      m_values(TSlotTable::Make(m_declarations->layout)),
      m_flags(flags) {
  StampCollectionTime();
}

TInmemInstance::~TInmemInstance() { m_values->ReleaseSlots(); }

boost::shared_ptr<TInmemInstance> TInmemInstance::Self() const {
  return boost::const_pointer_cast<TInmemInstance>(shared_from_this());
}

// A class of our own has declared what the layout has, and an exception for each instance of
// a class without collection time would cost more than the rest of it.
void TInmemInstance::StampCollectionTime() {
  if (TInmemClass::Own(*m_class) &&
      m_values->Layout().Find("datetimeofcollection") == TSlotLayout::kNone)
    return;
  try {
    Require(m_class->GetPropertyDecl("DateTimeOfCollection", TOptions()));
    SetPropertyValue("DateTimeOfCollection", TCIMValue(TOSSpecific::GetLocalTime()), TOptions());
  } catch (const THAVException&) {
    // Then the instance has no collection time.
  }
}

void TInmemInstance::Validate(TOptions) const {
  const auto self = shared_from_this();
  if (m_flags & kValidateKeysNonNull) ValidateKeys();
  if ((m_flags & kValidateReferences) && m_class->IsAssociation(TOptions())) ValidateReferences();
}

// The usual case without a callback: the keys of a class of our own, none of them NULL.
void TInmemInstance::ValidateKeys() const {
  if (const auto* own = TInmemClass::Own(*m_class)) {
    const auto keys = own->KeyDecls();
    const auto isSet = [this](const auto& decl) {
      const std::size_t index = m_values->Layout().FindSpelt(decl->GetName(TOptions()));
      const TCIMValue* value = index == TSlotLayout::kNone ? nullptr : m_values->Assigned(index);
      return value && !value->IsNull();
    };
    if (std::all_of(keys->begin(), keys->end(), isSet)) return;
  }
  m_class->EnumerateKeyNames([this](const std::string* name) { return ValidateKeyNonNull(name); },
                             TOptions());
}

bool TInmemInstance::ValidateKeyNonNull(const std::string* name) const {
  if (!name || !ValueOf(*name).IsNull()) return true;
  LogNote("Inmem: Instance " + m_class->GetName(TOptions()) + ": key property " + *name +
          " is NULL");
  Throw(kHAVKeyIsNull);
}

void TInmemInstance::ValidateReferences() const {
  for (std::size_t i = 0; i < m_values->Layout().Size(); ++i) {
    const TCIMValue value = SlotHandle(i).GetValue(TOptions());
    if (!value.IsReference()) continue;
    const TCIMReference& reference = Held<TCIMReference>(value);
    try {
      reference.GetCIMElement(false);
    } catch (const THAVException& failure) {
      if (failure.GetStatusCode() == kHAVNotFound)
        LogNote("Inmem: Reference " + reference.GetPath() + " doesn't point to anything!");
      throw THAVException(failure);
    }
  }
}

void TInmemInstance::AddToNamespace(TOptions options) {
  const auto self = shared_from_this();
  try {
    Validate(std::move(options));
  } catch (const THAVException&) {
    LogNote("Inmem: Instance " + m_class->GetName(TOptions()) + ": invalid references");
    return;
  }
  m_class->AddInstance(self, TOptions());
}

void TInmemInstance::ModifyInstance(boost::shared_ptr<ICIMInstance>, TOptions) {}

void TInmemInstance::Delete(TOptions) { m_class->RemoveInstance(shared_from_this(), TOptions()); }

TCIMReference TInmemInstance::GetReference(TOptions options) const {
  const auto self = shared_from_this();
  TCIMReference path(boost::shared_ptr<ICIMNamespace>(), {});
  path.SetClass(m_class);
  const auto name = options.find("ProvNSP");
  path.SetNameSpaceName(name == options.end() ? std::string()
                                              : static_cast<std::string>(name->second));
  m_class->EnumerateKeyNames(TBuildPathCallback{self, &path}, TOptions());
  return path;
}

// A class of our own has its keys in the order of a path, each under the name that it declares.
bool TInmemInstance::PutPath(TPathText& text) const {
  const auto* own = TInmemClass::Own(*m_class);
  const auto keys = own ? own->KnownKeys() : nullptr;
  if (!keys) return false;
  return text.Set(own->Name(), keys->size(),
                  [&](std::size_t i, std::string_view& name, const TCIMValue*& value) {
                    name = (*keys)[i]->GetName(TOptions());
                    const std::size_t index = m_values->Layout().FindSpelt(name);
                    value = index == TSlotLayout::kNone ? nullptr : m_values->Assigned(index);
                    return value != nullptr;
                  });
}

TCIMReference TInmemInstance::GetInstanceReference(TOptions options) {
  return GetReference(std::move(options));
}

boost::shared_ptr<ICIMClass> TInmemInstance::GetClass(TOptions) const { return m_class; }

std::string TInmemInstance::GetPegasusNSPStr() const { return std::string(); }

TCIMValue TInmemInstance::InvokeMethod(const std::string&, std::map<std::string, TCIMValue>&,
                                       TOptions) {
  return TCIMValue();
}

bool TInmemInstance::operator==(ICIMInstance& other) const {
  const ICIMClass* const own = m_class.get();
  return own == other.GetClass(TOptions()).get();
}

bool TInmemInstance::operator<(ICIMInstance& other) const {
  const auto own = m_class;
  return own.owner_before(other.GetClass(TOptions()));
}

ICIMInstance& TInmemInstance::operator=(const ICIMInstance&) { return *this; }

}  // namespace NORVHAV20
