// TRequest: one message of a client, read.
//
// Ownership: a value.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "wbem/TXmlElement.h"

namespace hav::wbem {

// What is wrong with a message before any operation is begun, as HTTP tells it: a status, the
// word for the header CIMError, and a sentence.
class TProtocolError : public std::runtime_error {
 public:
  TProtocolError(unsigned httpStatus, std::string cimError, const std::string& description)
      : std::runtime_error(description),
        m_httpStatus(httpStatus),
        m_cimError(std::move(cimError)) {}

  unsigned GetHttpStatus() const noexcept { return m_httpStatus; }
  // Empty when the header is not sent.
  const std::string& GetCimError() const noexcept { return m_cimError; }

 private:
  unsigned m_httpStatus;
  std::string m_cimError;
};

struct TRequest {
  // Reads the document; throws TProtocolError: 400 request-not-well-formed and
  // request-not-loosely-valid, 501 for versions and kinds of requests that are not served.
  static TRequest Read(std::string_view document, const std::string& encoding = {});

  std::string messageId;
  bool isMethodCall = false;  // of a method of a class; else of an operation of the server
  std::string name;           // of the operation or method
  std::string namespaceName;
  TXmlElement object;  // of a method call: LOCALCLASSPATH or LOCALINSTANCEPATH
  std::vector<TXmlElement> parameters;
};

}  // namespace hav::wbem
