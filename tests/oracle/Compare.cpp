// Both sides of an operation: what the plug-in answers and what the model answers, as text.
#include <functional>
#include <sstream>
#include <iterator>
#include <unordered_map>

#include <boost/make_shared.hpp>

#include "havcore/TCIMReference.h"
#include "inmem/provider/TInmemNamespace.h"
#include "support/FailingAllocations.h"
#include "support/ForeignInstance.h"
#include "support/RecordingLogger.h"
#include "support/Repository.h"
#include "tests/oracle/TModel.h"
#include "tests/oracle/TProgram.h"

namespace havtest::oracle {

namespace {

// No class without a name: a path without a class name leads nowhere.
constexpr const char* kClassNames[] = {
    "A", "B", "C", "D", "L", "M", "ORVSG_PhysicalNetworkPort", "<root>", "no name"};
constexpr const char* kLookups[] = {"A", "b", "C", "D", "L", "m", "<root>", "<ROOT>", "Nowhere"};
constexpr const char* kProperties[] = {"Name",        "Left",        "Right",       "Size", "name",
                                       "PortTypeOne", "speedDuplex", "HealthState", "LEFT", "Other",
                                       "1st",         "CPUStatus",   "L1Enabled"};
constexpr const char* kReads[] = {"Name",        "left",
                                  "Right",       "Size",
                                  "PortTypeOne", "speedDuplex",
                                  "HealthState", "MyHealthStateToday",
                                  "healthstate", "ElementDescription",
                                  "Missing",     "no name",
                                  "CPUStatus",   "L1Enabled",
                                  "L2Enabled"};
constexpr const char* kRoles[] = {"", "", "Left", "right", "Other", "Name", "Missing"};
constexpr const char* kFilters[] = {"", "<root>", "<root>", "A", "B", "C", "L", "m", "Nowhere"};
constexpr const char* kResults[] = {"<root>", "<root>", "<root>", "A", "B", "C", "", "Nowhere"};
constexpr const char* kQualifiers[] = {"Key",         "Override", "Association", "Abstract",
                                       "dontcollect", "Note",     "key",         "a note"};
constexpr const char* kMethods[] = {"Reset", "reset", "Start", "1st"};
constexpr const char* kTexts[] = {"x", "y", "z", "a\"b\\c", "", "1"};
constexpr unsigned kTypes[] = {kString, kString, kUInt16, kBoolean};

template <std::size_t n>
const char* Pick(const char* const (&pool)[n], unsigned number) {
  return pool[number % n];
}

// Half of the time the first of the pool: the filter that lets everything pass.
template <std::size_t n>
const char* Filter(const char* const (&pool)[n], unsigned number) {
  return number % 2 == 0 ? pool[0] : Pick(pool, number / 2);
}

std::string Quoted(const std::string& text) { return '"' + text + '"'; }

// Keeps the lines whatever the operation's memory is like.
class TLogger : public RecordingLogger {
 public:
  void Log(int level, const std::string& text) override {
    const UnfailingAllocations unfailing;
    RecordingLogger::Log(level, text);
  }
};

std::size_t g_failedAllocations = 0;

// One run: the plug-in's objects and the model's numbers for them stand at the same places.
class TRun {
 public:
  explicit TRun(EMemory memory) : m_memory(memory) {
    constexpr std::size_t enough = 8192;
    m_qualifierDecls.reserve(enough);
    m_qualifiers.reserve(enough);
    m_classes.reserve(enough);
    m_decls.reserve(enough);
    m_methods.reserve(enough);
    m_instances.reserve(enough);
    m_slots.reserve(enough);
    m_namespaces.reserve(enough);
    for (int level = 1; level <= 3; ++level) CacheSwitch(level) = -1;
    AddNamespace(true);
    AddNamespace(false);
  }

  // True when both sides answered the same.
  bool Do(const TOperation& operation, std::string& what, std::string& plugin, std::string& model) {
    m_arguments = &operation.arguments;
    m_what.str("");
    Dispatch(operation.op);
    what = m_what.str();
    plugin = m_memory == EMemory::kEnough ? Answer(m_onPlugin) : AnswerInTheEnd();
    plugin += PluginLog();
    model = Answer(m_onModel);
    model += ModelLog();
    return plugin == model;
  }

 private:
  using TAction = std::function<std::string()>;

  static std::string Answer(const TAction& action) {
    try {
      return action();
    } catch (const std::bad_alloc&) {
      throw;
    } catch (const THAVException& failure) {
      const UnfailingAllocations unfailing;
      return "throws " + std::to_string(failure.GetStatusCode());
    } catch (const TStatus& status) {
      return "throws " + std::to_string(status.code);
    } catch (const std::exception& failure) {
      return std::string("throws ") + failure.what();
    }
  }

  // What the plug-in's side answers once there is memory enough.
  std::string AnswerInTheEnd() {
    for (std::size_t allowed = 0;; ++allowed) {
      const std::size_t made[] = {m_qualifierDecls.size(), m_qualifiers.size(), m_decls.size(),
                                  m_methods.size(),        m_instances.size(),  m_slots.size()};
      const FailingAllocation failure(allowed, m_memory == EMemory::kFailsOnce
                                                   ? FailingAllocation::kOnce
                                                   : FailingAllocation::kFromThenOn);
      try {
        std::string answer = Answer(m_onPlugin);
        return answer;
      } catch (const std::bad_alloc&) {
        const UnfailingAllocations unfailing;
        ++g_failedAllocations;
        m_log.Take();
        m_newClass.reset();
        m_qualifierDecls.resize(made[0]);
        m_qualifiers.resize(made[1]);
        m_decls.resize(made[2]);
        m_methods.resize(made[3]);
        m_instances.resize(made[4]);
        m_slots.resize(made[5]);
      }
    }
  }

  std::string PluginLog() {
    std::string text;
    for (const auto& line : m_log.Take())
      text += " | " + std::to_string(line.level) + ' ' + line.text;
    return text;
  }

  std::string ModelLog() {
    std::string text;
    for (auto [level, line] : m_model.log) {
      // A dollar and a status stand for the text of that status.
      if (const auto at = line.find('$'); at != std::string::npos)
        line.replace(
            at, line.size() - at,
            THAVException(static_cast<EHAVStatusCode>(std::stoi(line.substr(at + 1)))).what());
      text += " | " + std::to_string(level) + ' ' + line;
    }
    m_model.log.clear();
    return text;
  }

  unsigned Arg(std::size_t i) const { return (*m_arguments)[i]; }
  template <class T>
  std::size_t Place(const std::vector<T>& list, std::size_t i) const {
    return Arg(i) % list.size();
  }
  Id Number(std::size_t place) const { return static_cast<Id>(place); }
  std::vector<std::size_t> LivingNamespaces() const {
    std::vector<std::size_t> living;
    for (std::size_t ns = 0; ns < m_namespaces.size(); ++ns)
      if (m_namespaces[ns]) living.push_back(ns);
    return living;
  }
  std::size_t LivingNamespace(std::size_t i) const {
    const auto living = LivingNamespaces();
    return living[Place(living, i)];
  }

  void Nothing() {
    m_onPlugin = m_onModel = [] { return std::string("nothing"); };
  }
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

