#pragma once
namespace boost {
template <class T>
class shared_ptr {
 public:
  shared_ptr();
  shared_ptr(const shared_ptr&);
  ~shared_ptr();
};
}  // namespace boost
