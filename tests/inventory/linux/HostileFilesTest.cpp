// Files that fail while they are read, never end, or hold what no system would write: the
// inventory takes no harm from them, keeps what is text as it is, and says what it left out.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>

#include "inventory/Inventory.h"
#include "inventory/Text.h"
#include "inventory/linux/ReadWhole.h"
#include "tests/inventory/CollectionText.h"
#include "tests/inventory/FakeMachine.h"
#include "tests/inventory/Published.h"

namespace havtest {
namespace {

using namespace hav::inventory;

constexpr std::size_t kLimit = 100000;

// Answers each read with what stands next: so many bytes, or an error.
class Reader {
 public:
  explicit Reader(std::vector<int> answers) : m_answers(std::move(answers)) {}

  int ReadAll() {
    return ReadWhole([this](char* buffer, std::size_t size) { return Next(buffer, size); }, kLimit,
                     text);
  }

  std::string text;
  std::size_t reads = 0;

 private:
  ssize_t Next(char* buffer, std::size_t size) {
    const int answer = m_answers[std::min(reads++, m_answers.size() - 1)];
    if (answer < 0) {
      errno = -answer;
      return -1;
    }
    const auto count = std::min(size, static_cast<std::size_t>(answer));
    std::fill_n(buffer, count, 'x');
    return static_cast<ssize_t>(count);
  }

  std::vector<int> m_answers;
};

TEST(ReadWhole, PutsThePiecesTogether) {
  Reader reader({3, 4, 1, 0});
  EXPECT_EQ(reader.ReadAll(), 0);
  EXPECT_EQ(reader.text, "xxxxxxxx");
}

TEST(ReadWhole, RepeatsWhatWasInterrupted) {
  Reader reader({-EINTR, 2, -EINTR, -EINTR, 2, 0});
  EXPECT_EQ(reader.ReadAll(), 0);
  EXPECT_EQ(reader.text, "xxxx");
}

TEST(ReadWhole, SaysWhatFailedInTheMiddle) {
  Reader reader({5000, -EIO, 5000, 0});
  EXPECT_EQ(reader.ReadAll(), EIO);
  EXPECT_EQ(reader.reads, 2u);
}

TEST(ReadWhole, EndsWhereAFileGrowsFasterThanItIsRead) {
  Reader reader({1 << 20});
  EXPECT_EQ(reader.ReadAll(), EFBIG);
  EXPECT_GT(reader.text.size(), kLimit);
  EXPECT_LT(reader.text.size(), kLimit + 20000);
}

class HostileFile : public Published {
 protected:
  Texts FailuresOf(const FakeMachine& whole) {
    found = whole.Gather();
    return Failures(found);
  }
  void Sparse(const std::string& path) {
    machine.File(path, "x");
    ASSERT_EQ(::truncate(machine.Path(path).c_str(), off_t{1} << 30), 0);
  }
  // Every file of the machine, and what it is told to do with each.
  template <class F>
  void EachFile(F&& act) {
    const auto root = machine.Path("").string();
    Texts paths;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root))
      if (!entry.is_symlink() && entry.is_regular_file())
        paths.push_back(entry.path().string().substr(root.size()));
    ASSERT_GT(paths.size(), 100u);
    for (const auto& path : paths) act(path);
  }
  // What was found is text that people can read, and the namespace takes all of it.
  void ExpectReadable() {
    found = machine.Gather();
    for (const auto& element : found.Elements())
      for (const auto& text : Values(element)) EXPECT_TRUE(IsReadable(text)) << text;
    for (const auto& refused : PublishInventory(found, *ns)) ADD_FAILURE() << refused.ToString();
  }

  FullMachine machine;
  TCollection found;
};

// The memory of this process can be opened, and its first page cannot be read.
TEST_F(HostileFile, ThatCannotBeReadCostsWhatItHolds) {
  machine.Remove("/proc/meminfo");
  machine.Link("/proc/meminfo", "/proc/self/mem");
  EXPECT_EQ(FailuresOf(machine), Texts{"memory: /proc/meminfo: Input/output error"});
  EXPECT_EQ(Names(found, "ORVSG_Memory"), Texts{});
  EXPECT_EQ(Names(found, "ORVSG_ComputerSystem"), Texts{"server1"});
}

