#include "mof/TMofSchemaBuilder.h"

#include <algorithm>
#include <utility>

#include "havcore/client/Enumerate.h"

namespace hav::mof {

using namespace client;

using namespace NORVHAV20;

namespace {

constexpr std::uint32_t kImpliedFlavor =
    ICIMQualifierDecl::kFlavorOverridable | ICIMQualifierDecl::kFlavorToSubclass;

ECIMType FullType(const TMofType& type) {
  return type.isArray ? ArrayOf(type.element) : type.element;
}

std::uint32_t ScopeOf(const TMofClass& cls, const ICIMClass* superclass) {
  if (SaysTrue(cls.qualifiers, "Association") || (superclass && superclass->IsAssociation({})))
    return ICIMQualifierDecl::kScopeAssociation;
  if (SaysTrue(cls.qualifiers, "Indication") || (superclass && superclass->IsIndication({})))
    return ICIMQualifierDecl::kScopeIndication;
  return ICIMQualifierDecl::kScopeClass;
}

const char* NameOfScope(std::uint32_t scope) {
  switch (scope) {
    case ICIMQualifierDecl::kScopeClass: return "a class";
    case ICIMQualifierDecl::kScopeAssociation: return "an association";
    case ICIMQualifierDecl::kScopeIndication: return "an indication";
    case ICIMQualifierDecl::kScopeProperty: return "a property";
    case ICIMQualifierDecl::kScopeReference: return "a reference";
    case ICIMQualifierDecl::kScopeMethod: return "a method";
    default: return "a parameter";
  }
}

// What `find` finds, or an empty pointer where it throws that there is nothing.
template <class TFind>
auto FoundBy(TFind&& find) -> decltype(find()) {
  try {
    return find();
  } catch (const THAVException& failure) {
    if (failure.GetStatusCode() != kHAVNotFound) throw;
    return {};
  }
}

}  // namespace

TMofSchemaBuilder::TMofSchemaBuilder(const INamespaceProvider& provider,
                                     boost::shared_ptr<ICIMNamespace> home,
                                     const TMofReader::TFiles& files, bool complete,
                                     TMofReport& report)
    : m_home(std::move(home)),
      m_files(files),
      m_complete(complete),
      m_report(report),
      m_values(m_home, report),
      m_keeper(provider) {}

void TMofSchemaBuilder::Build(const TProgress& progress) {
  DeclareQualifiers();
  CollectClasses();
  OrderClasses();
  const auto total = 2 * m_order.size();
  std::size_t done = 0;
  for (auto* cls : m_order) {
    if (m_report.IsFull()) return;
    const auto defaults = m_referenceDefaults.size();
    Guard(*cls->file, cls->syntax->name, [&] { BuildClass(*cls); });
    if (!m_keepsTrees && m_referenceDefaults.size() == defaults) ForgetMembers(*cls->syntax);
    if (progress) progress(++done, total);
  }
  CloseReferences();
  for (const auto* cls : m_order) {
    if (cls->object) Guard(*cls->file, cls->syntax->name, [&] { cls->object->AddToNamespace({}); });
    if (progress) progress(++done, total);
  }
  m_report.classes = m_order.size();
}

const TMofSchemaBuilder::TClass* TMofSchemaBuilder::FindClass(std::string_view name) const {
  const auto found = m_byName.find(name);
  return found == m_byName.end() ? nullptr : found->second;
}

void TMofSchemaBuilder::DeclareQualifiers() {
  for (const auto& file : m_files)
    for (const auto& syntax : file->qualifierDecls)
      Guard(*file, syntax.name, [&] { DeclareQualifier(*file, syntax); });
  m_report.qualifierDecls = m_kinds.size();
}

void TMofSchemaBuilder::DeclareQualifier(const TMofFile& file, const TMofQualifierDecl& syntax) {
  const auto flavor = syntax.flavor.AppliedTo(kImpliedFlavor);
  const auto [known, isNew] = m_kinds.emplace(
      syntax.name.text, TQualifierKind{&file, &syntax, {}, syntax.scope, flavor, {}});
  if (!isNew) {
    const auto& before = known->second;
    if (Same(*before.syntax, syntax)) return;
    return m_report.AddError(file.text, syntax.name.offset,
                             "qualifier " + Quoted(syntax.name.text) +
                                 " is declared twice and differently, first at " +
                                 before.file->text.DescribePlace(before.syntax->name.offset));
  }
  if (IsReserved(syntax.name.text))
    return m_report.AddError(file.text, syntax.name.offset,
                             "qualifier " + Quoted(syntax.name.text) +
                                 " has a name of the program's own: they begin with '" +
                                 std::string(kReserved) + "'");
  if (syntax.type.element == kCIMReference) return;
  const auto type = FullType(syntax.type);
  const auto value =
      syntax.defaultValue ? m_values.Read(file, *syntax.defaultValue, type) : TCIMValue::Null(type);
  if (!value) return;
  known->second.decl = m_home->AllocateQualifierDecl(
      std::string(syntax.name.text), *value, static_cast<ICIMQualifierDecl::EScope>(syntax.scope),
      static_cast<ICIMQualifierDecl::EFlavor>(flavor), {});
}

void TMofSchemaBuilder::CollectClasses() {
  std::size_t count = 0;
  for (const auto& file : m_files) count += file->classes.size();
  m_classes.reserve(count);  // pointers to them stay good
  m_byName.reserve(count);
  for (const auto& file : m_files) {
    for (auto& syntax : file->classes) {
      const auto [known, isNew] = m_byName.emplace(syntax.name.text, nullptr);
      if (!isNew) {
        const auto& before = *known->second;
        const bool damaged = before.syntax->isDamaged || syntax.isDamaged;
        if (!damaged && !Same(*before.syntax, syntax))
          m_report.AddError(file->text, syntax.name.offset,
                            "class " + Quoted(syntax.name.text) +
                                " is declared twice and differently, first at " +
                                before.file->text.DescribePlace(before.syntax->name.offset));
        continue;
      }
      m_classes.push_back({file.get(), &syntax, nullptr, {}, EOrder::kNew});
      known->second = &m_classes.back();
    }
  }
}

void TMofSchemaBuilder::OrderClasses() {
  m_order.reserve(m_classes.size());
  for (auto& cls : m_classes) OrderAncestors(cls);
}

// Siblings keep the order of the files.
void TMofSchemaBuilder::OrderAncestors(TClass& cls) {
  std::vector<TClass*> chain;
  auto* at = &cls;
  for (; at && at->order == EOrder::kNew; at = at->superclass) {
    at->order = EOrder::kUnderWay;
    FindSuperclass(*at);
    chain.push_back(at);
  }
  bool lost = at && at->order != EOrder::kDone;
  if (at && at->order == EOrder::kUnderWay)
    m_report.AddError(at->file->text, at->syntax->superclass.offset,
                      "class " + Quoted(at->syntax->name.text) + " is its own ancestor");
  for (auto one = chain.rbegin(); one != chain.rend(); ++one) {
    lost = lost || (!(*one)->superclass && !(*one)->syntax->superclass.text.empty());
    (*one)->order = lost ? EOrder::kLost : EOrder::kDone;
    if (!lost) m_order.push_back(*one);
  }
}

void TMofSchemaBuilder::FindSuperclass(TClass& cls) {
  const auto& name = cls.syntax->superclass;
  if (name.text.empty()) return;
  const auto found = m_byName.find(name.text);
  if (found != m_byName.end())
    cls.superclass = found->second;
  else
    ReportMissing(*cls.file, name, "superclass " + Quoted(name.text) + " is not declared");
}

void TMofSchemaBuilder::BuildClass(TClass& cls) {
  if (cls.superclass && !cls.superclass->object) return;
  const auto superclass = cls.superclass ? cls.superclass->object : boost::shared_ptr<ICIMClass>();
  const auto& syntax = *cls.syntax;
  cls.object = m_home->AllocateClass(std::string(syntax.name.text), superclass, {});
  Attach(*cls.object, *cls.file, syntax.qualifiers, ScopeOf(syntax, superclass.get()));
  TNames properties;
  for (const auto& property : syntax.properties)
    if (IsNew(properties, *cls.file, property.name, "property"))
      Guard(*cls.file, property.name, [&] { BuildProperty(cls, property); });
  TNames methods;
  for (const auto& method : syntax.methods)
    if (IsNew(methods, *cls.file, method.name, "method"))
      Guard(*cls.file, method.name, [&] { BuildMethod(cls, method); });
  KeepOrder(cls);
  if (cls.object->IsAssociation({})) WarnOfOneReference(cls);
}

void TMofSchemaBuilder::ForgetMembers(TMofClass& syntax) {
  syntax.qualifiers = TMofQualifiers();
  syntax.properties = std::vector<TMofProperty>();
  syntax.methods = std::vector<TMofMethod>();
}

// Properties and methods stand in lists of their own; their places tell how they mix.
void TMofSchemaBuilder::KeepOrder(const TClass& cls) {
  std::vector<std::pair<TMofOffset, TMemberDecl>> placed;
  for (const auto& property : cls.syntax->properties) {
    const auto name = std::string(property.name.text);
    const auto decl = FoundBy([&] { return cls.object->GetPropertyDecl(name, {}); });
    if (decl && decl->GetClass({}) == cls.object)
      placed.push_back({property.name.offset, {decl, {}}});
  }
  for (const auto& method : cls.syntax->methods) {
    const auto name = std::string(method.name.text);
    const auto decl = FoundBy([&] { return cls.object->GetMethodDecl(name, {}); });
    if (decl && decl->GetClass({}) == cls.object)
      placed.push_back({method.name.offset, {{}, decl}});
  }
  std::sort(placed.begin(), placed.end(),
            [](const auto& a, const auto& b) { return a.first < b.first; });
  std::vector<TMemberDecl> members;
  members.reserve(placed.size());
  for (auto& [place, member] : placed) members.push_back(std::move(member));
  m_keeper.KeepOrder(*cls.object, members);
}

void TMofSchemaBuilder::WarnOfOneReference(const TClass& cls) {
  const auto references = Collect<ICIMPropertyDecl>(
      [&](const auto& callback) { cls.object->EnumerateReferenceDecls(callback, {}); });
  if (references.size() == 1 && !cls.syntax->isDamaged &&
      references.front()->GetClass({}) == cls.object)
    m_report.AddWarning(cls.file->text, cls.syntax->name.offset,
                        "association " + Quoted(cls.syntax->name.text) +
                            " has one reference, and associates nothing");
}

void TMofSchemaBuilder::BuildProperty(const TClass& cls, const TMofProperty& property) {
  const auto name = std::string(property.name.text);
  boost::shared_ptr<ICIMPropertyDecl> overridden;
  if (cls.superclass && FindQualifier(property.qualifiers, "Override"))
    overridden = FoundBy([&] { return cls.superclass->object->GetPropertyDecl(name, {}); });
  const auto decl = AllocateProperty(cls, property, overridden);
  if (!decl) return;
  if (overridden) Inherit(*overridden, *decl);
  Attach(*decl, *cls.file, property.qualifiers,
         property.type.element == kCIMReference ? ICIMQualifierDecl::kScopeReference
                                                : ICIMQualifierDecl::kScopeProperty);
  m_keeper.KeepArraySize(*decl, property.type.arraySize);
  decl->AddToClass({});
  CheckKept(cls, property, *decl);
}

// The rules of the namespace say whether a property takes the place of an inherited one.
void TMofSchemaBuilder::CheckKept(const TClass& cls, const TMofProperty& property,
                                  const ICIMPropertyDecl& decl) {
  const auto name = decl.GetName({});
  const auto kept = cls.object->GetPropertyDecl(name, {});
  if (kept.get() == &decl) return;
  const bool differs =
      FindQualifier(property.qualifiers, "Override") && kept->GetType({}) != decl.GetType({});
  WarnOfLeftOut(cls, property.name, "property", *kept->GetClass({}),
                differs ? ECIMType(kept->GetType({})) : kCIMNone);
}

// `type`: that of the inherited one, where it is the reason.
void TMofSchemaBuilder::WarnOfLeftOut(const TClass& cls, const TMofName& name, const char* what,
                                      ICIMClass& holder, ECIMType type) {
  const auto text = what + (" " + Quoted(name.text)) + " is left out: class " +
                    Quoted(holder.GetName({})) + " has it";
  m_report.AddWarning(cls.file->text, name.offset,
                      type == kCIMNone ? text + ", and this one does not override it"
                                       : text + " with type " + TypeName(type) +
                                             ", and an override keeps the type");
}

boost::shared_ptr<ICIMPropertyDecl> TMofSchemaBuilder::AllocateProperty(
    const TClass& cls, const TMofProperty& property,
    const boost::shared_ptr<ICIMPropertyDecl>& overridden) {
  if (property.type.element == kCIMReference) return AllocateReference(cls, property);
  const auto type = FullType(property.type);
  std::optional<TCIMValue> value;
  if (property.defaultValue) {
    value = m_values.Read(*cls.file, *property.defaultValue, type);
    if (!value) return {};
  } else if (overridden && overridden->GetType({}) == type) {
    value = overridden->GetDefaultValue({});
  } else {
    value = TCIMValue::Null(type);
  }
  if (property.type.arraySize != 0 && property.defaultValue &&
      property.defaultValue->elements.size() > property.type.arraySize)
    m_report.AddError(cls.file->text, property.defaultValue->offset,
                      "the default has " + std::to_string(property.defaultValue->elements.size()) +
                          " elements, the array has " + std::to_string(property.type.arraySize));
  return cls.object->AllocatePropertyDecl(std::string(property.name.text), *value, {});
}

boost::shared_ptr<ICIMPropertyDecl> TMofSchemaBuilder::AllocateReference(
    const TClass& cls, const TMofProperty& property) {
  const TClass* target = nullptr;
  if (!cls.object->IsAssociation({})) {
    m_report.AddError(cls.file->text, property.type.referenced.offset,
                      "reference " + Quoted(property.name.text) + " stands in class " +
                          Quoted(cls.syntax->name.text) + ", which is no association");
    return {};
  }
  if (!FindTarget(*cls.file, property.type.referenced, target)) return {};
  const auto name = std::string(property.name.text);
  auto decl = target && target->object
                  ? cls.object->AllocateReferenceDecl(name, target->object, {})
                  : cls.object->AllocatePropertyDecl(name, TCIMValue::NullReference({}), {});
  if (target && !target->object) m_openReferences.push_back({decl, target});
  if (property.defaultValue) m_referenceDefaults.push_back({cls.file, &property, decl});
  return decl;
}

void TMofSchemaBuilder::BuildMethod(const TClass& cls, const TMofMethod& method) {
  const auto name = std::string(method.name.text);
  const auto type = method.returnType.element;
  const auto inherited =
      cls.superclass ? FoundBy([&] { return cls.superclass->object->GetMethodDecl(name, {}); })
                     : boost::shared_ptr<ICIMMethodDecl>();
  const bool overrides = FindQualifier(method.qualifiers, "Override") != nullptr;
  if (inherited && (!overrides || inherited->GetType({}) != type))
    return WarnOfLeftOut(cls, method.name, "method", *inherited->GetClass({}),
                         overrides ? ECIMType(inherited->GetType({})) : kCIMNone);
  const auto decl = cls.object->AllocateMethodDecl(name, type, {});
  if (inherited) Inherit(*inherited, *decl);
  Attach(*decl, *cls.file, method.qualifiers, ICIMQualifierDecl::kScopeMethod);
  TNames seen;
  std::vector<std::string> names;
  for (const auto& parameter : method.parameters) {
    if (!IsNew(seen, *cls.file, parameter.name, "parameter")) continue;
    Guard(*cls.file, parameter.name,
          [&] { BuildParameter(*cls.file, *decl, parameter, inherited.get()); });
    names.emplace_back(parameter.name.text);
  }
  m_keeper.KeepOrder(*decl, names);
  decl->AddToClass({});
}

void TMofSchemaBuilder::BuildParameter(const TMofFile& file, ICIMMethodDecl& decl,
                                       const TMofParameter& parameter, ICIMMethodDecl* overridden) {
  const auto name = std::string(parameter.name.text);
  const TClass* target = nullptr;
  const bool reference = parameter.type.element == kCIMReference;
  if (reference && !FindTarget(file, parameter.type.referenced, target)) return;
  const auto made = decl.AllocateParameter(name, TCIMValue::Null(FullType(parameter.type)), {});
  const auto before = overridden ? FoundBy([&] { return overridden->GetParameter(name, {}); })
                                 : boost::shared_ptr<ICIMParameterDecl>();
  if (before) Inherit(*before, *made);
  Attach(*made, file, parameter.qualifiers, ICIMQualifierDecl::kScopeParameter);
  m_keeper.KeepArraySize(*made, parameter.type.arraySize);
  if (reference && target)
    m_keeper.KeepReferencedClass(*made, std::string(target->syntax->name.text));
}

// References to classes that were made after them.
void TMofSchemaBuilder::CloseReferences() {
  for (const auto& open : m_openReferences)
    if (open.target->object)
      open.decl->SetDefaultValue(TCIMValue::NullReference(open.target->object), {});
}

void TMofSchemaBuilder::Attach(ICIMNamedElement& element, const TMofFile& file,
                               const TMofQualifiers& qualifiers, std::uint32_t scope) {
  for (const auto& qualifier : qualifiers) {
    const auto found = m_kinds.find(qualifier.name.text);
    if (found == m_kinds.end()) {
      if (m_missingQualifiers.insert(qualifier.name.text).second)
        ReportMissing(file, qualifier.name,
                      "qualifier " + Quoted(qualifier.name.text) + " is not declared");
      continue;
    }
    auto& kind = found->second;
    if (std::exchange(kind.lastUse, &qualifiers) == &qualifiers) {
      m_report.AddError(file.text, qualifier.name.offset,
                        "qualifier " + Quoted(qualifier.name.text) + " is given twice");
      continue;
    }
    if ((kind.scope & scope) == 0)
      m_report.AddWarning(
          file.text, qualifier.name.offset,
          "qualifier " + Quoted(qualifier.name.text) + " is not meant for " + NameOfScope(scope));
    if (kind.decl) AttachOne(element, file, qualifier, kind);
  }
}

void TMofSchemaBuilder::AttachOne(ICIMNamedElement& element, const TMofFile& file,
                                  const TMofQualifier& qualifier, TQualifierKind& kind) {
  const auto type = FullType(kind.syntax->type);
  std::optional<TCIMValue> value;
  if (qualifier.value)
    value = m_values.Read(file, *qualifier.value, type);
  else
    value = type == kCIMBoolean ? TCIMValue(true) : TCIMValue::Null(type);
  if (!value) return;
  const auto flavor = qualifier.flavor.AppliedTo(kind.flavor);
  try {
    element.AllocateQualifier(kind.decl, *value, static_cast<ICIMQualifierDecl::EFlavor>(flavor),
                              {});
  } catch (const THAVException& failure) {
    if (failure.GetStatusCode() != kHAVConflictingQualifier) throw;
    m_report.AddError(file.text, qualifier.name.offset,
                      "qualifier " + Quoted(qualifier.name.text) +
                          " contradicts the inherited one, which may not be overridden");
  }
}

void TMofSchemaBuilder::Inherit(ICIMNamedElement& from, ICIMNamedElement& to) {
  const auto qualifiers =
      Collect<ICIMQualifier>([&](const auto& callback) { from.EnumerateQualifiers(callback, {}); });
  for (const auto& qualifier : qualifiers)
    if ((qualifier->GetFlavor({}) & ICIMQualifierDecl::kFlavorToSubclass) != 0)
      to.AllocateQualifier(qualifier->GetQualifierDecl({}), qualifier->GetValue({}),
                           qualifier->GetFlavor({}), {});
}

// The target stays empty for a reference to any class.
bool TMofSchemaBuilder::FindTarget(const TMofFile& file, const TMofName& name,
                                   const TClass*& target) {
  target = FindClass(name.text);
  if (target || SameName(name.text, kAnyClass)) return true;
  ReportMissing(file, name, "class " + Quoted(name.text) + " is not declared");
  return false;
}

void TMofSchemaBuilder::ReportMissing(const TMofFile& file, const TMofName& name,
                                      const std::string& what) {
  if (m_complete) m_report.AddError(file.text, name.offset, what);
}

bool TMofSchemaBuilder::IsNew(TNames& names, const TMofFile& file, const TMofName& name,
                              const char* what) {
  if (names.insert(name.text).second) return true;
  m_report.AddError(file.text, name.offset,
                    std::string(what) + " " + Quoted(name.text) + " is declared twice");
  return false;
}

template <class TStep>
void TMofSchemaBuilder::Guard(const TMofFile& file, const TMofName& name, TStep&& step) {
  try {
    step();
  } catch (const THAVException& failure) {
    m_report.AddError(file.text, name.offset, Quoted(name.text) + ": " + failure.what());
  }
}

}  // namespace hav::mof
