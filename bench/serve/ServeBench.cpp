// Measures the operations of a running `havhost serve`, from one client, one request after the
// other, and beside them what the same message costs in this process, without the wire.
//
//   hav_bench_serve --model          writes the model that the server has to have, as MOF
//   hav_bench_serve PORT SECONDS     measures each operation for so long, and writes a table
#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <iomanip>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include <boost/asio/connect.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/beast/core.hpp>
#include <boost/beast/http.hpp>

#include "mof/TMofLoader.h"
#include "support/Plugin.h"
#include "wbem/TMessageHandler.h"

namespace {

namespace asio = boost::asio;
namespace http = boost::beast::http;
using TClock = std::chrono::steady_clock;
using hav::wbem::THttpRequest;

constexpr int kInstances = 10'000;
constexpr int kLinks = 10;

struct TOperation {
  std::string name;
  std::string parameters;
  std::string note;
};

std::string Parameter(const std::string& name, const std::string& value) {
  return "<IPARAMVALUE NAME=\"" + name + "\">" + value + "</IPARAMVALUE>";
}
std::string ClassName(const std::string& name) {
  return Parameter("ClassName", "<CLASSNAME NAME=\"" + name + "\"/>");
}
std::string Item(const std::string& parameter) {
  return Parameter(parameter,
                   "<INSTANCENAME CLASSNAME=\"T_Item\"><KEYBINDING NAME=\"Name\"><KEYVALUE>item 77"
                   "</KEYVALUE></KEYBINDING></INSTANCENAME>");
}
std::string Text(const std::string& name, const std::string& text) {
  return Parameter(name, "<VALUE>" + text + "</VALUE>");
}

const std::vector<TOperation>& Operations() {
  static const std::vector<TOperation> operations{
      {"GetClass", ClassName("T_Item"), ""},
      {"EnumerateClasses", "", "3 classes"},
      {"EnumerateClassNames", "", "3 names"},
      {"GetInstance", Item("InstanceName"), ""},
      {"GetProperty", Item("InstanceName") + Text("PropertyName", "Number"), ""},
      {"SetProperty", Item("InstanceName") + Text("PropertyName", "Number") + Text("NewValue", "5"),
       ""},
      {"ModifyInstance",
       Parameter(
           "ModifiedInstance",
           "<VALUE.NAMEDINSTANCE><INSTANCENAME CLASSNAME=\"T_Item\"><KEYBINDING NAME=\"Name\">"
           "<KEYVALUE>item 77</KEYVALUE></KEYBINDING></INSTANCENAME><INSTANCE "
           "CLASSNAME=\"T_Item\"><PROPERTY NAME=\"Text\" TYPE=\"string\"><VALUE>new</VALUE>"
           "</PROPERTY></INSTANCE></VALUE.NAMEDINSTANCE>"),
       ""},
      {"AssociatorNames", Item("ObjectName"), "1 name"},
      {"Associators", Item("ObjectName"), "1 instance"},
      {"ReferenceNames", Item("ObjectName"), "1 name"},
      {"References", Item("ObjectName"), "1 instance"},
      {"GetQualifier", Text("QualifierName", "Key"), ""},
      {"EnumerateQualifiers", "", "2 declarations"},
      {"OpenEnumerateInstances", ClassName("T_Group") + Text("MaxObjectCount", "1000"),
       "1,000 instances"},
      {"EnumerateInstanceNames", ClassName("T_Item"), "10,000 names"},
      {"EnumerateInstances", ClassName("T_Item"), "10,000 instances"},
  };
  return operations;
}

std::string Model() {
  std::ostringstream mof;
  mof << "Qualifier Key : boolean = false, Scope(property, reference);\n"
         "Qualifier Association : boolean = false, Scope(association);\n"
         "class T_Item { [Key] string Name; uint32 Number; string Text; boolean Flag; };\n"
         "class T_Group { [Key] string Name; };\n"
         "[Association] class T_Holds { [Key] T_Group REF Group; [Key] T_Item REF Item; };\n";
  for (int i = 0; i < kInstances; ++i)
    mof << "instance of T_Item as $I" << i << " { Name = \"item " << i << "\"; Number = " << i
        << "; Text = \"the text of " << i << "\"; };\n";
  for (int i = 0; i < kInstances / kLinks; ++i) {
    mof << "instance of T_Group as $G" << i << " { Name = \"group " << i << "\"; };\n";
    for (int j = i * kLinks; j < (i + 1) * kLinks; ++j)
      mof << "instance of T_Holds { Group = $G" << i << "; Item = $I" << j << "; };\n";
  }
  return mof.str();
}

class TModelSource : public hav::mof::IMofSource {
 public:
  bool Find(const std::string& name, const std::string&, std::string& identity) override {
    identity = name;
    return true;
  }
  bool Read(const std::string&, std::string& text) override {
    text = Model();
    return true;
  }
};

http::request<http::string_body> MakeRequest(const TOperation& operation) {
  http::request<http::string_body> request(http::verb::post, "/cimom", 11);
  request.set(http::field::host, "127.0.0.1");
  request.set(http::field::content_type, "application/xml; charset=utf-8");
  request.set("CIMOperation", "MethodCall");
  request.set("CIMMethod", operation.name);
  request.set("CIMObject", "root%2Fcimv2");
  request.body() =
      "<?xml version=\"1.0\" encoding=\"utf-8\"?><CIM CIMVERSION=\"2.0\" "
      "DTDVERSION=\"2.0\"><MESSAGE "
      "ID=\"1\" PROTOCOLVERSION=\"1.0\"><SIMPLEREQ><IMETHODCALL NAME=\"" +
      operation.name +
      "\"><LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\"/><NAMESPACE "
      "NAME=\"cimv2\"/></LOCALNAMESPACEPATH>" +
      operation.parameters + "</IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>";
  request.prepare_payload();
  return request;
}

THttpRequest WithoutWire(const http::request<http::string_body>& request) {
  THttpRequest message{"POST", {}, request.body()};
  for (const auto& field : request)
    message.headers.emplace_back(std::string(field.name_string()), std::string(field.value()));
  return message;
}

void Check(const TOperation& operation, const std::string& answer) {
  if (answer.find("<IMETHODRESPONSE NAME=\"" + operation.name + "\">") != std::string::npos &&
      answer.find("<ERROR ") == std::string::npos && answer.find("</CIM>") != std::string::npos)
    return;
  std::cerr << operation.name << " is not answered: " << answer.substr(0, 500) << '\n';
  std::exit(1);
}

class TClient {
 public:
  explicit TClient(std::uint16_t port) : m_stream(m_context) {
    m_stream.connect({asio::ip::address_v4::loopback(), port});
    m_stream.socket().set_option(asio::ip::tcp::no_delay(true));
  }

