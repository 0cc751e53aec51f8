#include "wbem/TMessageHandler.h"

#include <gtest/gtest.h>

#include "tests/wbem/Wbem.h"

namespace havtest {
namespace {

const std::string kGetCage = Call("GetClass", ClassParameter("Z_Cage"));

// Status, CIMError and sentence of a reply.
std::string Outcome(const THttpReply& reply) {
  std::string error;
  for (const auto& [name, value] : reply.headers)
    if (name == "CIMError") error = " " + value;
  return std::to_string(reply.status) + error + ": " + reply.body.substr(0, reply.body.find('\n'));
}

std::string Header(const THttpReply& reply, const std::string& wanted) {
  for (const auto& [name, value] : reply.headers)
    if (name == wanted) return value;
  return "none";
}

// The message as it should be, but for one header; an empty value takes the header away.
std::string With(const std::string& header, const std::string& value) {
  Zoo zoo;
  auto request = Post("GetClass", kGetCage);
  for (auto at = request.headers.begin(); at != request.headers.end();)
    at = at->first == header ? request.headers.erase(at) : at + 1;
  if (!value.empty()) request.headers.emplace_back(header, value);
  return Outcome(zoo.Handle(request));
}

constexpr char kAnswered[] = "200: <?xml version=\"1.0\" encoding=\"utf-8\"?>";

std::string Posted(const std::string& body) {
  Zoo zoo;
  return Outcome(zoo.Handle(Post("GetClass", body)));
}

TEST(TMessageHandler, AnswersAPost) {
  Zoo zoo;
  const auto reply = zoo.Handle(Post("GetClass", kGetCage));
  EXPECT_EQ(kAnswered, Outcome(reply));
  EXPECT_EQ("application/xml; charset=utf-8", Header(reply, "Content-Type"));
  EXPECT_EQ("MethodResponse", Header(reply, "CIMOperation"));
  EXPECT_EQ("none", Header(reply, "Man"));
}

TEST(TMessageHandler, AnswersAnExtendedPost) {
  Zoo zoo;
  THttpRequest request{"M-POST",
                       {{"Content-Type", "text/xml"},
                        {"Man", "http://www.dmtf.org/cim/mapping/http/v1.0 ; ns=73"},
                        {"73-CIMOperation", "MethodCall"},
                        {"73-CIMMethod", "GetClass"},
                        {"73-CIMObject", "root/zoo"}},
                       kGetCage};
  const auto reply = zoo.Handle(request);
  EXPECT_EQ(kAnswered, Outcome(reply));
  EXPECT_EQ("MethodResponse", Header(reply, "73-CIMOperation"));
  EXPECT_EQ("", Header(reply, "Ext"));
  EXPECT_EQ("http://www.dmtf.org/cim/mapping/http/v1.0; ns=73", Header(reply, "Man"));
  request.headers[1].second = "http://example.org/; ns=73";
  EXPECT_EQ("510: M-POST declares the extension http://www.dmtf.org/cim/mapping/http/v1.0",
            Outcome(zoo.Handle(request)));
}

TEST(TMessageHandler, HeadersAreChecked) {
  EXPECT_EQ("415: requests are application/xml or text/xml", With("Content-Type", ""));
  EXPECT_EQ("415: requests are application/xml or text/xml", With("Content-Type", "text/plain"));
  EXPECT_EQ("415: the encoding utf-16 is not served, utf-8 is",
            With("Content-Type", "application/xml; charset=utf-16"));
  EXPECT_EQ(kAnswered, With("Content-Type", "Text/XML"));
  EXPECT_EQ("415: the content encoding gzip is not served", With("Content-Encoding", "gzip"));
  EXPECT_EQ("406: answers are application/xml", With("Accept", "image/png"));
  EXPECT_EQ(kAnswered, With("Accept", "text/html, */*"));
  const std::string noCall =
      "400 unsupported-operation: the header CIMOperation says MethodCall, and nothing else is "
      "served";
  EXPECT_EQ(noCall, With("CIMOperation", ""));
  EXPECT_EQ(noCall, With("CIMOperation", "MethodResponse"));
  EXPECT_EQ("501 unsupported-protocol-version: protocol version 2.0 is not served",
            With("CIMProtocolVersion", "2.0"));
  EXPECT_EQ(kAnswered, With("CIMProtocolVersion", ""));
  EXPECT_EQ("501 multiple-requests-unsupported: a message with several requests is not served",
            With("CIMBatch", "1"));
}

TEST(TMessageHandler, HeadersAndMessageSayTheSame) {
  const std::string method = "400 header-mismatch: the header CIMMethod does not match the message";
  EXPECT_EQ(method, With("CIMMethod", ""));
  EXPECT_EQ(method, With("CIMMethod", "GetInstance"));
  EXPECT_EQ(kAnswered, With("CIMMethod", "%47etClass"));
  const std::string object = "400 header-mismatch: the header CIMObject does not match the message";
  EXPECT_EQ(object, With("CIMObject", ""));
  EXPECT_EQ(object, With("CIMObject", "root%2Fcimv2"));
}

TEST(TMessageHandler, DocumentsThatAreNoMessagesAreRefused) {
  EXPECT_EQ(0u, Posted("").rfind("400 request-not-well-formed: line ", 0));
  EXPECT_EQ(0u, Posted(kGetCage.substr(0, kGetCage.size() - 6))
                    .rfind("400 request-not-well-formed: line ", 0));
  EXPECT_EQ("400 request-not-loosely-valid: the document is a CIM, not a HTML", Posted("<HTML/>"));
  EXPECT_EQ("400 request-not-loosely-valid: CIM has no DTDVERSION",
            Posted("<CIM CIMVERSION=\"2.0\"/>"));
  EXPECT_EQ("400 request-not-loosely-valid: CIM holds one MESSAGE",
            Posted("<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"/>"));
  EXPECT_EQ("501 unsupported-cim-version: CIMVERSION 1.0 is not served",
            Posted("<CIM CIMVERSION=\"1.0\" DTDVERSION=\"2.0\"/>"));
  EXPECT_EQ("501 unsupported-dtd-version: DTDVERSION 3.0 is not served",
            Posted("<CIM CIMVERSION=\"2.0\" DTDVERSION=\"3.0\"/>"));
  EXPECT_EQ("501 unsupported-protocol-version: PROTOCOLVERSION 2.0 is not served",
            Posted("<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><MESSAGE ID=\"1\" "
                   "PROTOCOLVERSION=\"2.0\"/></CIM>"));
  EXPECT_EQ("501 multiple-requests-unsupported: a message with several requests is not served",
            Posted(Message("<MULTIREQ/>")));
  EXPECT_EQ("400 request-not-loosely-valid: MESSAGE holds a SIMPLEREQ, not a SIMPLEEXPREQ",
            Posted(Message("<SIMPLEEXPREQ/>")));
  EXPECT_EQ("400 request-not-loosely-valid: IMETHODCALL has no NAME",
            Posted(Message("<SIMPLEREQ><IMETHODCALL/></SIMPLEREQ>")));
  EXPECT_EQ("400 request-not-loosely-valid: the call has no LOCALNAMESPACEPATH",
            Posted(Message("<SIMPLEREQ><IMETHODCALL NAME=\"GetClass\"><IPARAMVALUE/>"
                           "</IMETHODCALL></SIMPLEREQ>")));
  EXPECT_EQ("400 request-not-loosely-valid: IMETHODCALL holds IPARAMVALUE, not VALUE",
            Posted(Call("GetClass", "<VALUE/>")));
}

TEST(TMessageHandler, NamespacesThatAreNotServedAreInvalid) {
  Zoo zoo;
  auto request = Post("GetClass", kGetCage);
  const std::string from = "NAME=\"zoo\"";
  request.body.replace(request.body.find(from), from.size(), "NAME=\"farm\"");
  request.headers.back().second = "root/farm";
  const auto text = Zoo::Text(zoo.Handle(request));
  EXPECT_NE(std::string::npos, text.find(Error(3, "there is no namespace 'root/farm'"))) << text;
}

TEST(TMessageHandler, MethodsAreDescribedAndNotRun) {
  Zoo zoo;
  const auto call = [&](const std::string& method, const std::string& object) {
    auto request = Post(method, Message("<SIMPLEREQ><METHODCALL NAME=\"" + method + "\">" + object +
                                        "</METHODCALL></SIMPLEREQ>"));
    request.headers.back().second = "root/zoo:Z_Bird.Name=%22Ada%22";
    return Zoo::Text(zoo.Handle(request));
  };
  const auto bird = "<LOCALINSTANCEPATH>" + std::string(kNamespacePath) + BirdName("Ada") +
                    "</LOCALINSTANCEPATH>";
  const auto cls = "<LOCALCLASSPATH>" + std::string(kNamespacePath) +
                   "<CLASSNAME NAME=\"Z_Bird\"/></LOCALCLASSPATH>";
  for (const auto& object : {bird, cls}) {
    const auto sung = call("Sing", object);
    EXPECT_NE(std::string::npos,
              sung.find("<METHODRESPONSE NAME=\"Sing\">" + Error(16, "no method is run here") +
                        "</METHODRESPONSE>"))
        << sung;
    const auto unknown = call("Dance", object);
    EXPECT_NE(std::string::npos, unknown.find(Error(17, "class Z_Bird has no method 'Dance'")))
        << unknown;
  }
}

TEST(TMessageHandler, TextOfTheRepositorysStatusIsGiven) {
  Zoo zoo;
  EXPECT_EQ(Error(1, NORVHAV20::THAVStatusCode(NORVHAV20::kHAVClassInUse).TranslateStatusCode()),
            Zoo(true,
                "class A { [Key] string N; };"
                "[Association] class L { [Key] A REF One; [Key] A REF Two; };")
                .Run("DeleteClass", ClassParameter("A")));
}

TEST(TMessageHandler, LongAnswersComeInPieces) {
  std::string mof = "class Z_Many { [Key] uint32 Number; string Text; };";
  for (int i = 0; i < 3000; ++i)
    mof += "instance of Z_Many { Number = " + std::to_string(i) + "; Text = \"some text\"; };";
  Zoo zoo(true, mof);
  auto reply =
      zoo.Handle(Post("EnumerateInstances", Call("EnumerateInstances", ClassParameter("Z_Many"))));
  ASSERT_TRUE(reply.next);
  std::size_t pieces = 1;
  std::size_t longest = reply.body.size();
  auto text = reply.body;
  for (bool more = true; more; ++pieces) {
    more = reply.next(reply.body);
    longest = std::max(longest, reply.body.size());
    text += reply.body;
  }
  EXPECT_GT(pieces, 5u);
  EXPECT_LT(longest, hav::wbem::TMessageHandler::kPieceSize + 2000);
  std::size_t count = 0;
  for (auto at = text.find("<VALUE.NAMEDINSTANCE>"); at != std::string::npos;
       at = text.find("<VALUE.NAMEDINSTANCE>", at + 1))
    ++count;
  EXPECT_EQ(3000u, count);
  EXPECT_EQ("</CIM>\n", text.substr(text.size() - 7));
}

TEST(Interop, TellsWhichNamespacesThereAre) {
  Zoo zoo;
  const auto interop =
      hav::wbem::MakeInterop(*Provider(), {"host1", "server", "1.2"}, {"root/zoo"});
  zoo.repository.Add("root/interop", interop, false);
  const auto run = [&](const std::string& operation, const std::string& parameters) {
    auto request = Post(operation, Call(operation, parameters));
    const std::string from = "NAME=\"zoo\"";
    request.body.replace(request.body.find(from), from.size(), "NAME=\"interop\"");
    request.headers.back().second = "root/interop";
    return Zoo::Text(zoo.Handle(request));
  };
  const auto names = run("EnumerateInstanceNames", ClassParameter("CIM_Namespace"));
  EXPECT_NE(std::string::npos, names.find(">root/zoo<")) << names;
  EXPECT_NE(std::string::npos, names.find(">root/interop<")) << names;
  const auto manager = run("EnumerateInstances", ClassParameter("CIM_ObjectManager"));
  EXPECT_NE(std::string::npos, manager.find("<PROPERTY NAME=\"Version\" TYPE=\"string\"><VALUE>1.2"
                                            "</VALUE>"))
      << manager;
  const auto links = run("EnumerateInstanceNames", ClassParameter("CIM_NamespaceInManager"));
  EXPECT_NE(std::string::npos, links.find(">root/zoo<")) << links;
}

}  // namespace
}  // namespace havtest
