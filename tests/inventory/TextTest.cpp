// Reading what systems write about themselves.
#include <gtest/gtest.h>

#include "inventory/Text.h"

namespace havtest {
namespace {

using namespace hav::inventory;

TEST(Text, TrimTakesBlanksAndZeroBytes) {
  EXPECT_EQ(Trim(std::string_view(" \t a b\n\0", 8)), "a b");
  EXPECT_EQ(Trim(" \n"), "");
  EXPECT_EQ(Trim(""), "");
}

TEST(Text, LinesNeedNoEndOnTheLast) {
  EXPECT_EQ(Lines("a\n\nb"), (std::vector<std::string>{"a", "", "b"}));
  EXPECT_EQ(Lines("a\n"), std::vector<std::string>{"a"});
  EXPECT_TRUE(Lines("").empty());
}

TEST(Text, WordsAreBetweenBlanks) {
  EXPECT_EQ(Words("  a\tbc  d "), (std::vector<std::string_view>{"a", "bc", "d"}));
  EXPECT_TRUE(Words(" \t").empty());
}

TEST(Text, FirstLineOfAKeyCounts) {
  const auto values = KeyValues("a : 1\nb\na: 2\n c :d:e\n", ':');
  EXPECT_EQ(values.size(), 2U);
  EXPECT_EQ(values.at("a"), "1");
  EXPECT_EQ(values.at("c"), "d:e");
}

TEST(Text, ReadableIsUtf8WithoutControlCharacters) {
  EXPECT_TRUE(IsReadable("plain"));
  EXPECT_TRUE(
      IsReadable("gr\xC3\xB6\xC3\x9F"
                 "er \xE2\x82\xAC \xF0\x9F\x98\x80"));
  for (const auto* const broken :
       {"\x01", "\x7F", "a\nb", "\xC3", "\xC0\x80", "\xE0\x80\x80", "\xED\xA0\x80",
        "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xE2\x82", "\xE2\x28\xA1", "\x80"})
    EXPECT_FALSE(IsReadable(broken)) << testing::PrintToString(broken);
  EXPECT_FALSE(IsReadable(std::string_view("a\0b", 3)));
}

TEST(Text, PlaceholdersAreNoNames) {
  EXPECT_TRUE(IsPlaceholder("To Be Filled By O.E.M."));
  EXPECT_TRUE(IsPlaceholder("Default string"));
  EXPECT_FALSE(IsPlaceholder("Default string 2"));
  EXPECT_FALSE(IsPlaceholder(""));
}

TEST(Text, NumbersAreWholeAndFit) {
  EXPECT_EQ(ParseNumber<std::uint32_t>(" 42\n"), 42U);
  EXPECT_EQ(ParseNumber<std::uint64_t>("18446744073709551615"), ~std::uint64_t{0});
  EXPECT_EQ(ParseNumber<std::uint64_t>("0x1F", 16), 31U);
  EXPECT_EQ(ParseNumber<std::uint64_t>("1f", 16), 31U);
  for (const auto* const broken : {"", "-1", "+1", "4294967296", "1 2", "1x", "0x", "x"})
    EXPECT_FALSE(ParseNumber<std::uint32_t>(broken)) << broken;
  EXPECT_FALSE(ParseNumber<std::uint32_t>("0x", 16));
}

TEST(Text, TimesRefusesWhatDoesNotFit) {
  EXPECT_EQ(Times(std::uint64_t{3}, 512), 1536U);
  EXPECT_EQ(Times(std::nullopt, 512), std::nullopt);
  EXPECT_EQ(Times(~std::uint64_t{0} / 512, 512), ~std::uint64_t{0} / 512 * 512);
  EXPECT_EQ(Times(~std::uint64_t{0} / 512 + 1, 512), std::nullopt);
}

}  // namespace
}  // namespace havtest
