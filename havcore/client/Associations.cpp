#include "havcore/client/Associations.h"

#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "havcore/ICIMNamespace.h"
#include "havcore/ICIMProperty.h"
#include "havcore/ICIMPropertyDecl.h"
#include "havcore/THAVException.h"
#include "havcore/client/Enumerate.h"
#include "havcore/client/FoldedName.h"

namespace hav::client {

using namespace NORVHAV20;

namespace {

// One reference of an association, and what it leads to.
template <class Element>
struct TEnd {
  std::string role;
  boost::shared_ptr<Element> element;

  // True for no role, too.
  bool Plays(std::string_view wanted) const { return wanted.empty() || SameName(role, wanted); }
};

template <class Element>
using TEnds = std::vector<TEnd<Element>>;

// The references of an association class whose class is there.
TEnds<ICIMClass> EndsOf(const ICIMClass& association) {
  TEnds<ICIMClass> ends;
  const auto references =
      Collect<ICIMPropertyDecl>([&](const TEnumCallback<ICIMPropertyDecl>& callback) {
        association.EnumerateReferenceDecls(callback, {});
      });
  for (const auto& decl : references)
    if (auto referenced = decl->GetDefaultValue({}).GetReferencedClass())
      ends.push_back({decl->GetName({}), std::move(referenced)});
  return ends;
}

// The references of association instances, and the instances they lead to. The associations
// asked about must live as long: they keep the classes whose roles are remembered.
class TInstanceEnds {
 public:
  TEnds<ICIMInstance> operator()(const ICIMInstance& association) {
    TEnds<ICIMInstance> ends;
    for (const auto& role : RolesOf(*association.GetClass({})))
      if (auto instance = Resolve(association, role)) ends.push_back({role, std::move(instance)});
    return ends;
  }

 private:
  using TRoles = std::vector<std::string>;

  const TRoles& RolesOf(const ICIMClass& association) {
    const auto [entry, isNew] = m_roles.try_emplace(&association);
    if (isNew)
      association.EnumerateReferenceDecls(
          [&roles = entry->second](const boost::shared_ptr<ICIMPropertyDecl>& decl) {
            roles.push_back(decl->GetName({}));
            return true;
          },
          {});
    return entry->second;
  }

  static boost::shared_ptr<ICIMInstance> Resolve(const ICIMInstance& association,
                                                 const std::string& role) {
    try {
      const auto slot = association.GetProperty(role, {});
      const auto& value = slot->GetValue({});
      if (value.IsNull()) return {};
      const auto element = static_cast<TCIMReference>(value).GetCIMElement(false);
      return boost::dynamic_pointer_cast<ICIMInstance>(element);
    } catch (const THAVException& failure) {
      if (failure.GetStatusCode() != kHAVNotFound) throw;
      return {};
    }
  }

  std::unordered_map<const ICIMClass*, TRoles> m_roles;
};

// What the questions need to know of each level.
class TInstanceLevel {
 public:
  using TElement = ICIMInstance;

  explicit TInstanceLevel(ICIMInstance& object) : m_object(object) {}

  TInstances Associations(const std::string& cls) const {
    return Collect<ICIMInstance>([&](const TEnumCallback<ICIMInstance>& callback) {
      m_object.EnumerateAssociationInstances(callback, cls, {}, {});
    });
  }
  TEnds<ICIMInstance> EndsOf(const ICIMInstance& association) { return m_ends(association); }
  bool IsObject(const TEnd<ICIMInstance>& end) const { return end.element.get() == &m_object; }
  boost::shared_ptr<ICIMNamespace> Namespace() const {
    return m_object.GetClass({})->GetNamespace({});
  }
  static bool IsOf(const ICIMInstance& found, const boost::shared_ptr<ICIMClass>& cls) {
    return found.GetClass({})->IsA(cls, {});
  }

 private:
  ICIMInstance& m_object;
  TInstanceEnds m_ends;
};

class TClassLevel {
 public:
  using TElement = ICIMClass;

  explicit TClassLevel(const ICIMClass& object) : m_object(object) {}

  TClasses Associations(const std::string& cls) const {
    return Collect<ICIMClass>([&](const TEnumCallback<ICIMClass>& callback) {
      m_object.EnumerateAssociationClasses(callback, cls, {}, {});
    });
  }
  static TEnds<ICIMClass> EndsOf(const ICIMClass& association) {
    return client::EndsOf(association);
  }
  bool IsObject(const TEnd<ICIMClass>& end) const { return m_object.IsA(end.element, {}); }
  boost::shared_ptr<ICIMNamespace> Namespace() const { return m_object.GetNamespace({}); }
  static bool IsOf(const ICIMClass& found, const boost::shared_ptr<ICIMClass>& cls) {
    return found.IsA(cls, {});
  }

