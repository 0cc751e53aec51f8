// TInmemClass: one CIM class of one namespace, with its declarations and its instances.
//
// What a class inherits is in its own tables from when it is set up; entries that it declared
// itself bear its number. Its jobs are in sources of their own:
//   TInmemClass.cpp              identity, inheritance, look-ups and walks
//   TInmemClassRegistration.cpp  validation, entering and leaving the namespace, redefinition
//   TInmemClassDeclarations.cpp  the override rules
//   TInmemClassInstances.cpp     the instance store, enumeration, the processor rule
//   TInmemClassAssociations.cpp  which associations refer to the class
//
// Ownership: held by its namespace and by its instances; holds its qualifiers, declarations,
//            subclasses, referring associations and stored instances. Namespace and
//            superclass are weak links.
// Threads:   one thread at a time per namespace.
// Errors:    THAVException; the status of each operation is given with the interface.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <typeinfo>
#include <vector>

#include <boost/enable_shared_from_this.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include "havcore/ICIMClass.h"
#include "havcore/ICIMMethodDecl.h"
#include "havcore/ICIMPropertyDecl.h"
#include "havcore/TCIMReference.h"
#include "inmem/model/TClassSet.h"
#include "inmem/model/TDeclTable.h"
#include "inmem/model/TInstanceStore.h"
#include "inmem/model/TLinkIndex.h"
#include "inmem/model/TNamespaceLink.h"
#include "inmem/model/TQualifierTable.h"
#include "inmem/values/TPathClock.h"
#include "inmem/values/TSlotLayout.h"

namespace NORVHAV20 {

class TInmemClass final : public ICIMClass, public boost::enable_shared_from_this<TInmemClass> {
 public:
  using TClasses = TClassSet::TClasses;

  TInmemClass(const TNamespaceLink& home, const std::string& name,
              const boost::shared_ptr<ICIMClass>& superclass);
  ~TInmemClass() override;
  TInmemClass(const TInmemClass&) = delete;
  TInmemClass& operator=(const TInmemClass&) = delete;

  // Takes what the superclass has to pass on now, in place of what was inherited before; the
  // class's own declarations and qualifiers stay.
  void SetUpInheritance();

  // Returns the instance stored under the path, one of this class's, empty when there is none.
  boost::shared_ptr<ICIMInstance> FindInstance(const TCIMReference& path) const;
  // Empties the instance store; the instances are not told.
  void ClearInstances() noexcept;

  // Drops the instances and the association set. Throws nothing.
  void BreakCircles() noexcept;

  // Does what AddPropertyDecl does and returns what the class then has under the name.
  boost::shared_ptr<ICIMPropertyDecl> Declare(const boost::shared_ptr<ICIMPropertyDecl>& decl);

  // Returns the property declarations as they are now, laid out for instances.
  boost::intrusive_ptr<const TSlotDeclarations> SlotDeclarations() const;

  // Returns the index of the links that the stored instances, as those of an association,
  // make; null where there is none. It is there until the instances are asked for or changed.
  // Complexity: O(1) but for the second question, which makes it.
  TLinkIndex* Links() const;
  using TPropertyDecls = std::vector<boost::shared_ptr<ICIMPropertyDecl>>;
  const std::string& Name() const noexcept { return m_name; }
  // The declarations of the keys, in the order of their folded names.
  boost::shared_ptr<const TPropertyDecls> KeyDecls() const;
  // The same, empty unless all declarations and what makes them keys are of this make.
  boost::shared_ptr<const TPropertyDecls> KnownKeys() const;
  // How often an instance has come to stand in this class.
  std::uint64_t Moves() const noexcept { return m_instances.Moves(); }
  // Whether keys in paths, and paths in the store, are still spelt as they ever were, and will
  // be until the path clock moves; and whether IsA then asks nobody of another make. Complexity:
  // O(n) in the number of properties and superclasses.
  bool IsPredictable() const noexcept;
  // What the path clock of its namespaces shows.
  std::uint64_t PathTime() const noexcept { return m_paths->Time(); }
  // The index, when there is one already.
  TLinkIndex* CurrentLinks() const noexcept {
    return m_links && m_links->IsWhole() ? m_links.get() : nullptr;
  }
  bool HasInstances() const noexcept { return m_instances.Size() != 0; }

  // Calls back for each association class that EnumerateAssociationClasses visits without a
  // filter, but for those that have no instance when their turn comes. What the callback throws
  // is dropped. Complexity: O(1) for a class that is left out.
  void EnumeratePopulatedAssociations(const TEnumCallback<ICIMClass>& callback) const;

