#include "havcore/TCIMValue.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <iomanip>
#include <limits>
#include <locale>
#include <sstream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <boost/make_shared.hpp>

#include "AllocationCount.h"
#include "FakeObjectModel.h"
#include "havcore/TCIMDateTime.h"
#include "havcore/TCIMReference.h"
#include "support/PrintValue.h"
#include "support/Status.h"

using namespace NORVHAV20;

namespace {

using TElements = std::vector<TCIMValue>;

std::string NameOf(ECIMType type) {
  std::ostringstream out;
  out << TCIMValue::TCIMType(type);
  return out.str();
}

TCIMReference PathOf(const std::string& text) { return TCIMReference::Parse(text, {}); }

// One value of each of the fifteen types.
TElements OneOfEach() {
  return {TCIMValue(true),
          TCIMValue(std::uint8_t{200}),
          TCIMValue(std::int8_t{-100}),
          TCIMValue(std::uint16_t{60000}),
          TCIMValue(std::int16_t{-30000}),
          TCIMValue(std::uint32_t{4000000000}),
          TCIMValue(std::int32_t{-2000000000}),
          TCIMValue(std::numeric_limits<std::uint64_t>::max()),
          TCIMValue(std::numeric_limits<std::int64_t>::min()),
          TCIMValue(0.1F),
          TCIMValue(0.1),
          TCIMValue(u'\u20AC'),
          TCIMValue("text"),
          TCIMValue(TCIMDateTime()),
          TCIMValue(PathOf("C.K=1"))};
}

template <class T>
void ExpectReads(const TCIMValue& value, const T& expected) {
  EXPECT_EQ(static_cast<T>(value), expected);
  for (const TCIMValue& other : OneOfEach()) {
    const unsigned status = other.GetType() == value.GetType() ? 0 : 14;
    EXPECT_STATUS(status, static_cast<T>(other));
  }
  EXPECT_STATUS(14, static_cast<T>(TCIMValue()));
  EXPECT_STATUS(14, static_cast<T>(TCIMValue::Null(value.GetType())));
  EXPECT_STATUS(14, static_cast<T>(TCIMValue(value.GetType(), {value})));
}

}  // namespace

TEST(TCIMType, StreamsAsMofWritesIt) {
  const char* const names[] = {"none",   "boolean", "uint8",    "sint8",    "uint16", "sint16",
                               "uint32", "sint32",  "uint64",   "sint64",   "real32", "real64",
                               "char16", "string",  "datetime", "reference"};
  for (std::uint32_t code = 0; code < 16; ++code) {
    EXPECT_EQ(NameOf(static_cast<ECIMType>(code)), names[code]);
    EXPECT_EQ(NameOf(static_cast<ECIMType>(code + 16)), std::string(names[code]) + "[]");
  }
  EXPECT_EQ(NameOf(static_cast<ECIMType>(32)), "unknown");
}

TEST(TCIMType, StreamsWithinTheWidthOfAColumn) {
  std::ostringstream out;
  out << std::left << std::setw(10) << TCIMValue::TCIMType(ArrayOf(kCIMUInt8)) << '|';
  EXPECT_EQ(out.str(), "uint8[]   |");
}

TEST(TCIMType, ConvertsFromAndToTheCode) {
  const TCIMValue::TCIMType type = kCIMString;
  EXPECT_TRUE(type == kCIMString);
  EXPECT_EQ(ArrayOf(kCIMString), 29u);
  EXPECT_EQ(ElementOf(ArrayOf(kCIMString)), kCIMString);
  EXPECT_EQ(ElementOf(kCIMString), kCIMString);
}

TEST(TCIMValue, TheDefaultIsNullWithoutAType) {
  const TCIMValue value;
  EXPECT_TRUE(value.IsNull());
  EXPECT_FALSE(value.IsArray());
  EXPECT_FALSE(value.IsReference());
  EXPECT_EQ(value.GetType(), kCIMNone);
  EXPECT_EQ(value.ToString(10), "NULL");
}

TEST(TCIMValue, EveryTypeHasItsCode) {
  const TElements values = OneOfEach();
  for (std::size_t i = 0; i < values.size(); ++i) {
    EXPECT_EQ(values[i].GetType(), static_cast<ECIMType>(i + 1));
    EXPECT_FALSE(values[i].IsNull());
    EXPECT_FALSE(values[i].IsArray());
    EXPECT_EQ(values[i].IsReference(), i + 1 == kCIMReference);
  }
}

