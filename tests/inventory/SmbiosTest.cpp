// The firmware's table of memory modules, whole and broken.
#include "inventory/Smbios.h"

#include <gtest/gtest.h>

#include "tests/inventory/CollectionText.h"

namespace havtest {
namespace {

using namespace hav::inventory;

// A structure with its texts.
std::string Structure(std::uint8_t type, std::string fields, const Texts& texts) {
  std::string structure{static_cast<char>(type), static_cast<char>(fields.size() + 4), 0, 0};
  structure += fields;
  for (const auto& text : texts) structure += text + '\0';
  if (texts.empty()) structure += '\0';
  return structure + '\0';
}

// The fields of a module from the fifth byte on, as version 3 of the standard has them.
std::string ModuleFields(std::uint16_t size, std::uint32_t extended = 0) {
  std::string fields(0x28 - 4, '\0');
  const auto put = [&](std::size_t at, std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i)
      fields[at - 4 + static_cast<std::size_t>(i)] = static_cast<char>(value >> (8 * i));
  };
  put(0x0C, size, 2);
  put(0x0E, 9, 1);  // DIMM
  put(0x10, 1, 1);
  put(0x11, 2, 1);
  put(0x12, 26, 1);  // DDR4
  put(0x15, 3200, 2);
  put(0x17, 3, 1);
  put(0x18, 4, 1);
  put(0x1A, 5, 1);
  put(0x1C, extended, 4);
  put(0x20, 2933, 2);
  return fields;
}

const Texts kTexts{"DIMM_A1", "BANK 0", "Example Memory", "S-1", "PN-32G  "};

TCollection Collected(const std::string& table) {
  TCollection collection;
  AddMemoryModules(MemoryModules(table), collection);
  return collection;
}

TEST(Smbios, AModuleHasWhatTheTableSays) {
  const auto found =
      Collected(Structure(0, "\x01\x02", {"Firmware"}) +
                Structure(17, ModuleFields(0x7FFF, 32768), kTexts) + Structure(127, "", {}));
  EXPECT_EQ(
      Values(Element(found, "ORVSG_MemoryModule", "DIMM_A1")),
      (Texts{"Name=DIMM_A1", "Caption=DIMM_A1, PN-32G", "BankLocator=BANK 0", "Size=34359738368",
             "FormFactor=9", "MemoryType=26", "Speed=3200", "ConfiguredSpeed=2933",
             "Manufacturer=Example Memory", "PartNumber=PN-32G", "SerialNumber=S-1"}));
}

TEST(Smbios, SizesAreInMegabytesOrKilobytes) {
  const auto size = [](std::uint16_t field) {
    const auto modules = MemoryModules(Structure(17, ModuleFields(field), kTexts));
    return modules.size() == 1 ? modules[0].size : std::nullopt;
  };
  EXPECT_EQ(size(16384), std::uint64_t{16384} << 20U);
  EXPECT_EQ(size(0x8000 | 512), std::uint64_t{512} << 10U);
  EXPECT_EQ(size(0xFFFF), std::nullopt);
}

TEST(Smbios, ASizeOfNothingIsNotKnown) {
  for (const std::uint16_t none : {std::uint16_t{0x8000}, std::uint16_t{0x7FFF}}) {
    const auto modules = MemoryModules(Structure(17, ModuleFields(none), kTexts));
    ASSERT_EQ(modules.size(), 1U);
    EXPECT_EQ(modules[0].size, std::nullopt);
  }
}

TEST(Smbios, EmptySocketsAreNoModules) {
  EXPECT_EQ(MemoryModules(Structure(17, ModuleFields(0), kTexts)).size(), 0U);
}

TEST(Smbios, ModulesOfOneLocatorKeepApart) {
  const auto module = [](const char* bank) {
    return Structure(17, ModuleFields(1024), {"DIMM 0", bank});
  };
  EXPECT_EQ(Names(Collected(module("P0") + module("P1") + module("P1")), "ORVSG_MemoryModule"),
            (Texts{"DIMM 0", "DIMM 0, P1", "DIMM 0, P1 2"}));
}

TEST(Smbios, ModulesKeepApartFromOnesThatAreNamedLikeThem) {
  const auto module = [](const char* locator) {
    return Structure(17, ModuleFields(1024), {locator});
  };
  EXPECT_EQ(Names(Collected(module("A") + module("A") + module("A 2") + module("A")),
                  "ORVSG_MemoryModule"),
            (Texts{"A", "A 2", "A 2 2", "A 3"}));
}

TEST(Smbios, WhatMakersDidNotFillInIsNotKnown) {
  const auto modules =
      MemoryModules(Structure(17, ModuleFields(1024), {"A", "Not Specified", "\x01\x02", "None"}));
  ASSERT_EQ(modules.size(), 1U);
  EXPECT_EQ(modules[0].bank, std::nullopt);
  EXPECT_EQ(modules[0].manufacturer, std::nullopt);
  EXPECT_EQ(modules[0].serialNumber, std::nullopt);
  EXPECT_EQ(modules[0].partNumber, std::nullopt);
}

// Each beginning of a table, and each byte of it changed: nothing but what is whole is read.
TEST(Smbios, BrokenTablesAreReadAsFarAsTheyGo) {
  const auto table = Structure(17, ModuleFields(1024), kTexts) +
                     Structure(17, ModuleFields(2048), kTexts) + Structure(127, "", {});
  for (std::size_t length = 0; length <= table.size(); ++length)
    EXPECT_LE(MemoryModules(table.substr(0, length)).size(), 2U);
  for (std::size_t at = 0; at < table.size(); ++at)
    for (const int byte : {0x00, 0x01, 0x7F, 0xFF}) {
      auto broken = table;
      broken[at] = static_cast<char>(byte);
      EXPECT_LE(MemoryModules(broken).size(), 3U);
    }
  EXPECT_EQ(MemoryModules(table).size(), 2U);
}

}  // namespace
}  // namespace havtest
