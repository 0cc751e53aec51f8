// Two JSON documents, with a line of three dashes between them, as snapshots: each is read or
// refused with one clear error, and what is different between them can be shown.
#include <cstdint>
#include <optional>
#include <sstream>
#include <string>

#include "fuzz/Check.h"
#include "havcore/client/Utf8.h"
#include "havhost/THostError.h"
#include "havhost/report/TSnapshot.h"

namespace {

using namespace havhost;
using havfuzz::Require;
using havfuzz::RequireEqual;

std::optional<TSnapshot> Read(const std::string& text) {
  try {
    return TSnapshot::Parse(text, "today.json");
  } catch (const THostError& failure) {
    const std::string what = failure.what();
    RequireEqual(what.rfind("today.json: ", 0), std::size_t{0}, "where the error names the file");
    return {};
  }
}

void CheckShown(const TChanges& changes) {
  std::ostringstream text;
  PrintChanges(text, changes, TTextStyle());
  const auto shown = text.str();
  for (std::size_t at = 0; at < shown.size();) {
    const auto length = hav::client::Utf8Length(shown, at);
    Require(length != 0 && (static_cast<unsigned char>(shown[at]) >= 0x20 || shown[at] == '\n'),
            "the text is not for people");
    at += length;
  }
  std::ostringstream json;
  PrintJson(json, ToJson(changes));
  Require(TJson::accept(json.str()), "the document is no JSON");
}

std::size_t Number(const TChanges& changes, TInstanceChange::EKind kind) {
  std::size_t number = 0;
  for (const auto& change : changes)
    if (change.kind == kind) ++number;
  return number;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(data, data + size);
  const auto between = text.find("\n---\n");
  const auto before = Read(text.substr(0, between));
  const auto after = between == std::string::npos ? before : Read(text.substr(between + 5));
  if (!before || !after) return 0;
  Require(after->Since(*after).empty(), "a snapshot differs from itself");
  const auto changes = after->Since(*before), back = before->Since(*after);
  RequireEqual(Number(changes, TInstanceChange::kAppeared),
               Number(back, TInstanceChange::kDisappeared), "what appeared and disappeared");
  RequireEqual(Number(changes, TInstanceChange::kChanged), Number(back, TInstanceChange::kChanged),
               "what changed, and changed back");
  CheckShown(changes);
  CheckShown(back);
  return 0;
}
