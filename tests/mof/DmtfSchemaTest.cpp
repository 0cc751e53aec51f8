// The whole DMTF schema 2.49 through the reader, the loader and the writer.
#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "mof/TMofFolderSource.h"
#include "support/CimSchema.h"
#include "support/CompareNamespaces.h"
#include "support/RecordingLogger.h"
#include "tests/mof/Mof.h"

namespace havtest {
namespace {

using namespace NORVHAV20;

// What a MOF text declares, class by class, read in the simplest way: without comments, strings
// and qualifiers there is not much left but types, names and brackets.
using Members = std::map<std::string, Lines>;

std::string WithoutComments(const std::string& text) {
  std::string bare;
  int brackets = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text.compare(i, 2, "//") == 0) {
      i = std::min(text.find('\n', i), text.size());
    } else if (text.compare(i, 2, "/*") == 0) {
      i = text.find("*/", i) + 1;
    } else if (text[i] == '"') {
      for (++i; text[i] != '"'; ++i) i += text[i] == '\\' ? 1 : 0;
    } else {
      bare += text[i];
    }
  }
  // Qualifiers are lists in brackets; the sizes of arrays hold at most a number.
  std::string rest;
  for (std::size_t i = 0; i < bare.size(); ++i) {
    const auto end = bare[i] == '[' ? bare.find_first_not_of("[0123456789", i) : i;
    if (brackets == 0 && bare[i] == '[' && bare[end] == ']') {
      rest += bare.substr(i, end + 1 - i);
      i = end;
    } else if (bare[i] == '[') {
      ++brackets;
    } else if (bare[i] == ']') {
      --brackets;
      rest += ' ';
    } else if (brackets == 0) {
      rest += bare[i];
    }
  }
  return rest;
}

Lines Words(const std::string& text) {
  Lines words;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto isPart = [&](std::size_t at) {
      return at < text.size() && (std::isalnum(static_cast<unsigned char>(text[at])) ||
                                  std::string("_[]#$").find(text[at]) != std::string::npos);
    };
    if (std::isspace(static_cast<unsigned char>(text[i]))) continue;
    auto end = i + 1;
    while (isPart(i) && isPart(end)) ++end;
    words.push_back(text.substr(i, end - i));
    i = end - 1;
  }
  return words;
}

void AddMembers(const std::string& text, Members& members) {
  const auto words = Words(WithoutComments(text));
  for (std::size_t i = 0; i + 1 < words.size(); ++i) {
    if (words[i] != "class" || words[i + 1] == "," || words[i + 1] == ")") continue;
    auto& lines = members[words[i + 1]];
    while (words[i] != "{") ++i;
    std::string line;
    bool value = false;
    for (++i; words[i] != "}" || value; ++i) {
      value = words[i] == "=" || (value && words[i] != ";");
      if (words[i] == ";")
        lines.push_back(std::exchange(line, ""));
      else if (!value)
        line += (line.empty() ? "" : " ") + words[i];
    }
  }
}

class DmtfSchema : public testing::Test {
 protected:
  void SetUp() override {
    const auto reason = WhyNoCimSchema();
    if (reason.empty()) return;
    if (IsCimSchemaRequired()) FAIL() << reason;
    GTEST_SKIP() << reason;
  }

  Loaded LoadSchema() const {
    hav::mof::TMofFolderSource source;
    Loaded loaded;
    loaded.ns =
        hav::mof::TMofLoader(*Provider(), source).Load({CimSchemaFile().u8string()}, loaded.report);
    loaded.messages = Messages(loaded.report);
    return loaded;
  }

  RecordingLogger m_logger;
};

TEST_F(DmtfSchema, LoadsWithoutAMessage) {
  const auto loaded = LoadSchema();
  EXPECT_EQ(Lines{}, loaded.messages);
  ASSERT_TRUE(loaded.ns);
  EXPECT_EQ(1634u, loaded.report.files);
  EXPECT_EQ(1631u, loaded.report.classes);
  EXPECT_EQ(70u, loaded.report.qualifierDecls);
}

// What a reader of the schema's own text would expect to find.
TEST_F(DmtfSchema, ClassesSayWhatTheirTextSays) {
  const auto loaded = LoadSchema();
  ASSERT_TRUE(loaded.ns);
  const auto system = loaded.ns->GetClass("CIM_ComputerSystem", {});
  EXPECT_EQ("CIM_System", system->GetSuperClass({})->GetName({}));
  EXPECT_EQ("CIM_System", system->GetPropertyDecl("Name", {})->GetClass({})->GetName({}));
  EXPECT_EQ(ArrayOf(kCIMUInt16), system->GetPropertyDecl("Dedicated", {})->GetType({}));
  std::vector<std::string> keys;
  system->EnumerateKeyNames(
      [&](const std::string* name) {
        keys.push_back(*name);
        return true;
      },
      {});
  EXPECT_EQ((Lines{"CreationClassName", "Name"}), keys);

  const auto device = loaded.ns->GetClass("CIM_SystemDevice", {});
  EXPECT_TRUE(device->IsAssociation({}));
  const auto part = device->GetReferenceDecl("PartComponent", {});
  EXPECT_EQ("CIM_LogicalDevice", part->GetDefaultValue({}).GetReferencedClassName());
  EXPECT_EQ(loaded.ns->GetClass("CIM_LogicalDevice", {}),
            part->GetDefaultValue({}).GetReferencedClass());
}

TEST_F(DmtfSchema, IsTheSameWhenWrittenAndReadAgain) {
  const auto first = LoadSchema();
  ASSERT_TRUE(first.ns);
  const auto second = Load({{"written.mof", Written(*first.ns)}}, {"written.mof"});
  EXPECT_EQ(Lines{}, second.messages);
  ASSERT_TRUE(second.ns);
  EXPECT_EQ(1631u, second.report.classes);
  EXPECT_EQ(Lines{}, Differences(*first.ns, *second.ns));
}

// Properties, methods and parameters with their types, as the schema's own text has them.
TEST_F(DmtfSchema, IsWrittenInTheOrderOfItsAuthors) {
  Members source;
  for (const auto& entry :
       std::filesystem::recursive_directory_iterator(CimSchemaFile().parent_path())) {
    if (entry.path().extension() != ".mof") continue;
    std::ifstream file(entry.path(), std::ios::binary);
    AddMembers({std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()}, source);
  }
  const auto loaded = LoadSchema();
  ASSERT_TRUE(loaded.ns);
  Members written;
  AddMembers(Written(*loaded.ns), written);
  std::size_t members = 0;
  std::size_t parameters = 0;
  for (const auto& [cls, lines] : written) {
    EXPECT_EQ(source[cls], lines) << cls;
    members += lines.size();
    for (const auto& line : lines)
      parameters += static_cast<std::size_t>(std::count(line.begin(), line.end(), ','));
  }
  EXPECT_EQ(1631u, written.size());
  EXPECT_EQ(1631u, source.size());
  EXPECT_EQ(7582u, members);
  EXPECT_LT(1000u, parameters);
}

}  // namespace
}  // namespace havtest
