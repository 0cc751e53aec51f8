// TInstanceStore: the instances of one class, by the text of their object paths.
//
// An instance whose key changed after it was stored is still found under the path that it
// was stored with; taking it out, or storing it again, removes that entry.
//
// Ownership: shares the instances.
// Threads:   one thread at a time per namespace.
#pragma once

#include <map>
#include <string>
#include <unordered_map>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "havcore/ICIMInstance.h"

namespace NORVHAV20 {

class TInstanceStore {
 public:
  using TInstances = std::vector<boost::shared_ptr<ICIMInstance>>;

  // Stores an instance under `path`, in place of what stands there and of the entry it had.
  // On failure nothing has changed.
  void Add(std::string path, const boost::shared_ptr<ICIMInstance>& instance);
  // Removes the entry of `path`, whichever instance it holds, and the entry that `instance`
  // was stored under.
  void Remove(const std::string& path, const ICIMInstance& instance);
  // Returns the instance stored under `path`, empty when there is none.
  boost::shared_ptr<ICIMInstance> Find(const std::string& path) const;
  // Returns the instances in the order of their paths.
  TInstances All() const;
  std::size_t Size() const noexcept { return m_instances.size(); }
  void Swap(TInstanceStore& other) noexcept;

 private:
  using TMap = std::map<std::string, boost::shared_ptr<ICIMInstance>>;

  void Erase(TMap::iterator entry);

  TMap m_instances;
  std::unordered_map<const ICIMInstance*, TMap::iterator> m_entries;
};

}  // namespace NORVHAV20