  void AddNamespace(bool redefinition) {
    m_namespaces.push_back(NewNamespace(redefinition));
    const Id ns = m_model.NewNamespace(redefinition);
    Keep(m_namespaces.back()->GetClass("<root>", {}), m_model.namespaces[ns].root);
    // Most programs want these, so that something comes of them.
    for (const char* name : {"Key", "Association"}) {
      m_qualifierDecls.push_back(m_namespaces.back()->AllocateQualifierDecl(
          name, TCIMValue(false), ICIMQualifierDecl::kScopeAny,
          static_cast<ICIMQualifierDecl::EFlavor>(3), {}));
      m_qualifierDeclIds.push_back(m_model.AllocateQualifierDecl(ns, name, 3));
    }
  }

  // Classes stand at the same places on both sides; a class that is returned again keeps its.
  std::string Keep(const ClassPtr& cls, Id id) {
    m_classes.push_back(cls);
    m_classIds.push_back(id);
    m_placeOfClass.emplace(cls.get(), m_classes.size() - 1);
    m_placeOfClassId.emplace(id, m_classes.size() - 1);
    return {};
  }
  std::string Text(const ClassPtr& cls) const {
    if (!cls) return "none";
    const auto found = m_placeOfClass.find(cls.get());
    return found == m_placeOfClass.end() ? "unknown" : "C" + std::to_string(found->second);
  }
  std::string TextOfClass(Id id) const {
    if (id == kNone) return "none";
    const auto found = m_placeOfClassId.find(id);
    return found == m_placeOfClassId.end() ? "unknown" : "C" + std::to_string(found->second);
  }
  std::string Text(const InstancePtr& instance) const {
    if (!instance) return "none";
    const auto found = m_placeOfInstance.find(instance.get());
    return found == m_placeOfInstance.end() ? "unknown" : "I" + std::to_string(found->second);
  }
  static std::string TextOfInstance(Id id) {
    return id == kNone ? "none" : "I" + std::to_string(id);
  }

  std::string Text(const TCIMValue& value) const {
    const UnfailingAllocations unfailing;
    std::ostringstream text;
    text << value.GetType() << ' ';
    if (value.GetType() == kCIMReference) text << Text(value.GetReferencedClass()) << ' ';
    if (value.IsReference())
      text << static_cast<TCIMReference>(value).GetPath();
    else
      text << value.ToString(10);
    return text.str();
  }
  std::string Text(const TValue& value) const {
    std::string text = TypeName(value.type) + ' ';
    if (value.type == kReference)
      text += (value.path ? TextOfClass(value.path->cls) : "none") + ' ';
    if (value.null) return text + "NULL";
    switch (value.type) {
      case kBoolean: return text + (value.number != 0 ? "TRUE" : "FALSE");
      case kUInt16: return text + std::to_string(value.number);
      case kString: return text + value.text;
      default: return text + m_model.PathText(*value.path);
    }
  }

  // A value as the numbers say: on both sides the same. Making one may throw.
  struct TValueSpec {
    unsigned kind, a, b;
  };
  TValueSpec Spec(std::size_t i) const { return {Arg(i) % 16, Arg(i) / 16, Arg(i) / 4096}; }

  TCIMValue PluginValue(const TValueSpec& spec) const {
    switch (spec.kind) {
      case 0: return TCIMValue::Null(static_cast<ECIMType>(kTypes[spec.a % 4]));
      case 1: return TCIMValue::Null(kCIMReference);
      case 2: return TCIMValue(spec.a % 2 == 1);
      case 3: return TCIMValue(static_cast<std::uint16_t>(spec.a % 3));
      case 4:
      case 5: {
        TCIMReference path({}, {});
        path.SetClass(m_classes[spec.a % m_classes.size()]);
        if (spec.kind == 4) path.AddKeyValue("Name", TCIMValue(std::string("nowhere")));
        return TCIMValue(path);
      }
      case 6:
      case 7:
      case 8:
      case 9:
        if (!m_instances.empty())
          return TCIMValue(m_instances[spec.a % m_instances.size()]->GetReference({}));
        [[fallthrough]];
      default: return TCIMValue(std::string(Pick(kTexts, spec.a)));
    }
  }

  TValue ModelValue(const TValueSpec& spec) {
    TValue value;
    value.null = spec.kind <= 1;
    switch (spec.kind) {
      case 0: value.type = kTypes[spec.a % 4]; break;
      case 1: value.type = kReference; break;
      case 2:
        value.type = kBoolean;
        value.number = spec.a % 2;
        break;
      case 3:
        value.type = kUInt16;
        value.number = spec.a % 3;
        break;
      case 4:
      case 5: {
        TPath path = m_model.PathOf(m_classIds[spec.a % m_classIds.size()]);
        TValue nowhere;
        nowhere.null = false;
        nowhere.text = "nowhere";
        if (spec.kind == 4) path.keys.emplace_back(DeclaredName(path.cls, "Name"), nowhere);
        value.type = kReference;
        value.path = std::make_shared<TPath>(path);
        break;
      }
      case 6:
      case 7:
      case 8:
      case 9:
        if (!m_instances.empty()) {
          value.type = kReference;
          value.path = std::make_shared<TPath>(
              m_model.Reference(static_cast<Id>(spec.a % m_instances.size())));
          break;
        }
        [[fallthrough]];
      default: value.text = Pick(kTexts, spec.a);
    }
    return value;
  }

  std::string DeclaredName(Id cls, const std::string& name) {
    try {
      return m_model.decls[m_model.GetProperty(cls, name)].name;
    } catch (const TStatus&) {
      return name;
    }
  }

  static std::string Named(const TValueSpec& spec) {
    switch (spec.kind) {
      case 0: return "NULL of " + TypeName(kTypes[spec.a % 4]);
      case 1: return "NULL reference";
      case 2: return spec.a % 2 == 1 ? "TRUE" : "FALSE";
      case 3: return std::to_string(spec.a % 3);
      case 4: return "path to nowhere in class " + std::to_string(spec.a);
      case 5: return "path of class " + std::to_string(spec.a);
      case 6:
      case 7:
      case 8:
      case 9: return "path of instance " + std::to_string(spec.a);
      default: return Quoted(Pick(kTexts, spec.a));
    }
  }