TEST(TCIMValue, ReadsAsItsOwnTypeAndNoOther) {
  const TElements values = OneOfEach();
  ExpectReads<bool>(values[0], true);
  ExpectReads<std::uint8_t>(values[1], 200);
  ExpectReads<std::int8_t>(values[2], -100);
  ExpectReads<std::uint16_t>(values[3], 60000);
  ExpectReads<std::int16_t>(values[4], -30000);
  ExpectReads<std::uint32_t>(values[5], 4000000000);
  ExpectReads<std::int32_t>(values[6], -2000000000);
  ExpectReads<std::uint64_t>(values[7], std::numeric_limits<std::uint64_t>::max());
  ExpectReads<std::int64_t>(values[8], std::numeric_limits<std::int64_t>::min());
  ExpectReads<float>(values[9], 0.1F);
  ExpectReads<double>(values[10], 0.1);
  ExpectReads<char16_t>(values[11], u'\u20AC');
  ExpectReads<std::string>(values[12], "text");
  ExpectReads<std::string_view>(values[12], "text");
  ExpectReads<const TCIMDateTime&>(values[13], TCIMDateTime());
  ExpectReads<const TCIMReference&>(values[14], PathOf("C.K=1"));
}

TEST(TCIMValue, ANullKeepsItsType) {
  for (std::uint32_t code = 0; code < 32; ++code) {
    const auto type = static_cast<ECIMType>(code);
    const TCIMValue value = TCIMValue::Null(type);
    EXPECT_TRUE(value.IsNull());
    EXPECT_EQ(value.GetType(), type);
    EXPECT_EQ(value.IsArray(), code >= 16);
    EXPECT_FALSE(value.IsReference());
    EXPECT_EQ(value.ToString(10), "NULL");
  }
}

TEST(TCIMValue, ANullPointerToTextIsANullString) {
  const char* const none = nullptr;
  EXPECT_EQ(TCIMValue(none), TCIMValue::Null(kCIMString));
}

TEST(TCIMValue, ArraysOfEveryTypeGiveTheirElementsBack) {
  for (const TCIMValue& each : OneOfEach()) {
    const TElements elements = {each, TCIMValue::Null(each.GetType()), each};
    const TCIMValue array(each.GetType(), elements);
    EXPECT_TRUE(array.IsArray());
    EXPECT_FALSE(array.IsReference());
    EXPECT_FALSE(array.IsNull());
    EXPECT_EQ(array.GetType(), ArrayOf(each.GetType()));
    EXPECT_EQ(static_cast<const TElements&>(array), elements);
    EXPECT_STATUS(14, static_cast<const TElements&>(each));
    EXPECT_STATUS(14, static_cast<const TElements&>(TCIMValue::Null(array.GetType())));
  }
}

TEST(TCIMValue, AnArrayTakesNullsAndRefusesOtherTypes) {
  const TCIMValue array(kCIMUInt8, {TCIMValue(), TCIMValue::Null(kCIMString)});
  for (const TCIMValue& element : static_cast<const TElements&>(array))
    EXPECT_EQ(element, TCIMValue::Null(kCIMUInt8));
  EXPECT_STATUS(14, TCIMValue(kCIMUInt8, {TCIMValue(std::uint16_t{1})}));
  EXPECT_STATUS(14, TCIMValue(kCIMNone, TElements()));
  EXPECT_STATUS(14, TCIMValue(ArrayOf(kCIMNone), TElements()));
  EXPECT_STATUS(14, TCIMValue(ArrayOf(kCIMUInt8), TElements()));
  EXPECT_STATUS(14, TCIMValue(static_cast<ECIMType>(32), TElements()));
}

TEST(TCIMValue, CopyingAndMovingANumberAllocatesNothing) {
  for (const TCIMValue& number : OneOfEach()) {
    if (number.GetType() >= kCIMString) continue;
    const TCIMValue null = TCIMValue::Null(number.GetType());
    const std::size_t before = havtest::AllocationCount();
    TCIMValue copy = number;
    TCIMValue moved = std::move(copy);
    copy = number;
    moved = null;
    EXPECT_EQ(havtest::AllocationCount(), before) << number.GetType();
    EXPECT_EQ(copy, number);
    EXPECT_EQ(moved, null);
  }
}

