// havhost serve: the namespace for CIM clients, over HTTP.
#include <memory>

#include <boost/asio/ip/host_name.hpp>

#include "havcore/client/FoldedName.h"
#include "havhost/CommandLine.h"
#include "havhost/report/HtmlReport.h"
#include "havhost/server/TServer.h"
#include "wbem/Interop.h"
#include "wbem/TMessageHandler.h"

namespace havhost {

using namespace NORVHAV20;
using namespace hav::wbem;

namespace {

std::string SystemName() {
  boost::system::error_code unknown;
  const auto name = boost::asio::ip::host_name(unknown);
  return unknown ? "localhost" : name;
}

bool IsInterop(const std::string& name) {
  for (const auto* const interop : kInteropNames)
    if (hav::client::SameName(name, interop)) return true;
  return false;
}

// A namespace of that name takes the place of the one for interoperation.
void AddInterop(TRepository& repository, const ICIMNamespace& target, const std::string& name) {
  if (IsInterop(name)) return;
  const auto interop = MakeInterop(*target.GetNamespaceProvider({}),
                                   {SystemName(), "havhost", HAVHOST_VERSION}, {name});
  for (const auto* const alias : kInteropNames) repository.Add(alias, interop, false);
}

// What the namespace holds at this moment, as a page for browsers.
THttpReply MakePage(ICIMNamespace& target, const std::string& name) {
  THttpReply reply;
  reply.headers = {{"Content-Type", "text/html; charset=utf-8"},
                   {"Content-Security-Policy", std::string(HtmlReportPolicy())},
                   {"X-Frame-Options", "DENY"},
                   {"Referrer-Policy", "no-referrer"},
                   {"Cache-Control", "no-store"}};
  reply.body = HtmlReport(target, name);
  return reply;
}

void ServeNamespace(const boost::shared_ptr<ICIMNamespace>& target, const TSettings& settings,
                    const TServerSettings& server, std::ostream& out) {
  TRepository repository;
  repository.Add(settings.namespaceName, target, server.writable);
  AddInterop(repository, *target, settings.namespaceName);
  const TMessageHandler handler(repository);
  TServer serving(server, {[&](const THttpRequest& request) { return handler.Handle(request); },
                           [&] { return MakePage(*target, settings.namespaceName); },
                           [&] { repository.Expire(); }});
  out << "Serving " << settings.namespaceName << " at " << serving.GetUrl() << std::endl;
  serving.Run();
}

}  // namespace

void AddServeCommand(CLI::App& program, TCommandLine& line) {
  const auto server = std::make_shared<TServerSettings>();
  const auto listen = std::make_shared<std::string>();
  auto& command = AddCommand(
      program, line,
      {"serve", "Serve the namespace to CIM clients, over HTTP", "havhost serve --mof model.mof"},
      [server, listen](const boost::shared_ptr<ICIMNamespace>& target, const TSettings& settings,
                       std::ostream& out) {
        if (!listen->empty()) ReadListen(*listen, *server);
        ServeNamespace(target, settings, *server, out);
      });
  command
      .add_option("--listen", *listen,
                  "Where to listen (else 127.0.0.1:5988); port 0 takes any that is free. What is "
                  "no loopback address needs --users and --certificate")
      ->type_name("ADDRESS:PORT");
  command
      .add_option("--users", server->usersFile,
                  "File of those who may use the server (havhost passwd writes it)")
      ->type_name("FILE");
  command
      .add_option("--certificate", server->certificateFile,
                  "Certificate chain for HTTPS, in PEM format")
      ->type_name("FILE");
  command
      .add_option("--key", server->keyFile,
                  "Private key, in PEM format (else it stands in the certificate file)")
      ->type_name("FILE");
  command.add_flag("--writable", server->writable, "Let clients change the namespace");
  command
      .add_option_function<int>(
          "--timeout", [server](int seconds) { server->timeout = std::chrono::seconds(seconds); },
          "How long a client may take to send a request, or to take a piece of an answer (else 30)")
      ->type_name("SECONDS")
      ->check(CLI::Range(1, 3600).description(""));
  command
      .add_option("--connections", server->maximumConnections,
                  "How many clients are served at a time (else 128)")
      ->type_name("NUMBER")
      ->check(CLI::Range(1, 10000).description(""));
  AddSourceOptions(command, line.settings);
}

}  // namespace havhost
