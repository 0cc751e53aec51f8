// TraversalOracle: what association traversal has to answer, found by looking at every link
// of the model for every question. It knows the model's data and nothing of the plug-in.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "realmodel/DeviceModel.h"

namespace havtest {

// What is asked; empty text filters nothing, but an empty result class of the associators
// finds nothing. "<root>" is any class.
struct ReferencesQuestion {
  std::string resultClass;
  std::string role;
};
struct AssociatorsQuestion {
  std::string associationClass;
  std::string resultClass;
  std::string role;
  std::string resultRole;
};

// One answer: the path that is reported, and the association class that it comes through.
struct Found {
  std::string through;
  std::string path;
};

class TraversalOracle {
 public:
  // The model must outlive the oracle. Things that are no longer stored may be changed; links
  // may not.
  explicit TraversalOracle(const DeviceModel& model);

  // Answers in the order of association class and path.
  std::vector<Found> References(std::size_t thing, const ReferencesQuestion& question) const;
  std::vector<Found> Associators(std::size_t thing, const AssociatorsQuestion& question) const;

  // The paths of what stands at the other ends as the CIM operation defines them, sorted: an
  // association refers to the thing by `role`, and to what is found by `resultRole`.
  std::vector<std::string> OtherEnds(std::size_t thing, const AssociatorsQuestion& question) const;

 private:
  std::vector<const ModelLink*> Referring(std::size_t thing,
                                          const ReferencesQuestion& question) const;
  // The thing that an association reports, or the number of things when it reports none.
  std::size_t OtherEnd(std::size_t thing, const ModelLink& link,
                       const AssociatorsQuestion& question) const;
  std::size_t EndInResultRole(const ModelLink& link, const AssociatorsQuestion& question) const;
  bool IsResult(std::size_t thing, const std::string& resultClass) const;

  const DeviceModel& m_model;
  std::vector<const ModelLink*> m_inOrder;
};

}  // namespace havtest
