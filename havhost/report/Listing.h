// Listing: what a query found, as text, JSON, CSV or MOF.
//
// CSV has a line of names and then one for each instance or class: raw values, nothing for NULL,
// quoted where RFC 4180 asks for it.
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

// Those that meet the condition of the settings, in the order that the settings ask for, else of
// their paths. `cls`, where there is one, is the class that was asked for. Throws TUsageError for
// a property that neither it nor any of the instances has, and for settings that do not go
// together.
void PrintListing(std::ostream& out,
                  std::vector<boost::shared_ptr<NORVHAV20::ICIMInstance>> instances,
                  const TSettings& settings,
                  const boost::shared_ptr<NORVHAV20::ICIMClass>& cls = {});

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
