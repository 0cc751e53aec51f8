// THelpText: how the help of the program and of each command reads.
#pragma once

#include <string>

#include <CLI/CLI.hpp>

#include "havhost/TTextStyle.h"

namespace havhost {

class THelpText : public CLI::FormatterBase {
 public:
  explicit THelpText(const TTextStyle& style = {}) : m_style(style) {}

  std::string make_help(const CLI::App* app, std::string name,
                        CLI::AppFormatMode mode) const override;

 private:
  TTextStyle m_style;
};

}  // namespace havhost
