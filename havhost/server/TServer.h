// TServer: CIM operations over HTTP, or HTTPS, and the web page, until the process is asked to
// end.
//
// Threads: Run is the thread of the network. What the server was given for the namespace is
//          called in one other thread while Run runs, and in none when it is back.
// Errors:  THostError: what is wrong with address, certificate or users; TUsageError for
//          settings that would let in who does not belong.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "havhost/server/TServerSettings.h"
#include "wbem/THttpMessage.h"

namespace havhost {

class TServer {
 public:
  struct TWork {
    std::function<hav::wbem::THttpReply(const hav::wbem::THttpRequest&)> handle;
    std::function<hav::wbem::THttpReply()> makePage;  // empty: there is no page
    std::function<void()> tidy;                       // every few seconds
  };

  // Begins to listen. Without users and TLS only on loopback addresses.
  TServer(const TServerSettings& settings, TWork work);
  ~TServer();
  TServer(const TServer&) = delete;
  TServer& operator=(const TServer&) = delete;

  // "http://127.0.0.1:5988", with the port that was taken.
  std::string GetUrl() const;

  // Serves until SIGTERM or SIGINT. Requests that are under way are not waited for.
  void Run();

 private:
  struct TNetwork;
  std::unique_ptr<TNetwork> m_network;
};

// "ADDRESS:PORT", "[ADDRESS]:PORT", or either alone. Throws TUsageError.
void ReadListen(const std::string& text, TServerSettings& settings);

}  // namespace havhost
