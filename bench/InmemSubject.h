// InmemSubject: the plug-in as the store of disks and of links between them.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "bench/Changes.h"
#include "bench/Disk.h"
#include "havcore/havcore.h"

namespace havbench {

class InmemSubject {
 public:
  static constexpr const char* kName = "inmem";

  InmemSubject();
  boost::shared_ptr<NORVHAV20::ICIMInstance> Make(const Disk& disk);
  // Keeps what look-ups ask by: the paths and the instances of these disks, which are
  // `place` 0 and on.
  void Prepare(const std::vector<std::size_t>& numbers);
  bool Get(std::size_t place) const;
  std::uint64_t GetAndRead(std::size_t place) const;
  std::uint64_t SizeOf(std::size_t place) const;
  std::size_t Enumerate() const;
  std::uint64_t TotalSize() const;

  boost::shared_ptr<NORVHAV20::ICIMInstance> MakeLink(std::size_t from, std::size_t to);
  // How many disks stand at the other end of the links of one.
  std::size_t Associators(std::size_t place) const;
  std::size_t References(std::size_t place) const;

  // Makes two more disks with a link between them, for changes to use.
  void PrepareChanges(std::size_t firstFree);
  void Do(Change change);
  void Undo(Change change);

  NORVHAV20::ICIMNamespace& Namespace() const { return *m_namespace; }

 private:
  NORVHAV20::TCIMReference PathTo(std::size_t number) const;

  boost::shared_ptr<NORVHAV20::ICIMNamespace> m_namespace;
  boost::shared_ptr<NORVHAV20::ICIMClass> m_disks;
  boost::shared_ptr<NORVHAV20::ICIMClass> m_links;
  std::vector<NORVHAV20::TCIMReference> m_paths;
  std::vector<boost::shared_ptr<NORVHAV20::ICIMInstance>> m_instances;
  // What changes use.
  std::size_t m_free = 0;
  boost::shared_ptr<NORVHAV20::ICIMInstance> m_spareLink;
  boost::shared_ptr<NORVHAV20::ICIMInstance> m_added;
  std::unique_ptr<InmemSubject> m_neighbour;
};

// Declares a property of a class, a key where `key` is given.
void Declare(NORVHAV20::ICIMNamespace& ns, NORVHAV20::ICIMClass& cls, const char* name,
             const NORVHAV20::TCIMValue& defaultValue, bool key = false);

}  // namespace havbench
