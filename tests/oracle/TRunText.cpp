// What stands for objects and values in the answers, the same on both sides.
#include "tests/oracle/TRun.h"

namespace havtest::oracle {

std::string TRun::Text(const ClassPtr& cls) const {
  if (!cls) return "none";
  const auto found = m_placeOfClass.find(cls.get());
  return found == m_placeOfClass.end() ? "unknown" : "C" + std::to_string(found->second);
}

std::string TRun::TextOfClass(Id id) const {
  if (id == kNone) return "none";
  const auto found = m_placeOfClassId.find(id);
  return found == m_placeOfClassId.end() ? "unknown" : "C" + std::to_string(found->second);
}

std::string TRun::Text(const InstancePtr& instance) const {
  if (!instance) return "none";
  const auto found = m_placeOfInstance.find(instance.get());
  return found == m_placeOfInstance.end() ? "unknown" : "I" + std::to_string(found->second);
}

std::string TRun::TextOfInstance(Id id) { return id == kNone ? "none" : "I" + std::to_string(id); }

std::string TRun::Text(const TCIMValue& value) const {
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

std::string TRun::Text(const TValue& value) const {
  std::string text = TypeName(value.type) + ' ';
  if (value.type == kReference) text += (value.path ? TextOfClass(value.path->cls) : "none") + ' ';
  if (value.null) return text + "NULL";
  switch (value.type) {
    case kBoolean: return text + (value.number != 0 ? "TRUE" : "FALSE");
    case kUInt16: return text + std::to_string(value.number);
    case kString: return text + value.text;
    default: return text + m_model.PathText(*value.path);
  }
}

TCIMValue TRun::PluginValue(const TValueSpec& spec) const {
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

TValue TRun::ModelValue(const TValueSpec& spec) {
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

std::string TRun::DeclaredName(Id cls, const std::string& name) {
  try {
    return m_model.decls[m_model.GetProperty(cls, name)].name;
  } catch (const TStatus&) {
    return name;
  }
}

std::string TRun::Named(const TValueSpec& spec) {
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

std::string TRun::Classes(const std::vector<Id>& ids) const {
  std::string text;
  for (Id id : ids) text += TextOfClass(id) + ' ';
  return text;
}

template <class Element>
std::string TRun::Qualifiers(Element& element) const {
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

std::string TRun::Qualifiers(const TQualifiers& table) const {
  std::string text;
  for (const auto& [name, id] : table) {
    const TQualifier& qualifier = m_model.qualifiers[id];
    text += '[' + m_model.qualifierDecls[qualifier.decl].name + ' ' + Text(qualifier.value) + ' ' +
            std::to_string(qualifier.flavor) + (qualifier.propagated ? " propagated]" : "]");
  }
  return text;
}

std::string TRun::DumpOf(ICIMClass& cls) const {
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
                             decl->EnumerateParameters(
                                 TEnumCallback<ICIMParameterDecl>([&](ParameterDeclPtr parameter) {
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

std::string TRun::DumpOf(Id asked) {
  const Id id = m_model.OwnClass(asked);
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

void TRun::Dump() {
  const auto cls = Place(m_classes, 0);
  m_what << "show C" << cls;
  Both([=] { return DumpOf(*m_classes[cls]); }, [=] { return DumpOf(m_classIds[cls]); });
}

}  // namespace havtest::oracle