TEST(TCIMValue, MakingANumberAllocatesNothing) {
  const std::size_t before = havtest::AllocationCount();
  const TCIMValue values[] = {TCIMValue(true),
                              TCIMValue(std::uint8_t{1}),
                              TCIMValue(std::int64_t{-1}),
                              TCIMValue(1.5F),
                              TCIMValue(1.5),
                              TCIMValue(u'x'),
                              TCIMValue(),
                              TCIMValue::Null(kCIMString)};
  EXPECT_EQ(havtest::AllocationCount(), before);
  EXPECT_EQ(values[0].ToString(10), "TRUE");
}

TEST(TCIMValue, CopiesShareWhatTheyHold) {
  TElements values = OneOfEach();
  values.push_back(TCIMValue(kCIMString, {TCIMValue("a")}));
  for (const TCIMValue& value : values) {
    const std::size_t before = havtest::AllocationCount();
    TCIMValue copy = value;
    copy = TCIMValue(value);
    EXPECT_EQ(havtest::AllocationCount(), before) << value.GetType();
    EXPECT_EQ(copy, value);
  }
  const TCIMValue text("a text too long to stand in a string object itself");
  const TCIMValue copy = text;
  EXPECT_EQ(static_cast<std::string_view>(copy).data(), static_cast<std::string_view>(text).data());
}

TEST(TCIMValue, SurvivesAssignmentToItselfAndFromItsOwnElement) {
  TCIMValue value(kCIMString, {TCIMValue("element")});
  TCIMValue& self = value;
  value = self;
  EXPECT_EQ(value.ToString(10), "{element}");
  value = static_cast<const TElements&>(value)[0];
  EXPECT_EQ(value, TCIMValue("element"));
}

TEST(TCIMValue, AMovedFromValueIsNull) {
  TCIMValue value("text");
  const TCIMValue moved = std::move(value);
  EXPECT_EQ(moved, TCIMValue("text"));
  EXPECT_TRUE(value.IsNull());
  value = moved;
  EXPECT_EQ(value, moved);
}

TEST(TCIMValue, CopiesMayLiveInOtherThreads) {
  const TCIMValue text("shared");
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i)
    threads.emplace_back([text] {
      for (int round = 0; round < 10000; ++round) {
        TCIMValue copy = text;
        TCIMValue other = copy;
        copy = TCIMValue();
      }
    });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(static_cast<std::string_view>(text), "shared");
}

TEST(TCIMValue, ToStringOfEveryType) {
  const char* const texts[] = {"TRUE",
                               "200",
                               "-100",
                               "60000",
                               "-30000",
                               "4000000000",
                               "-2000000000",
                               "18446744073709551615",
                               "-9223372036854775808",
                               "0.1",
                               "0.1",
                               "\xE2\x82\xAC",
                               "text",
                               "00000000000000.000000:000",
                               "C.K=1"};
  const TElements values = OneOfEach();
  for (std::size_t i = 0; i < values.size(); ++i) {
    EXPECT_EQ(values[i].ToString(10), texts[i]);
    const TCIMValue array(values[i].GetType(), {values[i], TCIMValue()});
    EXPECT_EQ(array.ToString(10), "{" + std::string(texts[i]) + ", NULL}");
    EXPECT_EQ(TCIMValue(values[i].GetType(), TElements()).ToString(10), "{}");
  }
  EXPECT_EQ(TCIMValue(false).ToString(10), "FALSE");
}

TEST(TCIMValue, ToStringWritesIntegersInTheRadix) {
  EXPECT_EQ(TCIMValue(std::uint8_t{255}).ToString(2), "11111111");
  EXPECT_EQ(TCIMValue(std::uint32_t{0xDEADBEEF}).ToString(16), "deadbeef");
  EXPECT_EQ(TCIMValue(std::int16_t{-255}).ToString(16), "-ff");
  EXPECT_EQ(TCIMValue(std::uint8_t{35}).ToString(36), "z");
  EXPECT_EQ(TCIMValue(std::numeric_limits<std::int64_t>::min()).ToString(2),
            "-1" + std::string(63, '0'));
  for (const std::uint8_t radix : std::initializer_list<std::uint8_t>{0, 1, 37, 255})
    EXPECT_EQ(TCIMValue(std::uint8_t{35}).ToString(radix), "35");
  EXPECT_EQ(TCIMValue(kCIMUInt8, {TCIMValue(std::uint8_t{10})}).ToString(16), "{a}");
  EXPECT_EQ(TCIMValue(true).ToString(2), "TRUE");
  EXPECT_EQ(TCIMValue(10.0).ToString(16), "10");
}

