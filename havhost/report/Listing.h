// Listing: what a query found, as text or JSON.
//
//   {"namespace", "instances": [instance...]} or {"namespace", "classes": [class...]}, where a
//   class is {"name", "superclass", "association", "abstract", "indication", "instances"}
#pragma once

#include <ostream>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "havcore/ICIMClass.h"
#include "havcore/ICIMInstance.h"
#include "havhost/TSettings.h"

namespace havhost {

// In the order of their paths.
void PrintListing(std::ostream& out,
                  std::vector<boost::shared_ptr<NORVHAV20::ICIMInstance>> instances,
                  const TSettings& settings);

struct TListedClass {
  boost::shared_ptr<NORVHAV20::ICIMClass> cls;
  std::size_t depth = 0;  // how far the text is indented
};

void PrintListing(std::ostream& out, const std::vector<TListedClass>& classes,
                  const TSettings& settings);
void PrintListing(std::ostream& out,
                  const std::vector<boost::shared_ptr<NORVHAV20::ICIMClass>>& classes,
                  const TSettings& settings);

}  // namespace havhost
