#include "havhost/report/TInventoryTree.h"

#include <algorithm>
#include <set>
#include <unordered_map>
#include <utility>

#include "havcore/TCIMReference.h"
#include "havcore/client/Enumerate.h"
#include "havcore/client/FoldedName.h"
#include "havhost/report/TPathOrder.h"

namespace havhost {

using namespace hav::client;

using namespace NORVHAV20;

namespace {

constexpr auto kNone = TInventoryTree::kNone;

constexpr char kWhole[] = "GroupComponent";
constexpr char kPart[] = "PartComponent";
constexpr char kAntecedent[] = "Antecedent";
constexpr char kDependent[] = "Dependent";

struct TLink {
  std::size_t other;
  std::string association;
};

struct TVertex {
  boost::shared_ptr<ICIMInstance> instance;
  std::string path;
  std::vector<TLink> below;   // its parts and its dependents
  std::vector<TLink> beside;  // all else that it is linked to
  bool isWhole = false;
  bool isPart = false;
  bool isDependent = false;
  // Where the instance hangs.
  bool isReached = false;
  std::size_t waitsFor = 0;  // how many above it have no place yet
  std::size_t depth = 0;
  std::size_t parent = kNone;
  std::string association;
  std::vector<std::size_t> children;
};

using TIndexes = std::vector<std::size_t>;

// What an association refers to.
struct TEnd {
  std::size_t at;
  bool isAbove;
  bool isBelow;
};

// The instances and the links between them.
class TGraph {
 public:
  explicit TGraph(ICIMNamespace& inventory);

  std::vector<TVertex>& Vertices() { return m_vertices; }
  const std::vector<TInstanceReport>& Associations() const { return m_associations; }

  std::vector<TEnd> EndsOf(const TInstanceReport& association) const;

 private:
  void Link(const TInstanceReport& association);
  void Mark(const TPropertyReport& end);
  std::size_t Find(const TPropertyReport& end) const;

