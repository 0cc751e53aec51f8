// PlainDisplay: display text the slow and plain way, by streams and exceptions, written from
// the rules and not from the plug-in. The plug-in has to show the same to the last character.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "havcore/havcore.h"

namespace havtest {

struct PlainEntry {
  std::uint64_t low;
  std::uint64_t high;
  std::string text;
};

struct PlainValueMap {
  std::vector<PlainEntry> entries;
  std::string defaultText;
};

// Adds one pattern with its text. `next` is where a range begins that does not say so.
void AddPlainPattern(PlainValueMap& map, std::uint64_t& next, const std::string& pattern,
                     const std::string& text);

bool BuildPlainValueMap(NORVHAV20::ICIMPropertyDecl& decl, PlainValueMap& map);
std::string LookupPlainValueMap(const NORVHAV20::TCIMValue& value, const PlainValueMap& map);

std::string PlainDisplayText(NORVHAV20::ICIMPropertyDecl& decl, const NORVHAV20::TCIMValue& value);
std::vector<std::string> PlainDisplayTexts(NORVHAV20::ICIMPropertyDecl& decl,
                                           const NORVHAV20::TCIMValue& value);

}  // namespace havtest
