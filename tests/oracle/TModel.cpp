// The schema: names, qualifiers, declarations and how classes enter a namespace and leave it.
#include "tests/oracle/TModel.h"

#include <algorithm>

namespace havtest::oracle {

namespace {

bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || c == '_'; }

bool Contains(const std::vector<Id>& list, Id id) {
  return std::find(list.begin(), list.end(), id) != list.end();
}

void Remove(std::vector<Id>& list, Id id) {
  list.erase(std::remove(list.begin(), list.end(), id), list.end());
}

bool Has(const std::string& text, const char* part) { return text.find(part) != text.npos; }

std::string Escaped(const std::string& text) {
  std::string escaped;
  for (char c : text) {
    if (c == '"' || c == '\\') escaped += '\\';
    escaped += c;
  }
  return escaped;
}

}  // namespace

std::string TypeName(unsigned type) {
  switch (type) {
    case 0: return "none";
    case kBoolean: return "boolean";
    case kUInt16: return "uint16";
    case kString: return "string";
    default: return "reference";
  }
}

bool SameValue(const TModel& model, const TValue& a, const TValue& b) {
  if (a.type != b.type || a.null != b.null) return false;
  const auto className = [&](const TValue& value) {
    return value.path ? model.classes[value.path->cls].name : std::string();
  };
  if (a.null) return className(a) == className(b);
  if (a.type == kReference) return model.PathText(*a.path) == model.PathText(*b.path);
  return a.number == b.number && a.text == b.text;
}

void TModel::Refuse(const std::string& line, unsigned status) {
  Log(3, line);
  throw TStatus{status};
}

std::string TModel::Normalize(const std::string& name) {
  std::string folded = name;
  for (char& c : folded)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  for (std::size_t i = 0; i < folded.size(); ++i) {
    const bool digit = folded[i] >= '0' && folded[i] <= '9';
    if (!IsLetter(folded[i]) && (i == 0 || !digit))
      Refuse("Inmem: CIM name '" + name + "' is invalid", 25);
  }
  return folded;
}

Id TModel::NewNamespace(bool redefinition) {
  const Id ns = static_cast<Id>(namespaces.size());
  namespaces.push_back({redefinition, kNone, {}, {}, ns});
  classes.push_back({ns, "<root>", kNone, {}, {}, {}, {}, {}, {}, {}, false});
  namespaces[ns].root = static_cast<Id>(classes.size()) - 1;
  return ns;
}

Id TModel::CopyNamespace(Id ns) {
  const TNamespace copy = namespaces[ns];
  namespaces.push_back(copy);
  return static_cast<Id>(namespaces.size()) - 1;
}

// With the last of the copies go the instances and associations of every class that any of them
// made.
void TModel::DropNamespace(Id ns) {
  namespaces[ns].dropped = true;
  for (const TNamespace& other : namespaces)
    if (!other.dropped && other.original == namespaces[ns].original) return;
  for (TClass& cls : classes) {
    if (namespaces[cls.home].original != namespaces[ns].original) continue;
    cls.store.clear();
    cls.associations.clear();
  }
}

Id TModel::HomeOf(Id cls) const {
  const Id made = classes[cls].home;
  if (!namespaces[made].dropped) return made;
  for (Id ns = 0; ns < static_cast<Id>(namespaces.size()); ++ns)
    if (!namespaces[ns].dropped && namespaces[ns].original == namespaces[made].original) return ns;
  return kNone;
}

Id TModel::RequireHome(Id cls) const {
  const Id home = HomeOf(cls);
  if (home == kNone) throw TStatus{15};
  return home;
}

Id TModel::AllocateQualifierDecl(Id ns, const std::string& name, unsigned flavor) {
  const auto key = Normalize(name);
  auto& table = namespaces[ns].qualifierDecls;
  if (table.count(key) != 0 && !namespaces[ns].redefinition)
    Refuse("Inmem: TInmemNamespace: qualifier " + name + " already defined", 16);
  qualifierDecls.push_back({name, flavor});
  return table[key] = static_cast<Id>(qualifierDecls.size()) - 1;
}

Id TModel::GetQualifierDecl(Id ns, const std::string& name) {
  const auto found = namespaces[ns].qualifierDecls.find(Normalize(name));
  return found == namespaces[ns].qualifierDecls.end() ? kNone : found->second;
}