  // The class itself when it is of this make, else null.
  static const TInmemClass* Own(const ICIMClass& cls) noexcept {
    return typeid(cls) == typeid(TInmemClass) ? static_cast<const TInmemClass*>(&cls) : nullptr;
  }

  // ICIMElement and ICIMClass.
  void Validate(TOptions options) const override;
  void AddToNamespace(TOptions options) override;
  void Delete(TOptions options) override;
  void ModifyInstance(boost::shared_ptr<ICIMInstance> instance, TOptions options) override;
  const std::string& GetName(TOptions options) const override;
  boost::shared_ptr<ICIMNamespace> GetNamespace(TOptions options) const override;
  bool IsAssociation(TOptions options) const override;
  bool IsAbstract(TOptions options) const override;
  bool IsIndication(TOptions options) const override;
  boost::shared_ptr<ICIMClass> GetSuperClass(TOptions options) const override;
  void EnumerateSubclasses(const TEnumCallback<ICIMClass>& callback,
                           TOptions options) const override;
  bool IsA(boost::shared_ptr<ICIMClass> other, TOptions options) const override;
  void EnumerateAssociatedClasses(const TEnumCallback<ICIMClass>& callback,
                                  const std::string& associationClass,
                                  const std::string& resultClass, const std::string& role,
                                  const std::string& resultRole, TOptions options) const override;
  void EnumerateAssociationClasses(const TEnumCallback<ICIMClass>& callback,
                                   const std::string& resultClass, const std::string& role,
                                   TOptions options) const override;
  void EnumerateKeyNames(const boost::function<bool(const std::string*)>& callback,
                         TOptions options) const override;
  boost::shared_ptr<ICIMPropertyDecl> AllocatePropertyDecl(const std::string& name,
                                                           const TCIMValue& defaultValue,
                                                           TOptions options) override;
  boost::shared_ptr<ICIMPropertyDecl> GetPropertyDecl(const std::string& name,
                                                      TOptions options) const override;
  void EnumeratePropertyDecls(const TEnumCallback<ICIMPropertyDecl>& callback,
                              TOptions options) const override;
  boost::shared_ptr<ICIMPropertyDecl> AllocateReferenceDecl(const std::string& name,
                                                            boost::shared_ptr<ICIMClass> referenced,
                                                            TOptions options) override;
  boost::shared_ptr<ICIMPropertyDecl> GetReferenceDecl(const std::string& name,
                                                       TOptions options) const override;
  void EnumerateReferenceDecls(const TEnumCallback<ICIMPropertyDecl>& callback,
                               TOptions options) const override;
  boost::shared_ptr<ICIMInstance> AllocateInstance(TOptions options) override;
  void EnumerateInstances(const TEnumCallback<ICIMInstance>& callback, bool deep,
                          TOptions options) override;
  boost::shared_ptr<ICIMMethodDecl> AllocateMethodDecl(const std::string& name,
                                                       TCIMValue::TCIMType returnType,
                                                       TOptions options) override;
  boost::shared_ptr<ICIMMethodDecl> GetMethodDecl(const std::string& name,
                                                  TOptions options) const override;
  void EnumerateMethodDecls(const TEnumCallback<ICIMMethodDecl>& callback,
                            TOptions options) const override;
  TCIMValue InvokeMethod(const std::string& method, std::map<std::string, TCIMValue>& parameters,
                         TOptions options) override;
  bool operator==(const ICIMClass& other) const override;
  bool operator<(const ICIMClass& other) const override;
  ICIMClass& operator=(const ICIMClass&) override { return *this; }
  bool IsHostMarked(TOptions options) const override;
  void SetHostMarked(TOptions options) override;
  void AddSubclass(boost::shared_ptr<ICIMClass> subclass, TOptions options) override;
  void RemoveSubclass(boost::shared_ptr<ICIMClass> subclass, TOptions options) override;
  void AddInstance(boost::shared_ptr<ICIMInstance> instance, TOptions options) override;
  void RemoveInstance(boost::shared_ptr<ICIMInstance> instance, TOptions options) override;
  void AddAssociation(boost::shared_ptr<ICIMClass> association, TOptions options) override;
  void RemoveAssociation(boost::shared_ptr<ICIMClass> association, TOptions options) override;
  void AddPropertyDecl(boost::shared_ptr<ICIMPropertyDecl> decl, TOptions options) override;
  void RemovePropertyDecl(boost::shared_ptr<ICIMPropertyDecl> decl, TOptions options) override;
  void AddMethodDecl(boost::shared_ptr<ICIMMethodDecl> decl, TOptions options) override;
  void RemoveMethodDecl(boost::shared_ptr<ICIMMethodDecl> decl, TOptions options) override;