TEST(TCIMValue, ToStringOfRealsReadsBack) {
  EXPECT_EQ(TCIMValue(1.0F / 3).ToString(10), "0.33333334");
  EXPECT_EQ(TCIMValue(1.0 / 3).ToString(10), "0.3333333333333333");
  EXPECT_EQ(TCIMValue(5.0).ToString(10), "5");
  EXPECT_EQ(TCIMValue(-0.0).ToString(10), "-0");
  EXPECT_EQ(TCIMValue(1e300).ToString(10), "1e+300");
  EXPECT_EQ(TCIMValue(std::numeric_limits<double>::infinity()).ToString(10), "inf");
  EXPECT_EQ(TCIMValue(-std::numeric_limits<float>::infinity()).ToString(10), "-inf");
  EXPECT_EQ(TCIMValue(std::numeric_limits<double>::quiet_NaN()).ToString(10), "nan");
  EXPECT_EQ(TCIMValue(-std::numeric_limits<double>::quiet_NaN()).ToString(10), "nan");
}

TEST(TCIMValue, ToStringOfCharactersIsUtf8) {
  EXPECT_EQ(TCIMValue(u'A').ToString(10), "A");
  EXPECT_EQ(TCIMValue(char16_t{0x7F}).ToString(10), "\x7F");
  EXPECT_EQ(TCIMValue(char16_t{0x80}).ToString(10), "\xC2\x80");
  EXPECT_EQ(TCIMValue(u'\u00E9').ToString(10), "\xC3\xA9");
  EXPECT_EQ(TCIMValue(char16_t{0x7FF}).ToString(10), "\xDF\xBF");
  EXPECT_EQ(TCIMValue(char16_t{0x800}).ToString(10), "\xE0\xA0\x80");
  EXPECT_EQ(TCIMValue(char16_t{0xFFFF}).ToString(10), "\xEF\xBF\xBF");
  EXPECT_EQ(TCIMValue(char16_t{0}).ToString(10), std::string(1, '\0'));
}

TEST(TCIMValue, ToStringDoesNotAskTheGlobalLocale) {
  class GroupingNumbers : public std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
  };
  const std::locale before = std::locale::global(std::locale({}, new GroupingNumbers));
  const std::string integer = TCIMValue(std::uint32_t{1234567}).ToString(10);
  const std::string real = TCIMValue(1234.5).ToString(10);
  std::locale::global(before);
  EXPECT_EQ(integer, "1234567");
  EXPECT_EQ(real, "1234.5");
}

TEST(TCIMValue, OrdersByTypeThenNullThenContent) {
  const auto nan = std::numeric_limits<double>::quiet_NaN();
  const auto infinity = std::numeric_limits<double>::infinity();
  // Each stands before all that follow it.
  const TElements ascending = {
      TCIMValue(),
      TCIMValue::Null(kCIMBoolean),
      TCIMValue(false),
      TCIMValue(true),
      TCIMValue(std::uint8_t{0}),
      TCIMValue(std::uint8_t{255}),
      TCIMValue(std::int8_t{-128}),
      TCIMValue(std::int8_t{127}),
      TCIMValue(std::uint64_t{0}),
      TCIMValue(std::numeric_limits<std::uint64_t>::max()),
      TCIMValue::Null(kCIMSInt64),
      TCIMValue(std::numeric_limits<std::int64_t>::min()),
      TCIMValue(std::int64_t{0}),
      TCIMValue(-1.5F),
      TCIMValue(static_cast<float>(nan)),
      TCIMValue::Null(kCIMReal64),
      TCIMValue(-infinity),
      TCIMValue(1.0),
      TCIMValue(infinity),
      TCIMValue(nan),
      TCIMValue(u'a'),
      TCIMValue::Null(kCIMString),
      TCIMValue(""),
      TCIMValue("A"),
      TCIMValue("a"),
      TCIMValue("\xFF"),
      TCIMValue(TCIMDateTime()),
      TCIMValue::Null(kCIMReference),
      TCIMValue(PathOf("A.K=1")),
      TCIMValue(PathOf("A.K=2")),
      TCIMValue::Null(ArrayOf(kCIMUInt8)),
      TCIMValue(kCIMUInt8, TElements()),
      TCIMValue(kCIMUInt8, {TCIMValue()}),
      TCIMValue(kCIMUInt8, {TCIMValue(std::uint8_t{1})}),
      TCIMValue(kCIMUInt8, {TCIMValue(std::uint8_t{1}), TCIMValue(std::uint8_t{0})}),
      TCIMValue(kCIMUInt8, {TCIMValue(std::uint8_t{2})})};
  for (std::size_t i = 0; i < ascending.size(); ++i) {
    EXPECT_TRUE(ascending[i] == TCIMValue(ascending[i])) << i;
    EXPECT_FALSE(ascending[i] < ascending[i]) << i;
    for (std::size_t j = i + 1; j < ascending.size(); ++j) {
      EXPECT_TRUE(ascending[i] < ascending[j]) << i << ' ' << j;
      EXPECT_FALSE(ascending[j] < ascending[i]) << i << ' ' << j;
      EXPECT_TRUE(ascending[i] != ascending[j]) << i << ' ' << j;
    }
  }
}

