// Utf8: text as UTF-8, and file names as such text.
//
// Threads: pure functions.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace hav::client {

// The length in bytes of the UTF-8 character at `at`, 0 when there is no valid one.
std::size_t Utf8Length(std::string_view text, std::size_t at) noexcept;
// The code point of a valid UTF-8 character.
char32_t Utf8Value(std::string_view character) noexcept;
void AppendUtf8(std::string& text, char32_t codePoint);

// Command lines, MOF and everything that is printed is UTF-8, also where the system's own
// file names are not.
std::filesystem::path PathOf(const std::string& utf8);
std::string Utf8(const std::filesystem::path& path);

}  // namespace hav::client
