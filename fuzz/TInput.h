// TInput: the bytes of a fuzz target's input, taken from the front. Where none are left, numbers
// are 0 and texts empty.
//
// Ownership: refers to the bytes.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace havfuzz {

class TInput {
 public:
  TInput(const std::uint8_t* data, std::size_t size)
      : m_rest(reinterpret_cast<const char*>(data), size) {}

  bool IsAtEnd() const { return m_rest.empty(); }
  std::string_view Rest() const { return m_rest; }

  std::uint8_t Byte() {
    if (m_rest.empty()) return 0;
    const auto byte = static_cast<std::uint8_t>(m_rest.front());
    m_rest.remove_prefix(1);
    return byte;
  }
  std::uint64_t Number(unsigned bytes) {
    std::uint64_t number = 0;
    for (unsigned i = 0; i < bytes; ++i) number = number << 8 | Byte();
    return number;
  }
  std::string_view Text(std::size_t length) {
    const auto text = m_rest.substr(0, length);
    m_rest.remove_prefix(text.size());
    return text;
  }
  // Up to the next of `end`, which is taken too.
  std::string_view Until(char end) {
    const auto text = m_rest.substr(0, m_rest.find(end));
    m_rest.remove_prefix(std::min(text.size() + 1, m_rest.size()));
    return text;
  }

 private:
  std::string_view m_rest;
};

}  // namespace havfuzz
