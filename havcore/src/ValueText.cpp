#include "ValueText.h"

#include <array>
#include <charconv>
#include <cmath>

namespace NORVHAV20 {
namespace {

template <class T>
void AppendRealOf(std::string& out, T value) {
  if (std::isnan(value)) {
    out += "nan";  // the sign of a NaN carries no meaning and would make equal values differ
    return;
  }
  char text[64];
  const auto end = std::to_chars(text, text + sizeof text, value).ptr;
  out.append(text, end);
}

template <class T>
void AppendIntegerOf(std::string& out, T value, int radix) {
  char text[72];
  const auto end = std::to_chars(text, text + sizeof text, value, radix).ptr;
  out.append(text, end);
}

}  // namespace

void AppendInteger(std::string& out, std::uint64_t value, int radix) {
  AppendIntegerOf(out, value, radix);
}

void AppendInteger(std::string& out, std::int64_t value, int radix) {
  AppendIntegerOf(out, value, radix);
}

void AppendReal(std::string& out, float value) { AppendRealOf(out, value); }

void AppendReal(std::string& out, double value) { AppendRealOf(out, value); }

void AppendChar16(std::string& out, char16_t unit) {
  const auto code = static_cast<unsigned>(unit);
  if (code < 0x80) {
    out += static_cast<char>(code);
  } else if (code < 0x800) {
    out += static_cast<char>(0xC0 | (code >> 6));
    out += static_cast<char>(0x80 | (code & 0x3F));
  } else {
    out += static_cast<char>(0xE0 | (code >> 12));
    out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (code & 0x3F));
  }
}

std::optional<char16_t> ReadChar16(std::string_view text) {
  constexpr std::array<unsigned, 3> kLeadBits{0x7F, 0x1F, 0x0F};
  if (text.empty() || text.size() > kLeadBits.size()) return std::nullopt;
  unsigned code = static_cast<unsigned char>(text.front()) & kLeadBits[text.size() - 1];
  for (const char c : text.substr(1)) code = (code << 6) | (static_cast<unsigned char>(c) & 0x3F);
  const auto unit = static_cast<char16_t>(code);
  // Writing it again is the check: any text but the one that belongs to the unit differs.
  std::string again;
  AppendChar16(again, unit);
  if (again != text) return std::nullopt;
  return unit;
}

}  // namespace NORVHAV20
