#include "inventory/windows/TPresentDevices.h"

#include <cfgmgr32.h>

#include <array>
#include <cstring>

#include "inventory/windows/WindowsText.h"

namespace hav::inventory {
namespace {

// devpkey.h has them, and defines all its keys or none.
constexpr GUID kDeviceKeys = {
    0x540b947e, 0x8b40, 0x45bc, {0xa8, 0xa2, 0x6a, 0x0b, 0x89, 0x4c, 0xbd, 0xa2}};
constexpr DEVPROPKEY kNumaNode = {kDeviceKeys, 3};
constexpr DEVPROPKEY kBusReportedDescription = {kDeviceKeys, 4};

}  // namespace

TPresentDevices::TPresentDevices(const wchar_t* bus)
    : m_list(SetupDiGetClassDevsW(nullptr, bus, nullptr, DIGCF_PRESENT | DIGCF_ALLCLASSES)) {}

TPresentDevices::~TPresentDevices() {
  if (IsOpen()) SetupDiDestroyDeviceInfoList(m_list);
}

bool TPresentDevices::Next() {
  m_device = {};
  m_device.cbSize = sizeof(m_device);
  return SetupDiEnumDeviceInfo(m_list, m_next++, &m_device) != FALSE;
}

std::string TPresentDevices::InstanceId() const {
  std::array<wchar_t, MAX_DEVICE_ID_LEN + 1> id{};
  if (!SetupDiGetDeviceInstanceIdW(m_list, const_cast<SP_DEVINFO_DATA*>(&m_device), id.data(),
                                   static_cast<DWORD>(id.size() - 1), nullptr))
    return {};
  return Utf8Of(id.data());
}

std::optional<std::string> TPresentDevices::ParentId() const {
  DEVINST parent = 0;
  std::array<wchar_t, MAX_DEVICE_ID_LEN + 1> id{};
  if (CM_Get_Parent(&parent, m_device.DevInst, 0) != CR_SUCCESS ||
      CM_Get_Device_IDW(parent, id.data(), static_cast<ULONG>(id.size() - 1), 0) != CR_SUCCESS)
    return std::nullopt;
  return Utf8Of(id.data());
}

std::vector<std::string> TPresentDevices::Ids() const {
  std::vector<std::string> ids;
  AddIds(SPDRP_HARDWAREID, ids);
  AddIds(SPDRP_COMPATIBLEIDS, ids);
  return ids;
}

// Each ends with a NUL, and the list with another.
void TPresentDevices::AddIds(DWORD property, std::vector<std::string>& ids) const {
  const auto texts = Wide(property, REG_MULTI_SZ);
  for (const auto* at = texts.data(); !texts.empty() && *at != L'\0'; at += std::wcslen(at) + 1)
    ids.push_back(Utf8Of(at));
}

std::optional<std::string> TPresentDevices::Text(DWORD property) const {
  const auto text = Wide(property, REG_SZ);
  return text.empty() ? std::nullopt : ReadableText(text.data());
}

std::optional<std::uint32_t> TPresentDevices::Number(DWORD property) const {
  DWORD number = 0;
  DWORD type = 0;
  if (!SetupDiGetDeviceRegistryPropertyW(m_list, const_cast<SP_DEVINFO_DATA*>(&m_device), property,
                                         &type, reinterpret_cast<BYTE*>(&number), sizeof(number),
                                         nullptr) ||
      type != REG_DWORD)
    return std::nullopt;
  return number;
}

std::optional<std::string> TPresentDevices::OwnDescription() const {
  const auto bytes = Bytes(kBusReportedDescription, DEVPROP_TYPE_STRING);
  if (bytes.empty()) return std::nullopt;
  std::vector<wchar_t> text(bytes.size() / sizeof(wchar_t) + 1);
  std::memcpy(text.data(), bytes.data(), bytes.size() / sizeof(wchar_t) * sizeof(wchar_t));
  return ReadableText(text.data());
}

std::optional<std::uint32_t> TPresentDevices::NumaNode() const {
  const auto bytes = Bytes(kNumaNode, DEVPROP_TYPE_UINT32);
  std::uint32_t node = 0;
  if (bytes.size() != sizeof(node)) return std::nullopt;
  std::memcpy(&node, bytes.data(), sizeof(node));
  return node;
}

// Text, ended by two NULs more than it should have; empty when there is none.
std::vector<wchar_t> TPresentDevices::Wide(DWORD property, DWORD wantedType) const {
  DWORD size = 0;
  DWORD type = 0;
  auto* const device = const_cast<SP_DEVINFO_DATA*>(&m_device);
  SetupDiGetDeviceRegistryPropertyW(m_list, device, property, &type, nullptr, 0, &size);
  if (size == 0 || type != wantedType) return {};
  std::vector<wchar_t> text(size / sizeof(wchar_t) + 3);
  if (!SetupDiGetDeviceRegistryPropertyW(m_list, device, property, nullptr,
                                         reinterpret_cast<BYTE*>(text.data()), size, nullptr))
    return {};
  return text;
}

std::vector<BYTE> TPresentDevices::Bytes(const DEVPROPKEY& key, DEVPROPTYPE wantedType) const {
  DWORD size = 0;
  DEVPROPTYPE type = 0;
  auto* const device = const_cast<SP_DEVINFO_DATA*>(&m_device);
  SetupDiGetDevicePropertyW(m_list, device, &key, &type, nullptr, 0, &size, 0);
  std::vector<BYTE> bytes(size);
  if (size == 0 || type != wantedType ||
      !SetupDiGetDevicePropertyW(m_list, device, &key, &type, bytes.data(), size, nullptr, 0))
    return {};
  return bytes;
}

}  // namespace hav::inventory
