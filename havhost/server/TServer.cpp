#include "havhost/server/TServer.h"

#include <chrono>
#include <csignal>
#include <optional>
#include <utility>

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/signal_set.hpp>
#include <boost/asio/steady_timer.hpp>

#include "havhost/THostError.h"
#include "havhost/server/Connection.h"

#if defined(HAVHOST_TLS)
#include "havhost/server/TUsers.h"
#endif

namespace havhost {

namespace asio = boost::asio;
using boost::system::error_code;
using TTcp = asio::ip::tcp;

namespace {

constexpr std::chrono::seconds kTidyEvery{5};
constexpr std::chrono::milliseconds kPause{100};  // when a connection cannot be accepted

asio::ip::address ReadAddress(const std::string& text) {
  error_code failure;
  const auto address =
      asio::ip::make_address(text == "localhost" ? std::string("127.0.0.1") : text, failure);
  if (failure)
    throw TUsageError("'" + text + "' is no address to listen on (an IPv4 or IPv6 address)");
  return address;
}

void RequireSafe(const TServerSettings& settings, const asio::ip::address& address) {
#if !defined(HAVHOST_TLS)
  if (!settings.usersFile.empty() || !settings.certificateFile.empty() || !address.is_loopback())
    throw TUsageError("this build has no TLS and no users: it serves on loopback addresses only");
#else
  if (settings.certificateFile.empty() && !settings.keyFile.empty())
    throw TUsageError("--key needs --certificate");
  if (address.is_loopback()) return;
  if (settings.usersFile.empty())
    throw TUsageError("listening on " + address.to_string() +
                      ", which is no loopback address, needs --users");
  if (settings.certificateFile.empty())
    throw TUsageError("listening on " + address.to_string() +
                      ", which is no loopback address, needs --certificate");
#endif
}

}  // namespace

struct TServer::TNetwork {
  TNetwork(const TServerSettings& settings, TWork work)
      : tidy(std::move(work.tidy)), address(ReadAddress(settings.address)) {
    RequireSafe(settings, address);
    services.settings = settings;
    services.isLoopback = address.is_loopback();
    services.handle = std::move(work.handle);
    services.makePage = std::move(work.makePage);
    Secure();
    Listen();
  }

  // First what still runs, then the connections, then what they share.
  ~TNetwork() { Join(); }

  void Join() {
    services.work.join();
    services.login.join();
  }

  void Secure() {
#if defined(HAVHOST_TLS)
    const auto& settings = services.settings;
    if (!settings.usersFile.empty()) {
      const auto users = std::make_shared<TUsers>(settings.usersFile);
      services.mayUse = [users](const std::string& user, const std::string& password) {
        return users->Knows(user, password);
      };
      services.isKnown = [users](const std::string& user, const std::string& password) {
        return users->Recognises(user, password);
      };
    }
    if (settings.certificateFile.empty()) return;
    tls.emplace(asio::ssl::context::tls_server);
    tls->set_options(asio::ssl::context::default_workarounds | asio::ssl::context::no_sslv2 |
                     asio::ssl::context::no_sslv3 | asio::ssl::context::no_tlsv1 |
                     asio::ssl::context::no_tlsv1_1);
    const auto& key = settings.keyFile.empty() ? settings.certificateFile : settings.keyFile;
    error_code failure;
    tls->use_certificate_chain_file(settings.certificateFile, failure);
    if (failure) FailFile("certificate", settings.certificateFile, failure);
    tls->use_private_key_file(key, asio::ssl::context::pem, failure);
    if (failure) FailFile("key", key, failure);
#endif
  }

  [[noreturn]] static void FailFile(const char* what, const std::string& file,
                                    const error_code& failure) {
    throw THostError("cannot use the " + std::string(what) + " in '" + file +
                     "': " + failure.message());
  }

