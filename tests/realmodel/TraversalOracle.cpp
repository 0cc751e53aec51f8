#include "realmodel/TraversalOracle.h"

#include <algorithm>
#include <set>
#include <tuple>

#include "realmodel/DeviceClasses.h"

namespace havtest {
namespace {

const char kAny[] = "<root>";

bool Passes(const std::string& cls, const std::string& filter) {
  return filter.empty() || filter == kAny || Derives(cls, filter);
}

bool Plays(const Role& role, const std::string& filter) {
  return filter.empty() || filter == role.name;
}

}  // namespace

TraversalOracle::TraversalOracle(const DeviceModel& model) : m_model(model) {
  for (const auto& link : model.links) m_inOrder.push_back(&link);
  std::sort(m_inOrder.begin(), m_inOrder.end(), [](const ModelLink* a, const ModelLink* b) {
    return std::tie(a->cls, a->path) < std::tie(b->cls, b->path);
  });
}

std::vector<const ModelLink*> TraversalOracle::Referring(std::size_t thing,
                                                         const ReferencesQuestion& question) const {
  std::vector<const ModelLink*> referring;
  if (!m_model.things[thing].stored) return referring;
  for (const ModelLink* link : m_inOrder) {
    if (!Passes(link->cls, question.resultClass)) continue;
    const auto& roles = LinkFact(link->cls).roles;
    bool refers = false;
    for (std::size_t i = 0; i < roles.size(); ++i)
      refers = refers || (link->ends[i] == thing &&
                          (question.role.empty() || question.role == roles[i].name));
    if (refers) referring.push_back(link);
  }
  return referring;
}

std::vector<Found> TraversalOracle::References(std::size_t thing,
                                               const ReferencesQuestion& question) const {
  std::vector<Found> found;
  for (const ModelLink* link : Referring(thing, question)) found.push_back({link->cls, link->path});
  return found;
}

std::vector<Found> TraversalOracle::Associators(std::size_t thing,
                                                const AssociatorsQuestion& question) const {
  std::vector<Found> found;
  if (question.resultClass.empty()) return found;
  for (const ModelLink* link : Referring(thing, {question.associationClass, ""})) {
    const std::size_t end = question.resultRole.empty() ? OtherEnd(thing, *link, question)
                                                        : EndInResultRole(*link, question);
    if (end != m_model.things.size()) found.push_back({link->cls, m_model.things[end].path});
  }
  return found;
}

std::vector<std::string> TraversalOracle::OtherEnds(std::size_t thing,
                                                    const AssociatorsQuestion& question) const {
  std::set<std::string> found;
  for (const ModelLink* link : Referring(thing, {question.associationClass, question.role})) {
    const auto& roles = LinkFact(link->cls).roles;
    for (std::size_t own = 0; own < roles.size(); ++own)
      for (std::size_t other = 0; other < roles.size(); ++other) {
        const auto& end = m_model.things[link->ends[other]];
        if (own != other && link->ends[own] == thing && end.stored &&
            Plays(roles[own], question.role) && Plays(roles[other], question.resultRole) &&
            Passes(end.cls, question.resultClass))
          found.insert(end.path);
      }
  }
  return {found.begin(), found.end()};
}

bool TraversalOracle::IsResult(std::size_t thing, const std::string& resultClass) const {
  return resultClass == kAny || Derives(m_model.things[thing].cls, resultClass);
}

std::size_t TraversalOracle::OtherEnd(std::size_t thing, const ModelLink& link,
                                      const AssociatorsQuestion& question) const {
  const auto& roles = LinkFact(link.cls).roles;
  bool selfSeen = false;
  for (std::size_t i = 0; i < roles.size(); ++i) {
    const std::size_t end = link.ends[i];
    const bool isSelf = question.role.empty() ? end == thing : roles[i].name == question.role;
    if (isSelf && !selfSeen) {
      selfSeen = true;
      continue;
    }
    if (!IsResult(end, question.resultClass)) continue;
    // A reference that leads nowhere is the end of this association.
    return m_model.things[end].stored ? end : m_model.things.size();
  }
  return m_model.things.size();
}

std::size_t TraversalOracle::EndInResultRole(const ModelLink& link,
                                             const AssociatorsQuestion& question) const {
  const auto& roles = LinkFact(link.cls).roles;
  for (std::size_t i = 0; i < roles.size(); ++i)
    if (roles[i].name == question.resultRole && IsResult(link.ends[i], question.resultClass) &&
        m_model.things[link.ends[i]].stored)
      return link.ends[i];
  return m_model.things.size();
}

}  // namespace havtest
