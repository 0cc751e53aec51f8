// TMofSchemaBuilder: makes the qualifier declarations and classes of syntax trees in a
// namespace.
//
// A class takes what it inherits when it is allocated, so superclasses are made, with all
// their declarations, before their subclasses. References point in any direction: one whose
// class is not made yet gets it when all classes are made. Registration comes last, so that
// every association finds the classes that it refers to.
//
// What is declared again, and says the same, is taken once. The order of declarations, the
// sizes of arrays and the classes of parameters are kept as havcore/client/Declared.h says.
//
// What an overriding property, method or parameter does not say itself, it takes from what
// it overrides: qualifiers that propagate to subclasses, and the default value.
//
// Ownership: shares the namespace; the files must outlive it. Takes from their trees what it has
//            made, unless it is told to keep them.
// Errors:    collected in the report. What depends on something that could not be made is
//            left out without a further report.
#pragma once

#include <functional>
#include <string_view>
#include <unordered_set>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "havcore/client/Declared.h"
#include "havcore/client/FoldedName.h"
#include "havcore/havcore.h"
#include "mof/MofSyntax.h"
#include "mof/TMofReader.h"
#include "mof/TMofReport.h"
#include "mof/TMofValueReader.h"

namespace hav::mof {

class TMofSchemaBuilder {
 public:
  enum class EOrder { kNew, kUnderWay, kDone, kLost };
  struct TClass {
    const TMofFile* file;
    TMofClass* syntax;
    TClass* superclass = nullptr;
    boost::shared_ptr<NORVHAV20::ICIMClass> object;  // empty when it could not be made
    EOrder order = EOrder::kNew;
  };
  // A reference with a default of its own, which can name instances.
  struct TReferenceDefault {
    const TMofFile* file;
    const TMofProperty* syntax;
    boost::shared_ptr<NORVHAV20::ICIMPropertyDecl> decl;
  };
  using TProgress = std::function<void(std::size_t done, std::size_t total)>;

  // The class of a reference to any class.
  static constexpr std::string_view kAnyClass = "object";

  // `complete`: the files hold all that was meant to be loaded, so what is not there is an
  // error.
  TMofSchemaBuilder(const NORVHAV20::INamespaceProvider& provider,
                    boost::shared_ptr<NORVHAV20::ICIMNamespace> home,
                    const TMofReader::TFiles& files, bool complete, TMofReport& report);

  // Whether the trees stay whole. Otherwise the members of a class go when they are made.
  void SetKeepsTrees(bool keeps) { m_keepsTrees = keeps; }
  void Build(const TProgress& progress);

  // Empty when no class of that name is declared.
  const TClass* FindClass(std::string_view name) const;
  const std::vector<TClass>& GetClasses() const noexcept { return m_classes; }
  const std::vector<TReferenceDefault>& GetReferenceDefaults() const noexcept {
    return m_referenceDefaults;
  }

 private:
  using TNames = std::unordered_set<std::string_view, client::TFoldedHash, client::TFoldedEqual>;
  struct TQualifierKind {
    const TMofFile* file;
    const TMofQualifierDecl* syntax;
    boost::shared_ptr<NORVHAV20::ICIMQualifierDecl> decl;  // empty when it could not be made
    std::uint32_t scope;
    std::uint32_t flavor;
    const void* lastUse;  // the qualifier list that named it last
  };
  struct TOpenReference {
    boost::shared_ptr<NORVHAV20::ICIMPropertyDecl> decl;
    const TClass* target;
  };

  void DeclareQualifiers();
  void DeclareQualifier(const TMofFile& file, const TMofQualifierDecl& syntax);
  void CollectClasses();
  void OrderClasses();
  void OrderAncestors(TClass& cls);
  void FindSuperclass(TClass& cls);

  void BuildClass(TClass& cls);
  static void ForgetMembers(TMofClass& syntax);
  void KeepOrder(const TClass& cls);
  void WarnOfOneReference(const TClass& cls);
  void BuildProperty(const TClass& cls, const TMofProperty& property);
  boost::shared_ptr<NORVHAV20::ICIMPropertyDecl> AllocateProperty(
      const TClass& cls, const TMofProperty& property,
      const boost::shared_ptr<NORVHAV20::ICIMPropertyDecl>& overridden);
  boost::shared_ptr<NORVHAV20::ICIMPropertyDecl> AllocateReference(const TClass& cls,
                                                                   const TMofProperty& property);
  void CheckKept(const TClass& cls, const TMofProperty& property,
                 const NORVHAV20::ICIMPropertyDecl& decl);
  void BuildMethod(const TClass& cls, const TMofMethod& method);
  void WarnOfLeftOut(const TClass& cls, const TMofName& name, const char* what,
                     NORVHAV20::ICIMClass& holder, NORVHAV20::ECIMType type);
  void BuildParameter(const TMofFile& file, NORVHAV20::ICIMMethodDecl& decl,
                      const TMofParameter& parameter, NORVHAV20::ICIMMethodDecl* overridden);
  void CloseReferences();

  void Attach(NORVHAV20::ICIMNamedElement& element, const TMofFile& file,
              const TMofQualifiers& qualifiers, std::uint32_t scope);
  void AttachOne(NORVHAV20::ICIMNamedElement& element, const TMofFile& file,
                 const TMofQualifier& qualifier, TQualifierKind& kind);
  static void Inherit(NORVHAV20::ICIMNamedElement& from, NORVHAV20::ICIMNamedElement& to);
  bool FindTarget(const TMofFile& file, const TMofName& name, const TClass*& target);
  void ReportMissing(const TMofFile& file, const TMofName& name, const std::string& what);
  bool IsNew(TNames& names, const TMofFile& file, const TMofName& name, const char* what);
  // Runs `step`; a failure of the namespace is reported at `name`.
  template <class TStep>
  void Guard(const TMofFile& file, const TMofName& name, TStep&& step);

  boost::shared_ptr<NORVHAV20::ICIMNamespace> m_home;
  const TMofReader::TFiles& m_files;
  bool m_complete;
  bool m_keepsTrees = false;
  TMofReport& m_report;
  TMofValueReader m_values;

  client::TFoldedMap<TQualifierKind> m_kinds;
  std::vector<TClass> m_classes;
  client::TFoldedMap<TClass*> m_byName;
  std::vector<TClass*> m_order;  // superclasses before subclasses
  std::vector<TOpenReference> m_openReferences;
  std::vector<TReferenceDefault> m_referenceDefaults;
  client::TDeclaredKeeper m_keeper;
  TNames m_missingQualifiers;  // reported once
};

}  // namespace hav::mof
