// Enumerate: what an enumeration of the object model visits, as a list.
//
// Enumerations drop the exceptions of their callbacks and may not end early, so callbacks
// here do no more than collect; the work is done on the list.
#pragma once

#include <utility>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "havcore/ICIMClass.h"
#include "havcore/ICIMInstance.h"
#include "havcore/TOptions.h"

namespace hav::client {

// `enumerate` is called with the callback to hand on.
template <class Element, class F>
std::vector<boost::shared_ptr<Element>> Collect(F&& enumerate) {
  std::vector<boost::shared_ptr<Element>> elements;
  std::forward<F>(enumerate)(
      NORVHAV20::TEnumCallback<Element>([&elements](boost::shared_ptr<Element> element) {
        elements.push_back(std::move(element));
        return true;
      }));
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
