#pragma once
namespace boost {
template <class T>
class weak_ptr {
 public:
  weak_ptr();
  weak_ptr(const weak_ptr&);
  ~weak_ptr();
};
}  // namespace boost
