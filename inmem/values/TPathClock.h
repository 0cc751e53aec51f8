// TPathClock: counts what seldom happens and may make a path lead elsewhere although the instance
// that it led to stands where it stood: a class gets another's name, a namespace goes, a key is
// spelt otherwise. Only ever compared for equality. Namespaces that share their classes share
// theirs; no other namespace has anything to do with it.
//
// Ownership: shared by the namespaces and their classes.
// Threads:   one thread at a time per namespace.
#pragma once

#include <cstdint>

#include <boost/smart_ptr/intrusive_ref_counter.hpp>

namespace NORVHAV20 {

class TPathClock : public boost::intrusive_ref_counter<TPathClock> {
 public:
  std::uint64_t Time() const noexcept { return m_time; }
  void Turn() noexcept { ++m_time; }

 private:
  std::uint64_t m_time = 0;
};

}  // namespace NORVHAV20