  // ICIMNamedElement. Absent: an empty pointer from both look-ups.
  void AddQualifier(boost::shared_ptr<ICIMQualifier> qualifier, TOptions options) override;
  boost::shared_ptr<ICIMQualifier> AllocateQualifier(boost::shared_ptr<ICIMQualifierDecl> decl,
                                                     const TCIMValue& value,
                                                     ICIMQualifierDecl::EFlavor flavor,
                                                     TOptions options) override;
  boost::shared_ptr<ICIMQualifier> AllocateQualifier(boost::shared_ptr<ICIMQualifierDecl> decl,
                                                     const TCIMValue& value,
                                                     TOptions options) override;
  boost::shared_ptr<ICIMQualifier> FindQualifier(const std::string& name, bool& found,
                                                 TOptions options) override;
  boost::shared_ptr<ICIMQualifier> GetQualifier(const std::string& name, TOptions options) override;
  void EnumerateQualifiers(const TEnumCallback<ICIMQualifier>& callback, TOptions options) override;

 private:
  using TPropertyTable = TDeclTable<ICIMPropertyDecl>;
  using TMethodTable = TDeclTable<ICIMMethodDecl>;

  boost::shared_ptr<TInmemClass> Self() const;
  bool HasTrueQualifier(std::string_view folded) const;
  bool HasKey() const;
  TPropertyDecls PropertyDecls() const;
  TPropertyDecls ReferenceDecls() const;
  void PropertiesChanged() noexcept;
  void NoteSpelling(const ICIMPropertyDecl& before, const ICIMPropertyDecl* now);

  // Inheritance.
  template <class Decl, class Enumerate>
  TDeclTable<Decl> Inherited(const ICIMClass& superclass, TDeclTable<Decl> TInmemClass::*table,
                             const Enumerate& enumerate) const;
  TQualifierTable::TMap PropagatedQualifiers(ICIMClass& superclass);

  // Registration.
  struct TLinks;
  void PlanLinks(TLinks& links, const boost::shared_ptr<TInmemClass>& displaced) const;
  TClasses ClassesToRegisterWith() const;
  void RefuseCycle(const TInmemClass& displaced, ICIMClass* superclass) const;
  bool IsWithin(const ICIMClass& cls, const TInmemClass& displaced) const;
  void Commit(TLinks& links) noexcept;
  void TakeOver(TInmemClass& displaced, TClassSet& associations) noexcept;
  void LeaveAssociationSets(std::vector<boost::weak_ptr<ICIMClass>>& classes) noexcept;
  bool Reaches(const TInmemClass& cls) const;
  static void ReleaseOneByOne(TClassSet& set) noexcept;

  // Instances.
  struct TVisit;
  std::vector<TVisit> PlanVisits();
  void Visit(const TInstanceStore::TInstances& instances,
             const TEnumCallback<ICIMInstance>& callback) const;
  bool IsProcessor() const;
  void NoteStranger() noexcept;

  // Associations.
  TClasses AssociationClasses(const std::string& resultClass, const std::string& role) const;
  boost::shared_ptr<ICIMClass> FindClass(const std::string& name) const;

  TNamespaceLink m_home;
  boost::intrusive_ptr<TPathClock> m_paths;
  const std::uint64_t m_number;  // no other class has it, or ever had
  std::string m_name;
  boost::weak_ptr<ICIMClass> m_superclass;
  TQualifierTable m_qualifiers;
  // One that was a key when it was last looked for, for subclasses to look at first.
  mutable boost::weak_ptr<ICIMPropertyDecl> m_someKey;
  TPropertyTable m_properties;
  TMethodTable m_methods;
  // Made when it is first asked for, dropped when the property table changes.
  mutable boost::intrusive_ptr<const TSlotDeclarations> m_slotDeclarations;
  // The keys, as they are while the model clock shows this and the property table stands.
  mutable boost::shared_ptr<const TPropertyDecls> m_keyDecls;
  mutable std::uint64_t m_keyDeclsQualifiers = 0;
  TClassSet m_subclasses;
  TClassSet m_associations;
  // How many classes list this one as a subclass, or more.
  std::size_t m_listings = 0;
  // Where this class, an association, registered itself.
  std::vector<boost::weak_ptr<ICIMClass>> m_registeredWith;
  mutable TInstanceStore m_instances;  // asked for, it puts itself in order
  mutable std::unique_ptr<TLinkIndex> m_links;
  mutable bool m_linksAsked = false;
  bool m_lostNames = false;
  bool m_hadStrangers = false;
  bool m_inNamespace = false;
  bool m_hostMark = false;
};

}  // namespace NORVHAV20
