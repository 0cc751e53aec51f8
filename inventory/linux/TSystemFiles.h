// TSystemFiles: the files of one machine, read for one collector. Paths are those of the
// machine itself ("/proc/meminfo"), wherever its root folder is.
//
// What is not there is no failure: a kernel leaves out what a device does not have, and a
// driver without an answer refuses to be read. What is there and cannot be read, or does not
// hold what it should, is added to the collection's failures. Either way the answer is empty.
//
// Ownership: refers to the collection, which must outlive it.
// Threads:   one thread at a time.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "inventory/TCollection.h"
#include "inventory/TMachine.h"
#include "inventory/Text.h"

namespace hav::inventory {

class TSystemFiles {
 public:
  TSystemFiles(const TMachine& machine, TCollection& collection);

  bool Exists(const std::string& path) const;
  // As Exists; adds a failure when it is not there.
  bool Require(const std::string& path);

  // The whole file, of at most 4 MiB.
  std::optional<std::string> Text(const std::string& path);
  // The text of a file of one line, trimmed; empty when the line is blank.
  std::optional<std::string> Line(const std::string& path);
  // The line as a number that fits T. A negative number for an unsigned T is how drivers say
  // that they do not know: empty, and no failure.
  template <class T>
  std::optional<T> Number(const std::string& path, int base = 10) {
    const auto line = Line(path);
    if (!line || line->front() == '-') return std::nullopt;
    const auto number = ParseNumber<T>(*line, base);
    if (!number) Fail(path, "\"" + *line + "\" is no number that fits");
    return number;
  }
  // 0 or 1.
  std::optional<bool> Flag(const std::string& path);

  // The names in a folder, sorted.
  std::vector<std::string> Folder(const std::string& path);
  // What a symbolic link says.
  std::optional<std::string> LinkTarget(const std::string& path) const;
  // The last part of what it says.
  std::optional<std::string> LinkName(const std::string& path) const;

  // `text` when people can read it, with a failure for `path` when not.
  std::optional<std::string> Readable(const std::string& path, std::string_view text);
  void Fail(const std::string& path, const std::string& reason);

 private:
  std::string Full(const std::string& path) const { return m_root + path; }

  std::string m_root;  // without a slash at its end
  TCollection& m_collection;
};

}  // namespace hav::inventory
