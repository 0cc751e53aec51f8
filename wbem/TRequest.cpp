#include "wbem/TRequest.h"

#include <utility>

#include "wbem/ElementReader.h"
#include "wbem/TCimError.h"

namespace hav::wbem {
namespace {

[[noreturn]] void NotValid(const std::string& what) {
  throw TProtocolError(400, "request-not-loosely-valid", what);
}

TXmlElement& Only(TXmlElement& element, std::string_view name) {
  if (element.children.size() != 1 || !element.children[0].Is(name))
    NotValid(element.name + " holds one " + std::string(name));
  return element.children[0];
}

// Versions are served by their major number.
void RequireVersion(const TXmlElement& element, std::string_view attribute, std::string_view major,
                    const char* cimError) {
  const auto* const version = element.Find(attribute);
  if (!version) NotValid(element.name + " has no " + std::string(attribute));
  if (version->compare(0, major.size(), major) != 0)
    throw TProtocolError(501, cimError, std::string(attribute) + " " + *version + " is not served");
}

TXmlElement ParseDocument(std::string_view document, const std::string& encoding) {
  try {
    return TXmlElement::Parse(document, encoding);
  } catch (const TXmlError& failure) {
    throw TProtocolError(400, "request-not-well-formed", failure.what());
  }
}

TXmlElement& FindMessage(TXmlElement& root) {
  if (!root.Is("CIM")) NotValid("the document is a CIM, not a " + root.name);
  RequireVersion(root, "CIMVERSION", "2.", "unsupported-cim-version");
  RequireVersion(root, "DTDVERSION", "2.", "unsupported-dtd-version");
  auto& message = Only(root, "MESSAGE");
  RequireVersion(message, "PROTOCOLVERSION", "1.", "unsupported-protocol-version");
  if (!message.Find("ID")) NotValid("MESSAGE has no ID");
  return message;
}

TXmlElement& FindCall(TXmlElement& message) {
  if (message.children.size() != 1) NotValid("MESSAGE holds one request");
  auto& request = message.children[0];
  if (request.Is("MULTIREQ"))
    throw TProtocolError(501, "multiple-requests-unsupported",
                         "a message with several requests is not served");
  if (!request.Is("SIMPLEREQ")) NotValid("MESSAGE holds a SIMPLEREQ, not a " + request.name);
  if (request.children.size() != 1) NotValid("SIMPLEREQ holds one call");
  auto& call = request.children[0];
  if (!call.Is("IMETHODCALL") && !call.Is("METHODCALL"))
    NotValid("SIMPLEREQ holds an IMETHODCALL or a METHODCALL, not a " + call.name);
  if (!call.Find("NAME")) NotValid(call.name + " has no NAME");
  return call;
}

void ReadTarget(TXmlElement& target, TRequest& request) {
  const TXmlElement* home = &target;
  if (request.isMethodCall) {
    if (!target.Is("LOCALCLASSPATH") && !target.Is("LOCALINSTANCEPATH"))
      NotValid("METHODCALL begins with a LOCALCLASSPATH or LOCALINSTANCEPATH");
    home = target.Child("LOCALNAMESPACEPATH");
  }
  if (!home || !home->Is("LOCALNAMESPACEPATH")) NotValid("the call has no LOCALNAMESPACEPATH");
  request.namespaceName = ReadNamespaceName(*home);
  request.object = std::move(target);
}

}  // namespace

TRequest TRequest::Read(std::string_view document, const std::string& encoding) {
  auto root = ParseDocument(document, encoding);
  auto& message = FindMessage(root);
  auto& call = FindCall(message);
  TRequest request;
  request.messageId = message.Get("ID");
  request.isMethodCall = call.Is("METHODCALL");
  request.name = call.Get("NAME");
  if (call.children.empty()) NotValid(call.name + " names no namespace");
  try {
    ReadTarget(call.children[0], request);
  } catch (const TCimError& failure) {
    NotValid(failure.what());
  }
  const auto* const expected = request.isMethodCall ? "PARAMVALUE" : "IPARAMVALUE";
  for (auto at = call.children.begin() + 1; at != call.children.end(); ++at) {
    if (!at->Is(expected)) NotValid(call.name + " holds " + expected + ", not " + at->name);
    if (!at->Find("NAME")) NotValid(at->name + " has no NAME");
    request.parameters.push_back(std::move(*at));
  }
  return request;
}

}  // namespace hav::wbem
