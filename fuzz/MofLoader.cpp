// Any bytes as a MOF file behind the usual qualifier declarations: loaded into a namespace,
// and when that succeeds, written and loaded again: both namespaces hold the same. So do they, and
// so do the reports say, where every declaration is a piece of its own.
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string>

#include "mof/IMofSource.h"
#include "mof/TMofLoader.h"
#include "mof/TMofWriter.h"
#include "support/CompareNamespaces.h"
#include "support/Plugin.h"
#include "support/RecordingLogger.h"

namespace {

using namespace NORVHAV20;

constexpr const char* kQualifiers =
    "Qualifier Key : boolean = false, Scope(property, reference), Flavor(DisableOverride);"
    "Qualifier Association : boolean = false, Scope(association), Flavor(DisableOverride);"
    "Qualifier Abstract : boolean = false, Scope(class, association), Flavor(Restricted);"
    "Qualifier Override : string, Scope(property, reference, method), Flavor(Restricted);"
    "Qualifier Description : string, Scope(any), Flavor(Translatable);"
    "Qualifier EmbeddedInstance : string, Scope(property);"
    "Qualifier EmbeddedObject : boolean = false, Scope(property);"
    "Qualifier Values : string[], Scope(property, method, parameter);\n";

// One text; whatever is included is not there.
class OneText : public hav::mof::IMofSource {
 public:
  explicit OneText(const std::string& text) : m_text(text) {}
  bool Find(const std::string& name, const std::string&, std::string& identity) override {
    identity = name;
    return name == "fuzz.mof";
  }
  bool Read(const std::string&, std::string& text) override {
    text = m_text;
    return true;
  }

 private:
  const std::string& m_text;
};

boost::shared_ptr<ICIMNamespace> Load(
    const std::string& text, hav::mof::TMofReport& report,
    hav::mof::TMofOffset pieceSize = hav::mof::TMofText::kPieceSize) {
  OneText source(text);
  hav::mof::TMofLoader loader(*havtest::Provider(), source);
  loader.SetPieceSize(pieceSize);
  return loader.Load({"fuzz.mof"}, report);
}

void RequireSame(ICIMNamespace& first, ICIMNamespace& second, const std::string& text) {
  const auto differences = havtest::Differences(first, second);
  for (const auto& difference : differences) std::cerr << difference << '\n';
  if (differences.empty()) return;
  std::cerr << text;
  std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const havtest::RecordingLogger logger;
  hav::mof::TMofReport report;
  const std::string text(data, data + size);
  // A byte-order mark stands at the beginning or nowhere.
  const bool isMarked = size >= 2 && (text[0] == '\xFF' || text[0] == '\xFE');
  const auto read = isMarked ? text : kQualifiers + text;
  const auto first = Load(read, report);
  if (static_cast<bool>(first) == report.HasErrors()) std::abort();

  hav::mof::TMofReport inPieces;
  const auto same = Load(read, inPieces, 1);
  if (report.ToString() != inPieces.ToString()) {
    std::cerr << report.ToString() << "and in pieces\n" << inPieces.ToString();
    std::abort();
  }
  if (!first) return 0;
  RequireSame(*first, *same, read);

  std::string written;
  hav::mof::TMofWriter(written).WriteNamespace(*first);
  hav::mof::TMofReport second;
  const auto again = Load(written, second);
  if (!again) {
    std::cerr << second.ToString() << written;
    std::abort();
  }
  RequireSame(*first, *again, written);
  return 0;
}
