// TMachine: the machine to take the inventory of.
//
// The root folder is "/" for the machine that the program runs on. Any other folder holds
// the files of another machine, laid out as they are there (proc/, sys/, etc/, ...); only
// what stands in them is then collected, and nothing of this machine.
//
// Threads: a value.
#pragma once

#include <string>
#include <utility>

namespace hav::inventory {

class TMachine {
 public:
  // Slashes at the end of `root` do not count; an empty root is "/".
  explicit TMachine(std::string root = "/") : m_root(std::move(root)) {
    while (!m_root.empty() && m_root.back() == '/') m_root.pop_back();
    if (m_root.empty()) m_root = "/";
  }

  const std::string& Root() const { return m_root; }
  bool IsThisMachine() const { return m_root == "/"; }

 private:
  std::string m_root;
};

}  // namespace hav::inventory
