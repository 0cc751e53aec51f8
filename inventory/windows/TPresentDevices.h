// TPresentDevices: the devices of one bus that are there, as Windows' Plug and Play manager knows
// them, one after the other.
//
// Ownership: owns the list that Windows made.
// Threads:   one thread at a time.
// Errors:    what a device does not tell is empty.
#pragma once

#include <windows.h>

#include <setupapi.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace hav::inventory {

class TPresentDevices {
 public:
  // `bus`: as instance ids begin.
  explicit TPresentDevices(const wchar_t* bus);
  ~TPresentDevices();
  TPresentDevices(const TPresentDevices&) = delete;
  TPresentDevices& operator=(const TPresentDevices&) = delete;

  // False when Windows does not give the list; GetLastError then says why.
  bool IsOpen() const { return m_list != INVALID_HANDLE_VALUE; }
  // Goes to the next device. False when there is none. What follows is of the device that it went
  // to.
  bool Next();

  std::string InstanceId() const;
  // Of the device that it is plugged into.
  std::optional<std::string> ParentId() const;
  // Hardware ids and compatible ids.
  std::vector<std::string> Ids() const;
  // `property`: SPDRP_...
  std::optional<std::string> Text(DWORD property) const;
  std::optional<std::uint32_t> Number(DWORD property) const;
  // What the device said of itself when it was plugged in.
  std::optional<std::string> OwnDescription() const;
  std::optional<std::uint32_t> NumaNode() const;

 private:
  std::vector<wchar_t> Wide(DWORD property, DWORD wantedType) const;
  std::vector<BYTE> Bytes(const DEVPROPKEY& key, DEVPROPTYPE wantedType) const;
  void AddIds(DWORD property, std::vector<std::string>& ids) const;

  HDEVINFO m_list;
  SP_DEVINFO_DATA m_device{};
  DWORD m_next = 0;
};

}  // namespace hav::inventory
