// Havhost: the host program's commands with their output caught, and files for them to read.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace havtest {

struct Outcome {
  int status;
  std::string out;
  std::string err;
};

// Runs the arguments as they are.
Outcome RunPlain(const std::vector<std::string>& arguments, const std::string& input = {});
// Runs them with the plug-in that was built with the tests.
Outcome Havhost(std::vector<std::string> arguments, const std::string& input = {});

class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  std::string Path(const std::string& name) const;
  // Writes a file and returns its path.
  std::string File(const std::string& name, const std::string& text) const;

 private:
  std::filesystem::path m_path;
};

std::string ReadFile(const std::string& path);

// A small model: a system with two disks, one of them with a partition, and a processor with
// a cache that is the antecedent of their association.
extern const std::string kModel;

// The model in a file, for commands to be run on.
class ModelTest {
 public:
  Outcome RunOn(std::vector<std::string> arguments) const;
  std::string File() const { return m_folder.Path("model.mof"); }

 private:
  TemporaryFolder m_folder;
  std::string m_file = m_folder.File("model.mof", kModel);
};

}  // namespace havtest
