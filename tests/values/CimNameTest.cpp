// Names as they are checked and folded inside.
#include "inmem/values/CimName.h"

#include <cctype>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "support/AllocationMeter.h"
#include "support/RecordingLogger.h"
#include "support/Status.h"

namespace havtest {
namespace {

using namespace NORVHAV20;

// Byte by byte, with the ranges of ASCII written out.
bool IsPlainName(const std::string& text) {
  const std::string first = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_";
  if (text.find_first_not_of(first + "0123456789") != std::string::npos) return false;
  return text.empty() || first.find(text[0]) != std::string::npos;
}

TEST(CimName, EveryByteAtEveryPlaceIsPartOfANameOrNot) {
  RecordingLogger log;
  EXPECT_TRUE(IsCimName(""));
  for (const std::string around : {"", "a", "_9"})
    for (int byte = 0; byte < 256; ++byte)
      for (const std::string& text :
           {static_cast<char>(byte) + around, around + static_cast<char>(byte)}) {
        const bool isName = IsPlainName(text);
        EXPECT_EQ(IsCimName(text), isName) << byte;
        EXPECT_STATUS(isName ? 0 : 25, (void)NormalizeCimName(text));
        EXPECT_STATUS(isName ? 0 : 25, (void)CimName(text));
      }
}

TEST(CimName, IsFoldedToLowerCase) {
  EXPECT_EQ(NormalizeCimName("CIM_System42"), "cim_system42");
  EXPECT_EQ(CimName("CIM_System42").Folded(), "cim_system42");
  EXPECT_EQ(NormalizeCimName("AZaz_09"), "azaz_09");
  for (const std::size_t size : {63u, 64u, 65u, 1000u})
    EXPECT_EQ(CimName(std::string(size, 'N')).Folded(), std::string(size, 'n'));
}

TEST(CimName, OfUpTo64BytesNeedsNoMemory) {
  for (const std::size_t size : {0u, 1u, 63u, 64u}) {
    const std::string name(size, 'n');
    const AllocationMeter meter;
    const CimName folded(name);
    EXPECT_EQ(meter.Count(), 0u) << size;
    EXPECT_EQ(folded.Folded().size(), size);
  }
}

}  // namespace
}  // namespace havtest
