// TServices: what the connections of one server share.
//
// Threads: connections run in the thread of the network; `work` runs what touches the
//          namespace, and `login` what hashes passwords, each in one thread of its own.
#pragma once

#include <functional>
#include <string>

#include <boost/asio/thread_pool.hpp>

#include "havhost/server/TServerSettings.h"
#include "wbem/THttpMessage.h"

namespace havhost {

struct TServices {
  TServerSettings settings;
  bool isLoopback;
  // In the thread of `work`.
  std::function<hav::wbem::THttpReply(const hav::wbem::THttpRequest&)> handle;
  // The web page; in the thread of `work`. Empty: there is none.
  std::function<hav::wbem::THttpReply()> makePage;
  // Whether a user has this password: in the thread of `login`. Empty: everybody may.
  std::function<bool(const std::string& user, const std::string& password)> mayUse;
  // Whether that was found out before; in any thread, and at once.
  std::function<bool(const std::string& user, const std::string& password)> isKnown;

  boost::asio::thread_pool work{1};
  boost::asio::thread_pool login{1};
  std::size_t connections = 0;
};

}  // namespace havhost
