// TModel: a repository as the rules describe it, in the plainest way there is: every element has
// a number, every table is a map or a vector, every question is answered by a walk. It is slow
// and shares no code with the plug-in, so that the two can be compared.
//
// Errors: TStatus is thrown where the repository throws THAVException; what is logged stands in
//         `log`.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace havtest::oracle {

// The number of a namespace, class, declaration, qualifier or instance; its place in the
// model's list of them.
using Id = int;
constexpr Id kNone = -1;

// A list whose places are such numbers.
template <class T>
class TNumbered : public std::vector<T> {
 public:
  T& operator[](Id id) { return this->at(static_cast<std::size_t>(id)); }
  const T& operator[](Id id) const { return this->at(static_cast<std::size_t>(id)); }
};

struct TStatus {
  unsigned code;
};

struct TPath;

// Types carry the contract's codes; only scalars of boolean, uint16, string and reference occur.
enum : unsigned { kBoolean = 1, kUInt16 = 4, kString = 13, kReference = 15 };

struct TValue {
  unsigned type = kString;
  bool null = true;
  std::uint64_t number = 0;
  std::string text;
  // Of a reference, NULL or not; empty where no class is declared.
  std::shared_ptr<const TPath> path;

  bool IsReference() const { return type == kReference && !null; }
};

struct TPath {
  Id cls = kNone;
  // The namespace in which it is resolved; when that is gone, the one its class is in.
  Id home = kNone;
  std::vector<std::pair<std::string, TValue>> keys;
};

struct TQualifierDecl {
  std::string name;
  unsigned flavor;
};
struct TQualifier {
  Id decl;
  TValue value;
  unsigned flavor;
  bool propagated = false;
};
using TQualifiers = std::map<std::string, Id>;

// A property or method declaration; a method has no default, and its type stands in `value`.
struct TDecl {
  Id origin;
  std::string name;
  TValue value;
  TQualifiers qualifiers;
  std::map<std::string, std::string> parameters;
};
struct TEntry {
  Id decl;
  bool own;
};
using TDecls = std::map<std::string, TEntry>;

struct TClass {
  Id home;
  std::string name;
  Id superclass;
  TQualifiers qualifiers;
  TDecls properties, methods;
  std::vector<Id> subclasses, associations, registeredWith;
  std::map<std::string, Id> store;
  bool inNamespace = false;
  // Of a host's object around a class, that class; else kNone.
  Id behind = kNone;
};

struct TSlot {
  Id decl;
  std::unique_ptr<TValue> value, previous;
};
struct TInstance {
  Id cls;
  std::map<std::string, std::shared_ptr<TSlot>> slots;
  // Of a host's object around an instance, that instance; else kNone.
  Id behind = kNone;
};

struct TNamespace {
  bool redefinition;
  Id root = kNone;
  std::map<std::string, Id> classes, qualifierDecls;
  // The first of the copies that this is one of.
  Id original;
  bool dropped = false;
};

class TModel {
 public:
  using TVisit = std::function<void(Id)>;

  Id NewNamespace(bool redefinition);
  Id CopyNamespace(Id ns);
  void DropNamespace(Id ns);
  Id AllocateQualifierDecl(Id ns, const std::string& name, unsigned flavor);
  Id GetQualifierDecl(Id ns, const std::string& name);
  Id AllocateClass(Id ns, const std::string& name, Id superclass);
  Id GetClass(Id ns, const std::string& name);
  // A host's object around a class.
  Id WrapClass(Id cls);
  // The class that answers when this one is asked.
  Id OwnClass(Id cls) const;
  void ClearInstances(Id ns);
  // kNone when there is none.
  Id GetInstance(Id ns, const TPath& path);

  void AddClass(Id cls);
  void DeleteClass(Id cls);
  void AddSubclass(Id cls, Id subclass);
  void RemoveSubclass(Id cls, Id subclass);
  void AddAssociation(Id cls, Id association);
  void RemoveAssociation(Id cls, Id association);
  // The namespace that the class is in: the one that made it or, when that is gone, the
  // first of the copies that are left; kNone when none is.
  Id HomeOf(Id cls) const;
  Id QualifyClass(Id cls, Id decl, const TValue& value, unsigned flavor);
  Id QualifyDecl(Id owner, Id decl, const TValue& value, unsigned flavor);
  void SetQualifierValue(Id qualifier, const TValue& value);
  void AddFlavor(Id qualifier, unsigned flavor);
  void RemoveFlavor(Id qualifier, unsigned flavor);