  void Dispatch(EOp op) {
    switch (op) {
      case EOp::kNewNamespace: return NewNamespaceOp();
      case EOp::kCopyNamespace: return CopyNamespace();
      case EOp::kDropNamespace: return DropNamespace();
      case EOp::kAllocateQualifierDecl: return AllocateQualifierDecl();
      case EOp::kGetQualifierDecl: return GetQualifierDecl();
      case EOp::kAllocateClass: return AllocateClass();
      case EOp::kGetClass: return GetClass();
      case EOp::kQualifyClass: return QualifyClass();
      case EOp::kQualifyDecl: return QualifyDecl();
      case EOp::kChangeQualifier: return ChangeQualifier();
      case EOp::kDeclareProperty: return DeclareProperty(false);
      case EOp::kDeclareReference: return DeclareProperty(true);
      case EOp::kDeclareMethod: return DeclareMethod();
      case EOp::kAddPropertyTo: return AddPropertyTo();
      case EOp::kRemoveProperty: return RemoveProperty();
      case EOp::kRemoveMethod: return RemoveMethod();
      case EOp::kSetDefault: return SetDefault();
      case EOp::kAddClass:
        return OnClass("add class", &ICIMClass::AddToNamespace, &TModel::AddClass);
      case EOp::kDeleteClass:
        return OnClass("delete class", &ICIMClass::Delete, &TModel::DeleteClass);
      case EOp::kLinkClasses: return LinkClasses();
      case EOp::kPassNothing: return PassNothing();
      case EOp::kWrapInstance: return WrapInstance();
      case EOp::kAllocateInstance: return AllocateInstance();
      case EOp::kSetProperty: return SetProperty();
      case EOp::kAddInstance:
        return OnInstance("add instance", &ICIMInstance::AddToNamespace, &TModel::AddInstance);
      case EOp::kDeleteInstance:
        return OnInstance("delete instance", &ICIMInstance::Delete, &TModel::DeleteInstance);
      case EOp::kStoreIn: return StoreIn(true);
      case EOp::kRemoveFrom: return StoreIn(false);
      case EOp::kGetProperty: return GetProperty();
      case EOp::kSetSlot: return SetSlot(false);
      case EOp::kSetPrevious: return SetSlot(true);
      case EOp::kClearPrevious: return ClearPrevious();
      case EOp::kCompareSlots: return CompareSlots();
      case EOp::kClearInstances: return ClearInstances();
      case EOp::kFindInstance: return FindInstance();
      case EOp::kEnumerate: return Enumerate();
      case EOp::kReferences: return References();
      case EOp::kAssociators: return Associators();
      case EOp::kClassAssociations: return ClassAssociations();
      case EOp::kCompareClasses: return CompareClasses();
      case EOp::kSetSwitch: return SetSwitch();
      case EOp::kMakeClass: return MakeClass(false);
      case EOp::kMakeAssociation: return MakeClass(true);
      case EOp::kMakeInstance: return MakeInstance(false);
      case EOp::kMakeLink: return MakeInstance(true);
      default: return Dump();
    }
  }

  void NewNamespaceOp() {
    if (LivingNamespaces().size() > 3) return Nothing();
    const bool redefinition = Arg(0) % 2 == 0;
    m_what << "new namespace" << (redefinition ? ", redefinition allowed" : "");
    AddNamespace(redefinition);
    m_onPlugin = m_onModel = [] { return std::string("done"); };
  }

  void CopyNamespace() {
    if (LivingNamespaces().size() > 5) return Nothing();
    const auto ns = LivingNamespace(0);
    m_what << "copy namespace " << ns << " as " << m_namespaces.size();
    Both(
        [=] {
          m_namespaces.push_back(boost::make_shared<TInmemNamespace>(
              static_cast<const TInmemNamespace&>(*m_namespaces[ns])));
        },
        [=] { m_model.CopyNamespace(Number(ns)); });
  }

  // Never the last one.
  void DropNamespace() {
    if (LivingNamespaces().size() < 2) return Nothing();
    const auto ns = LivingNamespace(0);
    m_what << "drop namespace " << ns;
    Both([=] { m_namespaces[ns].reset(); }, [=] { m_model.DropNamespace(Number(ns)); });
  }

  void AllocateQualifierDecl() {
    const auto ns = LivingNamespace(0);
    const std::string name = Pick(kQualifiers, Arg(1));
    const unsigned flavor = Arg(2) % 4;
    m_what << "namespace " << ns << ": allocate qualifier declaration " << Quoted(name)
           << " with flavor " << flavor;
    Both(
        [=] {
          m_qualifierDecls.push_back(m_namespaces[ns]->AllocateQualifierDecl(
              name, TCIMValue(false), ICIMQualifierDecl::kScopeAny,
              static_cast<ICIMQualifierDecl::EFlavor>(flavor), {}));
        },
        [=] {
          m_qualifierDeclIds.push_back(m_model.AllocateQualifierDecl(Number(ns), name, flavor));
        });
  }

  void GetQualifierDecl() {
    const auto ns = LivingNamespace(0);
    const std::string name = Pick(kQualifiers, Arg(1));
    m_what << "namespace " << ns << ": get qualifier declaration " << Quoted(name);
    Both(
        [=] {
          const auto decl = m_namespaces[ns]->GetQualifierDecl(name, {});
          return decl ? decl->GetName({}) + ' ' + std::to_string(decl->GetFlavor({})) : "none";
        },
        [=] {
          const Id decl = m_model.GetQualifierDecl(Number(ns), name);
          if (decl == kNone) return std::string("none");
          const auto& found = m_model.qualifierDecls[decl];
          return found.name + ' ' + std::to_string(found.flavor);
        });
  }

  void AllocateClass() {
    AllocateClass(Pick(kClassNames, Arg(1)), [](Id) { return true; });
  }

  // A superclass comes from the same namespace, as collectors have it.
  void AllocateClass(const std::string& name, const std::function<bool(Id)>& mayBeSuperclass) {
    const auto ns = LivingNamespace(0);
    std::vector<std::size_t> supers;
    for (std::size_t i = 0; i < m_classes.size(); ++i)
      if (m_model.classes[m_classIds[i]].home == Number(ns) && mayBeSuperclass(m_classIds[i]))
        supers.push_back(i);
    const bool top = Arg(2) % 3 == 0 || supers.empty();
    const auto super = top ? 0 : supers[Arg(3) % supers.size()];
    m_what << "namespace " << ns << ": allocate class " << Quoted(name) << " under "
           << (top ? "nothing" : "C" + std::to_string(super));
    Both(
        [=] {
          const auto cls =
              m_namespaces[ns]->AllocateClass(name, top ? ClassPtr() : m_classes[super], {});
          if (m_placeOfClass.count(cls.get()) == 0) m_newClass = cls;
          return m_newClass ? "C" + std::to_string(m_classes.size()) : Text(cls);
        },
        [=] {
          const Id id = m_model.AllocateClass(Number(ns), name, top ? kNone : m_classIds[super]);
          if (m_newClass && m_placeOfClassId.count(id) == 0) {
            Keep(m_newClass, id);
            m_newClass.reset();
          }
          return TextOfClass(id);
        });
  }

  void GetClass() {
    const auto ns = LivingNamespace(0);
    const std::string name = Pick(kLookups, Arg(1));
    m_what << "namespace " << ns << ": get class " << Quoted(name);
    Both([=] { return Text(m_namespaces[ns]->GetClass(name, {})); },
         [=] { return TextOfClass(m_model.GetClass(Number(ns), name)); });
  }

  template <class Element>
  void Qualify(const std::string& element, Element&& onPlugin,
               const std::function<Id(Id, const TValue&, unsigned)>& onModel) {
    const auto decl = Place(m_qualifierDecls, 1);
    const auto spec = Arg(2) % 4 == 0 ? TValueSpec{0, 3, 0} : TValueSpec{2, Arg(2) % 4, 0};
    const unsigned flavor = Arg(3) % 5;
    m_what << element << ": allocate qualifier " << m_qualifierDecls[decl]->GetName({}) << " = "
           << Named(spec) << (flavor < 4 ? " with flavor " + std::to_string(flavor) : "");
    Both(
        [=] {
          const auto value = PluginValue(spec);
          auto& target = onPlugin();
          m_qualifiers.push_back(
              flavor < 4
                  ? target.AllocateQualifier(m_qualifierDecls[decl], value,
                                             static_cast<ICIMQualifierDecl::EFlavor>(flavor), {})
                  : target.AllocateQualifier(m_qualifierDecls[decl], value, {}));
        },
        [=] {
          const Id id = m_qualifierDeclIds[decl];
          m_qualifierIds.push_back(onModel(
              id, ModelValue(spec), flavor < 4 ? flavor : m_model.qualifierDecls[id].flavor));
        });
  }