// To the superuser everything is open: while this lives, nobody is at work.
class AsNobody {
 public:
  AsNobody() {
    if (m_user == 0) {
      EXPECT_EQ(::seteuid(65534), 0);
    }
  }
  ~AsNobody() { EXPECT_EQ(::seteuid(m_user), 0); }
  AsNobody(const AsNobody&) = delete;
  AsNobody& operator=(const AsNobody&) = delete;

 private:
  uid_t m_user = ::geteuid();
};

TEST_F(HostileFile, WithoutTheRightToReadItCostsWhatItHolds) {
  ASSERT_EQ(::chmod(machine.Path("").c_str(), 0755), 0);
  ASSERT_EQ(::chmod(machine.Path("/proc/meminfo").c_str(), 0), 0);
  const AsNobody nobody;
  EXPECT_EQ(FailuresOf(machine), Texts{"memory: /proc/meminfo: Permission denied"});
  EXPECT_EQ(Names(found, "ORVSG_Memory"), Texts{});
  EXPECT_EQ(Names(found, "ORVSG_ComputerSystem"), Texts{"server1"});
}

TEST_F(HostileFile, OfAGigabyteWithoutALineEndIsReadToItsLimitOnly) {
  Sparse("/proc/meminfo");
  Sparse("/proc/self/mountinfo");
  Sparse("/sys/class/net/eth0/address");
  Sparse("/sys/block/sda/device/model");
  Sparse("/run/udev/data/b8:0");
  const auto said = FailuresOf(machine);
  for (const char* const expected :
       {"memory: /proc/meminfo: is larger than 4 MiB",
        "file systems: /proc/self/mountinfo: is larger than 4 MiB",
        "network ports: /sys/class/net/eth0/address: is larger than 4 MiB",
        "disks: /sys/block/sda/device/model: is larger than 4 MiB"})
    EXPECT_EQ(std::count(said.begin(), said.end(), expected), 1) << expected;
  EXPECT_EQ(Names(found, "ORVSG_DiskDrive"), (Texts{"/dev/nvme0n1", "/dev/sda", "/dev/sr0"}));
}

TEST_F(HostileFile, EveryOneFullOfZeroBytes) {
  EachFile([&](const std::string& path) { machine.File(path, std::string(4096, '\0')); });
  ExpectReadable();
  EXPECT_EQ(Names(found, "ORVSG_ComputerSystem").size(), found.Elements().empty() ? 0u : 1u);
}

TEST_F(HostileFile, EveryOneFullOfBytesThatAreNoText) {
  for (const std::string hostile : {"\xFF\xFE\x80\xC0\xAF", "\x1b[2J\x07\x08\x7F", "a\rb\x0C",
                                    "\xED\xA0\x80\xF4\x90\x80\x80", "=\xC3\n:\xC3\n\xC3 \xC3\n"}) {
    SCOPED_TRACE(testing::PrintToString(hostile));
    EachFile([&](const std::string& path) { machine.File(path, hostile); });
    ns->ClearInstances();
    ExpectReadable();
  }
}

TEST_F(HostileFile, EveryOneAFolder) {
  EachFile([&](const std::string& path) {
    machine.Remove(path);
    machine.Folder(path);
  });
  ExpectReadable();
  EXPECT_FALSE(found.Failures().empty());
}

TEST_F(HostileFile, EveryOneALinkToItself) {
  EachFile([&](const std::string& path) {
    machine.Remove(path);
    machine.Link(path, std::filesystem::path(path).filename().string());
  });
  ExpectReadable();
  EXPECT_FALSE(found.Failures().empty());
}

// Text is kept to the last character, also where it turns the direction of what follows or takes
// no place: how it is shown is for those who show it.
TEST_F(HostileFile, TextIsStoredAsItIs) {
  const std::string model =
      "Rack\xE2\x80\xAE"
      "0002\xE2\x80\x8B \xC3\xA9\xF0\x9F\x98\x80";
  machine.File("/sys/class/dmi/id/product_name", model + "\n");
  ExpectReadable();
  const auto system = Find("ORVSG_ComputerSystem.Name=\"server1\"");
  ASSERT_TRUE(system);
  EXPECT_EQ(system->GetProperty("Model", {})->GetValue({}).ToString(10), model);
}

}  // namespace
}  // namespace havtest
