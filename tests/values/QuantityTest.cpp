// Quantities: the number of a uint64 property with units, as people see it.
#include "inmem/values/Quantity.h"

#include <cstdint>
#include <limits>

#include <gtest/gtest.h>

#include "inmem/values/DisplayText.h"
#include "support/Status.h"
#include "tests/values/FakeDecl.h"

namespace havtest {
namespace {

constexpr std::uint64_t kKilo = 1024;
constexpr std::uint64_t kMega = kKilo * kKilo;
constexpr std::uint64_t kGiga = kMega * kKilo;
constexpr std::uint64_t kTera = kGiga * kKilo;
constexpr std::uint64_t kPeta = kTera * kKilo;
constexpr std::uint64_t kLargest = std::numeric_limits<std::uint64_t>::max();

FakeDecl Words(const std::string& units) {
  FakeDecl decl(kCIMUInt64);
  decl.With("UNITS", TCIMValue(units))
      .With("DISPLAYFIXEDUNITS", Null(kCIMString))
      .With("ABBREVIATEUNITS", Null(kCIMBoolean));
  return decl;
}

FakeDecl Abbreviated(const std::string& units) {
  return Words(units).With("ABBREVIATEUNITS", TCIMValue(true));
}

FakeDecl Fixed(const std::string& units, const TCIMValue& fixedUnits) {
  return Words(units).With("DISPLAYFIXEDUNITS", fixedUnits);
}

std::string Shown(FakeDecl decl, std::uint64_t number) {
  return FormatValue(decl, TCIMValue(number));
}

TEST(Quantity, IsNotScaledAtTheFactorItself) {
  EXPECT_EQ("1024 Bytes", Shown(Words("Bytes"), 1024));
  EXPECT_EQ("1024 Kilobytes", Shown(Words("Bytes"), 1048576));
}

TEST(Quantity, IsScaledAboveTheFactor) {
  EXPECT_EQ("1 Kilobytes", Shown(Words("Bytes"), 1025));
  EXPECT_EQ("1.5 Kilobytes", Shown(Words("Bytes"), 1536));
  EXPECT_EQ("1 Megabytes", Shown(Words("Bytes"), 1048577));
}

TEST(Quantity, SmallNumbersStayAsTheyAre) {
  EXPECT_EQ("0 Bytes", Shown(Words("Bytes"), 0));
  EXPECT_EQ("1 Bytes", Shown(Words("Bytes"), 1));
  EXPECT_EQ("512 Bytes", Shown(Words("Bytes"), 512));
}

TEST(Quantity, ScalesThroughEveryPrefix) {
  EXPECT_EQ("2 Kilobytes", Shown(Words("Bytes"), 2 * kKilo));
  EXPECT_EQ("2 Megabytes", Shown(Words("Bytes"), 2 * kMega));
  EXPECT_EQ("2 Gigabytes", Shown(Words("Bytes"), 2 * kGiga));
  EXPECT_EQ("2 Terabytes", Shown(Words("Bytes"), 2 * kTera));
  EXPECT_EQ("2 Petabytes", Shown(Words("Bytes"), 2 * kPeta));
}

TEST(Quantity, ScalesNoFurtherThanPeta) {
  EXPECT_EQ("16384 Petabytes", Shown(Words("Bytes"), kLargest));
}

TEST(Quantity, EveryPrefixHasItsWord) {
  EXPECT_EQ("1 Petabytes", Shown(Words("PetaBytes"), 1));
  EXPECT_EQ("1 Terabytes", Shown(Words("TeraBytes"), 1));
  EXPECT_EQ("1 Gigabytes", Shown(Words("GigaBytes"), 1));
  EXPECT_EQ("1 Megabytes", Shown(Words("MegaBytes"), 1));
  EXPECT_EQ("1 Kilobytes", Shown(Words("KiloBytes"), 1));
  EXPECT_EQ("1 Bytes", Shown(Words("Bytes"), 1));
  EXPECT_EQ("1 Millibytes", Shown(Words("MilliBytes"), 1));
  EXPECT_EQ("1 Microbytes", Shown(Words("MicroBytes"), 1));
  EXPECT_EQ("1 Nanobytes", Shown(Words("NanoBytes"), 1));
}

TEST(Quantity, EveryPrefixHasItsAbbreviation) {
  EXPECT_EQ("1 PB", Shown(Abbreviated("PetaBytes"), 1));
  EXPECT_EQ("1 TB", Shown(Abbreviated("TeraBytes"), 1));
  EXPECT_EQ("1 GB", Shown(Abbreviated("GigaBytes"), 1));
  EXPECT_EQ("1 MB", Shown(Abbreviated("MegaBytes"), 1));
  EXPECT_EQ("1 KB", Shown(Abbreviated("KiloBytes"), 1));
  EXPECT_EQ("1 B", Shown(Abbreviated("Bytes"), 1));
  EXPECT_EQ("1 mB", Shown(Abbreviated("MilliBytes"), 1));
  EXPECT_EQ("1 uB", Shown(Abbreviated("MicroBytes"), 1));
  EXPECT_EQ("1 nB", Shown(Abbreviated("NanoBytes"), 1));
}

TEST(Quantity, ScalesOnFromThePrefixThatItHas) {
  EXPECT_EQ("1.5 Megabytes", Shown(Words("KiloBytes"), 1536));
  EXPECT_EQ("2 Petabytes", Shown(Words("TeraBytes"), 2048));
  EXPECT_EQ("2048 Petabytes", Shown(Words("PetaBytes"), 2048));
}

TEST(Quantity, ScalesFromSmallPrefixesThroughTheUnitItself) {
  EXPECT_EQ("1.5 Bytes", Shown(Words("MilliBytes"), 1536));
  EXPECT_EQ("2 Kilobytes", Shown(Words("MilliBytes"), 2 * kMega));
  EXPECT_EQ("2 Bytes", Shown(Words("NanoBytes"), 2 * kGiga));
}

TEST(Quantity, EveryUnitInWords) {
  EXPECT_EQ("2 Kilobytes", Shown(Words("Bytes"), 2048));
  EXPECT_EQ("2 Kilobits", Shown(Words("Bits"), 2048));
  EXPECT_EQ("2 Kilobytes per second", Shown(Words("Bytes per Second"), 2048));
  EXPECT_EQ("2 Kilobits per second", Shown(Words("Bits per Second"), 2000));
}

TEST(Quantity, EveryUnitInWordsWithoutPrefix) {
  EXPECT_EQ("7 Bytes", Shown(Words("Bytes"), 7));
  EXPECT_EQ("7 Bits", Shown(Words("Bits"), 7));
  EXPECT_EQ("7 Bytes per second", Shown(Words("Bytes per Second"), 7));
  EXPECT_EQ("7 Bits per second", Shown(Words("Bits per Second"), 7));
}

TEST(Quantity, EveryUnitAbbreviated) {
  EXPECT_EQ("1.5 KB", Shown(Abbreviated("Bytes"), 1536));
  EXPECT_EQ("3 MB/s", Shown(Abbreviated("Bytes per Second"), 3 * kMega));
  EXPECT_EQ("100 Mbps", Shown(Abbreviated("Bits per Second"), 100000000));
}

TEST(Quantity, BitsAreNeverAbbreviated) {
  EXPECT_EQ("7 Bits", Shown(Abbreviated("Bits"), 7));
  EXPECT_EQ("2 KBits", Shown(Abbreviated("Bits"), 2048));
}

TEST(Quantity, EveryAbbreviationWithoutPrefix) {
  EXPECT_EQ("7 B", Shown(Abbreviated("Bytes"), 7));
  EXPECT_EQ("7 B/s", Shown(Abbreviated("Bytes per Second"), 7));
  EXPECT_EQ("7 bps", Shown(Abbreviated("Bits per Second"), 7));
}

TEST(Quantity, OnlyBitsPerSecondScaleByThousand) {
  EXPECT_EQ("1000 Bits per second", Shown(Words("Bits per Second"), 1000));
  EXPECT_EQ("1 Kilobits per second", Shown(Words("Bits per Second"), 1001));
  EXPECT_EQ("1001 Bits", Shown(Words("Bits"), 1001));
  EXPECT_EQ("1024 Bits", Shown(Words("Bits"), 1024));
  EXPECT_EQ("1 Kilobits", Shown(Words("Bits"), 1025));
  EXPECT_EQ("1001 Bytes per second", Shown(Words("Bytes per Second"), 1001));
  EXPECT_EQ("1024 Bytes per second", Shown(Words("Bytes per Second"), 1024));
  EXPECT_EQ("1 Kilobytes per second", Shown(Words("Bytes per Second"), 1025));
}

TEST(Quantity, AnyAbbreviateValueAbbreviates) {
  EXPECT_EQ("7 B", Shown(Words("Bytes").With("ABBREVIATEUNITS", TCIMValue(false)), 7));
  EXPECT_EQ("7 B", Shown(Words("Bytes").With("ABBREVIATEUNITS", TCIMValue("")), 7));
}

TEST(Quantity, FixedUnitsLimitScaling) {
  EXPECT_EQ("2097152 Kilobytes", Shown(Fixed("Bytes", TCIMValue("Kilo")), 2 * kGiga));
  EXPECT_EQ("2048 Megabytes", Shown(Fixed("Bytes", TCIMValue("Mega")), 2 * kGiga));
  EXPECT_EQ("5242880 Megabytes", Shown(Fixed("Bytes", TCIMValue("Mega")), 5 * kTera));
  EXPECT_EQ("2048 Gigabytes", Shown(Fixed("Bytes", TCIMValue("Giga")), 2 * kTera));
  EXPECT_EQ("2048 Terabytes", Shown(Fixed("Bytes", TCIMValue("Tera")), 2 * kPeta));
}

TEST(Quantity, OtherFixedUnitsLimitNothing) {
  EXPECT_EQ("2 Petabytes", Shown(Fixed("Bytes", TCIMValue("Peta")), 2 * kPeta));
  EXPECT_EQ("2 Petabytes", Shown(Fixed("Bytes", TCIMValue("kilo")), 2 * kPeta));
  EXPECT_EQ("2 Petabytes", Shown(Fixed("Bytes", TCIMValue("")), 2 * kPeta));
  EXPECT_EQ("2 Petabytes", Shown(Fixed("Bytes", TCIMValue("Milli")), 2 * kPeta));
  EXPECT_EQ("2 Petabytes", Shown(Fixed("Bytes", TCIMValue(std::uint8_t{4})), 2 * kPeta));
}

TEST(Quantity, FixedUnitsDoNotForceScaling) {
  EXPECT_EQ("1024 Bytes", Shown(Fixed("Bytes", TCIMValue("Mega")), 1024));
}

TEST(Quantity, AUnitAboveTheFixedOneStaysThere) {
  EXPECT_EQ("5000 Gigabytes", Shown(Fixed("GigaBytes", TCIMValue("Kilo")), 5000));
  EXPECT_EQ("5000 Kilobytes", Shown(Fixed("KiloBytes", TCIMValue("Kilo")), 5000));
}

TEST(Quantity, ShowsOneDecimalPlaceUnlessItIsZero) {
  EXPECT_EQ("2 Kilobytes", Shown(Words("Bytes"), 2048));
  EXPECT_EQ("2 Kilobytes", Shown(Words("Bytes"), 2049));
  EXPECT_EQ("2.1 Kilobytes", Shown(Words("Bytes"), 2150));
  EXPECT_EQ("10 Kilobytes", Shown(Words("Bytes"), 10240));
}

TEST(Quantity, RoundsTiesToEven) {
  EXPECT_EQ("1.2 Kilobytes", Shown(Words("Bytes"), 1280));
  EXPECT_EQ("1.8 Kilobytes", Shown(Words("Bytes"), 1792));
}

TEST(Quantity, IsComputedInSinglePrecision) {
  EXPECT_EQ("35.5 Megabits per second", Shown(Words("Bits per Second"), 35449998));
  EXPECT_EQ("49.8 Megabits per second", Shown(Words("Bits per Second"), 49850001));
  EXPECT_EQ("16777216 Petabytes", Shown(Words("PetaBytes"), 16777217));
  EXPECT_EQ("18446744073709551616 Petabytes", Shown(Words("PetaBytes"), kLargest));
}

TEST(Quantity, UnknownUnitsShowThePlainNumber) {
  EXPECT_EQ("5", Shown(Words("Hertz"), 5));
  EXPECT_EQ("5", Shown(Words("bytes"), 5));
  EXPECT_EQ("5", Shown(Words("Bytes "), 5));
  EXPECT_EQ("5", Shown(Words("Byte"), 5));
  EXPECT_EQ("5", Shown(Words("Kilo"), 5));
  EXPECT_EQ("5", Shown(Words("kiloBytes"), 5));
  EXPECT_EQ("5", Shown(Words(" Bytes"), 5));
  EXPECT_EQ("5", Shown(Words("Bytes Per Second"), 5));
}

TEST(Quantity, OnlyOnePrefixIsTakenOff) { EXPECT_EQ("5", Shown(Words("KiloMegaBytes"), 5)); }

TEST(Quantity, EmptyUnitsShowThePlainNumber) {
  EXPECT_EQ("5", Shown(Words(""), 5));
  EXPECT_EQ("5", Shown(Words("Bytes").With("UNITS", Null(kCIMString)), 5));
  EXPECT_EQ("5", Shown(Words("Bytes").With("UNITS", Texts({"Bytes"})), 5));
}

TEST(Quantity, PlainNumbersHaveTheirRadix) {
  EXPECT_EQ("ff", Shown(Words("Hertz").With("BASE", TCIMValue(std::uint8_t{16})), 255));
}

TEST(Quantity, NeedsAllItsQualifiers) {
  EXPECT_EQ("2048", Shown(Words("Bytes").Without("UNITS"), 2048));
  EXPECT_EQ("2048", Shown(Words("Bytes").Without("DISPLAYFIXEDUNITS"), 2048));
  EXPECT_EQ("2048", Shown(Words("Bytes").Without("ABBREVIATEUNITS"), 2048));
}

TEST(Quantity, EveryUnsignedIntegerIsOne) {
  auto decl = Words("Bytes");
  EXPECT_EQ("200 Bytes", FormatValue(decl, TCIMValue(std::uint8_t{200})));
  EXPECT_EQ("2 Kilobytes", FormatValue(decl, TCIMValue(std::uint16_t{2048})));
  EXPECT_EQ("2 Gigabytes", FormatValue(decl, TCIMValue(std::uint32_t{0x80000000})));
  EXPECT_EQ("2 Petabytes", FormatValue(decl, TCIMValue(2 * kPeta)));
}

TEST(Quantity, OtherTypesAreNone) {
  auto decl = Words("Bytes");
  EXPECT_EQ("TRUE", FormatValue(decl, TCIMValue(true)));
  EXPECT_EQ("5", FormatValue(decl, TCIMValue(std::int8_t{5})));
  EXPECT_EQ("-5", FormatValue(decl, TCIMValue(std::int64_t{-5})));
  EXPECT_EQ("1.5", FormatValue(decl, TCIMValue(1.5)));
  EXPECT_EQ("text", FormatValue(decl, TCIMValue("text")));
  EXPECT_EQ((Strings{"BASE", "BASE", "BASE", "BASE", "BASE"}), decl.Lookups());
}

// Durations.

FakeDecl Seconds(const std::string& units) {
  FakeDecl decl(kCIMUInt64);
  decl.With("UNITS", TCIMValue(units)).With("DISPLAYCPUTIME", TCIMValue(true));
  return decl;
}

TEST(Duration, OfSeconds) {
  EXPECT_EQ("00:00:00", Shown(Seconds("Seconds"), 0));
  EXPECT_EQ("00:00:59", Shown(Seconds("Seconds"), 59));
  EXPECT_EQ("00:01:00", Shown(Seconds("Seconds"), 60));
  EXPECT_EQ("01:00:00", Shown(Seconds("Seconds"), 3600));
  EXPECT_EQ("23:59:59", Shown(Seconds("Seconds"), 86399));
  EXPECT_EQ("1 day 00:00:00", Shown(Seconds("Seconds"), 86400));
  EXPECT_EQ("2 days 03:04:05", Shown(Seconds("Seconds"), 183845));
}

TEST(Duration, OfMilliseconds) {
  EXPECT_EQ("1 day 01:01:01.001000", Shown(Seconds("MilliSeconds"), 90061001));
  EXPECT_EQ("00:00:00.001000", Shown(Seconds("MilliSeconds"), 1));
}

TEST(Duration, OfMicroseconds) {
  EXPECT_EQ("00:00:00.000001", Shown(Seconds("MicroSeconds"), 1));
  EXPECT_EQ("00:01:01.000002", Shown(Seconds("MicroSeconds"), 61000002));
}

TEST(Duration, OfNanosecondsDropsWhatIsLessThanAMicrosecond) {
  EXPECT_EQ("00:00:00", Shown(Seconds("NanoSeconds"), 999));
  EXPECT_EQ("00:00:00.000001", Shown(Seconds("NanoSeconds"), 1999));
  EXPECT_EQ("213503 days 23:34:33.709551", Shown(Seconds("NanoSeconds"), kLargest));
}

TEST(Duration, OfLargerUnitsIsShownAsNoTime) {
  EXPECT_EQ("00:00:00", Shown(Seconds("KiloSeconds"), 5));
  EXPECT_EQ("00:00:00", Shown(Seconds("MegaSeconds"), 5));
  EXPECT_EQ("00:00:00", Shown(Seconds("GigaSeconds"), 5));
  EXPECT_EQ("00:00:00", Shown(Seconds("TeraSeconds"), 5));
  EXPECT_EQ("00:00:00", Shown(Seconds("PetaSeconds"), 5));
}

TEST(Duration, OfMillisecondsWraps) {
  EXPECT_EQ("00:00:00.000384", Shown(Seconds("MilliSeconds"), 18446744073709552));
}

TEST(Duration, LongerThanAnIntervalIsRefused) {
  EXPECT_EQ("99999999 days 23:59:59", Shown(Seconds("Seconds"), 8639999999999));
  EXPECT_STATUS(14, Shown(Seconds("Seconds"), 8640000000000));
  EXPECT_STATUS(14, Shown(Seconds("Seconds"), kLargest));
}

TEST(Duration, OfMoreDaysThanTheParameterHoldsIsRefusedToo) {
  EXPECT_STATUS(14, Shown(Seconds("Seconds"), (std::uint64_t{1} << 32) * 86400 + 5));
}

TEST(Duration, DoesNotReadTheValueOfItsQualifier) {
  EXPECT_EQ("00:00:05", Shown(Seconds("Seconds").With("DISPLAYCPUTIME", Null(kCIMBoolean)), 5));
  EXPECT_EQ("00:00:05", Shown(Seconds("Seconds").With("DISPLAYCPUTIME", TCIMValue(false)), 5));
}

TEST(Duration, NeedsItsQualifier) {
  EXPECT_EQ("5", Shown(Seconds("Seconds").Without("DISPLAYCPUTIME"), 5));
}

TEST(Duration, NeedsNoQualifierOfScaledUnits) {
  auto decl = Seconds("Seconds");
  EXPECT_EQ("00:00:05", FormatValue(decl, TCIMValue(std::uint8_t{5})));
  EXPECT_EQ((Strings{"UNITS", "DISPLAYCPUTIME"}), decl.Lookups());
}

TEST(Duration, IsOfExactlyThatUnit) {
  EXPECT_EQ("5", Shown(Seconds("seconds"), 5));
  EXPECT_EQ("5", Shown(Seconds("Milliseconds"), 5));
  EXPECT_EQ("5", Shown(Seconds("Seconds "), 5));
}

}  // namespace
}  // namespace havtest
