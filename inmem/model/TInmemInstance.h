// TInmemInstance: one instance of a class: a value for each property that the class declared
// when the instance was made.
//
// Two further jobs have sources of their own: TInmemInstanceAssociations.cpp (what refers to
// the instance, and what stands at the other end), TInmemInstanceProperties.cpp (properties
// by name, the ones that every instance answers included).
//
// Ownership: always held by a shared pointer; shared by its class once it is stored; shares
//            its class and the declarations of its slots.
// Threads:   one thread at a time per namespace.
// Errors:    THAVException; the status with each operation of the interface.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <typeinfo>

#include <boost/enable_shared_from_this.hpp>
#include <boost/shared_ptr.hpp>

#include "havcore/ICIMInstance.h"
#include "inmem/model/TInstanceStore.h"
#include "inmem/values/TInmemProperty.h"
#include "inmem/values/TSlotTable.h"

namespace NORVHAV20 {

class ICIMPropertyDecl;
class TInmemClass;
class TLinkIndex;
class TMemoryWatch;
class TPathText;

class HAV_TYPE TInmemInstance final : public ICIMInstance,
                                      public boost::enable_shared_from_this<TInmemInstance> {
 public:
  using TCallback = TEnumCallback<ICIMInstance>;

  // What Validate checks: that no key is NULL; that the references of an association resolve.
  INMEM_API static const int kValidateKeysNonNull = 1;
  INMEM_API static const int kValidateReferences = 2;

  // `flags`: a set of the constants above. Throws 15 when `cls` is empty.
  INMEM_API TInmemInstance(boost::shared_ptr<ICIMClass> cls, int flags);
  INMEM_API ~TInmemInstance() override;
  TInmemInstance(const TInmemInstance&) = delete;
  TInmemInstance& operator=(const TInmemInstance&) = delete;

  // Throws 18, logged, for a NULL key; and what resolving a reference throws, logged when it
  // is 15.
  INMEM_API void Validate(TOptions options) const override;
  INMEM_API void AddToNamespace(TOptions options) override;
  INMEM_API void ModifyInstance(boost::shared_ptr<ICIMInstance> instance,
                                TOptions options) override;
  INMEM_API void Delete(TOptions options) override;
  INMEM_API TCIMReference GetReference(TOptions options) const override;
  INMEM_API TCIMReference GetInstanceReference(TOptions options) override;
  INMEM_API boost::shared_ptr<ICIMClass> GetClass(TOptions options) const override;
  INMEM_API std::string GetPegasusNSPStr() const override;
  INMEM_API void EnumerateAssociatedInstances(const TCallback& callback,
                                              const std::string& associationClass,
                                              const std::string& resultClass,
                                              const std::string& role,
                                              const std::string& resultRole,
                                              TOptions options) override;
  INMEM_API void EnumerateAssociationInstances(const TCallback& callback,
                                               const std::string& resultClass,
                                               const std::string& role, TOptions options) override;
  INMEM_API boost::shared_ptr<ICIMProperty> GetProperty(const std::string& name,
                                                        TOptions options) const override;
  INMEM_API void SetPropertyValue(const std::string& name, const TCIMValue& value,
                                  TOptions options) override;
  INMEM_API void EnumerateProperties(
      const boost::function<bool(boost::shared_ptr<ICIMProperty>)>& callback,
      TOptions options) override;
  INMEM_API TCIMValue InvokeMethod(const std::string& method,
                                   std::map<std::string, TCIMValue>& parameters,
                                   TOptions options) override;
  INMEM_API bool operator==(ICIMInstance& other) const override;
  INMEM_API bool operator<(ICIMInstance& other) const override;
  INMEM_API ICIMInstance& operator=(const ICIMInstance& other) override;

  // The instance itself when it is of this make, else null.
  static TInmemInstance* Own(ICIMInstance& instance) noexcept {
    return typeid(instance) == typeid(TInmemInstance) ? static_cast<TInmemInstance*>(&instance)
                                                      : nullptr;
  }

  static const TInmemInstance* Own(const ICIMInstance& instance) noexcept {
    return typeid(instance) == typeid(TInmemInstance)
               ? static_cast<const TInmemInstance*>(&instance)
               : nullptr;
  }

  // Sets the text, which is empty, to that of the path that GetReference makes. False where it
  // takes that to tell.
  bool PutPath(TPathText& text) const;

  // The slots by their number, for the plug-in's own use of the rules: a handle makes no slot
  // object that lasts.
  std::size_t SlotCount() const noexcept { return m_values->Layout().Size(); }
  const std::string& SlotName(std::size_t index) const noexcept {
    return m_values->Layout()[index].name;
  }
  TInmemProperty SlotHandle(std::size_t index) const noexcept {
    return TInmemProperty(*m_values, index);
  }
  const TSlotTable& Values() const noexcept { return *m_values; }
  const ICIMPropertyDecl& DeclAt(std::size_t index) const noexcept {
    return *m_declarations->decls[index];
  }

  // Where the instance is stored, for the store's own use: the first one that asks is
  // remembered.
  TInstanceStore::TEntry* StoreEntry() const noexcept { return m_storeEntry; }
  // Told when it is stored in another class than its own, or more than once.
  void Stray() noexcept { m_strayed = true; }
  bool IsOf(const ICIMClass& cls) const noexcept { return m_class.get() == &cls; }
  // Its class when that is of this make, else null.
  const TInmemClass* OwnClass() const noexcept;
  // Compares different when the instance may have come to stand anywhere since.
  std::uint64_t Moves() const noexcept;
  void RememberStoreEntry(TInstanceStore::TEntry* entry) noexcept { m_storeEntry = entry; }
  void ForgetStoreEntry(const TInstanceStore::TEntry* entry) noexcept {
    if (m_storeEntry != entry) return;
    m_storeEntry = nullptr;
    if (m_departures != kNotStanding) ++m_departures;
  }
  // The same number for as long as it stands in its class where it stands, and never again;
  // kNotStanding when that cannot be told.
  std::uint16_t Standing() const noexcept {
    return m_storeEntry && !m_strayed ? m_departures : kNotStanding;
  }
  static constexpr std::uint16_t kNotStanding = static_cast<std::uint16_t>(-1);

 private:
  friend struct TBuildPathCallback;
  friend struct TReferencesCallback;
  friend struct TExamineInstanceCallback;
  friend struct TExamineInstanceWithRoleCallback;
  friend struct TAssociatorsExamineCallback;
  friend struct TAssociatorsExamineWithResultRoleCallback;

  boost::shared_ptr<TInmemInstance> Self() const;
  void StampCollectionTime();
  void ValidateKeys() const;
  bool ValidateKeyNonNull(const std::string* name) const;
  void ValidateReferences() const;

  boost::shared_ptr<ICIMProperty> DerivedProperty(const std::string& name,
                                                  const TCIMValue& defaultValue) const;

  void ExamineCandidateClass(const TCallback& callback, const std::string& role,
                             TMemoryWatch& memory, boost::shared_ptr<ICIMClass> candidate);
  void ExamineCandidateClassInstance(const TCallback& callback,
                                     boost::shared_ptr<ICIMInstance> association);
  void ExamineCandidateClassInstanceWithRole(const TCallback& callback, const std::string& role,
                                             boost::shared_ptr<ICIMInstance> association);
  void ExamineCandidate(const TCallback& callback, boost::shared_ptr<ICIMClass> resultClass,
                        const std::string& role, boost::shared_ptr<TInmemInstance> association);
  void ExamineCandidateWithResultRole(const TCallback& callback,
                                      boost::shared_ptr<ICIMClass> resultClass,
                                      const std::string& resultRole,
                                      boost::shared_ptr<TInmemInstance> association);
  void ExamineLinks(const TCallback& callback, const std::string& role, TMemoryWatch& memory,
                    TLinkIndex& index);
  void ExamineAssociation(const TCallback& callback, const std::string& role,
                          const boost::shared_ptr<ICIMInstance>& association);
  TCallback ExamineCallback(const TCallback& callback, const std::string& role,
                            TMemoryWatch& memory);
  bool IsReferredToBy(const TCIMValue& value) const;
  static boost::shared_ptr<ICIMElement> End(const TInmemInstance& association, std::size_t slot,
                                            const TCIMValue& value);
  bool IsReferredToBySlot(const TInmemInstance& association, std::size_t slot) const;

  // Returns the number of a slot by name, kNone when there is none. Throws 25 for no name.
  std::size_t SlotOf(const std::string& name) const;
  void SetSlot(std::size_t index, const TCIMValue& value);
  // The value of a property, as GetProperty and GetValue give it.
  TCIMValue ValueOf(const std::string& name) const;
  // Whether GetProperty answers the name although no class declares it.
  static bool IsDerivedName(const std::string& name);

  boost::shared_ptr<ICIMClass> m_class;
  boost::intrusive_ptr<const TSlotDeclarations> m_declarations;
  boost::intrusive_ptr<TSlotTable> m_values;
  TInstanceStore::TEntry* m_storeEntry = nullptr;
  int m_flags;
  bool m_strayed = false;
  std::uint16_t m_departures = 0;
};

}  // namespace NORVHAV20
