// Runs a fuzz target over saved inputs: the files and folders of the command line, or the
// target's own corpus. A target that finds something wrong aborts.
#include <cstdint>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

namespace fs = std::filesystem;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

void Collect(const fs::path& path, std::vector<fs::path>& files) {
  if (!fs::is_directory(path)) {
    files.push_back(path);
    return;
  }
  for (const auto& entry : fs::recursive_directory_iterator(path))
    if (entry.is_regular_file()) files.push_back(entry.path());
}

bool Replay(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    std::cerr << path.u8string() << ": cannot be read\n";
    return false;
  }
  const std::string input{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  std::cout << path.filename().u8string() << std::endl;  // flushed: the input may crash
  // libFuzzer hands over bytes without a terminator too.
  const std::vector<std::uint8_t> bytes(input.begin(), input.end());
  LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    std::vector<fs::path> files;
    for (int i = 1; i < argc; ++i) Collect(fs::u8path(argv[i]), files);
    if (argc == 1) Collect(fs::u8path(HAV_FUZZ_CORPUS), files);
    bool sound = !files.empty();
    for (const auto& file : files) sound = Replay(file) && sound;
    std::cout << files.size() << " inputs replayed\n";
    return sound ? 0 : 1;
  } catch (const std::exception& failure) {
    std::cerr << failure.what() << '\n';
    return 1;
  }
}
