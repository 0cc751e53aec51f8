// The text of an object path, made in place.
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "havcore/havcore.h"
#include "inmem/values/HostServices.h"
#include "support/AllocationMeter.h"

namespace havtest {
namespace {

using namespace NORVHAV20;

using TKeys = std::vector<std::pair<std::string, TCIMValue>>;

// As many keys as `keys` has, or one less than is asked for.
auto KeyAt(const TKeys& keys) {
  return [&keys](std::size_t i, std::string_view& name, const TCIMValue*& value) noexcept {
    if (i >= keys.size()) return false;
    name = keys[i].first;
    value = &keys[i].second;
    return true;
  };
}

TKeys Keys(std::size_t count) {
  TKeys keys;
  for (std::size_t i = 0; i < count; ++i)
    keys.emplace_back("K" + std::to_string(i), TCIMValue("v"));
  return keys;
}

std::string PathOf(const TKeys& keys) {
  std::string path = "C";
  char separator = '.';
  for (const auto& [name, value] : keys) {
    path += separator + name + "=\"" + value.ToString(10) + "\"";
    separator = ',';
  }
  return path;
}

TEST(TPathText, IsThePathOfAReference) {
  for (const std::string text : {"C", "C.K=\"v\"", "C.A=\"1\",B=\"2\"", "C.K=1", "C.K=NULL"})
    EXPECT_EQ(std::string_view(TPathText(TCIMReference::Parse(text, {}))), text);
  const std::string text = "C.K=\"" + std::string(1000, 'x') + "\"";
  EXPECT_EQ(std::string_view(TPathText(TCIMReference::Parse(text, {}))), text);
}

TEST(TPathText, IsMadeWithoutMemoryWhereItIsShort) {
  const TCIMReference path = TCIMReference::Parse("C.A=\"" + std::string(200, 'x') + "\"", {});
  const AllocationMeter meter;
  const TPathText text(path);
  EXPECT_EQ(meter.Count(), 0u);
  EXPECT_EQ(std::string_view(text).size(), 206u);
}

TEST(TPathText, IsMadeOfAClassAndUpToEightKeys) {
  for (std::size_t count = 0; count <= 8; ++count) {
    const TKeys keys = Keys(count);
    TPathText text;
    EXPECT_TRUE(text.Set("C", count, KeyAt(keys))) << count;
    EXPECT_EQ(std::string_view(text), PathOf(keys));
  }
  const TKeys keys = Keys(9);
  TPathText text;
  EXPECT_FALSE(text.Set("C", keys.size(), KeyAt(keys)));
  EXPECT_EQ(std::string_view(text), "");
}

TEST(TPathText, IsNotMadeOfKeysThatAreNotThereOrDoNotFit) {
  TPathText text;
  const TKeys two = Keys(2);
  EXPECT_FALSE(text.Set("C", 3, KeyAt(two)));
  const TKeys number{{"K", TCIMValue(1)}};
  EXPECT_FALSE(text.Set("C", 1, KeyAt(number)));
  const TKeys large{{"K", TCIMValue(std::string(1000, 'x'))}};
  EXPECT_FALSE(text.Set("C", 1, KeyAt(large)));
  EXPECT_EQ(std::string_view(text), "");
}

TEST(HeldElements, AreThoseOfAnArrayForAsLongAsTheyAreHeld) {
  TCIMValue array(kCIMString, {TCIMValue("a"), TCIMValue("b")});
  const THeldElements held(array);
  array = TCIMValue();
  EXPECT_EQ(held->size(), 2u);
  EXPECT_EQ((*held)[1], TCIMValue("b"));
}

}  // namespace
}  // namespace havtest