  void QualifyClass() {
    const auto cls = Place(m_classes, 0);
    Qualify(
        "C" + std::to_string(cls), [=]() -> ICIMClass& { return *m_classes[cls]; },
        [=](Id decl, const TValue& value, unsigned flavor) {
          return m_model.QualifyClass(m_classIds[cls], decl, value, flavor);
        });
  }

  void QualifyDecl() {
    if (m_decls.empty()) return Nothing();
    const auto owner = Place(m_decls, 0);
    Qualify(
        "declaration " + std::to_string(owner),
        [=]() -> ICIMPropertyDecl& { return *m_decls[owner]; },
        [=](Id decl, const TValue& value, unsigned flavor) {
          return m_model.QualifyDecl(m_declIds[owner], decl, value, flavor);
        });
  }

  void ChangeQualifier() {
    if (m_qualifiers.empty()) return Nothing();
    const auto qualifier = Place(m_qualifiers, 0);
    const unsigned change = Arg(1) % 3, flavor = Arg(2) % 4;
    const bool value = Arg(3) % 2 == 0;
    m_what << "qualifier " << qualifier << ": "
           << (change == 0   ? "set value"
               : change == 1 ? "add flavor"
                             : "remove flavor");
    Both(
        [=] {
          auto& target = *m_qualifiers[qualifier];
          const auto bits = static_cast<ICIMQualifierDecl::EFlavor>(flavor);
          if (change == 0) target.SetValue(TCIMValue(value), {});
          if (change == 1) target.AddFlavor(bits, {});
          if (change == 2) target.RemoveFlavor(bits, {});
        },
        [=] {
          const Id target = m_qualifierIds[qualifier];
          if (change == 0) m_model.SetQualifierValue(target, ModelValue({2, value ? 1u : 0u, 0}));
          if (change == 1) m_model.AddFlavor(target, flavor);
          if (change == 2) m_model.RemoveFlavor(target, flavor);
        });
  }

  // The place of a declaration "Key" or "Override" of any namespace; the size for none.
  std::size_t QualifierDeclNamed(const std::string& name) const {
    std::size_t i = 0;
    while (i < m_qualifierDecls.size() && m_qualifierDecls[i]->GetName({}) != name) ++i;
    return i;
  }

  void DeclareProperty(bool reference) {
    const auto cls = Place(m_classes, 0);
    const std::string name = Pick(kProperties, Arg(1));
    const auto referenced = Place(m_classes, 2);
    TValueSpec spec = Spec(2);
    if (spec.kind > 3) spec = {0, spec.a, 0};
    // Reading a derived property that is a key makes it none: tried twice, that is another path.
    const bool derived = name == "speedDuplex" || name == "HealthState";
    const bool key = !(derived && m_memory != EMemory::kEnough) &&
                     (name == "Name" ? Arg(3) % 4 != 0 : Arg(3) % 4 == 1);
    const bool override_ = Arg(4) % 5 == 0;
    std::vector<std::size_t> qualifiers;
    if (key) qualifiers.push_back(QualifierDeclNamed("Key"));
    if (override_ && QualifierDeclNamed("Override") < m_qualifierDecls.size())
      qualifiers.push_back(QualifierDeclNamed("Override"));
    m_what << 'C' << cls << ": declare " << (reference ? "reference " : "property ")
           << Quoted(name);
    if (reference)
      m_what << " to C" << referenced;
    else
      m_what << " = " << Named(spec);
    for (const auto qualifier : qualifiers)
      m_what << " [" << m_qualifierDecls[qualifier]->GetName({}) << ']';
    Both(
        [=] {
          auto decl = reference
                          ? m_classes[cls]->AllocateReferenceDecl(name, m_classes[referenced], {})
                          : m_classes[cls]->AllocatePropertyDecl(name, PluginValue(spec), {});
          m_decls.push_back(decl);
          for (const auto qualifier : qualifiers)
            m_qualifiers.push_back(
                decl->AllocateQualifier(m_qualifierDecls[qualifier], TCIMValue(true), {}));
          decl->AddToClass({});
        },
        [=] {
          TValue value = reference ? TValue() : ModelValue(spec);
          if (reference) {
            value.type = kReference;
            value.path = std::make_shared<TPath>(m_model.PathOf(m_classIds[referenced]));
          }
          const Id decl = m_model.NewDecl(m_classIds[cls], name, value);
          m_declIds.push_back(decl);
          for (const auto qualifier : qualifiers) {
            const Id id = m_qualifierDeclIds[qualifier];
            m_qualifierIds.push_back(m_model.QualifyDecl(decl, id, ModelValue({2, 1, 0}),
                                                         m_model.qualifierDecls[id].flavor));
          }
          m_model.AddProperty(m_classIds[cls], decl);
        });
  }

  void DeclareMethod() {
    const auto cls = Place(m_classes, 0);
    const std::string name = Pick(kMethods, Arg(1));
    const unsigned type = kTypes[Arg(2) % 4];
    const auto qualifier = QualifierDeclNamed("Override");
    const bool override_ = Arg(3) % 2 == 0 && qualifier < m_qualifierDecls.size();
    const std::string parameters[] = {Pick(kProperties, Arg(4)), Pick(kProperties, Arg(5))};
    m_what << 'C' << cls << ": declare method " << TypeName(type) << ' ' << Quoted(name) << '('
           << parameters[0] << ", " << parameters[1] << ')' << (override_ ? " [Override]" : "");
    Both(
        [=] {
          auto decl = m_classes[cls]->AllocateMethodDecl(
              name, TCIMValue::TCIMType(static_cast<ECIMType>(type)), {});
          m_methods.push_back(decl);
          if (override_) decl->AllocateQualifier(m_qualifierDecls[qualifier], TCIMValue(true), {});
          std::string refused;
          for (const auto& parameter : parameters)
            refused += Answer([&] {
              decl->AllocateParameter(parameter, TCIMValue(false), {});
              return std::string("parameter ");
            });
          decl->AddToClass({});
          return refused;
        },
        [=] {
          TValue value;
          value.type = type;
          const Id decl = m_model.NewDecl(m_classIds[cls], name, value);
          m_methodIds.push_back(decl);
          if (override_) {
            const Id id = m_qualifierDeclIds[qualifier];
            m_model.QualifyDecl(decl, id, ModelValue({2, 1, 0}), m_model.qualifierDecls[id].flavor);
          }
          std::string refused;
          for (const auto& parameter : parameters)
            refused += Answer([&] {
              m_model.AddParameter(decl, parameter);
              return std::string("parameter ");
            });
          m_model.AddMethod(m_classIds[cls], decl);
          return refused;
        });
  }

  void AddPropertyTo() {
    if (m_decls.empty()) return Nothing();
    const auto cls = Place(m_classes, 0), decl = Place(m_decls, 1);
    m_what << 'C' << cls << ": add declaration " << decl;
    Both([=] { m_classes[cls]->AddPropertyDecl(m_decls[decl], {}); },
         [=] { m_model.AddProperty(m_classIds[cls], m_declIds[decl]); });
  }

  void RemoveProperty() {
    if (m_decls.empty()) return Nothing();
    const auto cls = Place(m_classes, 0), decl = Place(m_decls, 1);
    m_what << 'C' << cls << ": remove declaration " << decl;
    Both([=] { m_classes[cls]->RemovePropertyDecl(m_decls[decl], {}); },
         [=] { m_model.RemoveProperty(m_classIds[cls], m_declIds[decl]); });
  }

