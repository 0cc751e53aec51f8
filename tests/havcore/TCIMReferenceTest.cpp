#include "havcore/TCIMReference.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

#include <boost/make_shared.hpp>

#include "AllocationCount.h"
#include "FakeObjectModel.h"
#include "support/PrintValue.h"
#include "support/Status.h"

using namespace NORVHAV20;
using havtest::ClassPtr;
using havtest::FakeNamespace;
using havtest::NamespacePtr;

namespace {

using TKeys = std::map<std::string, TCIMValue>;

class TCIMReferenceTest : public testing::Test {
 protected:
  boost::shared_ptr<FakeNamespace> home = boost::make_shared<FakeNamespace>();
  ClassPtr disk = home->AddClass("Disk", {{"SystemName", kCIMString}, {"Index", kCIMUInt16}});
};

TCIMReference Path(const std::string& className, const TKeys& keys = {}) {
  // A class that nobody holds any more leaves its name behind.
  TCIMReference path({}, keys);
  path.SetClass(boost::make_shared<havtest::FakeClass>(className, NamespacePtr(),
                                                       std::map<std::string, ECIMType>()));
  return path;
}

std::string PathText(const TCIMValue& key) { return Path("C", {{"K", key}}).GetPath(); }

}  // namespace

TEST_F(TCIMReferenceTest, APathWithoutClassHasNothingButItsKeys) {
  const TCIMReference path({}, {});
  EXPECT_EQ(path.GetPath(), "");
  EXPECT_EQ(path.GetFullPath(), "");
  EXPECT_EQ(path.GetClassName(), "");
  EXPECT_EQ(path.GetNameSpaceName(), "");
  EXPECT_EQ(path.GetClass(), ClassPtr());
  EXPECT_EQ(path.GetNamespace(), NamespacePtr());
  EXPECT_EQ(path.GetKeyValues(), TKeys());
  EXPECT_EQ(TCIMReference({}, {{"K", TCIMValue(true)}}).GetPath(), ".K=TRUE");
}

