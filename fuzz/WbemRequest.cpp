// Any bytes as what a client sends: first headers, a line each, then behind an empty line the
// body. Whatever they are, there is an answer, and it is a well-formed document when the
// request was one.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "support/RecordingLogger.h"
#include "support/Repository.h"
#include "wbem/TMessageHandler.h"

namespace {

using namespace havtest;
using hav::wbem::THttpRequest;

void Require(bool condition) {
  if (!condition) std::abort();
}

THttpRequest ReadRequest(std::string_view text) {
  THttpRequest request{"POST", {}, {}};
  for (auto end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
    const auto line = text.substr(0, end);
    text.remove_prefix(end + 1);
    if (line.empty()) break;
    const auto colon = line.find(": ");
    if (colon == std::string_view::npos)
      request.method = std::string(line);
    else
      request.headers.emplace_back(line.substr(0, colon), line.substr(colon + 2));
  }
  request.body = std::string(text);
  return request;
}

// A model of its own for each input, so that what one changes is not there for the next.
Repository MakeModel() {
  Repository repository;
  const auto disk = repository.Allocate("T_Disk");
  repository.Key(disk, "Name");
  repository.Property(disk, "Size", TCIMValue::Null(kCIMUInt64));
  repository.Property(disk, "Labels", TCIMValue::Null(ArrayOf(kCIMString)));
  disk->AddToNamespace({});
  const auto system = repository.Class("T_System");
  const auto contains = repository.Association("T_Contains", "Group", system, "Part", disk);
  const auto one = repository.Instance(disk, {{"Name", "one"}, {"Size", std::uint64_t{7}}});
  const auto box = repository.Instance(system, {{"Name", "box"}});
  repository.Link(contains, "Group", box, "Part", one);
  return repository;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const RecordingLogger logger;
  const auto request = ReadRequest({reinterpret_cast<const char*>(data), size});
  const auto model = MakeModel();
  hav::wbem::TRepository served;
  served.Add("root/cimv2", model.ns, true);
  auto reply = hav::wbem::TMessageHandler(served).Handle(request);
  auto text = reply.body;
  for (bool more = static_cast<bool>(reply.next); more; text += reply.body)
    more = reply.next(reply.body);
  Require(!text.empty());
  Require(reply.status == 200 || reply.status >= 400);
  if (reply.status == 200) Require(hav::wbem::TXmlElement::Parse(text, "UTF-8").Is("CIM"));
  return 0;
}