  Id NewDecl(Id cls, const std::string& name, const TValue& value);
  void AddProperty(Id cls, Id decl);
  void RemoveProperty(Id cls, Id decl);
  void AddMethod(Id cls, Id decl);
  void RemoveMethod(Id cls, Id decl);
  void AddParameter(Id method, const std::string& name);
  Id GetProperty(Id cls, const std::string& name) const;

  bool IsA(Id cls, Id other) const;
  bool IsTrue(Id cls, const std::string& qualifier) const;
  std::vector<Id> Keys(Id cls) const;
  std::vector<Id> AssociationClasses(Id cls, const std::string& resultClass,
                                     const std::string& role);
  std::vector<Id> AssociatedClasses(Id cls, const std::string& associationClass,
                                    const std::string& resultClass, const std::string& role,
                                    const std::string& resultRole);

  Id AllocateInstance(Id cls);
  // A host's object around an instance, or around another such object.
  Id WrapInstance(Id instance);
  void AddInstance(Id instance);
  void DeleteInstance(Id instance);
  void Store(Id cls, Id instance);
  void Unstore(Id cls, Id instance);
  std::shared_ptr<TSlot> GetSlot(Id instance, const std::string& name);
  void SetProperty(Id instance, const std::string& name, const TValue& value);
  TPath Reference(Id instance);
  TPath PathOf(Id cls) const { return {cls, HomeOf(cls), {}}; }
  // Walks call `visit` for each instance, which may change anything.
  void Enumerate(Id cls, bool deep, const TVisit& visit);
  void References(Id instance, const std::string& resultClass, const std::string& role,
                  const TVisit& visit);
  void Associators(Id instance, const std::string& associationClass, const std::string& resultClass,
                   const std::string& role, const std::string& resultRole, const TVisit& visit);

  const TValue& ValueOf(const TSlot& slot) const;
  const TValue& PreviousOf(const TSlot& slot) const;
  void SetValue(TSlot& slot, const TValue& value);
  void SetPrevious(TSlot& slot, const TValue& value);

  std::string PathText(const TPath& path) const;
  std::string Normalize(const std::string& name);

  TNumbered<TNamespace> namespaces;
  TNumbered<TQualifierDecl> qualifierDecls;
  TNumbered<TQualifier> qualifiers;
  TNumbered<TDecl> decls;
  TNumbered<TClass> classes;
  TNumbered<TInstance> instances;
  std::vector<std::pair<int, std::string>> log;
  int switches[3] = {-1, -1, -1};

 private:
  struct TElement {
    Id instance;
    Id cls;
  };

  [[noreturn]] void Refuse(const std::string& line, unsigned status);
  void Log(int level, const std::string& line) { log.emplace_back(level, line); }
  TQualifiers::const_iterator Find(const TQualifiers& table, const std::string& name) const;
  bool HasQualifier(Id decl, const std::string& name) const;
  Id NewQualifier(Id decl, const TValue& value, unsigned flavor);
  void SetUpInheritance(Id cls);
  std::vector<Id> ReferencedClasses(Id cls) const;
  void LeaveAssociations(Id cls, std::vector<Id>& registeredWith);
  bool Reaches(Id cls, Id other) const;
  // What a filter by class name means: false when it names no class.
  bool FindFilter(Id cls, const std::string& name, Id& filter);
  TElement Resolve(const TPath& path);
  bool Refers(const TValue& value, Id instance);
  // The instance that answers when this one is asked.
  Id Behind(Id instance) const;
  Id RequireHome(Id cls) const;
  // Takes the instance out of the store; false when it was not in.
  bool Forget(Id cls, Id instance);
  void Validate(Id instance);
  void Stored(Id cls, bool deep, std::vector<std::pair<Id, Id>>& found) const;
  void ApplySwitches(Id instance);
  void ExamineCandidate(Id self, Id association, Id resultClass, const std::string& role,
                        const TVisit& visit);
  void ExamineWithResultRole(Id association, Id resultClass, const std::string& resultRole,
                             const TVisit& visit);
};

bool SameValue(const TModel& model, const TValue& a, const TValue& b);
std::string TypeName(unsigned type);

}  // namespace havtest::oracle
