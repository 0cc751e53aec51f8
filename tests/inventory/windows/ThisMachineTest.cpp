// What the collectors find on the system that the tests run on.
#include <gtest/gtest.h>
#include <windows.h>

#include <setupapi.h>

#include <string>
#include <utility>

#include "inventory/Inventory.h"
#include "tests/inventory/CollectionText.h"

namespace havtest {
namespace {

using namespace hav::inventory;

TEST(ThisMachine, HasWhatTheSystemSays) {
  const auto found = GatherInventory(TMachine());
  EXPECT_EQ(Names(found, "ORVSG_ComputerSystem").size(), 1U);
  EXPECT_EQ(Names(found, "ORVSG_OperatingSystem").size(), 1U);
  EXPECT_EQ(Links(found, "ORVSG_RunningOS").size(), 1U);

  std::uint32_t threads = 0;
  for (const auto& name : Names(found, "ORVSG_Processor"))
    threads += static_cast<std::uint32_t>(
        Element(found, "ORVSG_Processor", name).Get("NumberOfLogicalProcessors"));
  EXPECT_EQ(threads, GetActiveProcessorCount(ALL_PROCESSOR_GROUPS));

  MEMORYSTATUSEX memory{};
  memory.dwLength = sizeof(memory);
  ASSERT_TRUE(GlobalMemoryStatusEx(&memory));
  EXPECT_EQ(static_cast<std::uint64_t>(Element(found, "ORVSG_Memory", "Memory").Get("TotalSize")),
            memory.ullTotalPhys);

  const auto system = Element(found, "ORVSG_FileSystem", "C:\\");
  EXPECT_GT(static_cast<std::uint64_t>(system.Get("FileSystemSize")), 0U);
}

TEST(ThisMachine, DevicesBelongToTheSystem) {
  const auto found = GatherInventory(TMachine());
  std::size_t devices = 0;
  for (const auto* const cls : {"ORVSG_Processor", "ORVSG_Memory", "ORVSG_NumaNode",
                                "ORVSG_DiskDrive", "ORVSG_NetworkPort", "ORVSG_PhysicalNetworkPort",
                                "ORVSG_PCIDevice", "ORVSG_GraphicsController", "ORVSG_USBDevice"})
    devices += Names(found, cls).size();
  devices -= Links(found, "ORVSG_USBDeviceOnHub").size();
  EXPECT_EQ(Links(found, "ORVSG_SystemDevice").size(), devices);
  EXPECT_GE(devices, 2U);
}

TEST(ThisMachine, EveryProcessorIsInANode) {
  const auto found = GatherInventory(TMachine());
  const auto nodes = Names(found, "ORVSG_NumaNode");
  ULONG highest = 0;
  ASSERT_TRUE(GetNumaHighestNodeNumber(&highest));
  EXPECT_EQ(nodes.size(), highest + 1);
  std::string processors;
  for (const auto& node : nodes)
    processors += Element(found, "ORVSG_NumaNode", node).Get("LogicalProcessors").ToString(10);
  if (nodes.size() == 1 && GetActiveProcessorGroupCount() == 1) {
    const auto last = std::to_string(GetActiveProcessorCount(ALL_PROCESSOR_GROUPS) - 1);
    EXPECT_EQ(processors, last == "0" ? last : "0-" + last);
  }
}

// There may be none: then nothing is wrong either.
TEST(ThisMachine, DevicesOnBusesHaveTheirNumbers) {
  const auto found = GatherInventory(TMachine());
  for (const auto& failure : Failures(found)) {
    EXPECT_EQ(failure.find("PCI devices"), std::string::npos) << failure;
    EXPECT_EQ(failure.find("USB devices"), std::string::npos) << failure;
  }
  for (const auto* const cls : {"ORVSG_PCIDevice", "ORVSG_GraphicsController"})
    for (const auto& name : Names(found, cls))
      EXPECT_FALSE(Element(found, cls, name).Get("VendorID").IsNull()) << name;
}

// A device that the registry knows of as long as this lives; of Wine's registry, which takes them
// from anyone and in which none is missed.
class RegisteredDevice {
 public:
  explicit RegisteredDevice(const wchar_t* instanceId)
      : m_list(SetupDiCreateDeviceInfoList(nullptr, nullptr)) {
    m_device.cbSize = sizeof(m_device);
    const GUID system = {
        0x4d36e97d, 0xe325, 0x11ce, {0xbf, 0xc1, 0x08, 0x00, 0x2b, 0xe1, 0x03, 0x18}};
    m_made =
        SetupDiCreateDeviceInfoW(m_list, instanceId, &system, nullptr, nullptr, 0, &m_device) &&
        SetupDiRegisterDeviceInfo(m_list, &m_device, 0, nullptr, nullptr, nullptr);
  }
  ~RegisteredDevice() {
    if (m_made) SetupDiCallClassInstaller(DIF_REMOVE, m_list, &m_device);
    SetupDiDestroyDeviceInfoList(m_list);
  }
  RegisteredDevice(const RegisteredDevice&) = delete;
  RegisteredDevice& operator=(const RegisteredDevice&) = delete;

