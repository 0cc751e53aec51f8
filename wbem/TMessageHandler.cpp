#include "wbem/TMessageHandler.h"

#include <memory>
#include <utility>

#include "havcore/client/FoldedName.h"
#include "wbem/TCimError.h"

namespace hav::wbem {

using namespace client;
using namespace NORVHAV20;

namespace {

constexpr std::string_view kExtension = "http://www.dmtf.org/cim/mapping/http/v1.0";
constexpr char kContentType[] = "application/xml; charset=utf-8";

std::string_view Trim(std::string_view text) {
  const auto begin = text.find_first_not_of(" \t\"");
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(" \t\"") - begin + 1);
}

// Splits "value; name=parameter; ..." and calls for each part behind the value.
template <class F>
std::string_view SplitHeader(std::string_view header, F&& onParameter) {
  const auto value = Trim(header.substr(0, header.find(';')));
  for (auto at = header.find(';'); at != std::string_view::npos;) {
    const auto end = header.find(';', at + 1);
    const auto part = header.substr(at + 1, end == std::string_view::npos ? end : end - at - 1);
    const auto equals = part.find('=');
    if (equals != std::string_view::npos)
      onParameter(Trim(part.substr(0, equals)), Trim(part.substr(equals + 1)));
    at = end;
  }
  return value;
}

// The encoding that the transport names, empty when it names none.
std::string CheckContentType(const THttpRequest& request) {
  const auto* const header = request.Find("Content-Type");
  std::string encoding;
  const auto type = header ? SplitHeader(*header,
                                         [&](std::string_view name, std::string_view value) {
                                           if (SameName(name, "charset")) encoding = value;
                                         })
                           : std::string_view();
  if (!SameName(type, "application/xml") && !SameName(type, "text/xml"))
    throw TProtocolError(415, {}, "requests are application/xml or text/xml");
  if (!encoding.empty() && !SameName(encoding, "utf-8"))
    throw TProtocolError(415, {}, "the encoding " + encoding + " is not served, utf-8 is");
  const auto* const packed = request.Find("Content-Encoding");
  if (packed && !SameName(Trim(*packed), "identity"))
    throw TProtocolError(415, {}, "the content encoding " + *packed + " is not served");
  return encoding.empty() ? encoding : "UTF-8";
}

void CheckAccept(const THttpRequest& request) {
  const auto* const accept = request.Find("Accept");
  if (!accept) return;
  for (const auto* const type : {"*/*", "application/*", "application/xml", "text/*", "text/xml"})
    if (accept->find(type) != std::string::npos) return;
  throw TProtocolError(406, {}, "answers are application/xml");
}

// What stands before the names of the CIM headers of an M-POST: "73-".
std::string ExtensionPrefix(const THttpRequest& request) {
  if (request.method != "M-POST") return {};
  const auto* const man = request.Find("Man");
  std::string prefix;
  const auto extension = man ? SplitHeader(*man,
                                           [&](std::string_view name, std::string_view value) {
                                             if (SameName(name, "ns"))
                                               prefix = std::string(value) + '-';
                                           })
                             : std::string_view();
  if (extension != kExtension || prefix.empty())
    throw TProtocolError(510, {}, "M-POST declares the extension " + std::string(kExtension));
  return prefix;
}

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  const char folded = FoldCharacter(c);
  return folded >= 'a' && folded <= 'f' ? folded - 'a' + 10 : -1;
}

std::string Unescape(std::string_view text) {
  std::string plain;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const int high = at + 2 < text.size() ? HexDigit(text[at + 1]) : -1;
    const int low = high < 0 ? -1 : HexDigit(text[at + 2]);
    if (text[at] == '%' && low >= 0) {
      plain += static_cast<char>(high * 16 + low);
      at += 2;
    } else {
      plain += text[at];
    }
  }
  return plain;
}

void CheckCimHeaders(const THttpRequest& request, const std::string& prefix) {
  const auto* const operation = request.Find(prefix + "CIMOperation");
  if (!operation || !SameName(Trim(*operation), "MethodCall"))
    throw TProtocolError(400, "unsupported-operation",
                         "the header CIMOperation says MethodCall, and nothing else is served");
  const auto* const version = request.Find(prefix + "CIMProtocolVersion");
  if (version && Trim(*version).substr(0, 2) != "1.")
    throw TProtocolError(501, "unsupported-protocol-version",
                         "protocol version " + *version + " is not served");
  if (request.Find(prefix + "CIMBatch"))
    throw TProtocolError(501, "multiple-requests-unsupported",
                         "a message with several requests is not served");
}

void RequireMatch(bool matches, const char* header) {
  if (!matches)
    throw TProtocolError(400, "header-mismatch",
                         std::string("the header ") + header + " does not match the message");
}

// The headers say again what the message says.
void CheckMatch(const THttpRequest& http, const std::string& prefix, const TRequest& request) {
  const auto* const method = http.Find(prefix + "CIMMethod");
  RequireMatch(method && SameName(Unescape(Trim(*method)), request.name), "CIMMethod");
  const auto* const object = http.Find(prefix + "CIMObject");
  RequireMatch(object, "CIMObject");
  const auto name = Unescape(Trim(*object));
  const auto home = request.isMethodCall ? name.substr(0, name.find(':')) : name;
  RequireMatch(SameName(home, request.namespaceName), "CIMObject");
}

