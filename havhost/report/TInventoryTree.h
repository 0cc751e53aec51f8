// TInventoryTree: every instance of a namespace that is no association, hung up by its
// associations, each once.
//
// Roots are the instances that have parts (role "GroupComponent") and are part of none
// ("PartComponent"): the systems. Below an instance hang its parts and its dependents (roles
// "Antecedent" and "Dependent"), each at the end of the longest way from a root, so that a
// volume hangs on its partition also where it is a device of the system as well.
//
// An antecedent need not stand above: a cache is the antecedent of the processor that uses
// it. What no way down leads to hangs on the first instance that it is linked to. What no
// association leads to is a root of its own.
//
// Ownership: values, as in InstanceReport.
// Errors:    THAVException of the namespace. References that lead nowhere are left out.
// Complexity: O(n log n) in instances and links.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "havcore/ICIMNamespace.h"
#include "havhost/report/InstanceReport.h"

namespace havhost {

class TInventoryTree {
 public:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  struct TNode {
    TInstanceReport instance;
    std::size_t parent = kNone;  // index of a node before it
    std::string association;     // the class that links it to its parent
    bool isLast = true;          // no later node has this parent
    bool hasChildren = false;
  };

  // With `top`, only the instances of that class or a subclass and what hangs on them.
  TInventoryTree(NORVHAV20::ICIMNamespace& inventory,
                 const boost::shared_ptr<NORVHAV20::ICIMClass>& top);

  // Depth first; what hangs on one instance is in the natural order of the paths.
  const std::vector<TNode>& Nodes() const { return m_nodes; }
  // The association instances, by path within their classes.
  const std::vector<TInstanceReport>& Associations() const { return m_associations; }

 private:
  std::vector<TNode> m_nodes;
  std::vector<TInstanceReport> m_associations;
};

}  // namespace havhost
