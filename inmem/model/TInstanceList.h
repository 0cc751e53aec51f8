// TInstanceList: instances in the order of their paths, in chunks that copies share. Changing a
// copy copies the chunk that changes and nothing else.
//
// Ownership: shares the instances; the entries of the store that it is made for are only good
//            in the list that the store itself uses.
// Threads:   one thread at a time per namespace.
#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "havcore/ICIMInstance.h"

namespace NORVHAV20 {

class TInstanceList {
 public:
  struct TItem {
    void* entry;
    boost::shared_ptr<ICIMInstance> instance;
  };

  // Calls `visit` with each item.
  template <class Visit>
  void ForEachItem(Visit&& visit) const {
    for (const auto& chunk : m_chunks)
      for (const TItem& item : *chunk) visit(item);
  }
  // Calls `visit` with each instance, for a visitor that is likely to read it: `fetch` is called
  // before with each that comes soon, and then with whether it comes very soon.
  template <class Fetch, class Visit>
  void ForEachFetched(Fetch&& fetch, Visit&& visit) const {
    for (const auto& chunk : m_chunks) {
      const std::size_t size = chunk->size();
      for (std::size_t i = 0; i < size; ++i) {
        if (i + kSoon < size) fetch(*(*chunk)[i + kSoon].instance, false);
        if (i + kVerySoon < size) fetch(*(*chunk)[i + kVerySoon].instance, true);
        visit((*chunk)[i].instance);
      }
    }
  }
  std::size_t Size() const noexcept { return m_size; }

  // Appends an item that comes after all others.
  void Append(TItem item);
  // Inserts an item; `isBefore(a, b)` compares entries. On failure nothing has changed.
  // Complexity: O(log n) comparisons.
  template <class Before>
  void Insert(TItem item, Before&& isBefore) {
    if (m_chunks.empty()) return Append(std::move(item));
    const TPlace place = Find(item.entry, isBefore);
    InsertAt(place, std::move(item));
  }
  // Removes the item of an entry that is there. Throws std::bad_alloc when there is no memory
  // to copy what others share; then nothing has changed. Complexity: as Insert.
  template <class Before>
  void Remove(void* entry, Before&& isBefore) {
    RemoveAt(Find(entry, isBefore));
  }

 private:
  static constexpr std::size_t kChunkSize = 256;
  static constexpr std::size_t kSoon = 8;
  static constexpr std::size_t kVerySoon = 4;
  using TChunk = std::vector<TItem>;

  struct TPlace {
    std::size_t chunk;
    std::size_t item;
  };

  // Where the entry stands, or would among the others.
  template <class Before>
  TPlace Find(void* entry, Before&& isBefore) const {
    // The last chunk that does not begin behind the entry, then the place in it.
    const std::size_t chunk =
        CountNotAfter(1, m_chunks.size(),
                      [&](std::size_t i) { return isBefore(entry, m_chunks[i]->front().entry); }) -
        1;
    const TChunk& items = *m_chunks[chunk];
    const std::size_t item = CountNotAfter(
        0, items.size(), [&](std::size_t i) { return !isBefore(items[i].entry, entry); });
    return {chunk, item};
  }
  // The first number from `from` to `to` for which `isAfter` holds; it holds for all above.
  template <class After>
  static std::size_t CountNotAfter(std::size_t from, std::size_t to, After&& isAfter) {
    while (from < to) {
      const std::size_t middle = from + (to - from) / 2;
      if (isAfter(middle))
        to = middle;
      else
        from = middle + 1;
    }
    return from;
  }

  void InsertAt(TPlace place, TItem item);
  void RemoveAt(TPlace place);
  TChunk& Writable(std::size_t chunk);

  std::vector<boost::shared_ptr<TChunk>> m_chunks;  // none of them empty
  std::size_t m_size = 0;
};

}  // namespace NORVHAV20
