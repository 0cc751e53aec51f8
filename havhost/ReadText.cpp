#include "havhost/ReadText.h"

#include <array>
#include <fstream>

#include "havcore/client/Utf8.h"
#include "havhost/THostError.h"
#include "mof/TMofText.h"

namespace havhost {

std::string ReadText(std::istream& in, const std::string& name) {
  constexpr std::size_t kLargest = hav::mof::TMofText::kMaxSize;
  std::string text;
  std::array<char, 65536> buffer;
  while (in) {
    in.read(buffer.data(), buffer.size());
    text.append(buffer.data(), static_cast<std::size_t>(in.gcount()));
    if (text.size() > kLargest)
      throw THostError(name + " is larger than " + std::to_string(kLargest >> 20U) + " MiB");
  }
  if (in.bad()) throw THostError("cannot read " + name);
  return text;
}

std::string ReadTextFile(const std::string& name) {
  std::ifstream file(hav::client::PathOf(name), std::ios::binary);
  if (!file) throw THostError("cannot read " + name);
  return ReadText(file, name);
}

}  // namespace havhost