 private:
  const ICIMClass& m_object;
};

template <class Level>
using TFound = std::vector<boost::shared_ptr<typename Level::TElement>>;

// The class of a filter, empty when the namespace has none of that name.
boost::shared_ptr<ICIMClass> FilterClass(const boost::shared_ptr<ICIMNamespace>& home,
                                         const std::string& name) {
  try {
    return home ? home->GetClass(name, {}) : nullptr;
  } catch (const THAVException& failure) {
    if (failure.GetStatusCode() != kHAVNotFound) throw;
    return {};
  }
}

// The repository looks for the associations; which of their references lead where is looked
// at here, because its own filters by role follow rules of their own.
template <class Level>
TFound<Level> FindReferences(Level level, const TReferenceFilter& filter) {
  auto associations = level.Associations(filter.resultClass);
  if (filter.role.empty()) return associations;
  TFound<Level> found;
  for (auto& association : associations)
    for (const auto& end : level.EndsOf(*association))
      if (end.Plays(filter.role) && level.IsObject(end)) {
        found.push_back(std::move(association));
        break;
      }
  return found;
}

// Calls `visit` with the other ends of an association: for a reference to the object, those
// of all other references.
template <class Level, class Ends, class Visit>
void VisitOtherEnds(const Level& level, const Ends& ends, const TAssociatorFilter& filter,
                    Visit&& visit) {
  for (const auto& own : ends) {
    if (!own.Plays(filter.role) || !level.IsObject(own)) continue;
    for (const auto& other : ends)
      if (&other != &own && other.Plays(filter.resultRole)) visit(other.element);
  }
}

template <class Level>
TFound<Level> FindAssociators(Level level, const TAssociatorFilter& filter) {
  TFound<Level> found;
  boost::shared_ptr<ICIMClass> wanted;
  if (!filter.resultClass.empty() && !(wanted = FilterClass(level.Namespace(), filter.resultClass)))
    return found;
  std::unordered_set<const void*> seen;
  const auto associations = level.Associations(filter.associationClass);
  for (const auto& association : associations)
    VisitOtherEnds(level, level.EndsOf(*association), filter, [&](const auto& element) {
      if ((!wanted || level.IsOf(*element, wanted)) && seen.insert(element.get()).second)
        found.push_back(element);
    });
  return found;
}

TPaths PathsOf(const TInstances& instances, const std::string& namespaceName) {
  const TOptions options{{"ProvNSP", TCIMValue(namespaceName)}};
  TPaths paths;
  for (const auto& instance : instances) paths.push_back(instance->GetReference(options));
  return paths;
}

TPaths PathsOf(const TClasses& classes, const std::string& namespaceName) {
  TPaths paths;
  for (const auto& cls : classes) {
    TCIMReference path({}, {});
    path.SetClass(cls);
    path.SetNameSpaceName(namespaceName);
    paths.push_back(std::move(path));
  }
  return paths;
}

}  // namespace

TInstances References(ICIMInstance& object, const TReferenceFilter& filter) {
  return FindReferences(TInstanceLevel(object), filter);
}

TInstances Associators(ICIMInstance& object, const TAssociatorFilter& filter) {
  return FindAssociators(TInstanceLevel(object), filter);
}

TClasses References(const ICIMClass& object, const TReferenceFilter& filter) {
  return FindReferences(TClassLevel(object), filter);
}

TClasses Associators(const ICIMClass& object, const TAssociatorFilter& filter) {
  return FindAssociators(TClassLevel(object), filter);
}

TPaths ReferenceNames(ICIMInstance& object, const TReferenceFilter& filter,
                      const std::string& namespaceName) {
  return PathsOf(References(object, filter), namespaceName);
}

TPaths AssociatorNames(ICIMInstance& object, const TAssociatorFilter& filter,
                       const std::string& namespaceName) {
  return PathsOf(Associators(object, filter), namespaceName);
}

TPaths ReferenceNames(const ICIMClass& object, const TReferenceFilter& filter,
                      const std::string& namespaceName) {
  return PathsOf(References(object, filter), namespaceName);
}

TPaths AssociatorNames(const ICIMClass& object, const TAssociatorFilter& filter,
                       const std::string& namespaceName) {
  return PathsOf(Associators(object, filter), namespaceName);
}

}  // namespace hav::client
