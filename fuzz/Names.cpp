// Two texts, a line each, as names: what is valid, how they fold and compare, and what of them is
// UTF-8, against the rules taken letter by letter.
#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz/Check.h"
#include "fuzz/TInput.h"
#include "havcore/THAVException.h"
#include "havcore/client/FoldedName.h"
#include "havcore/client/Utf8.h"
#include "inmem/values/CimName.h"
#include "inventory/Text.h"
#include "support/RecordingLogger.h"

namespace {

using namespace NORVHAV20;
using havfuzz::Require;
using havfuzz::RequireEqual;

constexpr std::string_view kLower = "abcdefghijklmnopqrstuvwxyz";
constexpr std::string_view kUpper = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";

std::string Folded(std::string_view text) {
  std::string folded(text);
  for (char& c : folded)
    if (const auto at = kUpper.find(c); at != std::string_view::npos) c = kLower[at];
  return folded;
}

bool IsName(std::string_view text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    const bool isLetter = c == '_' || kLower.find(c) != std::string_view::npos ||
                          kUpper.find(c) != std::string_view::npos;
    const bool isDigit = std::string_view("0123456789").find(c) != std::string_view::npos;
    if (!isLetter && (i == 0 || !isDigit)) return false;
  }
  return true;
}

// Every function that checks a name says the same of it.
void CheckName(const std::string& text) {
  havtest::RecordingLogger log;
  const bool expected = IsName(text);
  RequireEqual(IsCimName(text), expected, "whether it is a name", text);
  const havtest::LogLines refused = {
      {ILogger::kError, "Inmem: CIM name '" + text + "' is invalid"}};
  try {
    const CimName name(text);
    Require(expected, "a text that is no name is taken for one");
    RequireEqual(name.Folded(), Folded(text), "the folded name", text);
    RequireEqual(NormalizeCimName(text), Folded(text), "the normalised name", text);
    Require(log.lines.empty(), "a valid name is logged");
  } catch (const THAVException& failure) {
    Require(!expected, "a name is refused");
    RequireEqual(static_cast<int>(failure.GetStatusCode()), 25, "status", text);
    Require(log.Take() == refused, "the line is another");
  }
}

void CheckPair(const std::string& a, const std::string& b) {
  const bool same = Folded(a) == Folded(b);
  RequireEqual(hav::client::SameName(a, b), same, "sameness on the host's side", a + '|' + b);
  const hav::client::TFoldedHash hash;
  Require(!same || hash(a) == hash(b), "the hashes of one name differ");
  RequireEqual(hash(a), hash(Folded(a)), "the hash of the folded name", a);
}

// The code point of the character at the front of `text`, and its length; 0 for none.
std::size_t Decode(std::string_view text, char32_t& codePoint) {
  for (std::size_t length = 1; length <= 4 && length <= text.size(); ++length) {
    char32_t bits = 0;
    bool isTail = true;
    for (std::size_t i = 1; i < length; ++i) {
      const auto byte = static_cast<unsigned char>(text[i]);
      isTail = isTail && byte / 64 == 2;
      bits = bits * 64 + byte % 64;
    }
    constexpr unsigned kLead[] = {0, 0xC0, 0xE0, 0xF0};
    constexpr unsigned kLeads[] = {128, 32, 16, 8};
    constexpr char32_t kFirst[] = {0, 0x80, 0x800, 0x10000};
    const unsigned lead = static_cast<unsigned char>(text[0]);
    if (!isTail || lead < kLead[length - 1] || lead >= kLead[length - 1] + kLeads[length - 1])
      continue;
    codePoint = lead - kLead[length - 1];
    for (std::size_t i = 1; i < length; ++i) codePoint *= 64;
    codePoint += bits;
    const bool isSurrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
    return codePoint >= kFirst[length - 1] && codePoint <= 0x10FFFF && !isSurrogate ? length : 0;
  }
  return 0;
}

void CheckUtf8(const std::string& text) {
  bool isReadable = true;
  for (std::size_t at = 0; at < text.size();) {
    char32_t codePoint = 0;
    const auto rest = std::string_view(text).substr(at);
    const auto length = Decode(rest, codePoint);
    RequireEqual(hav::client::Utf8Length(text, at), length, "length of a character", text);
    isReadable = isReadable && length != 0 && codePoint >= 0x20 && codePoint != 0x7F;
    if (length != 0) {
      const auto character = rest.substr(0, length);
      RequireEqual(static_cast<unsigned>(hav::client::Utf8Value(character)),
                   static_cast<unsigned>(codePoint), "code point", text);
      std::string again;
      hav::client::AppendUtf8(again, codePoint);
      RequireEqual(again, character, "the character written again", text);
    }
    at += length == 0 ? 1 : length;
  }
  RequireEqual(hav::client::Utf8Length(text, text.size()), std::size_t{0}, "length at the end");
  RequireEqual(hav::inventory::IsReadable(text), isReadable, "whether it is readable", text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  havfuzz::TInput input(data, size);
  const std::string a(input.Until('\n')), b(input.Rest());
  CheckName(a);
  CheckPair(a, b);
  CheckUtf8(b);
  return 0;
}
