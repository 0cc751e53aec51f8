#include "host/report/TInventoryTree.h"

#include <algorithm>
#include <deque>
#include <unordered_map>
#include <utility>

#include "havcore/TCIMReference.h"
#include "host/Enumerate.h"
#include "host/mof/FoldedName.h"
#include "host/report/Text.h"

namespace havhost {

using namespace NORVHAV20;

namespace {

constexpr auto kNone = TInventoryTree::kNone;

struct TLink {
  std::size_t other;
  std::string association;
};

struct TVertex {
  boost::shared_ptr<ICIMInstance> instance;
  std::string path;
  std::vector<TLink> links;
  bool isWhole = false;
  bool isPart = false;
  bool isDependent = false;
  // What the walk from the roots found.
  bool isReached = false;
  std::size_t parent = kNone;
  std::string association;
  std::vector<std::size_t> children;
};

// The instances and the links between them.
class TGraph {
 public:
  explicit TGraph(ICIMNamespace& inventory);

  std::vector<TVertex>& Vertices() { return m_vertices; }
  const std::vector<TInstanceReport>& Associations() const { return m_associations; }

  // The vertices that an association instance refers to.
  std::vector<std::size_t> EndsOf(const TInstanceReport& association) const;

 private:
  void Link(const TInstanceReport& association);
  void Mark(const TPropertyReport& end);
  std::size_t Find(const TPropertyReport& end) const;

  std::vector<TVertex> m_vertices;  // in the natural order of their paths
  std::unordered_map<std::string, std::size_t> m_byPath;
  std::vector<TInstanceReport> m_associations;
};

TGraph::TGraph(ICIMNamespace& inventory) {
  for (const auto& instance : InstancesOf(*inventory.GetClass("<root>", {}), true)) {
    if (instance->GetClass({})->IsAssociation({})) {
      m_associations.push_back(ReportOf(*instance));
    } else {
      m_vertices.emplace_back();
      m_vertices.back().instance = instance;
      m_vertices.back().path = instance->GetReference({}).GetPath();
    }
  }
  std::sort(m_vertices.begin(), m_vertices.end(), [](const TVertex& a, const TVertex& b) {
    return NaturalLess(a.path, b.path);
  });
  for (std::size_t i = 0; i < m_vertices.size(); ++i) m_byPath.emplace(m_vertices[i].path, i);
  for (const auto& association : m_associations) Link(association);
}

std::size_t TGraph::Find(const TPropertyReport& end) const {
  if (!end.value.IsReference()) return kNone;
  const auto found = m_byPath.find(static_cast<const TCIMReference&>(end.value).GetPath());
  return found == m_byPath.end() ? kNone : found->second;
}

std::vector<std::size_t> TGraph::EndsOf(const TInstanceReport& association) const {
  std::vector<std::size_t> ends;
  for (const auto& property : association.properties)
    if (const auto end = Find(property); end != kNone) ends.push_back(end);
  return ends;
}

void TGraph::Link(const TInstanceReport& association) {
  for (const auto& property : association.properties) Mark(property);
  const auto ends = EndsOf(association);
  for (const auto from : ends)
    for (const auto to : ends)
      if (from != to) m_vertices[from].links.push_back({to, association.className});
}

void TGraph::Mark(const TPropertyReport& end) {
  const auto at = Find(end);
  if (at == kNone) return;
  auto& vertex = m_vertices[at];
  vertex.isWhole = vertex.isWhole || SameName(end.name, "GroupComponent");
  vertex.isPart = vertex.isPart || SameName(end.name, "PartComponent");
  vertex.isDependent = vertex.isDependent || SameName(end.name, "Dependent");
}

// Walks in breadth from all of `roots` at once.
void Grow(std::vector<TVertex>& vertices, const std::vector<std::size_t>& roots) {
  std::deque<std::size_t> next(roots.begin(), roots.end());
  for (const auto root : roots) vertices[root].isReached = true;
  while (!next.empty()) {
    const auto at = next.front();
    next.pop_front();
    for (const auto& link : vertices[at].links) {
      auto& other = vertices[link.other];
      if (other.isReached) continue;
      other.isReached = true;
      other.parent = at;
      other.association = link.association;
      vertices[at].children.push_back(link.other);
      next.push_back(link.other);
    }
    std::sort(vertices[at].children.begin(), vertices[at].children.end());
  }
}

template <class Condition>
std::vector<std::size_t> Unreached(const std::vector<TVertex>& vertices, Condition&& isRoot) {
  std::vector<std::size_t> roots;
  for (std::size_t i = 0; i < vertices.size(); ++i)
    if (!vertices[i].isReached && isRoot(vertices[i])) roots.push_back(i);
  return roots;
}

void GrowTrees(std::vector<TVertex>& vertices) {
  Grow(vertices, Unreached(vertices, [](const TVertex& vertex) {
         return vertex.isWhole && !vertex.isPart;
       }));
  Grow(vertices, Unreached(vertices, [](const TVertex& vertex) {
         return !vertex.isPart && !vertex.isDependent;
       }));
  // The rest are circles, which any of their instances can stand above.
  for (std::size_t i = 0; i < vertices.size(); ++i)
    if (!vertices[i].isReached) Grow(vertices, {i});
}

// Writes the trees down, depth first. Returns which vertices are in them.
std::vector<bool> Flatten(const std::vector<TVertex>& vertices,
                          const boost::shared_ptr<ICIMClass>& top,
                          std::vector<TInventoryTree::TNode>& nodes) {
  std::vector<bool> isShown(vertices.size());
  // A stack of vertices, each with the node that it is to hang on.
  std::vector<std::pair<std::size_t, std::size_t>> next;
  for (std::size_t i = vertices.size(); i-- > 0;)
    if (vertices[i].parent == kNone) next.emplace_back(i, kNone);
  while (!next.empty()) {
    const auto [at, parent] = next.back();
    next.pop_back();
    const auto& vertex = vertices[at];
    const bool hangs = parent != kNone;
    isShown[at] = hangs || !top || vertex.instance->GetClass({})->IsA(top, {});
    const auto node = isShown[at] ? nodes.size() : kNone;
    if (isShown[at])
      nodes.push_back({ReportOf(*vertex.instance), parent, hangs ? vertex.association : "",
                       !hangs || vertices[vertex.parent].children.back() == at,
                       !vertex.children.empty()});
    for (auto child = vertex.children.rbegin(); child != vertex.children.rend(); ++child)
      next.emplace_back(*child, node);
  }
  return isShown;
}

}  // namespace

TInventoryTree::TInventoryTree(ICIMNamespace& inventory,
                               const boost::shared_ptr<ICIMClass>& top) {
  TGraph graph(inventory);
  GrowTrees(graph.Vertices());
  const auto isShown = Flatten(graph.Vertices(), top, m_nodes);
  for (const auto& association : graph.Associations()) {
    const auto ends = graph.EndsOf(association);
    if (std::all_of(ends.begin(), ends.end(), [&](std::size_t end) { return isShown[end]; }))
      m_associations.push_back(association);
  }
}

}  // namespace havhost
