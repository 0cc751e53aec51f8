// THttpMessage: HTTP requests and replies as far as CIM operations care, whatever carries them.
//
// Ownership: values; what a reply still has to write shares what it writes, and belongs to the
//            thread of the namespace.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace hav::wbem {

using THttpHeaders = std::vector<std::pair<std::string, std::string>>;

struct THttpRequest {
  // The value of a header (case folded), null when it is not there.
  const std::string* Find(std::string_view header) const;

  std::string method;
  THttpHeaders headers;
  std::string body;
};

struct THttpReply {
  unsigned status = 200;
  THttpHeaders headers;
  std::string body;  // all of it, or the beginning
  // Puts the next piece in place of `body`, and returns whether there is more behind it. Empty:
  // `body` is all there is.
  std::function<bool(std::string& body)> next;
};

}  // namespace hav::wbem
