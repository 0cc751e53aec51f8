// Any bytes as the text of a MOF file: they are parsed, and what they were found to be is
// within them.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "mof/TMofParser.h"

namespace {

using hav::mof::TMofFile;
using hav::mof::TMofLexer;
using hav::mof::TMofToken;

void Require(bool condition) {
  if (!condition) std::abort();
}

void CheckToken(const TMofFile& file, const TMofToken& token) {
  const auto text = file.text.GetText();
  Require(token.offset + token.text.size() <= text.size());
  Require(token.text.data() == text.data() + token.offset);
  if (token.kind == TMofToken::EKind::kString)
    Require(TMofLexer::StringValue(token.text).size() <= token.text.size());
  if (token.kind == TMofToken::EKind::kCharacter) TMofLexer::CharacterValue(token.text);
}

void CheckValue(const TMofFile& file, const hav::mof::TMofValue& value) {
  if (!value.isArray) CheckToken(file, value.scalar);
  for (const auto& element : value.elements) CheckToken(file, element);
}

void CheckQualifiers(const TMofFile& file, const hav::mof::TMofQualifiers& qualifiers) {
  for (const auto& qualifier : qualifiers)
    if (qualifier.value) CheckValue(file, *qualifier.value);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  TMofFile file("fuzz.mof", std::string(data, data + size));
  hav::mof::TMofReport report;
  hav::mof::TMofParser::Parse(file, report);
  Require(report.GetMessages().size() <= 2 * hav::mof::TMofReport::kDefaultLimit);
  bool lost = file.isDamaged;
  for (const auto& cls : file.classes) {
    lost = lost || cls.isDamaged;
    CheckQualifiers(file, cls.qualifiers);
    for (const auto& property : cls.properties) {
      CheckQualifiers(file, property.qualifiers);
      if (property.defaultValue) CheckValue(file, *property.defaultValue);
    }
  }
  hav::mof::TMofReport deaf(0);
  hav::mof::TMofParser again(file, deaf);
  hav::mof::TMofInstance instance;
  for (const auto place : file.instances) {
    Require(again.ReadInstance(place, instance));
    lost = lost || instance.isDamaged;
    for (const auto& assignment : instance.assignments) CheckValue(file, assignment.value);
  }
  Require(!lost || report.HasErrors());  // nothing is lost in silence
  return 0;
}