TEST_F(TCIMReferenceTest, GetPathWritesEveryTypeOfKey) {
  EXPECT_EQ(PathText(TCIMValue(true)), "C.K=TRUE");
  EXPECT_EQ(PathText(TCIMValue(false)), "C.K=FALSE");
  EXPECT_EQ(PathText(TCIMValue(std::uint8_t{255})), "C.K=255");
  EXPECT_EQ(PathText(TCIMValue(std::int64_t{-5})), "C.K=-5");
  EXPECT_EQ(PathText(TCIMValue(0.1F)), "C.K=0.1");
  EXPECT_EQ(PathText(TCIMValue(1e300)), "C.K=1e+300");
  EXPECT_EQ(PathText(TCIMValue(u'"')), R"(C.K="\"")");
  EXPECT_EQ(PathText(TCIMValue("plain")), R"(C.K="plain")");
  EXPECT_EQ(PathText(TCIMValue("")), R"(C.K="")");
  EXPECT_EQ(PathText(TCIMValue(R"(a\b"c)")), R"(C.K="a\\b\"c")");
  EXPECT_EQ(PathText(TCIMValue(TCIMDateTime())), R"(C.K="00000000000000.000000:000")");
  EXPECT_EQ(PathText(TCIMValue()), "C.K=NULL");
  EXPECT_EQ(PathText(TCIMValue::Null(kCIMString)), "C.K=NULL");
  EXPECT_EQ(PathText(TCIMValue(kCIMString, {TCIMValue("a"), TCIMValue("b")})), R"(C.K="{a, b}")");
  EXPECT_EQ(
      PathText(TCIMValue(kCIMUInt8, {TCIMValue(std::uint8_t{12}), TCIMValue(std::uint8_t{255})})),
      R"(C.K="{12, 255}")");
  EXPECT_EQ(PathText(TCIMValue(std::uint32_t{4294967295})), "C.K=4294967295");
  EXPECT_EQ(PathText(TCIMValue(Path("D", {{"N", TCIMValue("x\"")}}))), R"(C.K="D.N=\"x\\\"\"")");
}

TEST_F(TCIMReferenceTest, GetPathSortsTheKeysIgnoringCase) {
  TCIMReference path = Path("C", {{"b", TCIMValue("2")}, {"C", TCIMValue("3")}});
  path.AddKeyValue("A", TCIMValue("1"));
  path.AddKeyValue("_", TCIMValue("0"));
  EXPECT_EQ(path.GetPath(), R"(C._="0",A="1",b="2",C="3")");
}

TEST_F(TCIMReferenceTest, AddKeyValueReplacesTheKeyOfThatName) {
  TCIMReference path = Path("C", {{"key", TCIMValue("1")}});
  path.AddKeyValue("KEY", TCIMValue("2"));
  EXPECT_EQ(path.GetPath(), R"(C.KEY="2")");
  EXPECT_EQ(path.GetKeyValues(), (TKeys{{"KEY", TCIMValue("2")}}));
}

TEST_F(TCIMReferenceTest, ABoundPathIsSpeltAsDeclared) {
  TCIMReference path({}, {{"systemname", TCIMValue("host")}, {"other", TCIMValue("x")}});
  path.SetClass(disk);
  path.AddKeyValue("INDEX", TCIMValue(std::uint16_t{1}));
  EXPECT_EQ(path.GetPath(), R"(Disk.Index=1,other="x",SystemName="host")");
  EXPECT_EQ(path.GetClassName(), "Disk");
  EXPECT_EQ(path.GetClass(), disk);
}

TEST_F(TCIMReferenceTest, AsksTheClassForNoKeyThatIsNoName) {
  const auto cls = boost::make_shared<havtest::FakeClass>(
      "C", home, std::map<std::string, ECIMType>{{"Name", kCIMString}});
  TCIMReference path({}, {{"bad-key", TCIMValue(true)}});
  path.SetClass(cls);
  path.AddKeyValue("2nd", TCIMValue(true));
  path.AddKeyValue("", TCIMValue(true));
  path.AddKeyValue("name", TCIMValue(true));
  EXPECT_EQ(cls->asked, std::vector<std::string>{"name"});
  EXPECT_EQ(path.GetPath(), "C.=TRUE,2nd=TRUE,bad-key=TRUE,Name=TRUE");
}

TEST_F(TCIMReferenceTest, APathKeepsItsTextWhenItsClassGoes) {
  TCIMReference path({}, {{"index", TCIMValue(std::uint16_t{1})}});
  path.SetClass(disk);
  disk.reset();
  home->classes.clear();
  EXPECT_EQ(path.GetPath(), "Disk.Index=1");
  EXPECT_EQ(path.GetClass(), ClassPtr());
}

TEST_F(TCIMReferenceTest, AnEmptyClassUnbindsAndKeepsTheName) {
  TCIMReference path({}, {{"index", TCIMValue(std::uint16_t{1})}});
  path.SetClass(disk);
  path.SetClass({});
  EXPECT_EQ(path.GetClassName(), "Disk");
  path.AddKeyValue("INDEX", TCIMValue(std::uint16_t{2}));
  EXPECT_EQ(path.GetPath(), "Disk.INDEX=2");
}

TEST_F(TCIMReferenceTest, TheNamespaceNameIsPartOfTheFullPathOnly) {
  TCIMReference path = Path("C", {{"K", TCIMValue("v")}});
  EXPECT_EQ(path.GetFullPath(), R"(C.K="v")");
  path.SetNameSpaceName("root/cimv2");
  EXPECT_EQ(path.GetNameSpaceName(), "root/cimv2");
  EXPECT_EQ(path.GetPath(), R"(C.K="v")");
  EXPECT_EQ(path.GetFullPath(), R"(root/cimv2:C.K="v")");
  const TCIMReference outer = Path("D", {{"R", TCIMValue(path)}});
  EXPECT_EQ(outer.GetPath(), R"(D.R="C.K=\"v\"")");
  EXPECT_EQ(outer.GetFullPath(), R"(D.R="root/cimv2:C.K=\"v\"")");
  EXPECT_EQ(TCIMValue(path).ToString(10), R"(root/cimv2:C.K="v")");
}

#if !defined(_WIN32)  // where a library's operator new is its own and is not counted
TEST_F(TCIMReferenceTest, GetPathAllocatesItsTextOnce) {
  const std::string value(100, '"');
  const TCIMReference path = Path("C", {{"K1", TCIMValue(value)}, {"K2", TCIMValue(value)}});
  const std::size_t before = havtest::AllocationCount();
  const std::string text = path.GetPath();
  EXPECT_EQ(havtest::AllocationCount(), before + 1);
  EXPECT_EQ(text.size(), 1 + 2 * (4 + 202u));
}

TEST_F(TCIMReferenceTest, GetPathTakesTheMemoryOfItsTextAndNoMore) {
  TKeys keys;
  for (int i = 100; i < 200; ++i) keys["K" + std::to_string(i)] = TCIMValue("text");
  const std::string text = Path("C", keys).GetPath();
  EXPECT_EQ(text.size(), 1 + 100 * (1 + 4 + 1 + 6u));
  EXPECT_LT(text.capacity(), text.size() + 50);
}

TEST_F(TCIMReferenceTest, HasRoomForTwoKeysFromTheFirstOn) {
  TCIMReference path({}, {});
  const std::size_t before = havtest::AllocationCount();
  path.AddKeyValue("A", TCIMValue(true));
  path.AddKeyValue("B", TCIMValue(true));
  EXPECT_EQ(havtest::AllocationCount(), before + 1);
  path.AddKeyValue("C", TCIMValue(true));
  EXPECT_EQ(havtest::AllocationCount(), before + 2);
}
#endif

TEST_F(TCIMReferenceTest, HasTheNamespaceOfItsHomeElseOfItsClass) {
  TCIMReference path({}, {});
  path.SetClass(disk);
  EXPECT_EQ(path.GetNamespace(), home);
  const auto other = boost::make_shared<FakeNamespace>();
  path.SetNamespace(other);
  EXPECT_EQ(path.GetNamespace(), other);
  path.SetNamespace({});
  EXPECT_EQ(path.GetNamespace(), home);

  TCIMReference atHome(other, {});
  atHome.SetClass(disk);
  EXPECT_EQ(atHome.GetNamespace(), other);
  atHome.SetNamespace(home);
  EXPECT_EQ(atHome.GetNamespace(), home);
}

TEST_F(TCIMReferenceTest, TheNamespaceThatItIsGivenIsItsHome) {
  TCIMReference path({}, {});
  path.SetNamespace({});
  EXPECT_EQ(path.GetNamespace(), NamespacePtr());
  const auto other = boost::make_shared<FakeNamespace>();
  path.SetNamespace(other);
  path.SetClass(disk);
  EXPECT_EQ(path.GetNamespace(), other);
  path.SetNamespace({});
  path.SetClass(other->AddClass("Disk"));
  EXPECT_EQ(path.GetNamespace(), other);
  path.SetClass(disk);
  EXPECT_EQ(path.GetNamespace(), home);
}

TEST_F(TCIMReferenceTest, FollowsItsClassToAnotherNamespace) {
  const auto other = boost::make_shared<FakeNamespace>();
  TCIMReference path({}, {});
  path.SetClass(disk);
  path.SetClass(other->AddClass("Disk"));
  EXPECT_EQ(path.GetNamespace(), other);
}

TEST_F(TCIMReferenceTest, HoldsClassAndNamespaceWeakly) {
  TCIMReference path(home, {});
  path.SetClass(disk);
  EXPECT_EQ(home.use_count(), 1);
  EXPECT_EQ(disk.use_count(), 2);  // here and in the namespace
  home.reset();
  EXPECT_EQ(path.GetNamespace(), NamespacePtr());
  EXPECT_EQ(path.GetClass(), disk);
}

TEST_F(TCIMReferenceTest, AClassThatIsGoneIsFoundAgainByItsName) {
  TCIMReference path({}, {});
  path.SetClass(disk);
  disk.reset();
  const auto again = home->AddClass("DISK");
  EXPECT_EQ(path.GetClass(), again);
  EXPECT_EQ(path.GetClassName(), "Disk");
}

TEST_F(TCIMReferenceTest, GetClassIsEmptyForAnUnknownClassAndPassesOtherFailuresOn) {
  const TCIMReference path = TCIMReference::Parse("Nowhere", home);
  EXPECT_EQ(path.GetClass(), ClassPtr());
  home->classFailure = 25;
  EXPECT_EQ(path.GetClass(), ClassPtr());
  home->classFailure = 16;
  EXPECT_STATUS(16, path.GetClass());
}

TEST_F(TCIMReferenceTest, WithoutANameOfAClassTheNamespaceIsNotAsked) {
  home->classFailure = 16;
  const TCIMReference path(home, {});
  EXPECT_EQ(path.GetClass(), ClassPtr());
  EXPECT_STATUS(15, path.GetCIMElement(false));
}

TEST_F(TCIMReferenceTest, AnEmptyAnswerOfTheNamespaceIsNoClass) {
  home->classes["nothing"] = ClassPtr();
  home->AddInstance("Nothing");
  const TCIMReference path = TCIMReference::Parse("Nothing", home);
  EXPECT_EQ(path.GetClass(), ClassPtr());
  EXPECT_STATUS(15, path.GetCIMElement(false));
  home->classes["disk"] = ClassPtr();
  TCIMReference bound(home, {});
  bound.SetClass(disk);
  EXPECT_STATUS(15, bound.GetCIMElement(false));
}

TEST_F(TCIMReferenceTest, ResolvesToTheInstance) {
  const auto instance = home->AddInstance(R"(Disk.Index=1,SystemName="h")");
  TCIMReference path({}, {{"systemname", TCIMValue("h")}});
  path.SetClass(disk);
  path.AddKeyValue("index", TCIMValue(std::uint16_t{1}));
  EXPECT_EQ(path.GetCIMElement(false), instance);
  EXPECT_EQ(path.GetCIMElement(true), instance);
}

TEST_F(TCIMReferenceTest, AnUnboundPathResolvesByTheNameOfItsClass) {
  const auto instance = home->AddInstance(R"(Disk.Index=1,SystemName="h")");
  TCIMReference path = TCIMReference::Parse(R"(DISK.SYSTEMNAME="h",INDEX=1)", {});
  EXPECT_STATUS(15, path.GetCIMElement(false));
  path.SetNamespace(home);
  EXPECT_EQ(path.GetCIMElement(false), instance);
  EXPECT_EQ(path.GetPath(), R"(DISK.INDEX=1,SYSTEMNAME="h")");
}

TEST_F(TCIMReferenceTest, AnInstanceThatIsNotThereIs15) {
  EXPECT_STATUS(15, TCIMReference::Parse("Disk.Index=1", home).GetCIMElement(false));
  EXPECT_STATUS(15, TCIMReference::Parse("Nowhere.Index=1", home).GetCIMElement(false));
  EXPECT_STATUS(15, TCIMReference::Parse("Nowhere", home).GetCIMElement(false));
  EXPECT_STATUS(15, TCIMReference(home, {}).GetCIMElement(false));
  EXPECT_STATUS(15, TCIMReference({}, {}).GetCIMElement(false));
}

TEST_F(TCIMReferenceTest, WithoutItsNamespaceNothingResolves) {
  home->AddInstance("Disk.Index=1");
  const TCIMReference path = TCIMReference::Parse("Disk.Index=1", home);
  EXPECT_TRUE(path.GetCIMElement(false));
  home.reset();
  EXPECT_STATUS(15, path.GetCIMElement(false));
}

TEST_F(TCIMReferenceTest, APathWithoutKeysIsTheInstanceOfThatNameElseTheClass) {
  const TCIMReference path = TCIMReference::Parse("Disk", home);
  EXPECT_EQ(path.GetCIMElement(false), disk);
  const auto instance = home->AddInstance("Disk");
  EXPECT_EQ(path.GetCIMElement(false), instance);
}

TEST_F(TCIMReferenceTest, WhatTheNamespaceThrowsPassesThrough) {
  const TCIMReference path = TCIMReference::Parse("Disk.Index=1", home);
  home->instanceFailure = 1;
  EXPECT_STATUS(1, path.GetCIMElement(false));
  const TCIMReference unbound = TCIMReference::Parse("Nowhere.Index=1", home);
  for (const unsigned status : {25u, 16u}) {
    home->classFailure = status;
    EXPECT_STATUS(status, unbound.GetCIMElement(false));
  }
}

TEST_F(TCIMReferenceTest, NamesCompareIgnoringCaseAndStringsDoNot) {
  const auto with = [](const char* space, const char* cls, const char* key, const char* value) {
    TCIMReference path = Path(cls, {{key, TCIMValue(value)}});
    path.SetNameSpaceName(space);
    return path;
  };
  const TCIMReference path = with("root/a", "C", "Key", "v");
  EXPECT_EQ(path, with("ROOT/A", "c", "kEY", "v"));
  EXPECT_NE(path, with("root/b", "C", "Key", "v"));
  EXPECT_NE(path, with("root/a", "D", "Key", "v"));
  EXPECT_NE(path, with("root/a", "C", "Kez", "v"));
  EXPECT_NE(path, with("root/a", "C", "Key", "V"));
  EXPECT_NE(path, with("", "C", "Key", "v"));
  EXPECT_NE(path, with("root/ab", "C", "Key", "v"));
  EXPECT_NE(with("root/a", "Cz", "Key", "v"), path);
  EXPECT_EQ(with("", "AZ", "Key", "v"), with("", "az", "Key", "v"));
  // Characters that differ from others by as much as a letter's cases do.
  EXPECT_NE(with("a?", "C", "Key", "v"), with("a_", "C", "Key", "v"));
  EXPECT_NE(with("a@", "C", "Key", "v"), with("a`", "C", "Key", "v"));
  EXPECT_NE(with("a[", "C", "Key", "v"), with("a{", "C", "Key", "v"));
}

TEST_F(TCIMReferenceTest, KeyValuesCompareByTheirText) {
  const auto with = [](const TCIMValue& key) { return Path("C", {{"K", key}}); };
  EXPECT_EQ(TCIMValue(0.0), TCIMValue(-0.0));
  EXPECT_NE(with(TCIMValue(0.0)), with(TCIMValue(-0.0)));
  EXPECT_EQ(with(TCIMValue(std::uint8_t{7})), with(TCIMValue(7.0)));
  EXPECT_EQ(with(TCIMValue("a")), with(TCIMValue(u'a')));
  EXPECT_NE(with(TCIMValue("7")), with(TCIMValue(std::uint8_t{7})));
  EXPECT_EQ(with(TCIMValue::Null(kCIMString)), with(TCIMValue()));
}

TEST_F(TCIMReferenceTest, PathsReadWithoutTypesEqualTheOnesTheyWereWrittenFrom) {
  const TKeys keys = {{"A", TCIMValue(std::uint8_t{5})},
                      {"B", TCIMValue(true)},
                      {"C", TCIMValue("x")},
                      {"D", TCIMValue(TCIMDateTime())},
                      {"E", TCIMValue(Path("Inner", {{"K", TCIMValue("v")}}))},
                      {"F", TCIMValue(u'c')},
                      {"G", TCIMValue(std::int8_t{-5})},
                      {"H", TCIMValue(0.1F)},
                      {"I", TCIMValue::Null(kCIMString)}};
  for (const auto& [name, value] : keys) {
    const TCIMReference typed = Path("C", {{name, value}});
    const TCIMReference read = TCIMReference::Parse(typed.GetFullPath(), {});
    EXPECT_EQ(typed, read) << typed.GetPath();
    EXPECT_FALSE(typed < read || read < typed) << typed.GetPath();
  }
  const TCIMReference typed = Path("C", keys);
  EXPECT_EQ(typed, TCIMReference::Parse(typed.GetFullPath(), {}));
}

TEST_F(TCIMReferenceTest, OrdersByNamespaceThenClassThenKeys) {
  // Each stands before all that follow it.
  const std::vector<std::string> ascending = {
      "B", "b.A=1", "B.A=1,B=1", "B.A=1,B=2", "B.a=2",     R"(B.A="x")", "B.B=1",
      "C", "C.A=1", "r/a:A",     "R/A:b.K=1", "r/a:B.K=2", "r/b:A"};
  // In the text of values a quote comes before a digit.
  const std::vector<std::string> quoted = {R"(B.A="x")", "B.A=1"};
  EXPECT_LT(TCIMReference::Parse(quoted[0], {}), TCIMReference::Parse(quoted[1], {}));
  std::vector<TCIMReference> paths;
  for (const std::string& text : ascending)
    if (text != quoted[0]) paths.push_back(TCIMReference::Parse(text, {}));
  for (std::size_t i = 0; i < paths.size(); ++i) {
    EXPECT_EQ(paths[i], TCIMReference(paths[i]));
    EXPECT_FALSE(paths[i] < paths[i]);
    for (std::size_t j = i + 1; j < paths.size(); ++j) {
      EXPECT_LT(paths[i], paths[j]) << i << ' ' << j;
      EXPECT_FALSE(paths[j] < paths[i]) << i << ' ' << j;
      EXPECT_NE(paths[i], paths[j]) << i << ' ' << j;
    }
  }
}

namespace {

// What CopyPath writes into `size` bytes; nothing when it gives up.
std::string Copied(const TCIMReference& path, std::size_t size) {
  std::vector<char> buffer(size);
  return {buffer.data(), path.CopyPath(buffer.data(), size)};
}

}  // namespace

TEST(TCIMReferenceCopyPath, WritesWhatGetPathReturns) {
  const TCIMReference inner = Path("D", {{"A", std::string("say \"a\\b\"")}, {"B", ""}});
  const TCIMReference outer = Path("C", {{"K", inner}, {"L", std::string("\\")}});
  EXPECT_EQ(Copied(inner, 1000), "D.A=\"say \\\"a\\\\b\\\"\",B=\"\"");
  for (const TCIMReference& path : {inner, outer, Path("C"), Path("C", {{"K", outer}})})
    EXPECT_EQ(Copied(path, 1000), path.GetPath());
}

TEST(TCIMReferenceCopyPath, NeedsAsMuchRoomAsTheTextTakes) {
  for (const char* key : {"a\"b", "plain", ""}) {
    const TCIMReference path = Path("C", {{"K", TCIMValue(key)}});
    const std::string text = path.GetPath();
    EXPECT_EQ(Copied(path, text.size()), text);
    for (std::size_t size = 0; size < text.size(); ++size)
      EXPECT_EQ(Copied(path, size), "") << size;
  }
}

TEST(TCIMReferenceCopyPath, LeavesOtherKeysToGetPath) {
  for (const TCIMValue& key :
       {TCIMValue(std::uint16_t{1}), TCIMValue(true), TCIMValue::Null(kCIMString),
        TCIMValue(kCIMString, {TCIMValue("a")}), TCIMValue(Path("D", {{"A", std::uint16_t{1}}}))})
    EXPECT_EQ(Copied(Path("C", {{"K", key}}), 1000), "") << key.ToString(10);
}

TEST(TCIMReferenceCopyPath, LongTextIsGetPathsToo) {
  const std::string longText(1000, 'x');
  EXPECT_EQ(Path("C", {{"K", longText}}).GetPath(), "C.K=\"" + longText + "\"");
  const TCIMReference inner = Path("D", {{"A", longText}});
  EXPECT_EQ(Path("C", {{"K", inner}}).GetPath(), "C.K=\"D.A=\\\"" + longText + "\\\"\"");
}
