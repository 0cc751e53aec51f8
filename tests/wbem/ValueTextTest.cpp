#include "wbem/ValueText.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "havcore/havcore.h"
#include "support/PrintValue.h"
#include "wbem/TCimError.h"

namespace havtest {
namespace {

using namespace hav::wbem;
using namespace NORVHAV20;

// Status and text of the refusal.
std::string Refusal(ECIMType type, const std::string& text) {
  try {
    ParseValue(type, text);
    return "read";
  } catch (const TCimError& failure) {
    return std::to_string(static_cast<unsigned>(failure.GetStatus())) + ": " + failure.what();
  }
}

TEST(ValueText, EveryTypeReadsBack) {
  const TCIMValue values[] = {
      TCIMValue(true),
      TCIMValue(std::uint8_t{255}),
      TCIMValue(std::int8_t{-128}),
      TCIMValue(std::uint16_t{65535}),
      TCIMValue(std::int16_t{-32768}),
      TCIMValue(std::uint32_t{4294967295u}),
      TCIMValue(std::int32_t{-2147483647 - 1}),
      TCIMValue(std::numeric_limits<std::uint64_t>::max()),
      TCIMValue(std::numeric_limits<std::int64_t>::min()),
      TCIMValue(0.1f),
      TCIMValue(-1.0e300),
      TCIMValue(u'\u00E4'),
      TCIMValue(" <a> "),
      TCIMValue(TCIMDateTime::Parse("20240301101500.000000+060")),
  };
  for (const auto& value : values)
    EXPECT_EQ(value, ParseValue(value.GetType(), ValueText(value))) << ValueText(value);
}

TEST(ValueText, RealsHaveAPointAndNamesForWhatIsNoNumber) {
  EXPECT_EQ("1.0", ValueText(TCIMValue(1.0)));
  EXPECT_EQ("1.0e+300", ValueText(TCIMValue(1e300)));
  EXPECT_EQ("INF", ValueText(TCIMValue(std::numeric_limits<double>::infinity())));
  EXPECT_EQ("-INF", ValueText(TCIMValue(-std::numeric_limits<float>::infinity())));
  EXPECT_EQ("NaN", ValueText(TCIMValue(std::nan(""))));
  EXPECT_TRUE(std::isinf(static_cast<double>(ParseValue(kCIMReal64, "-INF"))));
  EXPECT_TRUE(std::isnan(static_cast<double>(ParseValue(kCIMReal64, "NaN"))));
}

TEST(ValueText, NumbersAreDecimalOrHexadecimal) {
  EXPECT_EQ(TCIMValue(std::uint8_t{10}), ParseValue(kCIMUInt8, " +10\n"));
  EXPECT_EQ(TCIMValue(std::int16_t{-255}), ParseValue(kCIMSInt16, "-0xFf"));
  EXPECT_EQ("13: '256' is no uint8", Refusal(kCIMUInt8, "256"));
  EXPECT_EQ("13: '-1' is no uint32", Refusal(kCIMUInt32, "-1"));
  EXPECT_EQ("13: '' is no sint64", Refusal(kCIMSInt64, ""));
  EXPECT_EQ("13: '+-1' is no sint8", Refusal(kCIMSInt8, "+-1"));
  EXPECT_EQ("13: '0x' is no uint8", Refusal(kCIMUInt8, "0x"));
  EXPECT_EQ("13: '1.5' is no uint8", Refusal(kCIMUInt8, "1.5"));
  EXPECT_EQ("13: '1,5' is no real32", Refusal(kCIMReal32, "1,5"));
}

TEST(ValueText, OtherTextIsRefused) {
  EXPECT_EQ("13: 'yes' is no boolean", Refusal(kCIMBoolean, "yes"));
  EXPECT_EQ("13: 'ab' is no char16", Refusal(kCIMChar16, "ab"));
  EXPECT_EQ("13: '\xF0\x9F\x90\xA6' is no char16", Refusal(kCIMChar16, "\xF0\x9F\x90\xA6"));
  EXPECT_EQ("13: 'today' is no datetime", Refusal(kCIMDateTime, "today"));
  EXPECT_EQ("13: 'x' is no reference", Refusal(kCIMReference, "x"));
}

TEST(ValueText, TypesHaveTheirNamesOfMof) {
  EXPECT_EQ("uint32", TypeName(kCIMUInt32));
  EXPECT_EQ("string", TypeName(ArrayOf(kCIMString)));
  EXPECT_EQ(kCIMDateTime, FindType("DateTime"));
  EXPECT_FALSE(FindType("string[]"));
}

}  // namespace
}  // namespace havtest
