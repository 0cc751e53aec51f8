#include "inventory/windows/WindowsText.h"

#include <windows.h>

#include <array>
#include <cwchar>

#include "inventory/Text.h"

namespace hav::inventory {

std::string Utf8Of(const wchar_t* text) {
  const int wide = static_cast<int>(std::wcslen(text));
  if (wide == 0) return {};
  const int size = WideCharToMultiByte(CP_UTF8, 0, text, wide, nullptr, 0, nullptr, nullptr);
  std::string narrow(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text, wide, narrow.data(), size, nullptr, nullptr);
  return narrow;
}

std::optional<std::string> ReadableText(const wchar_t* text) {
  const auto narrow = Utf8Of(text);
  const auto trimmed = Trim(narrow);
  if (trimmed.empty() || !IsReadable(trimmed)) return std::nullopt;
  return std::string(trimmed);
}

std::string ErrorText(unsigned long error) {
  std::array<wchar_t, 512> sentence{};
  FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error, 0,
                 sentence.data(), static_cast<DWORD>(sentence.size()), nullptr);
  const auto number = "error " + std::to_string(error);
  const auto text = ReadableText(sentence.data());
  return text ? number + ": " + *text : number;
}

std::optional<std::string> RegistryText(const wchar_t* key, const wchar_t* value) {
  std::array<wchar_t, 1024> text{};
  DWORD size = sizeof(text) - sizeof(wchar_t);
  if (RegGetValueW(HKEY_LOCAL_MACHINE, key, value, RRF_RT_REG_SZ, nullptr, text.data(), &size) !=
      ERROR_SUCCESS)
    return std::nullopt;
  return ReadableText(text.data());
}

std::optional<unsigned long> RegistryNumber(const wchar_t* key, const wchar_t* value) {
  DWORD number = 0;
  DWORD size = sizeof(number);
  if (RegGetValueW(HKEY_LOCAL_MACHINE, key, value, RRF_RT_REG_DWORD, nullptr, &number, &size) !=
      ERROR_SUCCESS)
    return std::nullopt;
  return number;
}

}  // namespace hav::inventory
