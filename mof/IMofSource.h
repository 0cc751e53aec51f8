// IMofSource: where the texts of MOF files come from.
//
// Ownership: used during a load only.
#pragma once

#include <string>

namespace hav::mof {

class IMofSource {
 public:
  virtual ~IMofSource() = default;

  // Finds the file that `name` means where `includer` includes it (empty: where the user
  // names it), and puts into `identity` what tells it from every other file. False when
  // there is none.
  virtual bool Find(const std::string& name, const std::string& includer,
                    std::string& identity) = 0;
  // Reads the whole text. False, with the reason in `text`, when it cannot be read.
  virtual bool Read(const std::string& identity, std::string& text) = 0;
};

}  // namespace hav::mof