  void RemoveMethod() {
    if (m_methods.empty()) return Nothing();
    const auto cls = Place(m_classes, 0), method = Place(m_methods, 1);
    m_what << 'C' << cls << ": remove method " << method;
    Both([=] { m_classes[cls]->RemoveMethodDecl(m_methods[method], {}); },
         [=] { m_model.RemoveMethod(m_classIds[cls], m_methodIds[method]); });
  }

  void SetDefault() {
    if (m_decls.empty()) return Nothing();
    const auto decl = Place(m_decls, 0);
    const auto spec = Spec(1);
    m_what << "declaration " << decl << ": set default " << Named(spec);
    Both([=] { m_decls[decl]->SetDefaultValue(PluginValue(spec), {}); },
         [=] { m_model.decls[m_declIds[decl]].value = ModelValue(spec); });
  }

  void OnClass(const char* what, void (ICIMClass::*onPlugin)(TOptions),
               void (TModel::*onModel)(Id)) {
    const auto cls = Place(m_classes, 0);
    m_what << what << " C" << cls;
    if (m_model.classes[m_classIds[cls]].superclass == kNone) return Nothing();
    Both([=] { ((*m_classes[cls]).*onPlugin)({}); }, [=] { (m_model.*onModel)(m_classIds[cls]); });
  }

  void LinkClasses() {
    static constexpr struct {
      const char* what;
      void (ICIMClass::*onPlugin)(ClassPtr, TOptions);
      void (TModel::*onModel)(Id, Id);
    } kinds[] = {{"add subclass", &ICIMClass::AddSubclass, &TModel::AddSubclass},
                 {"remove subclass", &ICIMClass::RemoveSubclass, &TModel::RemoveSubclass},
                 {"add association", &ICIMClass::AddAssociation, &TModel::AddAssociation},
                 {"remove association", &ICIMClass::RemoveAssociation,
                  &TModel::RemoveAssociation}};
    const auto& kind = kinds[Arg(0) % std::size(kinds)];
    const auto cls = Place(m_classes, 1), other = Place(m_classes, 2);
    m_what << 'C' << cls << ": " << kind.what << " C" << other;
    Both([=, &kind] { ((*m_classes[cls]).*kind.onPlugin)(m_classes[other], {}); },
         [=, &kind] { (m_model.*kind.onModel)(m_classIds[cls], m_classIds[other]); });
  }

  // An empty pointer where an element is due.
  void PassNothing() {
    static constexpr struct {
      const char* what;
      void (*call)(ICIMClass& cls);
    } kinds[] = {
        {"add subclass", [](ICIMClass& cls) { cls.AddSubclass({}, {}); }},
        {"remove subclass", [](ICIMClass& cls) { cls.RemoveSubclass({}, {}); }},
        {"add association", [](ICIMClass& cls) { cls.AddAssociation({}, {}); }},
        {"remove association", [](ICIMClass& cls) { cls.RemoveAssociation({}, {}); }},
        {"add property", [](ICIMClass& cls) { cls.AddPropertyDecl({}, {}); }},
        {"remove property", [](ICIMClass& cls) { cls.RemovePropertyDecl({}, {}); }},
        {"add method", [](ICIMClass& cls) { cls.AddMethodDecl({}, {}); }},
        {"remove method", [](ICIMClass& cls) { cls.RemoveMethodDecl({}, {}); }},
        {"add instance", [](ICIMClass& cls) { cls.AddInstance({}, {}); }},
        {"remove instance", [](ICIMClass& cls) { cls.RemoveInstance({}, {}); }},
        {"add qualifier", [](ICIMClass& cls) { cls.AddQualifier({}, {}); }},
        {"allocate qualifier", [](ICIMClass& cls) { cls.AllocateQualifier({}, {}, {}); }},
        {"declare reference", [](ICIMClass& cls) { cls.AllocateReferenceDecl("Left", {}, {}); }},
        {"is a", [](ICIMClass& cls) { cls.IsA({}, {}); }}};
    const auto& kind = kinds[Arg(0) % std::size(kinds)];
    const auto cls = Place(m_classes, 1);
    m_what << 'C' << cls << ": " << kind.what << ": nothing";
    Both([=, &kind] { kind.call(*m_classes[cls]); },
         [] { throw TStatus{kHAVNotFound}; });
  }

  void OnInstance(const char* what, void (ICIMInstance::*onPlugin)(TOptions),
                  void (TModel::*onModel)(Id)) {
    if (m_instances.empty()) return Nothing();
    const auto instance = Place(m_instances, 0);
    m_what << what << " I" << instance;
    Both([=] { ((*m_instances[instance]).*onPlugin)({}); },
         [=] { (m_model.*onModel)(Number(instance)); });
  }

  void AllocateInstance() {
    const auto cls = Place(m_classes, 0);
    m_what << "allocate instance I" << m_instances.size() << " of C" << cls;
    Both(
        [=] {
          m_instances.push_back(m_classes[cls]->AllocateInstance({}));
          m_placeOfInstance[m_instances.back().get()] = m_instances.size() - 1;
        },
        [=] { m_model.AllocateInstance(m_classIds[cls]); });
  }

  void WrapInstance() {
    if (m_instances.empty()) return Nothing();
    const auto behind = AskedInstance();
    const bool stored = Arg(1) % 4 != 0;
    m_what << "host's object I" << m_instances.size() << " around I" << behind
           << (stored ? ", stored in its class" : "");
    Both(
        [=] {
          m_instances.push_back(boost::make_shared<ForeignInstance>(m_instances[behind]));
          const auto instance = m_instances.back();
          m_placeOfInstance[instance.get()] = m_instances.size() - 1;
          if (stored) instance->GetClass({})->AddInstance(instance, {});
        },
        [=] {
          const Id instance = m_model.WrapInstance(Number(behind));
          if (stored) m_model.Store(m_model.instances[instance].cls, instance);
        });
  }

  // Values that fit the property come more often than chance would have it.
  TValueSpec FittingSpec(const std::string& name, std::size_t i) const {
    TValueSpec spec = Spec(i);
    if (Arg(i) % 5 == 0) return spec;
    if (name == "Left" || name == "left" || name == "Right" || name == "LEFT")
      return {6 + spec.kind % 4, spec.a, 0};
    return {10, spec.a, 0};
  }

  void SetProperty() {
    if (m_instances.empty()) return Nothing();
    const auto instance = Place(m_instances, 0);
    const std::string name = Pick(kReads, Arg(1) % 3 != 0 ? Arg(1) / 3 % 3 : Arg(1) / 3);
    const auto spec = FittingSpec(name, 2);
    m_what << 'I' << instance << ": set " << Quoted(name) << " = " << Named(spec);
    Both([=] { m_instances[instance]->SetPropertyValue(name, PluginValue(spec), {}); },
         [=] { m_model.SetProperty(Number(instance), name, ModelValue(spec)); });
  }

  void StoreIn(bool add) {
    if (m_instances.empty()) return Nothing();
    const auto cls = Place(m_classes, 0), instance = Place(m_instances, 1);
    m_what << 'C' << cls << (add ? ": store I" : ": remove I") << instance;
    Both(
        [=] {
          if (add)
            m_classes[cls]->AddInstance(m_instances[instance], {});
          else
            m_classes[cls]->RemoveInstance(m_instances[instance], {});
        },
        [=] {
          if (add)
            m_model.Store(m_classIds[cls], Number(instance));
          else
            m_model.Unstore(m_classIds[cls], Number(instance));
        });
  }

