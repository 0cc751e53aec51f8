#include "mof/TMofLoader.h"

#include <set>
#include <stdexcept>

#include <gtest/gtest.h>

#include "support/RecordingLogger.h"
#include "tests/mof/Mof.h"

namespace havtest {
namespace {

using hav::mof::TMofLoader;
using hav::mof::TMofReport;
using namespace NORVHAV20;

// A provider that remembers what it was asked for.
class AskedProvider : public INamespaceProvider {
 public:
  const std::string& GetName(TOptions options) const override {
    return Provider()->GetName(options);
  }
  boost::shared_ptr<ICIMNamespace> AllocateNamespace(TOptions options, bool redefinitionAllowed,
                                                     std::string name) const override {
    names.push_back(name);
    redefinition.insert(redefinitionAllowed);
    return Provider()->AllocateNamespace(options, redefinitionAllowed, name);
  }
  EType GetType(TOptions options) const override { return Provider()->GetType(options); }
  bool IsIndicationsSupported(TOptions) const override { return false; }

  mutable Lines names;
  mutable std::set<bool> redefinition;
};

struct Named {
  Lines messages;
  std::string name;
};

Named LoadNamed(const std::string& text, const std::string& name) {
  AskedProvider provider;
  const std::map<std::string, std::string> files{{"a.mof", text}};
  TextSource source(files);
  TMofLoader loader(provider, source);
  loader.SetNamespaceName(name);
  TMofReport report;
  loader.Load({"a.mof"}, report);
  EXPECT_EQ(std::set<bool>{false}, provider.redefinition);
  return {Messages(report), provider.names.at(0)};
}

TEST(TMofLoader, TheCallerNamesTheNamespace) {
  const auto named = LoadNamed("#pragma namespace (\"root/a\")", "root/b");
  EXPECT_EQ("root/b", named.name);
  EXPECT_EQ((Lines{"a.mof:1:20: warning: everything is loaded into namespace 'root/b', not "
                   "'root/a'"}),
            named.messages);
  EXPECT_EQ(Lines{}, LoadNamed("#pragma namespace (\"Root/B\")", "root/b").messages);
}

TEST(TMofLoader, APragmaNamesTheNamespaceWhenTheCallerDoesNot) {
  const auto named = LoadNamed("#pragma namespace (\"root/a\")", "");
  EXPECT_EQ("root/a", named.name);
  EXPECT_EQ(Lines{}, named.messages);
  EXPECT_EQ("", LoadNamed("", "").name);
}

TEST(TMofLoader, OneLoadFillsOneNamespace) {
  EXPECT_EQ(
      (Lines{"a.mof:2:20: error: namespace 'root/b' follows namespace 'root/a', and one load "
             "fills one namespace"}),
      LoadNamed("#pragma namespace (\"root/a\")\n#pragma namespace (\"root/b\")", "").messages);
}

TEST(TMofLoader, ByteOrderMarkAndLineEndsDoNotMatter) {
  RecordingLogger logger;
  const auto loaded = LoadText("");
  const auto marked =
      Load({{"a.mof", "\xEF\xBB\xBF" + kQualifiers + "class A\r\n{\r\n};\r\n"}}, {"a.mof"});
  EXPECT_EQ(Lines{}, marked.messages);
  EXPECT_TRUE(marked.ns->GetClass("A", {}));
}

TEST(TMofLoader, CountsWhatItLoads) {
  RecordingLogger logger;
  const auto loaded = Load({{"a.mof", kQualifiers + "#pragma include (\"b.mof\") class A {};"},
                            {"b.mof", "class B { [Key] uint8 k; }; instance of B { k = 1; };"}},
                           {"a.mof"});
  EXPECT_EQ(Lines{}, loaded.messages);
  EXPECT_EQ(2u, loaded.report.files);
  EXPECT_EQ(9u, loaded.report.qualifierDecls);
  EXPECT_EQ(2u, loaded.report.classes);
  EXPECT_EQ(1u, loaded.report.instances);
}

TEST(TMofLoader, ErrorsOfAllFilesAreReported) {
  RecordingLogger logger;
  const auto loaded =
      Load({{"a.mof", "class A : X {};"}, {"b.mof", "\nclass B { uint8 p = 300; };"}},
           {"a.mof", "b.mof", "c.mof"});
  EXPECT_EQ((Lines{"b.mof:2:21: error: '300' is out of range for uint8",
                   "c.mof: error: file 'c.mof' is not found"}),
            loaded.messages);
  EXPECT_FALSE(loaded.ns);
}

TEST(TMofLoader, TellsHowFarItIs) {
  RecordingLogger logger;
  const std::map<std::string, std::string> files{
      {"a.mof", kQualifiers + "class A { [Key] uint8 k; }; instance of A { k = 1; };"}};
  TextSource source(files);
  TMofLoader loader(*Provider(), source);
  Lines steps;
  loader.SetProgress([&](TMofLoader::EStep step, std::size_t done, std::size_t total) {
    steps.push_back(std::to_string(static_cast<int>(step)) + ": " + std::to_string(done) + "/" +
                    std::to_string(total));
  });
  TMofReport report;
  EXPECT_TRUE(loader.Load({"a.mof"}, report));
  EXPECT_EQ((Lines{"0: 1/1", "1: 1/2", "1: 2/2", "2: 1/1"}), steps);
}

TEST(TMofLoader, WhatTheProgressThrowsEndsTheLoad) {
  const std::map<std::string, std::string> files{{"a.mof", "class A {};"}};
  TextSource source(files);
  TMofLoader loader(*Provider(), source);
  loader.SetProgress(
      [](TMofLoader::EStep, std::size_t, std::size_t) { throw std::runtime_error("enough"); });
  TMofReport report;
  EXPECT_THROW(loader.Load({"a.mof"}, report), std::runtime_error);
}

TEST(TMofReport, SaysWhatItLeftOut) {
  const hav::mof::TMofText text("a.mof", "");
  TMofReport report(2);
  EXPECT_FALSE(report.IsFull());
  report.AddWarning(text, 0, "w");
  EXPECT_EQ("a.mof:1:1: warning: w\n", report.ToString());
  for (int i = 0; i < 3; ++i) report.AddError(text, 0, "e");
  EXPECT_TRUE(report.IsFull());
  EXPECT_EQ(3u, report.CountErrors());
  EXPECT_EQ(1u, report.CountWarnings());
  EXPECT_EQ(
      "a.mof:1:1: warning: w\na.mof:1:1: error: e\na.mof:1:1: error: e\n"
      "note: reading stopped after 2 errors\n",
      report.ToString());
}

}  // namespace
}  // namespace havtest
