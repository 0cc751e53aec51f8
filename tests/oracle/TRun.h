// TRun: one run of a program: the plug-in's objects and the model's numbers for them stand at the
// same places, and each operation is done to both.
#pragma once

#include <array>
#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <unordered_map>
#include <vector>

#include "havcore/TCIMReference.h"
#include "support/FailingAllocations.h"
#include "support/RecordingLogger.h"
#include "support/Repository.h"
#include "tests/oracle/Pools.h"
#include "tests/oracle/TModel.h"
#include "tests/oracle/TProgram.h"

namespace havtest::oracle {

// What a log throws that fails.
struct TLogFailure {};

// Keeps the lines whatever the operation's memory is like, and throws when it is told to.
class TLogger : public RecordingLogger {
 public:
  void Log(int level, const std::string& text) override {
    const UnfailingAllocations unfailing;
    RecordingLogger::Log(level, text);
    // What goes wrong with a processor in a walk leaves it out, and is no failure of the walk.
    const bool isOfWalk = text.rfind("cpuStatus is ", 0) == 0;
    if (m_left != 0 && !isOfWalk && --m_left == 0) throw TLogFailure();
  }
  // The line after the next `allowed` ones throws, once.
  void FailAfter(std::size_t allowed) { m_left = allowed + 1; }
  void FailNever() { m_left = 0; }

 private:
  std::size_t m_left = 0;  // lines up to the one that throws; 0: none does
};

class TRun {
 public:
  explicit TRun(EMemory memory);

  // True when both sides answered the same.
  bool Do(const TOperation& operation, std::string& what, std::string& plugin, std::string& model);

 private:
  using TAction = std::function<std::string()>;
  static std::string Answer(const TAction& action);

  // What the plug-in's side answers once nothing fails any more.
  std::string AnswerInTheEnd();
  std::string AnswerWithFailure(std::size_t allowed);
  std::string PluginLog();
  std::string ModelLog();
  unsigned Arg(std::size_t i) const { return (*m_arguments)[i]; }
  template <class T>
  std::size_t Place(const std::vector<T>& list, std::size_t i) const {
    return Arg(i) % list.size();
  }
  Id Number(std::size_t place) const { return static_cast<Id>(place); }
  std::vector<std::size_t> LivingNamespaces() const;
  std::size_t LivingNamespace(std::size_t i) const;
  // The classes that are not a host's objects, and one of them.
  std::vector<std::size_t> OwnClasses() const;
  std::size_t OwnClass(std::size_t i) const;
  void Nothing();
  template <class P, class M>
  void Both(P&& onPlugin, M&& onModel) {
    m_onPlugin = [this, onPlugin]() -> std::string { return Said(onPlugin); };
    m_onModel = [this, onModel]() -> std::string { return Said(onModel); };
  }
  template <class F>
  std::string Said(const F& action) {
    if constexpr (std::is_void_v<decltype(action())>) {
      action();
      return "done";
    } else {
      return action();
    }
  }

  void AddNamespace(bool redefinition);

  // Classes stand at the same places on both sides; a class that is returned again keeps its.
  std::string Keep(const ClassPtr& cls, Id id);
  std::string Text(const ClassPtr& cls) const;
  std::string TextOfClass(Id id) const;
  std::string Text(const InstancePtr& instance) const;
  static std::string TextOfInstance(Id id);
  std::string Text(const TCIMValue& value) const;
  std::string Text(const TValue& value) const;

  // A value as the numbers say: on both sides the same. Making one may throw.
  struct TValueSpec {
    unsigned kind, a, b;
  };
  TValueSpec Spec(std::size_t i) const { return {Arg(i) % 16, Arg(i) / 16, Arg(i) / 4096}; }

  TCIMValue PluginValue(const TValueSpec& spec) const;
  TValue ModelValue(const TValueSpec& spec);
  std::string DeclaredName(Id cls, const std::string& name);
  static std::string Named(const TValueSpec& spec);
  void Dispatch(EOp op);
  void NewNamespaceOp();
  void CopyNamespace();

  // Never the last one.
  void DropNamespace();
  void AllocateQualifierDecl();
  void GetQualifierDecl();
  void AllocateClass();

  // A superclass comes from the same namespace, as collectors have it.
  void AllocateClass(const std::string& name, const std::function<bool(Id)>& mayBeSuperclass);
  void GetClass();

  template <class Element>
  void Qualify(const std::string& element, Element&& onPlugin,
               const std::function<Id(Id, const TValue&, unsigned)>& onModel);
  void QualifyClass();
  void QualifyDecl();
  void ChangeQualifier();