  void GetProperty() {
    if (m_instances.empty()) return Nothing();
    const auto instance = Place(m_instances, 0);
    const std::string name = Pick(kReads, Arg(1));
    m_what << 'I' << instance << ": get " << Quoted(name) << " as slot " << m_slots.size();
    Both(
        [=] {
          const auto slot = m_instances[instance]->GetProperty(name, {});
          m_slots.push_back(slot);
          return slot->GetDecl({})->GetName({}) + ' ' + Text(slot->GetValue({})) +
                 (slot->IsValueDefault({}) ? " default" : "") + " before " +
                 (slot->HasPrevValue({}) ? "" : "(none) ") + Text(slot->GetPrevValue({}));
        },
        [=] {
          const auto slot = m_model.GetSlot(Number(instance), name);
          m_modelSlots.push_back(slot);
          return m_model.decls[slot->decl].name + ' ' + Text(m_model.ValueOf(*slot)) +
                 (slot->value ? "" : " default") + " before " + (slot->previous ? "" : "(none) ") +
                 Text(m_model.PreviousOf(*slot));
        });
  }

  void SetSlot(bool previous) {
    if (m_slots.empty()) return Nothing();
    const auto slot = Place(m_slots, 0);
    const auto spec = FittingSpec(m_slots[slot]->GetDecl({})->GetName({}), 1);
    m_what << "slot " << slot << (previous ? ": set previous " : ": set ") << Named(spec);
    Both(
        [=] {
          if (previous)
            m_slots[slot]->SetPrevValue(PluginValue(spec), {});
          else
            m_slots[slot]->SetValue(PluginValue(spec), {});
        },
        [=] {
          if (previous)
            m_model.SetPrevious(*m_modelSlots[slot], ModelValue(spec));
          else
            m_model.SetValue(*m_modelSlots[slot], ModelValue(spec));
        });
  }

  void ClearPrevious() {
    if (m_slots.empty()) return Nothing();
    const auto slot = Place(m_slots, 0);
    m_what << "slot " << slot << ": clear previous";
    Both(
        [=] {
          m_slots[slot]->ClearPrevValue({});
          return std::string(m_slots[slot]->GetPrevValue({}).IsNull() ? "NULL" : "a value");
        },
        [=] {
          m_modelSlots[slot]->previous = std::make_unique<TValue>();
          m_modelSlots[slot]->previous->type = 0;
          return std::string("NULL");
        });
  }

  void CompareSlots() {
    if (m_slots.empty()) return Nothing();
    const auto a = Place(m_slots, 0), b = Place(m_slots, 1);
    m_what << "slot " << a << " == slot " << b;
    Both([=] { return std::string(*m_slots[a] == *m_slots[b] ? "equal" : "differ"); },
         [=] {
           const TSlot &left = *m_modelSlots[a], &right = *m_modelSlots[b];
           return std::string(left.decl == right.decl && SameValue(m_model, m_model.ValueOf(left),
                                                                   m_model.ValueOf(right))
                                  ? "equal"
                                  : "differ");
         });
  }

  void ClearInstances() {
    const auto ns = LivingNamespace(0);
    m_what << "namespace " << ns << ": clear instances";
    Both([=] { m_namespaces[ns]->ClearInstances(); }, [=] { m_model.ClearInstances(Number(ns)); });
  }

  void FindInstance() {
    if (m_instances.empty()) return Nothing();
    const auto instance = Place(m_instances, 0);
    const auto ns = LivingNamespace(1);
    m_what << "namespace " << ns << ": find the path of I" << instance;
    Both(
        [=] {
          const auto path = m_instances[instance]->GetReference({});
          return path.GetPath() + ' ' + Text(m_namespaces[ns]->GetInstance(path, {}));
        },
        [=] {
          const auto path = m_model.Reference(Number(instance));
          return m_model.PathText(path) + ' ' +
                 TextOfInstance(m_model.GetInstance(Number(ns), path));
        });
  }

  // What a callback does at one of its visits, on either side.
  struct TMischief {
    unsigned visit;
    std::string what;
    TAction onPlugin, onModel;
  };

  // Most walks are quiet; in the others a callback changes the model while it is walked. The
  // operations that make something new are left out: both sides number what they make.
  TMischief Mischief() {
    constexpr EOp kOps[] = {EOp::kSetProperty, EOp::kAddInstance,    EOp::kDeleteInstance,
                            EOp::kStoreIn,     EOp::kRemoveFrom,     EOp::kClearInstances,
                            EOp::kSetDefault,  EOp::kRemoveProperty, EOp::kAddClass,
                            EOp::kDeleteClass, EOp::kEnumerate,      EOp::kDropNamespace,
                            EOp::kLinkClasses};
    // What a callback did before memory was lacking, it has done.
    if (Arg(5) % 3 != 0 || m_memory != EMemory::kEnough) return {};
    const auto* const given = m_arguments;
    const std::array<unsigned, 10> own{Arg(6), Arg(7), Arg(8), 1, 1, 1, 1, 1, 1, 1};
    const std::string said = m_what.str();
    m_what.str("");
    m_arguments = &own;
    Dispatch(kOps[(*given)[9] % std::size(kOps)]);
    TMischief mischief{(*given)[5] / 3 % 3, m_what.str(), m_onPlugin, m_onModel};
    m_arguments = given;
    m_what.str("");
    m_what << said;
    if (!mischief.what.empty()) m_what << ", at visit " << mischief.visit << ": " << mischief.what;
    return mischief;
  }

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
  std::string Classes(const std::vector<Id>& ids) const {
    std::string text;
    for (Id id : ids) text += TextOfClass(id) + ' ';
    return text;
  }

  void Enumerate() {
    const auto cls = Place(m_classes, 0);
    const bool deep = Arg(1) % 2 == 0;
    m_what << 'C' << cls << ": enumerate instances" << (deep ? ", deep" : "");
    const auto mischief = Mischief();
    Both(
        [=] {
          return Visited(
              [&](const auto& callback) { m_classes[cls]->EnumerateInstances(callback, deep, {}); },
              mischief);
        },
        [=] {
          return VisitedInModel(
              [&](const auto& visit) { m_model.Enumerate(m_classIds[cls], deep, visit); },
              mischief);
        });
  }

  void References() {
    if (m_instances.empty()) return Nothing();
    const auto instance = AskedInstance();
    const std::string cls = Filter(kFilters, Arg(1)), role = Filter(kRoles, Arg(2));
    m_what << 'I' << instance << ": references, class " << Quoted(cls) << ", role " << Quoted(role);
    const auto mischief = Mischief();
    Both(
        [=] {
          return Visited(
              [&](const auto& callback) {
                m_instances[instance]->EnumerateAssociationInstances(callback, cls, role, {});
              },
              mischief);
        },
        [=] {
          return VisitedInModel(
              [&](const auto& visit) { m_model.References(Number(instance), cls, role, visit); },
              mischief);
        });
  }

