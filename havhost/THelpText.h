// THelpText: how the help of the program and of each command reads.
#pragma once

#include <string>

#include <CLI/CLI.hpp>

namespace havhost {

class THelpText : public CLI::FormatterBase {
 public:
  std::string make_help(const CLI::App* app, std::string name,
                        CLI::AppFormatMode mode) const override;
};

}  // namespace havhost
