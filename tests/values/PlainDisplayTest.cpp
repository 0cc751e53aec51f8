// The plug-in's display text against the plain way, on random qualifiers and values. The
// seeds are fixed: a failure comes back at every run.
#include <cstdint>
#include <limits>
#include <random>
#include <tuple>

#include <gtest/gtest.h>

#include "inmem/values/DisplayText.h"
#include "inmem/values/ValueMap.h"
#include "tests/values/FakeDecl.h"
#include "tests/values/PlainDisplay.h"

namespace havtest {
namespace {

class Chance {
 public:
  explicit Chance(std::uint32_t seed) : m_engine(seed) {}

  // A number below `bound`. Not a standard distribution: those differ between libraries.
  std::size_t Below(std::size_t bound) { return static_cast<std::size_t>(m_engine() % bound); }
  bool OneIn(std::size_t n) { return Below(n) == 0; }
  template <class T>
  const T& Of(const std::vector<T>& choices) {
    return choices[Below(choices.size())];
  }

  // A number of any magnitude.
  std::uint64_t Number() {
    const std::uint64_t bits = m_engine();
    return bits >> Below(64);
  }

 private:
  std::mt19937_64 m_engine;
};

std::string RandomPattern(Chance& chance) {
  static const Strings pieces{"0",
                              "1",
                              "2",
                              "5",
                              "7",
                              "8",
                              "9",
                              "10",
                              "42",
                              "255",
                              "0x",
                              "0X",
                              "0",
                              "a",
                              "F",
                              "f",
                              "x",
                              "g",
                              "-",
                              "+",
                              " ",
                              "\t",
                              "\n",
                              ".",
                              "..",
                              "..",
                              "..",
                              "..",
                              "...",
                              "e",
                              ",",
                              "'",
                              "18446744073709551615",
                              "18446744073709551616",
                              "18446744073709551614",
                              "0xFFFFFFFFFFFFFFFF",
                              "0x10000000000000000",
                              "01777777777777777777777",
                              "02000000000000000000000",
                              "99999999999999999999",
                              "3..15",
                              "16..",
                              "..5",
                              std::string(1, '\0'),
                              "\xC2\xA0",
                              "\v",
                              "\f",
                              "\r"};
  std::string pattern;
  for (std::size_t n = chance.Below(7); n > 0; --n) pattern += chance.Of(pieces);
  return pattern;
}

// What a schema would have: ordinary numbers and ranges, small ones so that they meet.
std::string UsualPattern(Chance& chance) {
  const auto number = [&] { return std::to_string(chance.Below(40)); };
  switch (chance.Below(6)) {
    case 0: return number() + ".." + number();
    case 1: return number() + "..";
    case 2: return ".." + number();
    case 3: return "..";
    default: return number();
  }
}

TEST(PlainDisplay, RandomPatternsMakeTheSameEntries) {
  Chance chance(20240611);
  for (int round = 0; round < 100000; ++round) {
    Strings patterns;
    const bool usual = chance.OneIn(2);
    for (std::size_t n = 1 + chance.Below(6); n > 0; --n)
      patterns.push_back(usual ? UsualPattern(chance) : RandomPattern(chance));
    PlainValueMap expected;
    std::uint64_t next = 0;
    Strings texts;
    for (const std::string& pattern : patterns) {
      texts.push_back(chance.OneIn(9) ? "" : "text of '" + pattern + "'");
      AddPlainPattern(expected, next, pattern, texts.back());
    }

    FakeDecl decl(kCIMUInt64);
    decl.With("Values", Texts(texts)).With("ValueMap", Texts(patterns));
    TValueMap map;
    ASSERT_TRUE(BuildValueMap(decl, map));
    ASSERT_EQ(expected.defaultText, map.defaultText ? map.defaultText->ToString(10) : "")
        << testing::PrintToString(patterns);
    ASSERT_EQ(expected.entries.size(), map.entries.size()) << testing::PrintToString(patterns);
    TValueMap indexed;
    ASSERT_TRUE(BuildValueMap(decl, indexed));
    IndexValueMap(indexed);
    for (std::size_t i = 0; i < map.entries.size(); ++i) {
      const PlainEntry& entry = expected.entries[i];
      ASSERT_EQ(std::make_tuple(entry.low, entry.high, entry.text),
                std::make_tuple(map.entries[i].low, map.entries[i].high,
                                map.entries[i].text->ToString(10)))
          << testing::PrintToString(patterns) << ", entry " << i;
      for (const std::uint64_t number :
           {entry.low - 1, entry.low, entry.high, entry.high + 1, chance.Number()}) {
        const std::string text = LookupPlainValueMap(TCIMValue(number), expected);
        ASSERT_EQ(text, LookupValueMap(TCIMValue(number), map))
            << testing::PrintToString(patterns) << ", number " << number;
        ASSERT_EQ(text, LookupValueMap(TCIMValue(number), indexed))
            << testing::PrintToString(patterns) << ", indexed, number " << number;
      }
    }
  }
}

TCIMValue ScalarOf(Chance& chance, ECIMType type) {
  const std::uint64_t number = chance.Number();
  if (chance.OneIn(20)) return Null(type);
  switch (type) {
    case kCIMBoolean: return chance.OneIn(2);
    case kCIMUInt8: return static_cast<std::uint8_t>(number);
    case kCIMUInt16: return static_cast<std::uint16_t>(number);
    case kCIMUInt32: return static_cast<std::uint32_t>(number);
    case kCIMUInt64: return number;
    case kCIMSInt32: return static_cast<std::int32_t>(number);
    case kCIMSInt64: return static_cast<std::int64_t>(number);
    case kCIMReal64: return static_cast<double>(number) / 16;
    default: return "text " + std::to_string(number);
  }
}

TCIMValue ValueOf(Chance& chance, ECIMType type) {
  if (ElementOf(type) == type) return ScalarOf(chance, type);
  if (chance.OneIn(20)) return Null(type);
  std::vector<TCIMValue> elements;
  for (std::size_t n = chance.Below(4); n > 0; --n)
    elements.push_back(ScalarOf(chance, ElementOf(type)));
  return {ElementOf(type), std::move(elements)};
}

Strings UsualPatterns(Chance& chance, std::size_t count) {
  Strings patterns;
  for (; count > 0; --count) patterns.push_back(UsualPattern(chance));
  return patterns;
}

TCIMValue QualifierOf(Chance& chance, const std::string& name) {
  static const Strings units{"Bytes", "Bits", "Bytes per Second", "Bits per Second", "Seconds"};
  static const Strings prefixes{"",     "",      "Peta",  "Tera", "Giga", "Mega",
                                "Kilo", "Milli", "Micro", "Nano", "Hecto"};
  static const Strings fixed{"Kilo", "Mega", "Giga", "Tera", "Peta", "", "Milli"};
  if (chance.OneIn(12)) return Null(chance.Of<ECIMType>({kCIMString, ArrayOf(kCIMString)}));
  if (chance.OneIn(12)) return ValueOf(chance, chance.Of<ECIMType>({kCIMUInt16, kCIMString}));
  if (name == "Values") return Texts({"Zero", "", "Two", "Three"});
  if (name == "ValueMap") return Texts(UsualPatterns(chance, chance.OneIn(9) ? 3 : 4));
  if (name == "UNITS") return chance.Of(prefixes) + chance.Of(units);
  if (name == "DISPLAYFIXEDUNITS") return chance.Of(fixed);
  if (name == "BASE") return static_cast<std::uint8_t>(chance.Below(40));
  if (name == "NULLDISPLAY") return "not available";
  return chance.OneIn(2);
}

FakeDecl RandomDecl(Chance& chance, ECIMType type) {
  FakeDecl decl(type);
  // Names stand in the way of everything else, so most properties have none.
  if (chance.OneIn(4)) {
    decl.With("Values", QualifierOf(chance, "Values"));
    if (!chance.OneIn(4)) decl.With("ValueMap", QualifierOf(chance, "ValueMap"));
  }
  for (const char* name :
       {"UNITS", "DISPLAYFIXEDUNITS", "ABBREVIATEUNITS", "DISPLAYCPUTIME", "BASE", "NULLDISPLAY"})
    if (!chance.OneIn(8)) decl.With(name, QualifierOf(chance, name));
  if (chance.OneIn(10))
    decl.Failing(
        chance.Of<std::string>({"Values", "ValueMap", "UNITS", "DISPLAYFIXEDUNITS",
                                "ABBREVIATEUNITS", "DISPLAYCPUTIME", "BASE", "NULLDISPLAY"}),
        static_cast<unsigned>(chance.Of<int>({1, 14, 15, 25})));
  return decl;
}

// The texts, or the status that is thrown instead.
template <class Show>
Strings Outcome(Show&& show) {
  try {
    return show();
  } catch (const THAVException& failure) {
    return {"status", std::to_string(failure.GetStatusCode())};
  }
}

TEST(PlainDisplay, RandomPropertiesShowTheSame) {
  static const std::vector<ECIMType> types{kCIMBoolean,        kCIMUInt8,
                                           kCIMUInt16,         kCIMUInt32,
                                           kCIMUInt64,         kCIMUInt64,
                                           kCIMUInt64,         kCIMSInt32,
                                           kCIMSInt64,         kCIMReal64,
                                           kCIMString,         ArrayOf(kCIMUInt64),
                                           ArrayOf(kCIMUInt8), ArrayOf(kCIMBoolean),
                                           ArrayOf(kCIMString)};
  Chance chance(19700101);
  std::size_t quantities = 0;
  for (int round = 0; round < 200000; ++round) {
    const ECIMType type = chance.Of(types);
    FakeDecl decl = RandomDecl(chance, type);
    FakeDecl plainDecl = decl;
    // A value of another type than its property's is rare, but a declaration can change.
    const TCIMValue value = ValueOf(chance, chance.OneIn(30) ? chance.Of(types) : type);
    const Strings texts = Outcome([&] { return Strings{DisplayText(decl, value)}; });
    ASSERT_EQ(Outcome([&] { return Strings{PlainDisplayText(plainDecl, value)}; }), texts)
        << "round " << round;
    ASSERT_EQ(Outcome([&] { return PlainDisplayTexts(plainDecl, value); }),
              Outcome([&] { return DisplayTexts(decl, value); }))
        << "round " << round;
    ASSERT_EQ(plainDecl.Lookups(), decl.Lookups()) << "round " << round;
    if (texts[0].find(' ') != std::string::npos) ++quantities;
  }
  EXPECT_GT(quantities, 20000u) << "most rounds were to show quantities";
}

TEST(PlainDisplay, RandomQuantitiesShowTheSame) {
  static const Strings units{"Bytes", "Bits", "Bytes per Second", "Bits per Second"};
  static const Strings prefixes{"",     "Peta",  "Tera",  "Giga", "Mega",
                                "Kilo", "Milli", "Micro", "Nano"};
  Chance chance(42);
  for (int round = 0; round < 100000; ++round) {
    FakeDecl decl(kCIMUInt64);
    decl.With("UNITS", chance.Of(prefixes) + chance.Of(units))
        .With("DISPLAYFIXEDUNITS", chance.Of<std::string>({"", "Kilo", "Mega", "Giga", "Tera"}))
        .With("ABBREVIATEUNITS", chance.OneIn(2) ? TCIMValue(true) : Null(kCIMBoolean));
    // Half of them stand near a power of two, where scaling and rounding turn.
    std::uint64_t number = chance.Number();
    if (chance.OneIn(2)) number = (std::uint64_t{1} << chance.Below(64)) + chance.Below(5) - 2;
    ASSERT_EQ(PlainDisplayText(decl, TCIMValue(number)), DisplayText(decl, TCIMValue(number)))
        << number;
  }
}

}  // namespace
}  // namespace havtest
