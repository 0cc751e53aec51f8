// The whole DMTF schema 2.49 through the reader, the loader and the writer.
#include <string>

#include <gtest/gtest.h>

#include "mof/TMofFolderSource.h"
#include "support/CimSchema.h"
#include "support/CompareNamespaces.h"
#include "support/RecordingLogger.h"
#include "tests/mof/Mof.h"

namespace havtest {
namespace {

using namespace NORVHAV20;

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

}  // namespace
}  // namespace havtest
