// havhost check: findings with their places, and the exit status.
#include <gtest/gtest.h>

#include "tests/havhost/Havhost.h"

namespace havtest {
namespace {

const char* const kRight =
    "Qualifier Key : boolean = false, Scope(property, reference);\n"
    "class T_Disk { [Key] string Name; };\n";
const char* const kWrong =
    "Qualifier Key : boolean = false, Scope(property, reference);\n"
    "Qualifier Association : boolean = false, Scope(association);\n"
    "class T_Disk { string Name; };\n"
    "class T_FastDisk : T_Disk { uint8 Name; uint32 Reset(); };\n"
    "class T_FasterDisk : T_FastDisk { uint32 Reset(); };\n"
    "[Association] class T_On { [Key] T_Disk REF Disk; };\n";

class Check : public testing::Test {
 protected:
  Outcome Of(const std::string& text, const std::vector<std::string>& more = {}) {
    std::vector<std::string> arguments = {"check", m_folder.File("a.mof", text)};
    arguments.insert(arguments.end(), more.begin(), more.end());
    auto outcome = Havhost(arguments);
    // Without the folder, which has another name each time.
    const auto folder = m_folder.Path("");
    Erase(outcome.out, folder);
    Erase(outcome.out, InJson(folder));
    return outcome;
  }
  static void Erase(std::string& text, const std::string& part) {
    for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at))
      text.erase(at, part.size());
  }
  // JSON doubles the backslashes that Windows has in its paths.
  static std::string InJson(const std::string& path) {
    std::string text;
    for (const char c : path) text += c == '\\' ? "\\\\" : std::string(1, c);
    return text;
  }
  TemporaryFolder m_folder;
};

TEST_F(Check, NothingToSayIsStatus0) {
  const auto outcome = Of(kRight);
  EXPECT_EQ(outcome.out, "1 class, nothing to say\n");
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.status, 0);
}

TEST_F(Check, FindingsHaveTheirPlacesAndStatus1) {
  const auto outcome = Of(kWrong);
  EXPECT_EQ(outcome.out,
            R"(a.mof:3:7: warning: class 'T_Disk' has no key, so its instances cannot be told apart
a.mof:4:7: warning: class 'T_FastDisk' has no key, so its instances cannot be told apart
a.mof:4:35: warning: property 'Name' is left out: class 'T_Disk' has it, and this one does not override it
a.mof:5:7: warning: class 'T_FasterDisk' has no key, so its instances cannot be told apart
a.mof:5:42: warning: method 'Reset' is left out: class 'T_FastDisk' has it, and this one does not override it
a.mof:6:21: warning: association 'T_On' has one reference, and associates nothing
0 errors, 6 warnings
)");
  EXPECT_EQ(outcome.status, 1);
}

TEST_F(Check, WhatRefersToAMissingClassIsAnError) {
  const auto outcome =
      Of("Qualifier Association : boolean = false, Scope(association);\n"
         "Qualifier Key : boolean = false, Scope(property, reference);\n"
         "[Association] class T_On { [Key] T_Gone REF A; [Key] T_On REF B; };\n");
  EXPECT_NE(outcome.out.find("\na.mof:3:34: error: class 'T_Gone' is not declared\n"),
            std::string::npos)
      << outcome.out;
  EXPECT_EQ(outcome.status, 1);
}

TEST_F(Check, WhatCannotBeReadIsStatus2) {
  const auto broken = Of("class T_Disk { string; };\n");
  EXPECT_EQ(broken.status, 2);
  EXPECT_NE(broken.out.find("a.mof:1:22: error: "), std::string::npos) << broken.out;
  const auto missing = Havhost({"check", m_folder.Path("gone.mof")});
  EXPECT_EQ(missing.status, 2);
  EXPECT_NE(missing.out.find("gone.mof: error: "), std::string::npos) << missing.out;
}

TEST_F(Check, JsonHasTheSameFindings) {
  const auto outcome = Of("class T_Disk { string Name; };\n", {"--format", "json"});
  EXPECT_EQ(outcome.out, R"({
  "version": 1,
  "files": 1,
  "classes": 1,
  "errors": 0,
  "warnings": 1,
  "findings": [
    {
      "severity": "warning",
      "file": "a.mof",
      "line": 1,
      "column": 7,
      "text": "class 'T_Disk' has no key, so its instances cannot be told apart"
    }
  ]
}
)");
  EXPECT_EQ(outcome.status, 1);
}

TEST_F(Check, AFileIsRequired) { EXPECT_EQ(Havhost({"check"}).status, 2); }

}  // namespace
}  // namespace havtest