TEST(TCIMValue, EqualContentMadeTwiceIsEqual) {
  const TElements first = OneOfEach();
  const TElements second = OneOfEach();
  EXPECT_EQ(first, second);
  EXPECT_EQ(TCIMValue(0.0), TCIMValue(-0.0));
  EXPECT_NE(TCIMValue(std::uint8_t{1}), TCIMValue(std::uint16_t{1}));
  EXPECT_EQ(TCIMValue(PathOf("C.K=1")), TCIMValue(PathOf("c.k=1")));
}

TEST(TCIMValue, AReferenceKnowsItsClassAndOutlivesIt) {
  const auto home = boost::make_shared<havtest::FakeNamespace>();
  const auto cls = home->AddClass("Disk", {{"Name", kCIMString}});
  TCIMReference path({}, {{"Name", TCIMValue("sda")}});
  path.SetClass(cls);
  const TCIMValue value(path);
  const TCIMValue null = TCIMValue::NullReference(cls);
  for (const TCIMValue& reference : {value, null}) {
    EXPECT_EQ(reference.GetReferencedClass(), cls);
    EXPECT_EQ(reference.GetReferencedClassName(), "Disk");
  }
  home->classes.clear();
  // Values hold the class weakly: only `cls` is left.
  EXPECT_EQ(cls.use_count(), 1);
}

TEST(TCIMValue, AReferenceToAClassThatIsGoneFindsTheOneOfItsName) {
  const auto home = boost::make_shared<havtest::FakeNamespace>();
  const TCIMValue null = TCIMValue::NullReference(home->AddClass("Disk"));
  home->classes.clear();
  EXPECT_EQ(null.GetReferencedClass(), havtest::ClassPtr());
  EXPECT_EQ(null.GetReferencedClassName(), "Disk");
  const auto again = home->AddClass("DISK");
  EXPECT_EQ(null.GetReferencedClass(), again);
}

TEST(TCIMValue, OnlyAReferenceHasAReferencedClass) {
  for (const TCIMValue& value : OneOfEach()) {
    if (value.GetType() == kCIMReference) continue;
    EXPECT_STATUS(14, value.GetReferencedClass());
    EXPECT_STATUS(14, value.GetReferencedClassName());
  }
  EXPECT_STATUS(14, TCIMValue().GetReferencedClass());
  EXPECT_EQ(TCIMValue::Null(kCIMReference).GetReferencedClass(), havtest::ClassPtr());
  EXPECT_EQ(TCIMValue::Null(kCIMReference).GetReferencedClassName(), "");
  EXPECT_EQ(TCIMValue::NullReference({}), TCIMValue::Null(kCIMReference));
}

TEST(TCIMValue, NullReferencesCompareByClassName) {
  const auto home = boost::make_shared<havtest::FakeNamespace>();
  const TCIMValue any = TCIMValue::Null(kCIMReference);
  const TCIMValue disk = TCIMValue::NullReference(home->AddClass("Disk"));
  const TCIMValue sameDisk = TCIMValue::NullReference(home->AddClass("DISK"));
  const TCIMValue port = TCIMValue::NullReference(home->AddClass("Port"));
  EXPECT_TRUE(disk.IsNull());
  EXPECT_FALSE(disk.IsReference());
  EXPECT_EQ(disk.GetType(), kCIMReference);
  EXPECT_EQ(disk.ToString(10), "NULL");
  EXPECT_EQ(disk, sameDisk);
  EXPECT_NE(disk, any);
  EXPECT_LT(any, disk);
  EXPECT_LT(disk, port);
  EXPECT_STATUS(14, static_cast<const TCIMReference&>(disk));
}
