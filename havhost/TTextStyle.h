// TTextStyle: how text for people may look where it goes.
//
// Ownership: a value.
#pragma once

#include <cstddef>
#include <string>

namespace havhost {

struct TTextStyle {
  enum EInk { kPlain, kStrong, kName, kFaint, kOld, kNew, kChanged };

  bool isShown = false;  // on a terminal
  bool colour = false;
  bool boxes = true;      // trees are drawn with box characters, else with ASCII
  std::size_t width = 0;  // of a line, in columns; 0: lines are as long as they are

  // The text in that ink, where there is colour. It must be printable.
  std::string Ink(EInk ink, const std::string& text) const {
    constexpr const char* kCodes[] = {"",         "\x1b[1m",  "\x1b[36m", "\x1b[2m",
                                      "\x1b[31m", "\x1b[32m", "\x1b[33m"};
    if (!colour || ink == kPlain || text.empty()) return text;
    return kCodes[ink] + text + "\x1b[0m";
  }
};

}  // namespace havhost
