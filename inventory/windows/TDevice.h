// TDevice: an open Windows device that is asked, and neither read nor written.
//
// Ownership: owns its handle.
// Threads:   one thread at a time.
// Errors:    answers are empty when the device does not give them; GetLastError then says why.
#pragma once

#include <windows.h>

#include <optional>
#include <vector>

namespace hav::inventory {

class TDevice {
 public:
  explicit TDevice(const wchar_t* path);
  ~TDevice();
  TDevice(const TDevice&) = delete;
  TDevice& operator=(const TDevice&) = delete;

  bool IsOpen() const { return m_handle != INVALID_HANDLE_VALUE; }

  // The answer to a control code, of any length up to 64 KiB.
  std::vector<char> Ask(DWORD code, const void* question = nullptr, DWORD size = 0) const;
  // The answer as a T, when it is at least as long as one.
  template <class T>
  std::optional<T> AskFor(DWORD code, const void* question = nullptr, DWORD size = 0) const {
    const auto answer = Ask(code, question, size);
    if (answer.size() < sizeof(T)) return std::nullopt;
    return *reinterpret_cast<const T*>(answer.data());
  }

 private:
  HANDLE m_handle;
};

}  // namespace hav::inventory