  bool IsMade() const { return m_made; }
  // `text`: with all its NULs but the last.
  void Set(DWORD property, const std::wstring& text) {
    const auto size = static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t));
    EXPECT_TRUE(SetupDiSetDeviceRegistryPropertyW(
        m_list, &m_device, property, reinterpret_cast<const BYTE*>(text.c_str()), size));
  }

 private:
  HDEVINFO m_list;
  SP_DEVINFO_DATA m_device{};
  bool m_made = false;
};

bool IsWine() {
  return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

TEST(ThisMachine, ARegisteredPciDeviceIsCollected) {
  if (!IsWine()) GTEST_SKIP() << "the devices of a real machine are left alone";
  RegisteredDevice device(L"PCI\\VEN_1AF4&DEV_1050&SUBSYS_11001AF4&REV_01\\3&13C0B0C5&0&08");
  ASSERT_TRUE(device.IsMade()) << GetLastError();
  using namespace std::string_literals;
  device.Set(SPDRP_HARDWAREID,
             L"PCI\\VEN_1AF4&DEV_1050&SUBSYS_11001AF4&REV_01\0PCI\\VEN_1AF4&DEV_1050\0"s);
  device.Set(SPDRP_COMPATIBLEIDS, L"PCI\\VEN_1AF4&DEV_1050&CC_030000\0PCI\\CC_0300\0"s);
  device.Set(SPDRP_DEVICEDESC, L"Example Display");
  device.Set(SPDRP_MFG, L"(Standard display types)");
  device.Set(SPDRP_SERVICE, L"exampledisplay");
  const auto found = GatherInventory(TMachine());
  const auto names = Names(found, "ORVSG_GraphicsController");
  ASSERT_EQ(names.size(), 1U);
  const std::string name = "PCI\\VEN_1AF4&DEV_1050&SUBSYS_11001AF4&REV_01\\3&13C0B0C5&0&08";
  EXPECT_EQ(Values(Element(found, "ORVSG_GraphicsController", names.front())),
            (Texts{"Name=" + name, "Caption=" + name + ", Example Display", "Model=Example Display",
                   "DeviceClass=3", "VendorID=6900", "DeviceID=4176", "SubsystemVendorID=6900",
                   "SubsystemID=4352", "Revision=1", "Driver=exampledisplay"}));
}

TEST(ThisMachine, ARegisteredUsbDeviceIsCollected) {
  if (!IsWine()) GTEST_SKIP() << "the devices of a real machine are left alone";
  RegisteredDevice device(L"USB\\VID_0781&PID_5581\\0123456789AB");
  RegisteredDevice part(L"USB\\VID_0781&PID_5581&MI_00\\6&1&0&0000");
  ASSERT_TRUE(device.IsMade() && part.IsMade()) << GetLastError();
  using namespace std::string_literals;
  device.Set(SPDRP_HARDWAREID, L"USB\\VID_0781&PID_5581&REV_0100\0USB\\VID_0781&PID_5581\0"s);
  device.Set(SPDRP_COMPATIBLEIDS, L"USB\\Class_08&SubClass_06&Prot_50\0USB\\Class_08\0"s);
  device.Set(SPDRP_DEVICEDESC, L"Example Stick");
  device.Set(SPDRP_MFG, L"Example Memories");
  const auto found = GatherInventory(TMachine());
  const std::string name = "USB\\VID_0781&PID_5581\\0123456789AB";
  ASSERT_EQ(Names(found, "ORVSG_USBDevice"), Texts{name});
  EXPECT_EQ(
      Values(Element(found, "ORVSG_USBDevice", name)),
      (Texts{"Name=" + name, "Caption=" + name + ", Example Stick", "Manufacturer=Example Memories",
             "Model=Example Stick", "SerialNumber=0123456789AB", "DeviceClass=8", "VendorID=1921",
             "ProductID=21889"}));
}

TEST(OtherMachine, IsRefused) {
  const auto found = GatherInventory(TMachine("/another"));
  EXPECT_EQ(found.Elements().size(), 0U);
  EXPECT_EQ(Failures(found),
            Texts{"machine: /another: another machine's folder can be read on Linux only"});
}

}  // namespace
}  // namespace havtest
