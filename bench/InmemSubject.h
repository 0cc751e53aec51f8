// InmemSubject: the plug-in as the store of disks and of links between them.
#pragma once

#include <string>
#include <vector>

#include "bench/Disk.h"
#include "havcore/havcore.h"

namespace havbench {

class InmemSubject {
 public:
  static constexpr const char* kName = "inmem";

  InmemSubject();
  void Make(const Disk& disk);
  // Keeps what look-ups ask by: the paths and the instances of these disks, which are
  // `place` 0 and on.
  void Prepare(const std::vector<std::size_t>& numbers);
  bool Get(std::size_t place) const;
  std::uint64_t SizeOf(std::size_t place) const;
  std::size_t Enumerate() const;

  void MakeLink(std::size_t from, std::size_t to);
  // How many disks stand at the other end of the links of one.
  std::size_t Associators(std::size_t place) const;
  std::size_t References(std::size_t place) const;

  NORVHAV20::ICIMNamespace& Namespace() const { return *m_namespace; }

 private:
  boost::shared_ptr<NORVHAV20::ICIMNamespace> m_namespace;
  boost::shared_ptr<NORVHAV20::ICIMClass> m_disks;
  boost::shared_ptr<NORVHAV20::ICIMClass> m_links;
  std::vector<NORVHAV20::TCIMReference> m_paths;
  std::vector<boost::shared_ptr<NORVHAV20::ICIMInstance>> m_instances;
};

// Declares a property of a class, a key where `key` is given.
void Declare(NORVHAV20::ICIMNamespace& ns, NORVHAV20::ICIMClass& cls, const char* name,
             const NORVHAV20::TCIMValue& defaultValue, bool key = false);

}  // namespace havbench