Id TModel::GetClass(Id ns, const std::string& name) {
  if (name == "<root>") return namespaces[ns].root;
  const auto found = namespaces[ns].classes.find(Normalize(name));
  if (found == namespaces[ns].classes.end()) throw TStatus{15};
  return found->second;
}

Id TModel::WrapClass(Id cls) {
  const Id behind = OwnClass(cls);
  TClass wrapper{classes[behind].home, classes[behind].name, kNone, {}, {}, {}, {}, {}, {}, {}};
  wrapper.behind = behind;
  classes.push_back(wrapper);
  return static_cast<Id>(classes.size()) - 1;
}

Id TModel::OwnClass(Id cls) const {
  const Id behind = classes[cls].behind;
  return behind == kNone ? cls : behind;
}

Id TModel::AllocateClass(Id ns, const std::string& name, Id superclass) {
  Id cls = kNone;
  try {
    cls = GetClass(ns, name);
  } catch (const TStatus&) {
  }
  if (cls == kNone) {
    classes.push_back({ns,
                       name,
                       superclass == kNone ? namespaces[ns].root : superclass,
                       {},
                       {},
                       {},
                       {},
                       {},
                       {},
                       {},
                       false});
    cls = static_cast<Id>(classes.size()) - 1;
  }
  SetUpInheritance(cls);
  return cls;
}

void TModel::SetUpInheritance(Id id) {
  TClass& cls = classes[id];
  if (cls.superclass == kNone) return;
  const TClass& super = classes[OwnClass(cls.superclass)];
  const auto inherit = [](TDecls& table, const TDecls& from) {
    for (auto at = table.begin(); at != table.end();)
      at = at->second.own ? std::next(at) : table.erase(at);
    for (const auto& [name, entry] : from)
      if (table.count(name) == 0) table[name] = {entry.decl, false};
  };
  inherit(cls.properties, super.properties);
  inherit(cls.methods, super.methods);
  for (auto at = cls.qualifiers.begin(); at != cls.qualifiers.end();)
    at = qualifiers[at->second].propagated ? cls.qualifiers.erase(at) : std::next(at);
  for (const auto& [name, qualifier] : super.qualifiers) {
    if (name == "abstract" || (qualifiers[qualifier].flavor & 2) == 0) continue;
    if (cls.qualifiers.count(name) != 0) continue;
    TQualifier copy = qualifiers[qualifier];
    copy.propagated = true;
    qualifiers.push_back(copy);
    cls.qualifiers[name] = static_cast<Id>(qualifiers.size()) - 1;
  }
}

Id TModel::NewQualifier(Id decl, const TValue& value, unsigned flavor) {
  qualifiers.push_back({decl, value, flavor, false});
  return static_cast<Id>(qualifiers.size()) - 1;
}

Id TModel::QualifyClass(Id cls, Id decl, const TValue& value, unsigned flavor) {
  const Id made = NewQualifier(decl, value, flavor);
  auto& table = classes[cls].qualifiers;
  const auto key = Normalize(qualifierDecls[decl].name);
  const auto found = table.find(key);
  if (found == table.end() || (qualifiers[found->second].flavor & 1) != 0) {
    table[key] = made;
  } else if (table.count("dontcollect") == 0 &&
             !SameValue(*this, qualifiers[found->second].value, value)) {
    throw TStatus{28};
  }
  return made;
}

Id TModel::QualifyDecl(Id owner, Id decl, const TValue& value, unsigned flavor) {
  const Id made = NewQualifier(decl, value, flavor);
  auto& table = decls[owner].qualifiers;
  const auto key = Normalize(qualifierDecls[decl].name);
  const auto found = table.find(key);
  if (found == table.end() || (qualifiers[found->second].flavor & 1) != 0) {
    table[key] = made;
  } else if (!SameValue(*this, qualifiers[found->second].value, value) ||
             qualifiers[found->second].flavor != flavor) {
    throw TStatus{28};
  }
  return made;
}

void TModel::SetQualifierValue(Id qualifier, const TValue& value) {
  qualifiers[qualifier].value = value;
  qualifiers[qualifier].propagated = false;
}

void TModel::AddFlavor(Id qualifier, unsigned flavor) {
  qualifiers[qualifier].flavor |= flavor;
  qualifiers[qualifier].propagated = false;
}

void TModel::RemoveFlavor(Id qualifier, unsigned flavor) {
  qualifiers[qualifier].flavor &= ~flavor;
  qualifiers[qualifier].propagated = false;
}

