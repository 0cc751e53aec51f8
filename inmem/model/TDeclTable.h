// TDeclTable: declarations by folded name, in its order. Copies share what they have in common,
// so that a class of ten thousand inherited declarations costs no more than what it declares
// itself: a change copies the way to what it changes and leaves the rest to be shared.
//
// Ownership: shares the declarations.
// Threads:   one thread at a time per namespace; what copies share does not change.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include <boost/shared_ptr.hpp>
#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <boost/smart_ptr/intrusive_ref_counter.hpp>

namespace NORVHAV20 {

template <class TDecl>
class TDeclTable {
 public:
  struct TEntry : boost::intrusive_ref_counter<TEntry> {
    TEntry(std::string entryName, boost::shared_ptr<TDecl> declaration, std::uint64_t declarer)
        : name(std::move(entryName)), decl(std::move(declaration)), declaredBy(declarer) {}

    const std::string name;  // folded
    const boost::shared_ptr<TDecl> decl;
    const std::uint64_t declaredBy;  // the number of the class whose own declaration it is
  };
  using TEntryPtr = boost::intrusive_ptr<const TEntry>;

  std::size_t Size() const noexcept { return m_size; }
  // How many entries a search asks at most: at most half as many again as their number halves.
  int Height() const noexcept { return Height(m_root); }

  // Returns the declaration of a folded name, empty when there is none. Complexity: O(log n).
  boost::shared_ptr<TDecl> Find(std::string_view name) const {
    const TNode* node = m_root.get();
    while (node) {
      const int order = name.compare(node->entry->name);
      if (order < 0)
        node = node->left.get();
      else if (order > 0)
        node = node->right.get();
      else
        return node->entry->decl;
    }
    return {};
  }

  // Sets, or takes out, the declaration of a name. On failure nothing has changed; what stood
  // there ends last. Complexity: O(log n).
  void Set(TEntryPtr entry) {
    const bool isNew = !Find(entry->name);
    TNodePtr root = With(m_root, entry);
    m_root.swap(root);
    m_size += isNew;
  }
  void Remove(std::string_view name) {
    if (!Find(name)) return;
    TNodePtr root = Without(m_root, name);
    m_root.swap(root);
    --m_size;
  }

  // Calls `visit` with each entry, until it answers false. The table must not change meanwhile;
  // a copy of it may be walked.
  template <class TVisit>
  bool ForEach(TVisit&& visit) const {
    return Walk(m_root.get(), visit);
  }

  void Swap(TDeclTable& other) noexcept {
    m_root.swap(other.m_root);
    std::swap(m_size, other.m_size);
  }

 private:
  // A balanced tree: of its two sides none is more than one level higher than the other.
  struct TNode;
  using TNodePtr = boost::intrusive_ptr<const TNode>;
  struct TNode : boost::intrusive_ref_counter<TNode> {
    TNode(TEntryPtr nodeEntry, TNodePtr before, TNodePtr after)
        : height(1 + std::max(Height(before), Height(after))),
          entry(std::move(nodeEntry)),
          left(std::move(before)),
          right(std::move(after)) {}

    const int height;
    const TEntryPtr entry;
    const TNodePtr left;
    const TNodePtr right;
  };

  static int Height(const TNodePtr& node) noexcept { return node ? node->height : 0; }

  static TNodePtr Make(const TEntryPtr& entry, TNodePtr left, TNodePtr right) {
    return TNodePtr(new TNode(entry, std::move(left), std::move(right)));
  }

  // The same for sides of which one may be two levels higher.
  static TNodePtr Balanced(const TEntryPtr& entry, const TNodePtr& left, const TNodePtr& right) {
    if (Height(left) > Height(right) + 1) {
      if (Height(left->left) >= Height(left->right))
        return Make(left->entry, left->left, Make(entry, left->right, right));
      const TNodePtr& top = left->right;
      return Make(top->entry, Make(left->entry, left->left, top->left),
                  Make(entry, top->right, right));
    }
    if (Height(right) > Height(left) + 1) {
      if (Height(right->right) >= Height(right->left))
        return Make(right->entry, Make(entry, left, right->left), right->right);
      const TNodePtr& top = right->left;
      return Make(top->entry, Make(entry, left, top->left),
                  Make(right->entry, top->right, right->right));
    }
    return Make(entry, left, right);
  }

  static TNodePtr With(const TNodePtr& node, const TEntryPtr& entry) {
    if (!node) return Make(entry, {}, {});
    const int order = entry->name.compare(node->entry->name);
    if (order < 0) return Balanced(node->entry, With(node->left, entry), node->right);
    if (order > 0) return Balanced(node->entry, node->left, With(node->right, entry));
    return Make(entry, node->left, node->right);
  }

  static TNodePtr Without(const TNodePtr& node, std::string_view name) {
    const int order = name.compare(node->entry->name);
    if (order < 0) return Balanced(node->entry, Without(node->left, name), node->right);
    if (order > 0) return Balanced(node->entry, node->left, Without(node->right, name));
    if (!node->left) return node->right;
    if (!node->right) return node->left;
    const TNode* next = node->right.get();
    while (next->left) next = next->left.get();
    return Balanced(next->entry, node->left, Without(node->right, next->entry->name));
  }

  template <class TVisit>
  static bool Walk(const TNode* node, TVisit& visit) {
    return !node ||
           (Walk(node->left.get(), visit) && visit(*node->entry) && Walk(node->right.get(), visit));
  }

  TNodePtr m_root;
  std::size_t m_size = 0;
};

}  // namespace NORVHAV20