  void Associators() {
    if (m_instances.empty()) return Nothing();
    const auto instance = AskedInstance();
    const std::string association = Filter(kFilters, Arg(1)), result = Filter(kResults, Arg(2));
    const std::string role = Filter(kRoles, Arg(3)), resultRole = Filter(kRoles, Arg(4));
    m_what << 'I' << instance << ": associators, class " << Quoted(association) << ", result "
           << Quoted(result) << ", role " << Quoted(role) << ", result role " << Quoted(resultRole);
    const auto mischief = Mischief();
    Both(
        [=] {
          return Visited(
              [&](const auto& callback) {
                m_instances[instance]->EnumerateAssociatedInstances(callback, association, result,
                                                                    role, resultRole, {});
              },
              mischief);
        },
        [=] {
          return VisitedInModel(
              [&](const auto& visit) {
                m_model.Associators(Number(instance), association, result, role, resultRole, visit);
              },
              mischief);
        });
  }

  void ClassAssociations() {
    const auto cls = Place(m_classes, 0);
    const std::string association = Filter(kFilters, Arg(1)), result = Filter(kFilters, Arg(2));
    const std::string role = Filter(kRoles, Arg(3)), resultRole = Filter(kRoles, Arg(4));
    m_what << 'C' << cls << ": association classes " << Quoted(association) << ", role "
           << Quoted(role) << "; associated classes, result " << Quoted(result) << ", result role "
           << Quoted(resultRole);
    Both(
        [=] {
          const auto& target = *m_classes[cls];
          return VisitedClasses([&](const auto& callback) {
                   target.EnumerateAssociationClasses(callback, association, role, {});
                 }) +
                 "; " + VisitedClasses([&](const auto& callback) {
                   target.EnumerateAssociatedClasses(callback, association, result, role,
                                                     resultRole, {});
                 });
        },
        [=] {
          const Id target = m_classIds[cls];
          const auto classes = Classes(m_model.AssociationClasses(target, association, role));
          return classes + "; " +
                 Classes(m_model.AssociatedClasses(target, association, result, role, resultRole));
        });
  }

  void CompareClasses() {
    const auto a = Place(m_classes, 0), b = Place(m_classes, 1);
    m_what << 'C' << a << " beside C" << b;
    Both(
        [=] {
          const auto &left = *m_classes[a], &right = *m_classes[b];
          return std::string(left.IsA(m_classes[b], {}) ? "is a" : "is no") +
                 (left == right ? ", equal" : "") + (left < right ? ", less" : "");
        },
        [=] {
          const auto &left = m_model.classes[m_classIds[a]],
                     &right = m_model.classes[m_classIds[b]];
          return std::string(m_model.IsA(m_classIds[a], m_classIds[b]) ? "is a" : "is no") +
                 (left.name == right.name ? ", equal" : "") +
                 (left.name < right.name ? ", less" : "");
        });
  }

  void SetSwitch() {
    const int level = static_cast<int>(Arg(0) % 3), value = static_cast<int>(Arg(1) % 4) - 1;
    m_what << "switch " << level + 1 << " = " << value;
    Both([=] { CacheSwitch(level + 1) = value; }, [=] { m_model.switches[level] = value; });
  }

  // A registered class with keys, of any namespace; any class where there is none.
  std::size_t KeyedClass(std::size_t i) const {
    std::vector<std::size_t> keyed;
    for (std::size_t place = 0; place < m_classes.size(); ++place)
      if (m_model.classes[m_classIds[place]].inNamespace &&
          !m_model.Keys(m_classIds[place]).empty() &&
          (Arg(i) % 8 == 1 || !m_model.IsTrue(m_classIds[place], "association")))
        keyed.push_back(place);
    return keyed.empty() || Arg(i) % 16 == 0 ? Place(m_classes, i) : keyed[Place(keyed, i)];
  }

  // An instance to ask, mostly one that is stored.
  std::size_t AskedInstance() const {
    std::vector<std::size_t> stored;
    for (const TClass& cls : m_model.classes)
      for (const auto& [path, instance] : cls.store)
        stored.push_back(static_cast<std::size_t>(instance));
    return stored.empty() || Arg(0) % 8 == 0 ? Place(m_instances, 0) : stored[Place(stored, 0)];
  }

  // A class with a key "Name", or an association with two references as its keys, registered.
  void MakeClass(bool association) {
    constexpr const char* classes[] = {"A", "B", "C", "D", "ORVSG_CPU"};
    constexpr const char* associations[] = {"L", "M", "N"};
    const auto isAssociation = [this](Id cls) { return m_model.IsTrue(cls, "association"); };
    AllocateClass(association ? Pick(associations, Arg(1)) : Pick(classes, Arg(1)),
                  [&](Id cls) { return isAssociation(cls) == association; });
    const auto allocatePlugin = m_onPlugin, allocateModel = m_onModel;
    const std::size_t ends[] = {KeyedClass(4), KeyedClass(5)};
    m_what << (association ? ", association of C" + std::to_string(ends[0]) + " and C" +
                                 std::to_string(ends[1])
                           : ", with a key")
           << ", and add it";
    const auto key = QualifierDeclNamed("Key"), marks = QualifierDeclNamed("Association");
    Both(
        [=] {
          std::string text = allocatePlugin();
          const auto cls = m_newClass ? m_newClass : m_classes[std::stoul(text.substr(1))];
          if (association) {
            cls->AllocateQualifier(m_qualifierDecls[marks], TCIMValue(true), {});
            for (const int end : {0, 1}) {
              const auto decl =
                  cls->AllocateReferenceDecl(end == 0 ? "Left" : "Right", m_classes[ends[end]], {});
              decl->AllocateQualifier(m_qualifierDecls[key], TCIMValue(true), {});
              decl->AddToClass({});
            }
          } else {
            const auto decl = cls->AllocatePropertyDecl("Name", TCIMValue::Null(kCIMString), {});
            decl->AllocateQualifier(m_qualifierDecls[key], TCIMValue(true), {});
            decl->AddToClass({});
          }
          cls->AddToNamespace({});
          return text;
        },
        [=] {
          std::string text = allocateModel();
          const Id cls = m_classIds[std::stoul(text.substr(1))];
          const auto declare = [&](const char* name, const TValue& value) {
            const Id decl = m_model.NewDecl(cls, name, value);
            const Id id = m_qualifierDeclIds[key];
            m_model.QualifyDecl(decl, id, ModelValue({2, 1, 0}), m_model.qualifierDecls[id].flavor);
            m_model.AddProperty(cls, decl);
          };
          if (association) {
            const Id id = m_qualifierDeclIds[marks];
            m_model.QualifyClass(cls, id, ModelValue({2, 1, 0}), m_model.qualifierDecls[id].flavor);
            for (const int end : {0, 1}) {
              TValue value;
              value.type = kReference;
              value.path = std::make_shared<TPath>(m_model.PathOf(m_classIds[ends[end]]));
              declare(end == 0 ? "Left" : "Right", value);
            }
          } else {
            declare("Name", TValue());
          }
          m_model.AddClass(cls);
          return text;
        });
  }

  // A stored instance that the reference `role` of the class may well point at; any where there
  // is none.
  unsigned StoredFor(Id cls, const std::string& role, unsigned number) const {
    const auto entry = m_model.classes[cls].properties.find(role);
    if (entry == m_model.classes[cls].properties.end()) return number;
    const TValue& declared = m_model.decls[entry->second.decl].value;
    std::vector<unsigned> fitting;
    for (const TClass& holder : m_model.classes)
      for (const auto& [path, instance] : holder.store)
        if (declared.path && m_model.IsA(m_model.instances[instance].cls, declared.path->cls))
          fitting.push_back(static_cast<unsigned>(instance));
    return fitting.empty() ? number : fitting[number % fitting.size()];
  }

