#pragma once
namespace boost {
template <class Signature>
class function {
 public:
  function();
  function(const function&);
  ~function();
};
}  // namespace boost