bool TModel::HasQualifier(Id decl, const std::string& name) const {
  return decls[decl].qualifiers.count(name) != 0;
}

bool TModel::IsTrue(Id asked, const std::string& name) const {
  const Id cls = OwnClass(asked);
  const auto found = classes[cls].qualifiers.find(name);
  if (found == classes[cls].qualifiers.end()) return false;
  const TValue& value = qualifiers[found->second].value;
  return !value.null && value.number != 0;
}

Id TModel::NewDecl(Id cls, const std::string& name, const TValue& value) {
  decls.push_back({cls, name, value, {}, {}});
  return static_cast<Id>(decls.size()) - 1;
}

void TModel::AddProperty(Id id, Id decl) {
  TClass& cls = classes[id];
  const std::string name = decls[decl].name;
  const unsigned type = decls[decl].value.type;
  if (type == kReference && !IsTrue(id, "association"))
    Refuse("Inmem: Attempt to add reference property " + name + " to non-association class " +
               cls.name,
           22);
  const auto key = Normalize(name);
  const auto found = cls.properties.find(key);
  const bool exists = found != cls.properties.end();
  if (HasQualifier(decl, "override")) {
    if (exists) {
      const TDecl& existing = decls[found->second.decl];
      if (existing.value.type != type) {
        Log(3, "Inmem: Attempt to override property " + name + " in class " + cls.name +
                   ": different types");
        return;
      }
      if (existing.origin == id) return;
    } else if (!Has(key, "porttype")) {
      Log(3, "Inmem: Attempt to override property " + name + " in class " + cls.name +
                 ": property doesn't exist in base class");
    }
  } else if (exists && !Has(name, "PortType") && !Has(name, "speedDuplex") &&
             !HasQualifier(decl, "key")) {
    return;
  }
  cls.properties[key] = {decl, true};
}

void TModel::RemoveProperty(Id cls, Id decl) {
  if (classes[cls].properties.erase(Normalize(decls[decl].name)) == 0) throw TStatus{15};
}

void TModel::AddMethod(Id id, Id decl) {
  TClass& cls = classes[id];
  const std::string name = decls[decl].name;
  const auto key = Normalize(name);
  const auto found = cls.methods.find(key);
  const bool exists = found != cls.methods.end();
  const auto attempt = "Inmem: Attempt to override method " + name + " in class " + cls.name;
  // A failed override is said twice, the second time with the text of its status.
  const auto fail = [&](const std::string& why, unsigned status, const char* reason) {
    Log(3, attempt + why);
    Refuse("Inmem: Attempt define method " + name + " in class " + cls.name +
               "failed. Reason = " + reason,
           status);
  };
  if (HasQualifier(decl, "override")) {
    if (!exists) {
      Log(3, attempt + ": method doesn't exist in base class");
    } else if (decls[found->second.decl].value.type != decls[decl].value.type) {
      fail(": different types", 14, "$14");
    } else if (decls[found->second.decl].origin == id) {
      fail(": original was defined in this class", 16, "$16");
    }
  } else if (exists) {
    throw TStatus{16};
  }
  cls.methods[key] = {decl, true};
}

void TModel::RemoveMethod(Id cls, Id decl) {
  if (classes[cls].methods.erase(Normalize(decls[decl].name)) == 0) throw TStatus{15};
}

void TModel::AddParameter(Id method, const std::string& name) {
  const auto key = Normalize(name);
  if (decls[method].parameters.count(key) != 0)
    Refuse("Inmem: Attempt to add property " + name + " to method " + decls[method].name +
               ": already exists",
           16);
  decls[method].parameters[key] = name;
}

Id TModel::GetProperty(Id asked, const std::string& name) const {
  const Id cls = OwnClass(asked);
  const auto key = const_cast<TModel*>(this)->Normalize(name);
  const auto found = classes[cls].properties.find(key);
  if (found == classes[cls].properties.end()) throw TStatus{15};
  return found->second.decl;
}

std::vector<Id> TModel::Keys(Id cls) const {
  std::vector<Id> keys;
  for (const auto& [name, entry] : classes[cls].properties) {
    const auto& table = decls[entry.decl].qualifiers;
    const auto found = table.find("key");
    if (found == table.end()) continue;
    const TValue& value = qualifiers[found->second].value;
    if (!value.null && value.number != 0) keys.push_back(entry.decl);
  }
  return keys;
}

