// Instances: their slots, how a class stores them, and what associations lead to.
#include <algorithm>

#include "tests/oracle/TModel.h"

namespace havtest::oracle {

namespace {

bool Has(const std::string& text, const char* part) { return text.find(part) != text.npos; }

TValue Text(const std::string& text) {
  TValue value;
  value.null = false;
  value.text = text;
  return value;
}

TValue Zero() {
  TValue value;
  value.type = kUInt16;
  value.null = false;
  return value;
}

}  // namespace

Id TModel::AllocateInstance(Id cls) {
  instances.push_back({cls, {}, kNone});
  auto& slots = instances.back().slots;
  for (const auto& [name, entry] : classes[cls].properties) {
    slots[name] = std::make_shared<TSlot>();
    slots[name]->decl = entry.decl;
  }
  return static_cast<Id>(instances.size()) - 1;
}

Id TModel::WrapInstance(Id instance) {
  instances.push_back({instances[instance].cls, {}, Behind(instance)});
  return static_cast<Id>(instances.size()) - 1;
}

Id TModel::Behind(Id instance) const {
  const Id behind = instances[instance].behind;
  return behind == kNone ? instance : behind;
}

const TValue& TModel::ValueOf(const TSlot& slot) const {
  return slot.value ? *slot.value : decls[slot.decl].value;
}

const TValue& TModel::PreviousOf(const TSlot& slot) const {
  return slot.previous ? *slot.previous : ValueOf(slot);
}

void TModel::SetValue(TSlot& slot, const TValue& value) {
  const unsigned declared = decls[slot.decl].value.type;
  if (declared != value.type)
    Refuse("Inmem: SetValue: decl is type " + TypeName(declared) + " but value is type " +
               TypeName(value.type),
           14);
  slot.value = std::make_unique<TValue>(value);
}

void TModel::SetPrevious(TSlot& slot, const TValue& value) {
  if (!value.null) {
    const TValue& declared = decls[slot.decl].value;
    if (declared.type != value.type)
      Refuse("SetPrevValue: decl is type " + TypeName(declared.type) + " but value is type " +
                 TypeName(value.type),
             14);
    if (value.type == kReference && declared.path && !IsA(value.path->cls, declared.path->cls))
      Refuse("SetPrevValue: decl references type " + classes[declared.path->cls].name +
                 " but value references " + classes[value.path->cls].name,
             14);
  }
  slot.previous = std::make_unique<TValue>(value);
}

std::shared_ptr<TSlot> TModel::GetSlot(Id asked, const std::string& name) {
  const Id id = Behind(asked);
  const auto found = instances[id].slots.find(Normalize(name));
  if (found != instances[id].slots.end()) return found->second;
  const Id cls = instances[id].cls;
  const auto derive = [&](const std::string& derived, const TValue& value) {
    AddProperty(cls, NewDecl(cls, derived, value));
    auto slot = std::make_shared<TSlot>();
    slot->decl = GetProperty(cls, derived);
    return slot;
  };
  if (Has(name, "speedDuplex")) return derive("speedDuplex", Text("Unknown"));
  if (Has(name, "Description")) return derive("Description", Text(" "));
  for (const char* status :
       {"CommunicationStatus", "DetailedStatus", "HealthState", "OperatingStatus", "PrimaryStatus"})
    if (Has(name, status)) return derive(name, Zero());
  throw TStatus{15};
}

void TModel::SetProperty(Id asked, const std::string& name, const TValue& value) {
  const Id id = Behind(asked);
  const auto found = instances[id].slots.find(Normalize(name));
  if (found != instances[id].slots.end()) return SetValue(*found->second, value);
  if (!Has(name, "speedDuplex")) throw TStatus{15};
}

TPath TModel::Reference(Id asked) {
  const Id id = Behind(asked);
  const Id cls = instances[id].cls;
  TPath path = PathOf(cls);
  for (Id key : Keys(cls)) {
    const auto name = decls[key].name;
    path.keys.emplace_back(name, ValueOf(*GetSlot(id, name)));
  }
  return path;
}

Id TModel::GetInstance(Id ns, const TPath& path) {
  const Id cls = GetClass(ns, classes[path.cls].name);
  auto found = classes[cls].store.find(PathText(path));
  if (found == classes[cls].store.end()) {
    // Keys are spelt as they are declared by now.
    TPath spelt = path;
    for (auto& [name, value] : spelt.keys) {
      const auto entry = classes[cls].properties.find(Normalize(name));
      if (entry != classes[cls].properties.end()) name = decls[entry->second.decl].name;
    }
    found = classes[cls].store.find(PathText(spelt));
  }
  return found == classes[cls].store.end() ? kNone : found->second;
}

TModel::TElement TModel::Resolve(const TPath& path) {
  const bool there = path.home != kNone && !namespaces[path.home].dropped;
  const Id home = there ? path.home : RequireHome(path.cls);
  const Id found = GetInstance(home, path);
  if (found != kNone) return {found, kNone};
  if (!path.keys.empty()) throw TStatus{15};
  return {kNone, GetClass(home, classes[path.cls].name)};
}

void TModel::Validate(Id id) {
  const TInstance& instance = instances[id];
  const auto className = classes[instance.cls].name;
  for (Id key : Keys(instance.cls)) {
    const auto name = decls[key].name;
    if (!ValueOf(*GetSlot(id, name)).null) continue;
    Log(0, "Inmem: Instance " + className + ": key property " + name + " is NULL");
    throw TStatus{18};
  }
  if (!IsTrue(instance.cls, "association")) return;
  for (const auto& [name, slot] : instances[id].slots) {
    const TValue value = ValueOf(*slot);
    if (!value.IsReference()) continue;
    try {
      Resolve(*value.path);
    } catch (const TStatus& status) {
      if (status.code == 15)
        Log(0, "Inmem: Reference " + PathText(*value.path) + " doesn't point to anything!");
      throw;
    }
  }
}

void TModel::AddInstance(Id asked) {
  const Id id = Behind(asked);
  try {
    Validate(id);
  } catch (const TStatus&) {
    Log(0, "Inmem: Instance " + classes[instances[id].cls].name + ": invalid references");
    return;
  }
  Store(instances[id].cls, id);
}

void TModel::DeleteInstance(Id asked) {
  const Id id = Behind(asked);
  Unstore(instances[id].cls, id);
}

// The path is read once, because reading a derived property declares it.
void TModel::Store(Id cls, Id id) {
  const auto path = PathText(Reference(id));
  RequireHome(cls);
  Forget(cls, id);
  classes[cls].store[path] = id;
}

// Both what stands under the path that the instance has now, and the instance itself under the
// path that it was stored by.
void TModel::Unstore(Id cls, Id id) {
  try {
    classes[cls].store.erase(PathText(Reference(id)));
  } catch (const TStatus&) {
    if (!Forget(cls, id)) throw;
  }
  Forget(cls, id);
}

bool TModel::Forget(Id cls, Id id) {
  auto& store = classes[cls].store;
  const auto held = std::find_if(store.begin(), store.end(),
                                 [&](const auto& entry) { return entry.second == id; });
  if (held == store.end()) return false;
  store.erase(held);
  return true;
}

void TModel::ClearInstances(Id ns) {
  for (const auto& [name, cls] : namespaces[ns].classes) classes[cls].store.clear();
}

void TModel::Stored(Id cls, bool deep, std::vector<std::pair<Id, Id>>& found) const {
  for (const auto& [path, instance] : classes[cls].store) found.emplace_back(cls, instance);
  if (!deep) return;
  for (Id subclass : classes[cls].subclasses) Stored(subclass, true, found);
}

void TModel::ApplySwitches(Id id) {
  const TValue status = ValueOf(*GetSlot(id, "CPUStatus"));
  std::string text = status.text;
  if (status.type == kBoolean) text = status.number != 0 ? "TRUE" : "FALSE";
  if (status.type == kUInt16) text = std::to_string(status.number);
  if (status.IsReference()) text = PathText(*status.path);
  if (status.null) text = "NULL";
  Log(3, "cpuStatus is " + text);
  if (text != "1") return;
  for (int level = 0; level < 3; ++level) {
    if (switches[level] != 0 && switches[level] != 1) continue;
    TValue enabled;
    enabled.type = kBoolean;
    enabled.null = false;
    enabled.number = static_cast<unsigned>(switches[level]);
    SetProperty(id, "L" + std::to_string(level + 1) + "Enabled", enabled);
  }
}

void TModel::Enumerate(Id asked, bool deep, const TVisit& visit) {
  const Id cls = OwnClass(asked);
  std::vector<std::pair<Id, Id>> found;
  Stored(cls, deep, found);
  for (const auto& [owner, instance] : found) {
    try {
      const auto& name = classes[owner].name;
      if (name == "ORVSG_CPU" || name == "ORVSG_Processor") ApplySwitches(instance);
      visit(instance);
    } catch (const TStatus&) {
    }
  }
}

bool TModel::Refers(const TValue& value, Id id) {
  return value.IsReference() && Resolve(*value.path).instance == id;
}

void TModel::References(Id asked, const std::string& resultClass, const std::string& role,
                        const TVisit& visit) {
  const Id id = Behind(asked);
  for (Id cls : AssociationClasses(instances[id].cls, resultClass, role)) {
    Enumerate(cls, false, [&](Id association) {
      const auto refers = [&](const TSlot& slot) {
        try {
          const TValue value = ValueOf(slot);
          return Refers(value, id);
        } catch (const TStatus& status) {
          // Any other ends this association, and its class drops it.
          if (status.code != 15) throw;
          return false;
        }
      };
      bool found = false;
      if (role.empty())
        for (const auto& [name, slot] : instances[Behind(association)].slots)
          found = found || refers(*slot);
      else
        found = refers(*GetSlot(association, role));
      if (found) visit(association);
    });
  }
}

void TModel::Associators(Id asked, const std::string& associationClass,
                         const std::string& resultClass, const std::string& role,
                         const std::string& resultRole, const TVisit& visit) {
  const Id id = Behind(asked);
  Id filter = kNone;
  try {
    filter = GetClass(RequireHome(instances[id].cls), resultClass);
  } catch (const TStatus& status) {
    if (status.code != 15) throw;
    return;
  }
  References(id, associationClass, "", [&](Id association) {
    if (instances[association].behind != kNone) return;  // no association of a host's making
    if (resultRole.empty())
      ExamineCandidate(id, association, filter, role, visit);
    else
      ExamineWithResultRole(association, filter, resultRole, visit);
  });
}

void TModel::ExamineCandidate(Id self, Id association, Id resultClass, const std::string& role,
                              const TVisit& visit) {
  const auto folded = Normalize(role);
  bool selfSeen = false;
  for (const auto& [name, slot] : instances[association].slots) {
    const TValue value = ValueOf(*slot);
    if (!value.IsReference()) continue;
    if (!selfSeen) {
      if (!role.empty()) {
        selfSeen = name == folded;
      } else if (value.path->cls == instances[self].cls) {
        try {
          selfSeen = Refers(value, self);
        } catch (const TStatus& status) {
          if (status.code != 15) throw;
        }
      }
      if (selfSeen) continue;
    }
    if (!IsA(value.path->cls, resultClass)) continue;
    const Id other = Resolve(*value.path).instance;
    if (other != kNone) visit(other);
    return;
  }
}

void TModel::ExamineWithResultRole(Id association, Id resultClass, const std::string& resultRole,
                                   const TVisit& visit) {
  const TValue value = ValueOf(*GetSlot(association, resultRole));
  if (!value.IsReference() || !IsA(value.path->cls, resultClass)) return;
  const Id other = Resolve(*value.path).instance;
  if (other != kNone) visit(other);
}

}  // namespace havtest::oracle
