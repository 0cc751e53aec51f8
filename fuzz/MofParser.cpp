// Any bytes as the text of a MOF file: they are parsed, and what they were found to be is
// within them. Instances that are read at once are the same as those read token by token.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "mof/TMofParser.h"

namespace {

using hav::mof::TMofFile;
using hav::mof::TMofInstance;
using hav::mof::TMofLexer;
using hav::mof::TMofParser;
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

bool Same(const TMofToken& a, const TMofToken& b) {
  return a.kind == b.kind && a.offset == b.offset && a.text == b.text;
}

bool Same(const hav::mof::TMofName& a, const hav::mof::TMofName& b) {
  return a.offset == b.offset && a.text == b.text;
}

void RequireSame(const TMofInstance& a, const TMofInstance& b) {
  Require(Same(a.className, b.className) && Same(a.alias, b.alias));
  Require(a.isDamaged == b.isDamaged && a.assignments.size() == b.assignments.size());
  for (std::size_t i = 0; i < a.assignments.size(); ++i) {
    const auto& one = a.assignments[i];
    const auto& other = b.assignments[i];
    Require(Same(one.name, other.name) && Same(one.value.scalar, other.value.scalar));
    Require(one.value.offset == other.value.offset && one.value.isArray == other.value.isArray);
    Require(one.value.elements.size() == other.value.elements.size());
    for (std::size_t j = 0; j < one.value.elements.size(); ++j)
      Require(Same(one.value.elements[j], other.value.elements[j]));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  TMofFile file("fuzz.mof", std::string(data, data + size));
  hav::mof::TMofReport report;
  TMofParser::Parse(file, report);
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
  TMofFile other("fuzz.mof", std::string(data, data + size));
  hav::mof::TMofReport otherReport;
  TMofParser::Parse(other, otherReport, TMofParser::EInstances::kByTokens);
  Require(report.ToString() == otherReport.ToString());
  Require(file.instances == other.instances && file.isDamaged == other.isDamaged);
  Require(file.classes.size() == other.classes.size());

  hav::mof::TMofReport deaf(0);
  TMofParser again(file, deaf);
  TMofParser byTokens(file, deaf, TMofParser::EInstances::kByTokens);
  TMofInstance instance;
  TMofInstance same;
  for (const auto place : file.instances) {
    Require(again.ReadInstance(place, instance) && byTokens.ReadInstance(place, same));
    RequireSame(instance, same);
    lost = lost || instance.isDamaged;
    for (const auto& assignment : instance.assignments) CheckValue(file, assignment.value);
  }
  Require(!lost || report.HasErrors());  // nothing is lost in silence
  return 0;
}
