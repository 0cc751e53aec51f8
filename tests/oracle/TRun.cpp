// How both sides of an operation are run and their answers compared.
#include "tests/oracle/TRun.h"

namespace havtest::oracle {

namespace {

std::size_t g_failedAllocations = 0;
std::size_t g_failedLogLines = 0;

}  // namespace

TRun::TRun(EMemory memory) : m_memory(memory) {
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

bool TRun::Do(const TOperation& operation, std::string& what, std::string& plugin,
              std::string& model) {
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

std::string TRun::Answer(const TAction& action) {
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

std::string TRun::AnswerWithFailure(std::size_t allowed) {
  if (m_memory == EMemory::kLogThrows) {
    m_log.FailAfter(allowed);
    return Answer(m_onPlugin);
  }
  const FailingAllocation failure(allowed, m_memory == EMemory::kFailsOnce
                                               ? FailingAllocation::kOnce
                                               : FailingAllocation::kFromThenOn);
  std::string answer = Answer(m_onPlugin);
  return answer;
}

std::string TRun::AnswerInTheEnd() {
  const std::size_t made[] = {m_qualifierDecls.size(), m_qualifiers.size(), m_decls.size(),
                              m_methods.size(),        m_instances.size(),  m_slots.size()};
  for (std::size_t allowed = 0;; ++allowed) {
    try {
      std::string answer = AnswerWithFailure(allowed);
      m_log.FailNever();
      return answer;
    } catch (const std::bad_alloc&) {
      ++g_failedAllocations;
    } catch (const TLogFailure&) {
      ++g_failedLogLines;
    }
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

std::string TRun::PluginLog() {
  std::string text;
  for (const auto& line : m_log.Take())
    text += " | " + std::to_string(line.level) + ' ' + line.text;
  return text;
}

std::string TRun::ModelLog() {
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

std::vector<std::size_t> TRun::LivingNamespaces() const {
  std::vector<std::size_t> living;
  for (std::size_t ns = 0; ns < m_namespaces.size(); ++ns)
    if (m_namespaces[ns]) living.push_back(ns);
  return living;
}

std::size_t TRun::LivingNamespace(std::size_t i) const {
  const auto living = LivingNamespaces();
  return living[Place(living, i)];
}

std::vector<std::size_t> TRun::OwnClasses() const {
  std::vector<std::size_t> own;
  for (std::size_t cls = 0; cls < m_classes.size(); ++cls)
    if (m_model.OwnClass(m_classIds[cls]) == m_classIds[cls]) own.push_back(cls);
  return own;
}

std::size_t TRun::OwnClass(std::size_t i) const {
  const auto own = OwnClasses();
  return own[Place(own, i)];
}

void TRun::Nothing() {
  m_onPlugin = m_onModel = [] { return std::string("nothing"); };
}

void TRun::AddNamespace(bool redefinition) {
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

std::string TRun::Keep(const ClassPtr& cls, Id id) {
  m_classes.push_back(cls);
  m_classIds.push_back(id);
  m_placeOfClass.emplace(cls.get(), m_classes.size() - 1);
  m_placeOfClassId.emplace(id, m_classes.size() - 1);
  return {};
}

void TRun::Dispatch(EOp op) {
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
    case EOp::kAddClass: return OnClass("add class", &ICIMClass::AddToNamespace, &TModel::AddClass);
    case EOp::kDeleteClass:
      return OnClass("delete class", &ICIMClass::Delete, &TModel::DeleteClass);
    case EOp::kWrapClass: return WrapClass();
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

std::size_t FailedAllocations() { return g_failedAllocations; }
std::size_t FailedLogLines() { return g_failedLogLines; }

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