  std::vector<TVertex> m_vertices;  // in the order of their paths
  std::unordered_map<std::string, std::size_t> m_byPath;
  std::vector<TInstanceReport> m_associations;
};

TGraph::TGraph(ICIMNamespace& inventory) {
  auto instances = InstancesOf(*inventory.GetClass("<root>", {}), true);
  SortByPath(instances);
  for (const auto& instance : instances) {
    if (instance->GetClass({})->IsAssociation({})) {
      m_associations.push_back(ReportOf(*instance));
    } else {
      m_vertices.emplace_back();
      m_vertices.back().instance = instance;
      m_vertices.back().path = instance->GetReference({}).GetPath();
    }
  }
  for (std::size_t i = 0; i < m_vertices.size(); ++i) m_byPath.emplace(m_vertices[i].path, i);
  for (const auto& association : m_associations) Link(association);
}

std::size_t TGraph::Find(const TPropertyReport& end) const {
  if (!end.value.IsReference()) return kNone;
  const auto found = m_byPath.find(static_cast<const TCIMReference&>(end.value).GetPath());
  return found == m_byPath.end() ? kNone : found->second;
}

std::vector<TEnd> TGraph::EndsOf(const TInstanceReport& association) const {
  std::vector<TEnd> ends;
  for (const auto& property : association.properties) {
    const auto& role = property.name;
    if (const auto at = Find(property); at != kNone)
      ends.push_back({at, SameName(role, kWhole) || SameName(role, kAntecedent),
                      SameName(role, kPart) || SameName(role, kDependent)});
  }
  return ends;
}

void TGraph::Link(const TInstanceReport& association) {
  for (const auto& property : association.properties) Mark(property);
  const auto ends = EndsOf(association);
  for (const auto& from : ends)
    for (const auto& to : ends)
      if (from.at != to.at) {
        auto& vertex = m_vertices[from.at];
        auto& links = from.isAbove && to.isBelow ? vertex.below : vertex.beside;
        links.push_back({to.at, association.className});
      }
}

void TGraph::Mark(const TPropertyReport& end) {
  const auto at = Find(end);
  if (at == kNone) return;
  auto& vertex = m_vertices[at];
  vertex.isWhole = vertex.isWhole || SameName(end.name, kWhole);
  vertex.isPart = vertex.isPart || SameName(end.name, kPart);
  vertex.isDependent = vertex.isDependent || SameName(end.name, kDependent);
}

void Hang(TVertex& vertex, std::size_t parent, std::size_t depth, const std::string& association) {
  vertex.parent = parent;
  vertex.depth = depth;
  vertex.association = association;
}

// Counts for each vertex below `tops` how many others there stand above it.
void CountAbove(std::vector<TVertex>& vertices, TIndexes next) {
  while (!next.empty()) {
    const auto at = next.back();
    next.pop_back();
    for (const auto& link : vertices[at].below)
      if (auto& other = vertices[link.other]; !other.isReached && other.waitsFor++ == 0)
        next.push_back(link.other);
  }
}

// Hangs up what is below `tops`, each at the end of the longest way down to it. Returns the
// tops and all that was hung up.
TIndexes GrowDown(std::vector<TVertex>& vertices, const TIndexes& tops) {
  for (const auto top : tops) vertices[top].isReached = true;
  CountAbove(vertices, tops);
  TIndexes order = tops;
  std::set<std::size_t> waiting;
  for (std::size_t next = 0; next < order.size() || !waiting.empty(); ++next) {
    // Only a circle keeps all that waits from having its place.
    if (next == order.size()) order.push_back(*waiting.begin());
    const auto at = order[next];
    auto& vertex = vertices[at];
    waiting.erase(at);
    vertex.isReached = true;
    for (const auto& link : vertex.below) {
      auto& other = vertices[link.other];
      if (other.isReached) continue;
      if (other.depth <= vertex.depth) Hang(other, at, vertex.depth + 1, link.association);
      waiting.insert(link.other);
      if (--other.waitsFor == 0) order.push_back(link.other);
    }
  }
  return order;
}

// Hangs up what has no place yet and is beside one of `reached`.
TIndexes GrowBeside(std::vector<TVertex>& vertices, const TIndexes& reached) {
  TIndexes found;
  for (const auto at : reached)
    for (const auto& link : vertices[at].beside) {
      auto& other = vertices[link.other];
      if (other.isReached) continue;
      other.isReached = true;
      Hang(other, at, vertices[at].depth + 1, link.association);
      found.push_back(link.other);
    }
  return found;
}

void Grow(std::vector<TVertex>& vertices, TIndexes tops) {
  while (!tops.empty()) tops = GrowBeside(vertices, GrowDown(vertices, tops));
}

template <class Condition>
TIndexes Unreached(const std::vector<TVertex>& vertices, Condition&& isRoot) {
  TIndexes roots;
  for (std::size_t i = 0; i < vertices.size(); ++i)
    if (!vertices[i].isReached && isRoot(vertices[i])) roots.push_back(i);
  return roots;
}

void GrowTrees(std::vector<TVertex>& vertices) {
  Grow(vertices,
       Unreached(vertices, [](const TVertex& vertex) { return vertex.isWhole && !vertex.isPart; }));
  Grow(vertices, Unreached(vertices, [](const TVertex& vertex) {
         return !vertex.isPart && !vertex.isDependent;
       }));
  // The rest are circles, which any of their instances can stand above.
  for (std::size_t i = 0; i < vertices.size(); ++i)
    if (!vertices[i].isReached) Grow(vertices, {i});
  for (std::size_t i = 0; i < vertices.size(); ++i)
    if (vertices[i].parent != kNone) vertices[vertices[i].parent].children.push_back(i);
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

TInventoryTree::TInventoryTree(ICIMNamespace& inventory, const boost::shared_ptr<ICIMClass>& top) {
  TGraph graph(inventory);
  GrowTrees(graph.Vertices());
  const auto isShown = Flatten(graph.Vertices(), top, m_nodes);
  for (const auto& association : graph.Associations()) {
    const auto ends = graph.EndsOf(association);
    if (std::all_of(ends.begin(), ends.end(), [&](const TEnd& end) { return isShown[end.at]; }))
      m_associations.push_back(association);
  }
}

}  // namespace havhost