bool TModel::IsA(Id cls, Id other) const {
  for (; cls != kNone; cls = classes[OwnClass(cls)].superclass)
    if (classes[cls].name == classes[other].name) return true;
  return false;
}

// Each referenced class once, but none that is or derives from another of them.
std::vector<Id> TModel::ReferencedClasses(Id id) const {
  std::vector<Id> all, chosen;
  for (const auto& [name, entry] : classes[id].properties) {
    const TValue& value = decls[entry.decl].value;
    if (value.type == kReference && value.path && !Contains(all, value.path->cls))
      all.push_back(value.path->cls);
  }
  for (std::size_t i = 0; i < all.size(); ++i) {
    bool covered = false;
    for (std::size_t j = 0; j < all.size(); ++j)
      covered = covered || (j != i && IsA(all[i], all[j]) && (j < i || !IsA(all[j], all[i])));
    if (!covered) chosen.push_back(all[i]);
  }
  return chosen;
}

bool TModel::Reaches(Id cls, Id other) const {
  for (Id subclass : classes[cls].subclasses)
    if (subclass == other || Reaches(subclass, other)) return true;
  return false;
}

void TModel::AddSubclass(Id asked, Id subclass) {
  const Id cls = OwnClass(asked);
  if (Contains(classes[cls].subclasses, subclass)) return;
  if (subclass == cls || Reaches(subclass, cls)) throw TStatus{16};
  classes[cls].subclasses.push_back(subclass);
}

void TModel::RemoveSubclass(Id cls, Id subclass) {
  Remove(classes[OwnClass(cls)].subclasses, subclass);
}

void TModel::AddAssociation(Id asked, Id association) {
  const Id cls = OwnClass(asked);
  RequireHome(cls);
  auto& associations = classes[cls].associations;
  if (!Contains(associations, association)) associations.push_back(association);
}

void TModel::RemoveAssociation(Id asked, Id association) {
  const Id cls = OwnClass(asked);
  auto& associations = classes[cls].associations;
  if (!Contains(associations, association)) throw TStatus{15};
  Remove(associations, association);
}

void TModel::AddClass(Id id) {
  const auto name = classes[id].name;
  if (!IsTrue(id, "abstract") && Keys(id).empty()) Log(3, "Inmem: Class " + name + " has no keys");
  TNamespace& home = namespaces[RequireHome(id)];
  const auto key = Normalize(name);
  const auto standing = home.classes.find(key);
  Id displaced = kNone;
  if (standing != home.classes.end()) {
    if (!home.redefinition)
      Refuse("Inmem: TInmemNamespace: class " + name + " already defined", 16);
    if (standing->second != id) {
      if (Has(key, "orvsg_physicalnetworkport")) return;
      displaced = standing->second;
    }
  }
  const Id superclass = displaced == kNone ? classes[id].superclass : classes[displaced].superclass;
  if (displaced != kNone) {
    auto taken = classes[displaced].subclasses;
    taken.push_back(id);
    // A host's object may stand for any class of its name.
    const auto isTaken = [&](Id above) {
      return std::any_of(taken.begin(), taken.end(), [&](Id each) {
        return each == above ||
               (classes[above].behind != kNone && classes[each].name == classes[above].name);
      });
    };
    for (Id above = superclass; above != kNone; above = classes[OwnClass(above)].superclass)
      if (isTaken(above)) throw TStatus{16};
    if (Reaches(displaced, id) || Reaches(displaced, superclass)) throw TStatus{16};
  }
  std::vector<Id> referenced;
  if (IsTrue(id, "association")) referenced = ReferencedClasses(id);
  auto& siblings = classes[OwnClass(superclass)].subclasses;
  const auto before = siblings;
  AddSubclass(superclass, id);
  try {
    for (Id cls : referenced) RequireHome(cls);
  } catch (const TStatus&) {
    siblings = before;
    throw;
  }
  for (Id cls : referenced) AddAssociation(cls, id);
  std::vector<Id> noLonger;
  for (Id cls : classes[id].registeredWith)
    if (!Contains(referenced, cls)) noLonger.push_back(cls);
  classes[id].registeredWith = referenced;
  LeaveAssociations(id, noLonger);
  home.classes[key] = id;
  classes[id].inNamespace = true;
  if (displaced == kNone) return;

  TClass& old = classes[displaced];
  TClass& cls = classes[id];
  RemoveSubclass(superclass, displaced);
  cls.superclass = superclass;
  cls.subclasses = old.subclasses;
  old.subclasses.clear();
  for (Id subclass : cls.subclasses) classes[subclass].superclass = id;
  for (Id association : old.associations)
    if (!Contains(cls.associations, association)) cls.associations.push_back(association);
  for (Id association : cls.associations)
    for (Id& registered : classes[association].registeredWith)
      if (registered == displaced) registered = id;
  old.inNamespace = false;
  old.associations.clear();
  std::vector<Id> left = old.registeredWith;
  old.registeredWith.clear();
  LeaveAssociations(displaced, left);
  old.store.clear();
}

