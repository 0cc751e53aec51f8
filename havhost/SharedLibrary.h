// SharedLibrary: Boost.DLL over the standard library's paths.
#pragma once

#define BOOST_DLL_USE_STD_FS
#include <boost/dll/shared_library.hpp>

namespace havhost {

using TSharedLibrary = boost::dll::shared_library;

}  // namespace havhost
