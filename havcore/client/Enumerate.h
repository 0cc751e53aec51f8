// Enumerate: what an enumeration of the object model visits, as a list.
//
// Enumerations drop the exceptions of their callbacks and may not end early, so callbacks
// here do no more than collect; the work is done on the list. Should there be no memory for
// the list, bad_alloc leaves when the enumeration is through: a part is never taken for all.
#pragma once

#include <exception>
#include <utility>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "havcore/ICIMClass.h"
#include "havcore/ICIMInstance.h"
#include "havcore/TOptions.h"

namespace hav::client {

// Calls `visit` from a callback that must not throw, and keeps what it throws first.
class TKeptException {
 public:
  template <class F>
  void Guard(F&& visit) noexcept {
    if (m_thrown) return;
    try {
      std::forward<F>(visit)();
    } catch (...) {
      m_thrown = std::current_exception();
    }
  }
  void Rethrow() const {
    if (m_thrown) std::rethrow_exception(m_thrown);
  }

 private:
  std::exception_ptr m_thrown;
};

// `enumerate` is called with the callback to hand on.
template <class Element, class F>
std::vector<boost::shared_ptr<Element>> Collect(F&& enumerate) {
  std::vector<boost::shared_ptr<Element>> elements;
  TKeptException thrown;
  std::forward<F>(enumerate)(
      NORVHAV20::TEnumCallback<Element>([&](boost::shared_ptr<Element> element) {
        thrown.Guard([&] { elements.push_back(std::move(element)); });
        return true;
      }));
  thrown.Rethrow();
  return elements;
}

inline std::vector<boost::shared_ptr<NORVHAV20::ICIMInstance>> InstancesOf(
    NORVHAV20::ICIMClass& cls, bool deep) {
  using namespace NORVHAV20;
  return Collect<ICIMInstance>([&](const TEnumCallback<ICIMInstance>& callback) {
    cls.EnumerateInstances(callback, deep, {});
  });
}

inline std::vector<boost::shared_ptr<NORVHAV20::ICIMClass>> SubclassesOf(
    const NORVHAV20::ICIMClass& cls) {
  using namespace NORVHAV20;
  return Collect<ICIMClass>(
      [&](const TEnumCallback<ICIMClass>& callback) { cls.EnumerateSubclasses(callback, {}); });
}

}  // namespace hav::client
