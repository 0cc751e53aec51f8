// What hangs on the buses: PCI and USB devices, graphics, network ports without a database,
// optical drives, and which hypervisor there is.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <map>

#include "tests/inventory/CollectionText.h"
#include "tests/inventory/FakeMachine.h"

namespace havtest {
namespace {

using namespace hav::inventory;

const char kDisk[] = "/sys/bus/pci/devices/0000:3b:00.0/";

TEST(PciDevices, HaveNumbersNamesAndADriver) {
  FakeMachine machine;
  for (const auto& [file, text] : std::map<std::string, std::string>{{"vendor", "0x144d"},
                                                                     {"device", "0xa808"},
                                                                     {"subsystem_vendor", "0x144e"},
                                                                     {"subsystem_device", "0xa801"},
                                                                     {"class", "0x010802"},
                                                                     {"revision", "0x0a"},
                                                                     {"numa_node", "1"},
                                                                     {"modalias", "pci:v1"}})
    machine.File(kDisk + file, text + "\n");
  machine.Link(std::string(kDisk) + "driver", "../../../bus/pci/drivers/nvme");
  machine.File("/run/udev/data/+pci:0000:3b:00.0", "E:ID_VENDOR_FROM_DATABASE=Example Storage\n");
  machine.File("/calls/hardware",
               "pci:v2 ID_MODEL_FROM_DATABASE=Other\npci:v1 ID_MODEL_FROM_DATABASE=Fast Disk\n");
  EXPECT_EQ(Values(Element(machine.Gather(), "ORVSG_PCIDevice", "0000:3b:00.0")),
            (Texts{"Name=0000:3b:00.0", "Caption=0000:3b:00.0, Example Storage Fast Disk",
                   "Manufacturer=Example Storage", "Model=Fast Disk", "VendorID=5197",
                   "DeviceID=43016", "SubsystemVendorID=5198", "SubsystemID=43009", "Revision=10",
                   "Driver=nvme", "NumaNode=1", "DeviceClass=1"}));
}

TEST(PciDevices, ThatDriveDisplaysAreGraphicsControllers) {
  FakeMachine machine;
  machine.File("/sys/bus/pci/devices/0000:00:02.0/class", "0x030000\n");
  machine.File("/sys/bus/pci/devices/0000:00:02.0/numa_node", "-1\n");
  const auto found = machine.Gather();
  EXPECT_EQ(Names(found, "ORVSG_PCIDevice"), Texts{});
  EXPECT_EQ(Values(Element(found, "ORVSG_GraphicsController", "0000:00:02.0")),
            (Texts{"Name=0000:00:02.0", "DeviceClass=3"}));
}

TEST(PciDevices, WithNumbersThatAreNoneLoseThemAndSaySo) {
  FakeMachine machine;
  machine.File(std::string(kDisk) + "vendor", "0x12345\n");
  machine.File(std::string(kDisk) + "class", "storage\n");
  const auto found = machine.Gather();
  EXPECT_EQ(Values(Element(found, "ORVSG_PCIDevice", "0000:3b:00.0")), Texts{"Name=0000:3b:00.0"});
  const auto failures = Failures(found);
  EXPECT_EQ(std::count(failures.begin(), failures.end(),
                       std::string("PCI devices: ") + kDisk +
                           "vendor: \"0x12345\" is no number that fits"),
            1);
}

TEST(UsbDevices, HangOnTheirHubs) {
  FakeMachine machine;
  const std::string folder = "/sys/bus/usb/devices/";
  machine.File(folder + "usb1/idVendor", "1d6b\n");
  machine.File(folder + "usb1/speed", "480\n");
  machine.File(folder + "1-4/product", "Hub\n");
  machine.File(folder + "1-4.2/idVendor", "046d\n");
  machine.File(folder + "1-4.2/idProduct", "c077\n");
  machine.File(folder + "1-4.2/manufacturer", "Example Mice\n");
  machine.File(folder + "1-4.2/product", "Mouse\n");
  machine.File(folder + "1-4.2/serial", "M-1\n");
  machine.File(folder + "1-4.2/bDeviceClass", "ff\n");
  machine.File(folder + "1-4.2/speed", "1.5\n");
  machine.File(folder + "1-4.2:1.0/bInterfaceClass", "03\n");
  machine.File("/run/udev/data/+usb:usb1", "E:ID_VENDOR_FROM_DATABASE=Linux Foundation\n");
  const auto found = machine.Gather();
  EXPECT_EQ(Names(found, "ORVSG_USBDevice"), (Texts{"1-4", "1-4.2", "usb1"}));
  EXPECT_EQ(Links(found, "ORVSG_USBDeviceOnHub"), (Texts{"usb1 -> 1-4", "1-4 -> 1-4.2"}));
  EXPECT_EQ(Links(found, "ORVSG_SystemDevice"), Texts{"localhost -> usb1"});
  EXPECT_EQ(Values(Element(found, "ORVSG_USBDevice", "1-4.2")),
            (Texts{"Name=1-4.2", "Caption=1-4.2, Mouse", "Manufacturer=Example Mice", "Model=Mouse",
                   "SerialNumber=M-1", "DeviceClass=255", "VendorID=1133", "ProductID=49271",
                   "Speed=1500000"}));
  EXPECT_EQ(
      Values(Element(found, "ORVSG_USBDevice", "usb1")),
      (Texts{"Name=usb1", "Manufacturer=Linux Foundation", "VendorID=7531", "Speed=480000000"}));
}

TEST(NetworkPorts, TakeTheirMakerFromTheirKindWhereTheDeviceSaysNothing) {
  FakeMachine machine;
  machine.File("/sys/class/net/eth0/ifindex", "2\n");
  machine.File("/sys/class/net/eth0/device/modalias", "pci:v9\n");
  machine.File("/calls/hardware", "pci:v9 ID_VENDOR_FROM_DATABASE=Example Networks\n");
  EXPECT_EQ(Element(machine.Gather(), "ORVSG_PhysicalNetworkPort", "eth0")
                .Get("Manufacturer")
                .ToString(10),
            "Example Networks");
}

TEST(NetworkPorts, IncludeTheLoopback) {
  FakeMachine machine;
  machine.File("/sys/class/net/lo/ifindex", "1\n");
  machine.File("/sys/class/net/lo/type", "772\n");
  machine.File("/sys/class/net/lo/mtu", "65536\n");
  EXPECT_EQ(Values(Element(machine.Gather(), "ORVSG_NetworkPort", "lo")),
            (Texts{"Name=lo", "MaximumTransmissionUnit=65536"}));
}

TEST(OpticalDrives, WithoutADiscHaveNoSize) {
  FakeMachine machine;
  machine.BlockDevice("sr0", "11:0", "2097151");
  machine.File("/sys/block/sr0/queue/rotational", "0\n");
  EXPECT_EQ(Values(Element(machine.Gather(), "ORVSG_DiskDrive", "/dev/sr0")),
            (Texts{"Name=/dev/sr0", "ReadOnly=FALSE", "MediaType=5"}));
}

TEST(OpticalDrives, HaveTheSizeOfTheirDisc) {
  FakeMachine machine;
  machine.BlockDevice("sr0", "11:0", "2097151");
  machine.File("/run/udev/data/b11:0", "E:ID_CDROM_MEDIA=1\n");
  machine.BlockDevice("sdq", "65:0", "1435136");
  machine.File("/sys/block/sdq/device/type", "5\n");
  const auto found = machine.Gather();
  EXPECT_EQ(Element(found, "ORVSG_DiskDrive", "/dev/sr0").Get("Size").ToString(10), "1073741312");
  EXPECT_EQ(Element(found, "ORVSG_DiskDrive", "/dev/sdq").Get("Size").ToString(10), "734789632");
  EXPECT_EQ(Element(found, "ORVSG_DiskDrive", "/dev/sdq").Get("MediaType").ToString(10), "5");
}

TEST(KernelsFileSystems, AreNoneAlsoWithoutTheListOfTypes) {
  FakeMachine machine;
  machine.File("/proc/self/mountinfo",
               "26 1 8:1 / / rw - ext4 /dev/sda1 rw\n"
               "27 26 0:20 / /proc rw - proc proc rw\n"
               "28 26 0:21 / /sys rw - sysfs sysfs rw\n"
               "29 26 0:22 / /run rw - tmpfs tmpfs rw\n"
               "30 26 0:40 / /data rw - btrfs /dev/sdb1 rw\n"
               "31 26 0:41 / /mnt rw - nfs4 files:/share rw\n");
  EXPECT_EQ(Names(machine.Gather(), "ORVSG_FileSystem"), (Texts{"/", "/data", "/mnt"}));
}

std::string HypervisorOf(FakeMachine& machine) {
  machine.File("/proc/sys/kernel/hostname", "vm\n");
  const auto system = Element(machine.Gather(), "ORVSG_ComputerSystem", "vm");
  return system.Get("Hypervisor").ToString(10) + " " + system.Get("HypervisorPresent").ToString(10);
}

TEST(Hypervisor, IsTheOneThatTheProcessorsTheFirmwareOrThePlatformName) {
  const std::vector<std::array<std::string, 3>> signs{
      {"/calls/hypervisor", "KVMKVMKVM\n", "KVM TRUE"},
      {"/calls/hypervisor", "Microsoft Hv\n", "Hyper-V TRUE"},
      {"/sys/hypervisor/type", "xen\n", "Xen TRUE"},
      {"/sys/class/dmi/id/sys_vendor", "VMware, Inc.\n", "VMware TRUE"},
      {"/sys/class/dmi/id/sys_vendor", "innotek GmbH\n", "VirtualBox TRUE"},
      {"/proc/device-tree/hypervisor/compatible", std::string("linux,kvm\0", 10), "KVM TRUE"},
      {"/proc/cpuinfo", "processor\t: 0\n\nmachine\t: CHRP IBM pSeries (emulated by qemu)\n",
       "QEMU TRUE"},
      {"/proc/ppc64/lparcfg", "", "PowerVM TRUE"},
      {"/proc/sysinfo", "VM00 Control Program: KVM/Linux\n", "KVM TRUE"},
      {"/sys/class/dmi/id/sys_vendor", "Microsoft Corporation\n", "NULL NULL"},
      {"/proc/cpuinfo", "processor\t: 0\nflags\t: lm hypervisor\n", "NULL TRUE"},
      {"/proc/cpuinfo", "processor\t: 0\nflags\t: lm\n", "NULL FALSE"}};
  for (const auto& [file, text, expected] : signs) {
    FakeMachine machine;
    machine.File(file, text);
    EXPECT_EQ(HypervisorOf(machine), expected) << file << ": " << text;
  }
}

}  // namespace
}  // namespace havtest
