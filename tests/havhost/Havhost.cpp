#include "tests/havhost/Havhost.h"

#include <fstream>
#include <random>
#include <sstream>
#include <stdexcept>

#include "havhost/Program.h"

namespace havtest {

const std::string kModel = ReadFile(HAVTEST_MOF "/qualifiers.mof") + R"mof(
[Abstract] class T_Element {
  [Key] string Name;
};
class T_System : T_Element {
  [NULLDISPLAY("Not known")] string Location;
};
[Description("A disk.")]
class T_Disk : T_Element {
  [UNITS("Bytes"), DISPLAYFIXEDUNITS("Peta"), ABBREVIATEUNITS(true)] uint64 Size;
  [Values{"Off", "On"}] uint8 State = 1;
  [NULLDISPLAY("None")] string Labels[];
  [Description("Starts it anew.")] uint32 Reset(uint16 Mode, string Reason);
};
class T_FastDisk : T_Disk {
  real64 Speed;
};
class T_Partition : T_Element {
};
class T_Cpu : T_Element {
};
class T_Cache : T_Element {
};
[Association] class T_Contains {
  [Key] T_System REF GroupComponent;
  [Key] T_Element REF PartComponent;
};
[Association] class T_OnDisk {
  [Key] T_Disk REF Antecedent;
  [Key] T_Partition REF Dependent;
};
[Association] class T_CacheOf {
  [Key] T_Cache REF Antecedent;
  [Key] T_Cpu REF Dependent;
};

instance of T_System as $Box { Name = "box"; };
instance of T_Disk as $Disk2 { Name = "disk2"; Size = 1536; Labels = {"a", "b"}; };
instance of T_FastDisk as $Disk10 { Name = "disk10"; State = 0; Speed = 0.5; };
instance of T_Partition as $Part { Name = "part"; };
instance of T_Cpu as $Cpu { Name = "cpu"; };
instance of T_Cache as $Cache { Name = "cache\x1b[2J"; };
instance of T_Contains { GroupComponent = $Box; PartComponent = $Disk2; };
instance of T_Contains { GroupComponent = $Box; PartComponent = $Disk10; };
instance of T_Contains { GroupComponent = $Box; PartComponent = $Cpu; };
instance of T_OnDisk { Antecedent = $Disk2; Dependent = $Part; };
instance of T_CacheOf { Antecedent = $Cache; Dependent = $Cpu; };
)mof";

Outcome RunPlain(const std::vector<std::string>& arguments, const std::string& input) {
  std::ostringstream out;
  std::ostringstream err;
  std::istringstream in(input);
  const int status = havhost::Run(arguments, {out, err, false, &in});
  return {status, out.str(), err.str()};
}

Outcome Havhost(std::vector<std::string> arguments, const std::string& input) {
  arguments.insert(arguments.end(), {"--plugin", HAVHOST_PLUGIN});
  return RunPlain(arguments, input);
}

TemporaryFolder::TemporaryFolder() {
  std::random_device random;
  do {
    m_path = std::filesystem::temp_directory_path() / ("havhost-" + std::to_string(random()));
  } while (!std::filesystem::create_directory(m_path));
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(m_path, ignored);
}

std::string TemporaryFolder::Path(const std::string& name) const {
  return (m_path / std::filesystem::u8path(name)).u8string();
}

std::string TemporaryFolder::File(const std::string& name, const std::string& text) const {
  const auto path = m_path / std::filesystem::u8path(name);
  std::filesystem::create_directories(path.parent_path());
  std::ofstream file(path, std::ios::binary);
  file << text;
  if (!file.flush()) throw std::runtime_error("cannot write " + name);
  return Path(name);
}

std::string ReadFile(const std::string& path) {
  std::ifstream file(std::filesystem::u8path(path), std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

Outcome ModelTest::RunOn(std::vector<std::string> arguments) const {
  arguments.insert(arguments.end(), {"--mof", m_file});
  return Havhost(arguments);
}

}  // namespace havtest