  void Listen() {
    const TTcp::endpoint endpoint(address, services.settings.port);
    error_code failure;
    acceptor.open(endpoint.protocol(), failure);
#if !defined(_WIN32)  // there it would let a second server take the same port
    if (!failure) acceptor.set_option(TTcp::acceptor::reuse_address(true), failure);
#endif
    if (!failure) acceptor.bind(endpoint, failure);
    if (!failure) acceptor.listen(asio::socket_base::max_listen_connections, failure);
    if (failure)
      throw THostError("cannot listen on " + address.to_string() + ", port " +
                       std::to_string(services.settings.port) + ": " + failure.message());
  }

  void Accept() {
    acceptor.async_accept([this](error_code failure, TTcp::socket socket) {
      if (failure == asio::error::operation_aborted) return;
      if (failure) return Pause();  // no file descriptor is free, most likely
      socket.set_option(TTcp::no_delay(true), failure);
      if (services.connections >= services.settings.maximumConnections)
        TurnAway(std::move(socket));
#if defined(HAVHOST_TLS)
      else if (tls)
        ServeTls(std::move(socket), *tls, services);
#endif
      else
        Serve(std::move(socket), services);
      Accept();
    });
  }

  void Pause() {
    pause.expires_after(kPause);
    pause.async_wait([this](error_code failure) {
      if (!failure) Accept();
    });
  }

  void Tidy() {
    timer.expires_after(kTidyEvery);
    timer.async_wait([this](error_code failure) {
      if (failure) return;
      if (tidy) asio::post(services.work, tidy);
      Tidy();
    });
  }

  void Run() {
    asio::signal_set signals(context, SIGINT, SIGTERM);
    signals.async_wait([this](error_code failure, int) {
      if (!failure) context.stop();
    });
    Accept();
    Tidy();
    context.run();
    Join();
  }

  std::function<void()> tidy;
  asio::ip::address address;
  TServices services;
#if defined(HAVHOST_TLS)
  std::optional<asio::ssl::context> tls;
#endif
  asio::io_context context{1};
  TTcp::acceptor acceptor{context};
  asio::steady_timer timer{context};
  asio::steady_timer pause{context};
};

TServer::TServer(const TServerSettings& settings, TWork work)
    : m_network(std::make_unique<TNetwork>(settings, std::move(work))) {}

TServer::~TServer() = default;

std::string TServer::GetUrl() const {
#if defined(HAVHOST_TLS)
  const bool secure = m_network->tls.has_value();
#else
  const bool secure = false;
#endif
  const auto host = m_network->address.to_string();
  return (secure ? "https://" : "http://") +
         (m_network->address.is_v6() ? "[" + host + "]" : host) + ':' +
         std::to_string(m_network->acceptor.local_endpoint().port());
}

void TServer::Run() { m_network->Run(); }

void ReadListen(const std::string& text, TServerSettings& settings) {
  std::string address = text;
  std::string port;
  const bool isIpv6 = text.find(':') != text.rfind(':') && text.rfind('[', 0) != 0;
  const auto colon = text.rfind(':');
  const auto bracket = text.find(']');
  if (!isIpv6 && colon != std::string::npos && (bracket == std::string::npos || bracket < colon)) {
    address = text.substr(0, colon);
    port = text.substr(colon + 1);
  } else if (!text.empty() && text.find_first_not_of("0123456789") == std::string::npos) {
    address.clear();
    port = text;
  }
  if (address.size() > 2 && address.front() == '[' && address.back() == ']')
    address = address.substr(1, address.size() - 2);
  if (!address.empty()) settings.address = ReadAddress(address).to_string();
  if (port.empty() && (colon == std::string::npos || isIpv6 || bracket != std::string::npos))
    return;
  const bool digits = !port.empty() && port.size() <= 5 &&
                      port.find_first_not_of("0123456789") == std::string::npos;
  if (!digits || std::stoul(port) > 65535)
    throw TUsageError("'" + port + "' is no port (0 to 65535)");
  settings.port = static_cast<std::uint16_t>(std::stoul(port));
}

}  // namespace havhost