  std::string Ask(const http::request<http::string_body>& request) {
    http::write(m_stream, request);
    http::response_parser<http::string_body> parser;
    parser.body_limit(std::uint64_t{1} << 30);
    http::read(m_stream, m_buffer, parser);
    return std::move(parser.get().body());
  }

 private:
  asio::io_context m_context;
  boost::beast::tcp_stream m_stream;
  boost::beast::flat_buffer m_buffer;
};

struct TMeasure {
  double median;  // microseconds
  double late;    // the 99th percentile, microseconds
  double perSecond;
};

TMeasure Measure(double seconds, const std::function<void()>& work) {
  for (int i = 0; i < 3; ++i) work();
  std::vector<double> times;
  const auto begin = TClock::now();
  const auto passed = [&] { return std::chrono::duration<double>(TClock::now() - begin).count(); };
  while (passed() < seconds || times.size() < 10) {
    const auto start = TClock::now();
    work();
    times.push_back(std::chrono::duration<double, std::micro>(TClock::now() - start).count());
  }
  const double perSecond = static_cast<double>(times.size()) / passed();
  std::sort(times.begin(), times.end());
  return {times[times.size() / 2], times[times.size() * 99 / 100], perSecond};
}

std::string Time(double microseconds) {
  std::ostringstream text;
  text << std::setprecision(3);
  if (microseconds >= 1e3)
    text << microseconds / 1e3 << " ms";
  else
    text << microseconds << " µs";
  return text.str();
}

void Report(std::uint16_t port, double seconds) {
  TModelSource source;
  hav::mof::TMofReport report;
  hav::wbem::TRepository repository;
  repository.Add("root/cimv2",
                 hav::mof::TMofLoader(*havtest::Provider(), source).Load({"model"}, report), true);
  const hav::wbem::TMessageHandler handler(repository);
  TClient client(port);
  std::cout
      << "| operation | answer | requests per second | median | 99th percentile | without the "
         "wire |\n|---|---|---|---|---|---|\n";
  for (const auto& operation : Operations()) {
    const auto request = MakeRequest(operation);
    Check(operation, client.Ask(request));
    const auto wire = Measure(seconds, [&] { client.Ask(request); });
    const auto message = WithoutWire(request);
    const auto bare = Measure(seconds / 4, [&] {
      auto reply = handler.Handle(message);
      for (bool more = static_cast<bool>(reply.next); more;) more = reply.next(reply.body);
    });
    std::cout << "| " << operation.name << " | " << operation.note << " | " << std::fixed
              << std::setprecision(wire.perSecond < 100 ? 1 : 0) << wire.perSecond
              << std::defaultfloat << " | " << Time(wire.median) << " | " << Time(wire.late)
              << " | " << Time(bare.median) << " |\n";
  }
}

}  // namespace

int main(int count, char** values) {
  if (count == 2 && std::string(values[1]) == "--model") {
    std::cout << Model();
    return 0;
  }
  if (count != 3) {
    std::cerr << "hav_bench_serve --model | PORT SECONDS\n";
    return 2;
  }
  Report(static_cast<std::uint16_t>(std::atoi(values[1])), std::atof(values[2]));
  return 0;
}
