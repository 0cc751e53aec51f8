// What walks and associations answer, with callbacks that change what is walked.
#include "tests/oracle/TRun.h"

#include <iterator>

namespace havtest::oracle {

TRun::TMischief TRun::Mischief() {
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

void TRun::Enumerate() {
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
            [&](const auto& visit) { m_model.Enumerate(m_classIds[cls], deep, visit); }, mischief);
      });
}

void TRun::References() {
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

void TRun::Associators() {
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

void TRun::ClassAssociations() {
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
                 target.EnumerateAssociatedClasses(callback, association, result, role, resultRole,
                                                   {});
               });
      },
      [=] {
        const Id target = m_classIds[cls];
        const auto classes = Classes(m_model.AssociationClasses(target, association, role));
        return classes + "; " +
               Classes(m_model.AssociatedClasses(target, association, result, role, resultRole));
      });
}

std::size_t TRun::AskedInstance() const {
  std::vector<std::size_t> stored;
  for (const TClass& cls : m_model.classes)
    for (const auto& [path, instance] : cls.store)
      stored.push_back(static_cast<std::size_t>(instance));
  return stored.empty() || Arg(0) % 8 == 0 ? Place(m_instances, 0) : stored[Place(stored, 0)];
}

}  // namespace havtest::oracle
