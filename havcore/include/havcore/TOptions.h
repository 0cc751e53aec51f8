// TOptions: the options map that nearly every operation takes by value as its last
// argument, and TEnumCallback, the callback of every enumeration.
#pragma once

#include <map>
#include <string>

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

#include "havcore/TCIMValue.h"

namespace NORVHAV20 {

// Option names are case-sensitive. The callee owns its copy.
using TOptions = std::map<std::string, TCIMValue>;

// Called once for each element; true asks to go on.
template <class T>
using TEnumCallback = boost::function<bool(boost::shared_ptr<T>)>;

}  // namespace NORVHAV20
