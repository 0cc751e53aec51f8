// Lookup: what the user names, found in the namespace.
//
// Errors: THostError that says what is not there.
#pragma once

#include <string>

#include <boost/shared_ptr.hpp>

#include "havcore/ICIMClass.h"
#include "havcore/ICIMInstance.h"
#include "havcore/ICIMNamespace.h"
#include "havhost/TSettings.h"

namespace havhost {

boost::shared_ptr<NORVHAV20::ICIMClass> FindClass(NORVHAV20::ICIMNamespace& target,
                                                  const std::string& name);

// Nothing for the empty name, which stands for no filter.
void RequireClass(NORVHAV20::ICIMNamespace& target, const std::string& name);

// True when `text` gives no key values: it names a class, or the instance of a class that has
// no keys.
bool IsClassName(const std::string& text);

// Finds the instance of settings.path.
boost::shared_ptr<NORVHAV20::ICIMInstance> FindInstance(
    const boost::shared_ptr<NORVHAV20::ICIMNamespace>& target, const TSettings& settings);

}  // namespace havhost
