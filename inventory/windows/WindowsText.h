// WindowsText: text as Windows gives it, as UTF-8.
//
// Threads: pure functions.
#pragma once

#include <optional>
#include <string>

namespace hav::inventory {

// UTF-8 of a wide text, trimmed; empty when there is nothing in it that people can read.
std::optional<std::string> ReadableText(const wchar_t* text);
// UTF-8 of a wide text; what is no UTF-16 becomes U+FFFD.
std::string Utf8Of(const wchar_t* text);
// The sentence of a Windows error number, with the number.
std::string ErrorText(unsigned long error);

// A value of the registry's local machine, empty when it is not there or of another type.
std::optional<std::string> RegistryText(const wchar_t* key, const wchar_t* value);
std::optional<unsigned long> RegistryNumber(const wchar_t* key, const wchar_t* value);

}  // namespace hav::inventory