  // The place of a declaration "Key" or "Override" of any namespace; the size for none.
  std::size_t QualifierDeclNamed(const std::string& name) const;
  void DeclareProperty(bool reference);
  void DeclareMethod();
  void AddPropertyTo();
  void RemoveProperty();
  void RemoveMethod();
  void SetDefault();
  void OnClass(const char* what, void (ICIMClass::*onPlugin)(TOptions),
               void (TModel::*onModel)(Id));
  void WrapClass();
  void LinkClasses();

  // An empty pointer where an element is due.
  void PassNothing();
  void OnInstance(const char* what, void (ICIMInstance::*onPlugin)(TOptions),
                  void (TModel::*onModel)(Id));
  void AllocateInstance();
  void WrapInstance();

  // Values that fit the property come more often than chance would have it.
  TValueSpec FittingSpec(const std::string& name, std::size_t i) const;
  void SetProperty();
  void StoreIn(bool add);
  void GetProperty();
  void SetSlot(bool previous);
  void ClearPrevious();
  void CompareSlots();
  void ClearInstances();
  void FindInstance();

  // What a callback does at one of its visits, on either side.
  struct TMischief {
    unsigned visit;
    std::string what;
    TAction onPlugin, onModel;
  };

  // Most walks are quiet; in the others a callback changes the model while it is walked. The
  // operations that make something new are left out: both sides number what they make.
  TMischief Mischief();

  template <class Run>
  std::string Visited(Run&& run, const TMischief& mischief = {}) const {
    std::string text;
    unsigned visits = 0;
    run(TEnumCallback<ICIMInstance>([&](InstancePtr instance) {
      const UnfailingAllocations unfailing;
      text += Text(instance) + ' ';
      if (mischief.onPlugin && visits++ == mischief.visit)
        text += '(' + Answer(mischief.onPlugin) + ") ";
      return false;
    }));
    return text;
  }
  template <class Run>
  std::string VisitedInModel(Run&& run, const TMischief& mischief = {}) const {
    std::string text;
    unsigned visits = 0;
    run([&](Id instance) {
      text += TextOfInstance(instance) + ' ';
      if (mischief.onModel && visits++ == mischief.visit)
        text += '(' + Answer(mischief.onModel) + ") ";
    });
    return text;
  }
  template <class Run>
  std::string VisitedClasses(Run&& run) const {
    std::string text;
    run(TEnumCallback<ICIMClass>([&](ClassPtr cls) {
      const UnfailingAllocations unfailing;
      text += Text(cls) + ' ';
      return false;
    }));
    return text;
  }
  std::string Classes(const std::vector<Id>& ids) const;
  void Enumerate();
  void References();
  void Associators();
  void ClassAssociations();
  void CompareClasses();
  void SetSwitch();

  // A registered class with keys, of any namespace; any class where there is none.
  std::size_t KeyedClass(std::size_t i) const;

  // An instance to ask, mostly one that is stored.
  std::size_t AskedInstance() const;

  // A class with a key "Name", or an association with two references as its keys, registered.
  void MakeClass(bool association);

  // A stored instance that the reference `role` of the class may well point at; any where there
  // is none.
  unsigned StoredFor(Id cls, const std::string& role, unsigned number) const;

  // An instance with a name, or a link with two ends, added.
  void MakeInstance(bool link);

  template <class Element>
  std::string Qualifiers(Element& element) const;
  std::string Qualifiers(const TQualifiers& table) const;
  std::string DumpOf(ICIMClass& cls) const;
  std::string DumpOf(Id id);
  void Dump();

  EMemory m_memory;
  TLogger m_log;
  TModel m_model;
  const std::array<unsigned, 10>* m_arguments = nullptr;
  std::ostringstream m_what;
  TAction m_onPlugin, m_onModel;

  std::vector<NamespacePtr> m_namespaces;
  std::vector<QualifierDeclPtr> m_qualifierDecls;
  std::vector<Id> m_qualifierDeclIds;
  std::vector<QualifierPtr> m_qualifiers;
  std::vector<Id> m_qualifierIds;
  std::vector<ClassPtr> m_classes;
  std::vector<Id> m_classIds;
  ClassPtr m_newClass;
  bool m_subclassesByHand = false;
  std::unordered_map<const ICIMClass*, std::size_t> m_placeOfClass;
  std::unordered_map<Id, std::size_t> m_placeOfClassId;
  std::vector<PropertyDeclPtr> m_decls;
  std::vector<Id> m_declIds;
  std::vector<MethodDeclPtr> m_methods;
  std::vector<Id> m_methodIds;
  std::vector<InstancePtr> m_instances;
  std::unordered_map<const ICIMInstance*, std::size_t> m_placeOfInstance;
  std::vector<PropertyPtr> m_slots;
  std::vector<std::shared_ptr<TSlot>> m_modelSlots;
};

}  // namespace havtest::oracle
