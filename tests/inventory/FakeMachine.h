// FakeMachine: a machine in a temporary folder, as its own system would show it.
//
// Ownership: owns the folder, which goes when it goes.
// Errors:    what the file system refuses ends the test by an exception.
#pragma once

#include <filesystem>
#include <set>
#include <string>

#include "inventory/TCollection.h"
#include "inventory/TMachine.h"

namespace havtest {

// A machine's processors: sockets of cores of threads, each socket a NUMA node.
struct ProcessorPlan {
  enum EKind { kX86, kArm, kPower };

  EKind kind = kX86;
  unsigned sockets = 1;
  unsigned cores = 1;    // in each socket
  unsigned threads = 2;  // of each core
  std::set<unsigned> offline = {};
};

class FakeMachine {
 public:
  FakeMachine();
  ~FakeMachine();
  FakeMachine(const FakeMachine&) = delete;
  FakeMachine& operator=(const FakeMachine&) = delete;

  // Paths are those of the machine: "/proc/meminfo". Folders are made as needed.
  void File(const std::string& path, const std::string& text);
  void Folder(const std::string& path);
  void Link(const std::string& path, const std::string& target);
  void Remove(const std::string& path);
  std::filesystem::path Path(const std::string& path) const;

  hav::inventory::TMachine Machine() const { return hav::inventory::TMachine(m_root.string()); }
  hav::inventory::TCollection Gather() const;

  // Sockets of `cores` cores of two threads each, with caches of three levels: 32 KiB of
  // data and 32 KiB of instructions and 1 MiB for each core, 16 MiB for each socket.
  void Processors(unsigned sockets, unsigned cores);
  // The same of other kinds, with what is offline left out as the kernel does.
  void Processors(const ProcessorPlan& plan);
  // The NUMA nodes of such processors, one for each socket, with 16 MiB each.
  void NumaNodes(const ProcessorPlan& plan);
  // A block device under /sys/block, or a partition under its disk: "sda", "sda/sda1".
  void BlockDevice(const std::string& place, const std::string& number, const std::string& sectors);

 private:
  void Caches(const std::string& folder, const std::string& ofCore, const std::string& ofSocket);

  std::filesystem::path m_root;
};

// Two sockets, two disks with partitions, an encrypted volume, file systems, ports.
class FullMachine : public FakeMachine {
 public:
  FullMachine();

 private:
  void System();
  void Disks();
  void FileSystems();
  void Ports();
};

}  // namespace havtest