  // An instance with a name, or a link with two ends, added.
  void MakeInstance(bool link) {
    std::vector<std::size_t> classes;
    for (std::size_t i = 0; i < m_classes.size(); ++i)
      if (m_model.IsTrue(m_classIds[i], "association") == link) classes.push_back(i);
    if (classes.empty() || m_instances.empty()) return AllocateInstance();
    const auto cls = classes[Arg(0) % classes.size()];
    const TValueSpec name{10, Arg(1), 0};
    const TValueSpec ends[] = {{6, StoredFor(m_classIds[cls], "left", Arg(2)), 0},
                               {6, StoredFor(m_classIds[cls], "right", Arg(3)), 0}};
    m_what << "make instance I" << m_instances.size() << " of C" << cls;
    if (link)
      m_what << ", Left = " << Named(ends[0]) << ", Right = " << Named(ends[1]);
    else
      m_what << ", Name = " << Named(name);
    Both(
        [=] {
          const auto left = PluginValue(ends[0]), right = PluginValue(ends[1]);
          m_instances.push_back(m_classes[cls]->AllocateInstance({}));
          const auto instance = m_instances.back();
          m_placeOfInstance[instance.get()] = m_instances.size() - 1;
          if (link) {
            instance->SetPropertyValue("Left", left, {});
            instance->SetPropertyValue("Right", right, {});
          } else {
            instance->SetPropertyValue("Name", PluginValue(name), {});
          }
          instance->AddToNamespace({});
        },
        [=] {
          // The plug-in's side has counted the new instance already when it came that far.
          const auto instances = m_model.instances.size();
          const auto end = [&](const TValueSpec& spec) {
            TValue value = ModelValue({5, 0, 0});
            value.path =
                std::make_shared<TPath>(m_model.Reference(static_cast<Id>(spec.a % instances)));
            return value;
          };
          const TValue left = end(ends[0]), right = end(ends[1]);
          const Id instance = m_model.AllocateInstance(m_classIds[cls]);
          if (link) {
            m_model.SetProperty(instance, "Left", left);
            m_model.SetProperty(instance, "Right", right);
          } else {
            m_model.SetProperty(instance, "Name", ModelValue(name));
          }
          m_model.AddInstance(instance);
        });
  }

  template <class Element>
  std::string Qualifiers(Element& element) const {
    std::string text;
    element.EnumerateQualifiers(TEnumCallback<ICIMQualifier>([&](QualifierPtr qualifier) {
                                  const UnfailingAllocations unfailing;
                                  text += '[' + qualifier->GetName({}) + ' ' +
                                          Text(qualifier->GetValue({})) + ' ' +
                                          std::to_string(qualifier->GetFlavor({})) +
                                          (qualifier->IsPropagated({}) ? " propagated]" : "]");
                                  return false;
                                }),
                                {});
    return text;
  }
  std::string Qualifiers(const TQualifiers& table) const {
    std::string text;
    for (const auto& [name, id] : table) {
      const TQualifier& qualifier = m_model.qualifiers[id];
      text += '[' + m_model.qualifierDecls[qualifier.decl].name + ' ' + Text(qualifier.value) +
              ' ' + std::to_string(qualifier.flavor) +
              (qualifier.propagated ? " propagated]" : "]");
    }
    return text;
  }

  std::string DumpOf(ICIMClass& cls) const {
    std::string text = cls.GetName({}) + " under " + Text(cls.GetSuperClass({})) + Qualifiers(cls) +
                       (cls.IsAssociation({}) ? " association" : "") +
                       (cls.IsAbstract({}) ? " abstract" : "") + "; keys";
    cls.EnumerateKeyNames(
        [&](const std::string* name) {
          text += ' ' + *name;
          return true;
        },
        {});
    cls.EnumeratePropertyDecls(TEnumCallback<ICIMPropertyDecl>([&](PropertyDeclPtr decl) {
                                 const UnfailingAllocations unfailing;
                                 text += "; " + decl->GetName({}) + ' ' +
                                         Text(decl->GetDefaultValue({})) + " of " +
                                         Text(decl->GetClass({})) + Qualifiers(*decl);
                                 return true;
                               }),
                               {});
    cls.EnumerateMethodDecls(TEnumCallback<ICIMMethodDecl>([&](MethodDeclPtr decl) {
                               const UnfailingAllocations unfailing;
                               std::ostringstream type;
                               type << decl->GetType({});
                               text += "; " + type.str() + ' ' + decl->GetName({}) + '(';
                               decl->EnumerateParameters(TEnumCallback<ICIMParameterDecl>(
                                                             [&](ParameterDeclPtr parameter) {
                                                               text += parameter->GetName({}) + ' ';
                                                               return true;
                                                             }),
                                                         {});
                               text += ") of " + Text(decl->GetClass({}));
                               return true;
                             }),
                             {});
    return text + "; subclasses " +
           VisitedClasses([&](const auto& callback) { cls.EnumerateSubclasses(callback, {}); }) +
           "; instances " +
           Visited([&](const auto& callback) { cls.EnumerateInstances(callback, false, {}); });
  }
  std::string DumpOf(Id id) {
    const TClass& cls = m_model.classes[id];
    std::string text = cls.name + " under " + TextOfClass(cls.superclass) +
                       Qualifiers(cls.qualifiers) +
                       (m_model.IsTrue(id, "association") ? " association" : "") +
                       (m_model.IsTrue(id, "abstract") ? " abstract" : "") + "; keys";
    for (Id key : m_model.Keys(id)) text += ' ' + m_model.decls[key].name;
    for (const auto& [name, entry] : cls.properties) {
      const TDecl& decl = m_model.decls[entry.decl];
      text += "; " + decl.name + ' ' + Text(decl.value) + " of " + TextOfClass(decl.origin) +
              Qualifiers(decl.qualifiers);
    }
    for (const auto& [name, entry] : cls.methods) {
      const TDecl& decl = m_model.decls[entry.decl];
      text += "; " + TypeName(decl.value.type) + ' ' + decl.name + '(';
      for (const auto& [key, parameter] : decl.parameters) text += parameter + ' ';
      text += ") of " + TextOfClass(decl.origin);
    }
    return text + "; subclasses " + Classes(cls.subclasses) + "; instances " +
           VisitedInModel([&](const auto& visit) { m_model.Enumerate(id, false, visit); });
  }

  void Dump() {
    const auto cls = Place(m_classes, 0);
    m_what << "show C" << cls;
    Both([=] { return DumpOf(*m_classes[cls]); }, [=] { return DumpOf(m_classIds[cls]); });
  }

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

}  // namespace

std::size_t FailedAllocations() { return g_failedAllocations; }

TDifference Compare(const TProgram& program, EMemory memory, std::vector<std::string>* trace) {
  TRun run(memory);
  TDifference difference{program.size(), {}, {}};
  for (std::size_t i = 0; i < program.size(); ++i) {
    std::string what;
    const bool same = run.Do(program[i], what, difference.plugin, difference.model);
    if (trace) trace->push_back(what + (same ? " -> " + difference.plugin : ""));
    if (same) continue;
    difference.at = i;
    return difference;
  }
  return difference;
}

}  // namespace havtest::oracle