std::string HostOf(const THttpRequest& request) {
  constexpr std::size_t kLongestName = 255;
  const auto* const host = request.Find("Host");
  return host && !host->empty() && host->size() <= kLongestName ? *host : "localhost";
}

// Writes an answer in pieces.
class TAnswerText {
 public:
  TAnswerText(const TRequest& request, TPlace place) : m_place(std::move(place)) {
    m_isMethodCall = request.isMethodCall;
    TXmlWriter xml(m_text);
    m_text = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n";
    xml.Open("CIM", {{"CIMVERSION", "2.0"}, {"DTDVERSION", "2.0"}});
    xml.Open("MESSAGE", {{"ID", request.messageId}, {"PROTOCOLVERSION", "1.0"}});
    xml.Open("SIMPLERSP");
    xml.Open(Response(), {{"NAME", request.name}});
  }

  void Fail(const TCimError& failure) {
    const auto code = std::to_string(static_cast<unsigned>(failure.GetStatus()));
    TXmlWriter xml(m_text);
    xml.Empty("ERROR", {{"CODE", code}, {"DESCRIPTION", failure.what()}});
    Finish();
  }

  void Begin(TAnswer answer) {
    m_answer = std::move(answer);
    m_at = m_answer.begin;
    if (m_answer.hasReturnValue) TXmlWriter(m_text).Open("IRETURNVALUE");
  }

  // Appends elements until the text is a piece long or complete; returns whether there is more.
  bool Continue() {
    TElementWriter writer(m_text, m_place);
    for (; m_at != m_answer.end; ++m_at) {
      if (m_text.size() >= TMessageHandler::kPieceSize) return true;
      WriteOne(writer);
    }
    TXmlWriter xml(m_text);
    if (m_answer.hasReturnValue) xml.Close("IRETURNVALUE");
    for (const auto& output : m_answer.outputs) {
      xml.Open("PARAMVALUE", {{"NAME", output.name}, {"PARAMTYPE", output.type}});
      xml.Leaf("VALUE", output.text);
      xml.Close("PARAMVALUE");
    }
    Finish();
    return false;
  }

  std::string Take() { return std::exchange(m_text, {}); }

 private:
  const char* Response() const { return m_isMethodCall ? "METHODRESPONSE" : "IMETHODRESPONSE"; }

  // What has gone since the list was made is left out.
  void WriteOne(TElementWriter& writer) {
    const auto before = m_text.size();
    try {
      m_answer.list.write(m_at, writer);
    } catch (const THAVException&) {
      m_text.resize(before);
    }
  }

  void Finish() {
    TXmlWriter xml(m_text);
    xml.Close(Response());
    xml.Close("SIMPLERSP");
    xml.Close("MESSAGE");
    xml.Close("CIM");
    m_text += '\n';
  }

  bool m_isMethodCall;
  TPlace m_place;
  TAnswer m_answer;
  std::size_t m_at = 0;
  std::string m_text;
};

THttpReply Refusal(const TProtocolError& failure) {
  THttpReply reply;
  reply.status = failure.GetHttpStatus();
  reply.headers = {{"Content-Type", "text/plain; charset=utf-8"}};
  if (!failure.GetCimError().empty()) reply.headers.emplace_back("CIMError", failure.GetCimError());
  reply.body = std::string(failure.what()) + '\n';
  return reply;
}

}  // namespace

const std::string* THttpRequest::Find(std::string_view header) const {
  for (const auto& [name, value] : headers)
    if (SameName(name, header)) return &value;
  return nullptr;
}

THttpReply TMessageHandler::Handle(const THttpRequest& request) const {
  try {
    const auto prefix = ExtensionPrefix(request);
    auto reply = Answer(request, prefix);
    reply.headers = {{"Content-Type", kContentType}, {"Cache-Control", "no-cache"}};
    if (!prefix.empty()) {
      reply.headers.emplace_back("Ext", "");
      reply.headers.emplace_back(
          "Man", std::string(kExtension) + "; ns=" + prefix.substr(0, prefix.size() - 1));
    }
    reply.headers.emplace_back(prefix + "CIMOperation", "MethodResponse");
    return reply;
  } catch (const TProtocolError& failure) {
    return Refusal(failure);
  }
}

THttpReply TMessageHandler::Answer(const THttpRequest& http, const std::string& prefix) const {
  const auto encoding = CheckContentType(http);
  CheckAccept(http);
  CheckCimHeaders(http, prefix);
  auto request = TRequest::Read(http.body, encoding);
  CheckMatch(http, prefix, request);
  const auto text =
      std::make_shared<TAnswerText>(request, TPlace{HostOf(http), request.namespaceName});
  THttpReply reply;
  try {
    text->Begin(m_repository.Execute(std::move(request)));
    if (text->Continue())
      reply.next = [text](std::string& body) {
        const bool more = text->Continue();
        body = text->Take();
        return more;
      };
  } catch (const TCimError& failure) {
    text->Fail(failure);
  }
  reply.body = text->Take();
  return reply;
}

}  // namespace hav::wbem
