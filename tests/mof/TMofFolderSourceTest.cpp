#include "mof/TMofFolderSource.h"

#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

namespace havtest {
namespace {

namespace fs = std::filesystem;
using hav::mof::TMofFolderSource;

class TMofFolderSourceTest : public testing::Test {
 protected:
  void SetUp() override {
    const auto* test = testing::UnitTest::GetInstance()->current_test_info();
    m_root = fs::temp_directory_path() / (std::string("havhost_mof_") + test->name());
    fs::remove_all(m_root);
    Write("main/a.mof", "a");
    Write("main/part/b.mof", "b");
    Write("other/b.mof", "other b");
    Write("other/part/c.mof", "c");
  }
  void TearDown() override { fs::remove_all(m_root); }

  void Write(const std::string& name, const std::string& text) const {
    fs::create_directories((m_root / name).parent_path());
    std::ofstream(m_root / name, std::ios::binary) << text;
  }
  std::string Path(const std::string& name) const {
    return (m_root / name).lexically_normal().u8string();
  }
  // The identity that is found, "" when there is none.
  std::string Find(TMofFolderSource& source, const std::string& name,
                   const std::string& includer) const {
    std::string identity;
    return source.Find(name, includer.empty() ? "" : Path(includer), identity) ? identity : "";
  }

  fs::path m_root;
};

TEST_F(TMofFolderSourceTest, LooksBesideTheIncludingFileFirst) {
  TMofFolderSource source({m_root / "other"});
  EXPECT_EQ(Path("main/part/b.mof"), Find(source, "b.mof", "main/part/x.mof"));
  EXPECT_EQ(Path("main/part/b.mof"), Find(source, "part/b.mof", "main/a.mof"));
}

TEST_F(TMofFolderSourceTest, ThenInTheSearchPath) {
  TMofFolderSource source({m_root / "nowhere", m_root / "other"});
  EXPECT_EQ(Path("other/b.mof"), Find(source, "b.mof", "main/a.mof"));
  EXPECT_EQ(Path("other/part/c.mof"), Find(source, "part/c.mof", "main/a.mof"));
  EXPECT_EQ("", Find(source, "c.mof", "main/a.mof"));
}

TEST_F(TMofFolderSourceTest, OneFileHasOneIdentity) {
  TMofFolderSource source;
  EXPECT_EQ(Path("main/a.mof"), Find(source, "../a.mof", "main/part/b.mof"));
  EXPECT_EQ(Path("main/part/b.mof"), Find(source, "part\\b.mof", "main/a.mof"));
  EXPECT_EQ(Path("main/a.mof"), Find(source, Path("main/part/../a.mof"), ""));
}

TEST_F(TMofFolderSourceTest, AFolderIsNoFile) {
  TMofFolderSource source;
  EXPECT_EQ("", Find(source, "part", "main/a.mof"));
}

TEST_F(TMofFolderSourceTest, ReadsTheBytesAsTheyAre) {
  Write("bytes.mof", std::string("\xEF\xBB\xBF\r\n\0x", 7));
  Write("empty.mof", "");
  TMofFolderSource source;
  std::string text;
  ASSERT_TRUE(source.Read(Path("bytes.mof"), text));
  EXPECT_EQ(std::string("\xEF\xBB\xBF\r\n\0x", 7), text);
  ASSERT_TRUE(source.Read(Path("empty.mof"), text));
  EXPECT_EQ("", text);
}

TEST_F(TMofFolderSourceTest, SaysWhyAFileIsNotRead) {
  TMofFolderSource source;
  std::string text;
  EXPECT_FALSE(source.Read(Path("nothing.mof"), text));
  EXPECT_EQ("the file cannot be read", text);
}

}  // namespace
}  // namespace havtest