void TModel::LeaveAssociations(Id id, std::vector<Id>& registeredWith) {
  for (Id cls : registeredWith) Remove(classes[OwnClass(cls)].associations, id);
}

void TModel::DeleteClass(Id id) {
  TClass& cls = classes[id];
  auto others = cls.associations;
  Remove(others, id);
  if (!cls.inNamespace || !others.empty() || !cls.subclasses.empty()) throw TStatus{17};
  RequireHome(id);
  RemoveSubclass(cls.superclass, id);
  cls.inNamespace = false;
  std::vector<Id> left;
  left.swap(cls.registeredWith);
  LeaveAssociations(id, left);
}

bool TModel::FindFilter(Id cls, const std::string& name, Id& filter) {
  filter = kNone;
  if (name.empty()) return true;
  try {
    filter = GetClass(RequireHome(cls), name);
    return true;
  } catch (const TStatus& status) {
    if (status.code != 15) throw;
    return false;
  }
}

std::vector<Id> TModel::AssociationClasses(Id asked, const std::string& resultClass,
                                           const std::string& role) {
  const Id cls = OwnClass(asked);
  Id filter = kNone;
  if (!FindFilter(cls, resultClass, filter)) return {};
  const auto folded = Normalize(role);
  std::vector<Id> found;
  for (Id level = cls; level != kNone;
       level = OwnClass(level) == level ? classes[level].superclass : OwnClass(level)) {
    for (Id association : classes[level].associations) {
      if (Contains(found, association)) continue;
      if (filter != kNone && !IsA(association, filter)) continue;
      if (!role.empty()) {
        const auto entry = classes[association].properties.find(folded);
        if (entry == classes[association].properties.end()) continue;
        const TValue& end = decls[entry->second.decl].value;
        if (end.type != kReference || !end.path || !IsA(cls, end.path->cls)) continue;
      }
      found.push_back(association);
    }
  }
  return found;
}

std::vector<Id> TModel::AssociatedClasses(Id asked, const std::string& associationClass,
                                          const std::string& resultClass, const std::string& role,
                                          const std::string& resultRole) {
  const Id cls = OwnClass(asked);
  Id filter = kNone;
  if (!FindFilter(cls, resultClass, filter)) return {};
  const auto foldedRole = Normalize(role);
  const auto foldedResultRole = Normalize(resultRole);
  std::vector<Id> found;
  for (Id association : AssociationClasses(cls, associationClass, role)) {
    const auto& table = classes[association].properties;
    for (const auto& [self, entry] : table) {
      const TValue& end = decls[entry.decl].value;
      if (end.type != kReference || !end.path || !IsA(cls, end.path->cls)) continue;
      if (!role.empty() && self != foldedRole) continue;
      for (const auto& [other, otherEntry] : table) {
        const TValue& far = decls[otherEntry.decl].value;
        if (other == self || far.type != kReference || !far.path) continue;
        if (!resultRole.empty() && other != foldedResultRole) continue;
        if (filter != kNone && !IsA(far.path->cls, filter)) continue;
        if (!Contains(found, far.path->cls)) found.push_back(far.path->cls);
      }
    }
  }
  return found;
}

std::string TModel::PathText(const TPath& path) const {
  std::string text = classes[path.cls].name;
  char separator = '.';
  for (const auto& [name, value] : path.keys) {
    text += separator + name + '=';
    separator = ',';
    if (value.null)
      text += "NULL";
    else if (value.type == kBoolean)
      text += value.number != 0 ? "TRUE" : "FALSE";
    else if (value.type == kUInt16)
      text += std::to_string(value.number);
    else
      text += '"' + Escaped(value.type == kString ? value.text : PathText(*value.path)) + '"';
  }
  return text;
}

}  // namespace havtest::oracle
