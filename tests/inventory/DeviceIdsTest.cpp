#include "inventory/DeviceIds.h"

#include <gtest/gtest.h>

namespace havtest {
namespace {

using namespace hav::inventory;

TEST(DeviceIds, OfAPciDevice) {
  const auto ids = ReadPciIds({"PCI\\VEN_8086&DEV_1237&SUBSYS_11001AF4&REV_02",
                               "PCI\\VEN_8086&DEV_1237&SUBSYS_11001AF4",
                               "PCI\\VEN_8086&DEV_1237&CC_060000", "PCI\\VEN_8086&CC_0600"});
  EXPECT_EQ(0x8086, ids.vendor);
  EXPECT_EQ(0x1237, ids.device);
  EXPECT_EQ(0x1100, ids.subsystem);
  EXPECT_EQ(0x1AF4, ids.subsystemVendor);
  EXPECT_EQ(0x02, ids.revision);
  EXPECT_EQ(0x06, ids.deviceClass);
}

TEST(DeviceIds, OfAPciDeviceWithoutSubsystem) {
  const auto ids = ReadPciIds({"pci\\ven_1b36&dev_000c&subsys_00000000&rev_00"});
  EXPECT_EQ(0x1B36, ids.vendor);
  EXPECT_EQ(0x000C, ids.device);
  EXPECT_FALSE(ids.subsystem);
  EXPECT_FALSE(ids.subsystemVendor);
  EXPECT_EQ(0, ids.revision);
  EXPECT_FALSE(ids.deviceClass);
}

// What Windows has for a display that no bus tells of.
TEST(DeviceIds, WhatIsNoNumberIsLeftOut) {
  for (const auto* const text :
       {"", "PCI", "PCI\\", "PCI\\VEN_", "PCI\\VEN_80", "PCI\\VEN_XXXX&DEV_", "PCI\\&&&",
        "PCI\\SUBSYS_1100", "\\&\\&", "VEN_\xFF\xFE\xFD\xFC"}) {
    const auto ids = ReadPciIds({text});
    EXPECT_FALSE(ids.vendor) << text;
    EXPECT_FALSE(ids.device) << text;
    EXPECT_FALSE(ids.subsystemVendor) << text;
    EXPECT_FALSE(ids.revision) << text;
    EXPECT_FALSE(ids.deviceClass) << text;
  }
}

TEST(DeviceIds, OfAUsbDevice) {
  const auto ids = ReadUsbIds({"USB\\VID_046D&PID_C31C&REV_6402", "USB\\VID_046D&PID_C31C",
                               "USB\\Class_03&SubClass_01&Prot_01", "USB\\Class_03&SubClass_01"});
  EXPECT_EQ(0x046D, ids.vendor);
  EXPECT_EQ(0xC31C, ids.product);
  EXPECT_EQ(3, ids.deviceClass);
}

TEST(DeviceIds, OfADeviceWithInterfaces) {
  const auto ids = ReadUsbIds({"USB\\VID_0BDA&PID_5678&REV_0001", "USB\\DevClass_EF&SubClass_02"});
  EXPECT_EQ(0xEF, ids.deviceClass);
}

TEST(DeviceIds, OfARootHub) {
  const auto ids = ReadUsbIds({"USB\\ROOT_HUB30&VID8086&PIDA36D&REV0010", "USB\\ROOT_HUB30"});
  EXPECT_EQ(0x8086, ids.vendor);
  EXPECT_EQ(0xA36D, ids.product);
  EXPECT_FALSE(ids.deviceClass);
}

TEST(DeviceIds, APciDeviceIsNamedByItsPlace) {
  EXPECT_EQ("0000:00:1f.3", PciName(0, 0x001F0003));
  EXPECT_EQ("0001:02:00.0", PciName(0x0102, 0));
  EXPECT_EQ("10000:e1:00.0", PciName(0x10000E1, 0));
}

TEST(DeviceIds, OnlyADevicesOwnSerialNumberIsOne) {
  EXPECT_EQ("0123456789AB", UsbSerialNumber("USB\\VID_0781&PID_5581\\0123456789AB"));
  EXPECT_EQ(std::nullopt, UsbSerialNumber("USB\\VID_046D&PID_C31C\\5&2A2C1B3F&0&1"));
  EXPECT_EQ(std::nullopt, UsbSerialNumber("USB\\VID_046D&PID_C31C\\"));
  EXPECT_EQ(std::nullopt, UsbSerialNumber("USB\\VID_046D&PID_C31C"));
  EXPECT_EQ(std::nullopt, UsbSerialNumber(""));
  EXPECT_EQ(std::nullopt, UsbSerialNumber("USB\\VID_046D&PID_C31C\\\x01\x02"));
}

TEST(DeviceIds, AnInterfaceIsNoDevice) {
  EXPECT_TRUE(IsUsbInterface("USB\\VID_0BDA&PID_5678&MI_00\\6&1&0&0000"));
  EXPECT_FALSE(IsUsbInterface("USB\\VID_0BDA&PID_5678\\MI_00"));
  EXPECT_FALSE(IsUsbInterface("USB\\ROOT_HUB30\\4&1&0&0"));
  EXPECT_FALSE(IsUsbInterface(""));
}

TEST(DeviceIds, NamesInBracketsAreNobodys) {
  EXPECT_TRUE(IsMakersName("Example Networks"));
  EXPECT_FALSE(IsMakersName("(Standard USB Host Controller)"));
  EXPECT_FALSE(IsMakersName(""));
}

TEST(DeviceIds, ProcessorsAreListedInRanges) {
  EXPECT_EQ("", ProcessorList(0, 0));
  EXPECT_EQ("0-3", ProcessorList(0xF, 0));
  EXPECT_EQ("1,3-4,63", ProcessorList(0x800000000000001A, 0));
  EXPECT_EQ("64-127", ProcessorList(~std::uint64_t{0}, 64));
}

}  // namespace
}  // namespace havtest
