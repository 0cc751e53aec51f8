// Mof: short ways to read MOF texts that stand in a test.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <boost/shared_ptr.hpp>

#include "havcore/havcore.h"
#include "mof/IMofSource.h"
#include "mof/TMofLoader.h"
#include "mof/TMofParser.h"
#include "mof/TMofReport.h"
#include "mof/TMofWriter.h"
#include "support/CompareNamespaces.h"
#include "support/Plugin.h"

namespace havtest {

using Lines = std::vector<std::string>;

// Files by name; every name means the same file wherever it is included.
class TextSource : public hav::mof::IMofSource {
 public:
  explicit TextSource(std::map<std::string, std::string> files) : m_files(std::move(files)) {}

  bool Find(const std::string& name, const std::string&, std::string& identity) override {
    identity = name;
    return m_files.count(name) != 0;
  }
  bool Read(const std::string& identity, std::string& text) override {
    text = m_files.at(identity);
    if (text != "unreadable") return true;
    text = "the file cannot be read";
    return false;
  }

 private:
  std::map<std::string, std::string> m_files;
};

inline Lines Messages(const hav::mof::TMofReport& report) {
  Lines lines;
  for (const auto& message : report.GetMessages()) lines.push_back(message.ToString());
  return lines;
}

// What parsing `text` as "a.mof" reports.
inline Lines ParseMessages(const std::string& text) {
  hav::mof::TMofFile file("a.mof", text);
  hav::mof::TMofReport report;
  hav::mof::TMofParser::Parse(file, report);
  return Messages(report);
}

struct Loaded {
  boost::shared_ptr<NORVHAV20::ICIMNamespace> ns;
  Lines messages;
  hav::mof::TMofReport report;
};

using Texts = std::map<std::string, std::string>;

inline Loaded LoadInPieces(const Texts& files, const Lines& names, hav::mof::TMofOffset pieceSize) {
  TextSource source(files);
  Loaded loaded;
  hav::mof::TMofLoader loader(*Provider(), source);
  loader.SetPieceSize(pieceSize);
  loaded.ns = loader.Load(names, loaded.report);
  loaded.messages = Messages(loaded.report);
  return loaded;
}

// Loads texts, and where they are small once more with every declaration a piece of its own: that
// makes no difference.
inline Loaded Load(const Texts& files, const Lines& names) {
  auto loaded = LoadInPieces(files, names, hav::mof::TMofText::kPieceSize);
  for (const auto& file : files)
    if (file.second.size() > 100000) return loaded;
  const auto pieces = LoadInPieces(files, names, 1);
  EXPECT_EQ(loaded.report.ToString(), pieces.report.ToString());
  if (loaded.ns && pieces.ns) {
    EXPECT_EQ(Lines{}, Differences(*loaded.ns, *pieces.ns));
  }
  return loaded;
}

// The usual qualifier declarations, on one line, so that a text behind them begins on the
// second.
inline const std::string kQualifiers =
    "Qualifier Key : boolean = false, Scope(property, reference), Flavor(DisableOverride);"
    "Qualifier Association : boolean = false, Scope(association), Flavor(DisableOverride);"
    "Qualifier Indication : boolean = false, Scope(class, indication), Flavor(DisableOverride);"
    "Qualifier Abstract : boolean = false, Scope(class, association), Flavor(Restricted);"
    "Qualifier Override : string, Scope(property, reference, method), Flavor(Restricted);"
    "Qualifier Description : string, Scope(any), Flavor(Translatable);"
    "Qualifier In : boolean = true, Scope(parameter), Flavor(DisableOverride);"
    "Qualifier MaxLen : uint32, Scope(property, method, parameter);"
    "Qualifier Values : string[], Scope(property, method, parameter);\n";

// Loads `text` as "a.mof", behind kQualifiers.
inline Loaded LoadText(const std::string& text) {
  return Load({{"a.mof", kQualifiers + text}}, {"a.mof"});
}

inline std::string Written(NORVHAV20::ICIMNamespace& ns) {
  std::string text;
  hav::mof::TMofWriter(text).WriteNamespace(ns);
  return text;
}

}  // namespace havtest
