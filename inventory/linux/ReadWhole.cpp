#include "inventory/linux/ReadWhole.h"

#include <array>
#include <cerrno>

namespace hav::inventory {

int ReadWhole(const TReadSome& read, std::size_t limit, std::string& text) {
  std::array<char, 16384> buffer;
  while (text.size() <= limit) {
    const auto count = read(buffer.data(), buffer.size());
    if (count == 0) return 0;
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return errno;
    text.append(buffer.data(), static_cast<std::size_t>(count));
  }
  return EFBIG;
}

}  // namespace hav::inventory
