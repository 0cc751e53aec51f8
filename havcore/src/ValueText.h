// ValueText: numbers and characters as text, never by way of a locale.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace NORVHAV20 {

// Integers in `radix` (2 to 36), lower-case digits.
void AppendInteger(std::string& out, std::uint64_t value, int radix);
void AppendInteger(std::string& out, std::int64_t value, int radix);

// The shortest text that reads back as the same number of the same width; "inf", "-inf" and
// "nan" where there is none.
void AppendReal(std::string& out, float value);
void AppendReal(std::string& out, double value);

// One UTF-16 code unit in UTF-8. Half of a surrogate pair is written like any other unit, so
// that every char16 has a text of its own.
void AppendChar16(std::string& out, char16_t unit);
// The code unit of which `text` is the whole text; nothing when it is not one.
std::optional<char16_t> ReadChar16(std::string_view text);

}  // namespace NORVHAV20
