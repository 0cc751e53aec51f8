// Connection: one client of the server, served until it leaves, asks for nothing any more, or
// takes too long.
//
// Ownership: a connection keeps itself while something is under way; it borrows the services.
// Threads:   that of the network.
#pragma once

#include <boost/asio/ip/tcp.hpp>

#include "havhost/server/TServices.h"

#if defined(HAVHOST_TLS)
#include <boost/asio/ssl/context.hpp>
#endif

namespace havhost {

void Serve(boost::asio::ip::tcp::socket socket, TServices& services);
#if defined(HAVHOST_TLS)
void ServeTls(boost::asio::ip::tcp::socket socket, boost::asio::ssl::context& context,
              TServices& services);
#endif
// Says that there are too many, without waiting for anything.
void TurnAway(boost::asio::ip::tcp::socket socket);

}  // namespace havhost
