#include "inventory/windows/TDevice.h"

namespace hav::inventory {

TDevice::TDevice(const wchar_t* path)
    : m_handle(CreateFileW(path, 0, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0,
                           nullptr)) {}

TDevice::~TDevice() {
  if (IsOpen()) CloseHandle(m_handle);
}

std::vector<char> TDevice::Ask(DWORD code, const void* question, DWORD size) const {
  std::vector<char> answer(64U * 1024U);
  DWORD length = 0;
  // The call does not change the question, though it does not say so.
  if (!DeviceIoControl(m_handle, code, const_cast<void*>(question), size, answer.data(),
                       static_cast<DWORD>(answer.size()), &length, nullptr))
    length = 0;
  answer.resize(length);
  return answer;
}

}  // namespace hav::inventory
