#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <map>
#include <random>
#include <string>
#include <vector>

#include <boost/make_shared.hpp>

#include "FakeObjectModel.h"
#include "havcore/TCIMDateTime.h"
#include "havcore/TCIMReference.h"
#include "support/PrintValue.h"
#include "support/Status.h"

using namespace NORVHAV20;
using havtest::FakeNamespace;

namespace {

using TKeys = std::map<std::string, TCIMValue>;

TCIMReference Parse(const std::string& text) { return TCIMReference::Parse(text, {}); }

TCIMValue KeyOf(const std::string& valueText) {
  return Parse("C.K=" + valueText).GetKeyValues().at("K");
}

// A class with one key of each type, named after its type.
class TypedParseTest : public testing::Test {
 protected:
  TypedParseTest() {
    home->AddClass("C", {{"Boolean", kCIMBoolean},
                         {"UInt8", kCIMUInt8},
                         {"SInt8", kCIMSInt8},
                         {"UInt16", kCIMUInt16},
                         {"SInt16", kCIMSInt16},
                         {"UInt32", kCIMUInt32},
                         {"SInt32", kCIMSInt32},
                         {"UInt64", kCIMUInt64},
                         {"SInt64", kCIMSInt64},
                         {"Real32", kCIMReal32},
                         {"Real64", kCIMReal64},
                         {"Char16", kCIMChar16},
                         {"String", kCIMString},
                         {"DateTime", kCIMDateTime},
                         {"Reference", kCIMReference},
                         {"Strings", ArrayOf(kCIMString)}});
  }

  TCIMValue KeyOf(const std::string& name, const std::string& valueText) const {
    return TCIMReference::Parse("C." + name + "=" + valueText, home).GetKeyValues().at(name);
  }

  boost::shared_ptr<FakeNamespace> home = boost::make_shared<FakeNamespace>();
};

}  // namespace

TEST(TCIMReferenceParse, ReadsAClass) {
  const TCIMReference path = Parse("CIM_Disk");
  EXPECT_EQ(path.GetClassName(), "CIM_Disk");
  EXPECT_EQ(path.GetNameSpaceName(), "");
  EXPECT_EQ(path.GetKeyValues(), TKeys());
  EXPECT_EQ(Parse("_x9").GetClassName(), "_x9");
  EXPECT_EQ(Parse("<root>").GetClassName(), "<root>");
}

TEST(TCIMReferenceParse, NamesMayHaveEveryLetter) {
  const std::string letters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ_";
  for (const char c : letters)
    for (const std::string& name : {std::string(1, c), std::string("a") + c, letters + "0189"}) {
      EXPECT_EQ(Parse(name + "." + name + "=1").GetClassName(), name);
      EXPECT_EQ(Parse("C." + name + "=1").GetPath(), "C." + name + "=1");
    }
  // What stands beside the letters and digits.
  for (const char c : std::string("@[`{/:^-"))
    EXPECT_STATUS(15, Parse(std::string("C.a") + c + "=1"));
}

TEST(TCIMReferenceParse, ReadsANamespaceName) {
  EXPECT_EQ(Parse("root/cimv2:C").GetNameSpaceName(), "root/cimv2");
  EXPECT_EQ(Parse("root/cimv2:C").GetClassName(), "C");
  EXPECT_EQ(Parse("root/cimv2:C.K=1").GetNameSpaceName(), "root/cimv2");
  EXPECT_EQ(Parse(R"(C.K="root:D")").GetNameSpaceName(), "");
  EXPECT_EQ(Parse("//host.example:5988/root/a:C.K=1").GetNameSpaceName(),
            "//host.example:5988/root/a");
}

TEST(TCIMReferenceParse, ValuesTakeTheTypeOfTheirTextWithoutAHome) {
  EXPECT_EQ(KeyOf("TRUE"), TCIMValue(true));
  EXPECT_EQ(KeyOf("False"), TCIMValue(false));
  EXPECT_EQ(KeyOf("NULL"), TCIMValue());
  EXPECT_EQ(KeyOf("null"), TCIMValue());
  EXPECT_EQ(KeyOf("0"), TCIMValue(std::uint64_t{0}));
  EXPECT_EQ(KeyOf("+7"), TCIMValue(std::uint64_t{7}));
  EXPECT_EQ(KeyOf("18446744073709551615"), TCIMValue(std::numeric_limits<std::uint64_t>::max()));
  EXPECT_EQ(KeyOf("-9223372036854775808"), TCIMValue(std::numeric_limits<std::int64_t>::min()));
  EXPECT_EQ(KeyOf("18446744073709551616"), TCIMValue(18446744073709551616.0));
  EXPECT_EQ(KeyOf("-0"), TCIMValue(-0.0));
  EXPECT_EQ(KeyOf("-0").ToString(10), "-0");
  EXPECT_EQ(KeyOf("1.5"), TCIMValue(1.5));
  EXPECT_EQ(KeyOf(".5"), TCIMValue(0.5));
  EXPECT_EQ(KeyOf("-.5"), TCIMValue(-0.5));
  EXPECT_EQ(KeyOf("-1e-3"), TCIMValue(-0.001));
  EXPECT_EQ(KeyOf("inf"), TCIMValue(std::numeric_limits<double>::infinity()));
  EXPECT_EQ(KeyOf("-inf"), TCIMValue(-std::numeric_limits<double>::infinity()));
  EXPECT_EQ(KeyOf("nan"), TCIMValue(std::numeric_limits<double>::quiet_NaN()));
  EXPECT_EQ(KeyOf(R"("")"), TCIMValue(""));
  EXPECT_EQ(KeyOf(R"("a,b=c.d:e \\ \"f\"")"), TCIMValue(R"(a,b=c.d:e \ "f")"));
  EXPECT_EQ(KeyOf("\"\xC3\xA9\n\""), TCIMValue("\xC3\xA9\n"));
}

TEST(TCIMReferenceParse, RefusesTextThatIsNoObjectPath) {
  for (const std::string text : {
           "",
           " ",
           "1C",
           "C D",
           " C",
           "C ",
           "C.",
           "C=1",
           "C.K",
           "C.K=",
           "C.=1",
           "C.1K=1",
           "C.K =1",
           "C.K= 1",
           "C.K=1 ",
           "C.K=1,",
           "C.K=1,,L=2",
           "C.K=1, L=2",
           "C.K=1;L=2",
           "C.K=1,L",
           "C.NULL",
           "C.TRUE",
           "C.K=1,NULL",
           R"(C.K="a";L="b")",
           R"(C.K="a"xL=1)",
           "C.K=1,K=2",
           "C.K=1,k=1",
           R"(C.K=")",
           R"(C.K="abc)",
           R"(C.K="abc\")",
           R"(C.K="abc\)",
           R"(C.K="a\n")",
           R"(C.K="a"b)",
           R"(C.K="a" )",
           R"(C.K="a""b")",
           R"(C.K='a')",
           "C.K=abc",
           "C.K=0x10",
           "C.K=1e999",
           "C.K=1e",
           "C.K=1.2.3",
           "C.K=-",
           "C.K=+",
           "C.K=+-1",
           "C.K=--1",
           "C.K=.",
           "C.K=infinity",
           "C.K=nan(1)",
           "C.K={1}",
           ".K=1",
           ":C",
           ":",
           "root:",
           "root:.K=1",
           R"("root":C)",
           "<root",
           "<other>",
           "C.L.K=1",
           "caf\xC3\xA9",
       })
    EXPECT_STATUS(15, Parse(text)) << text;
  EXPECT_STATUS(15, Parse(std::string("C\0D", 3)));
}

TEST_F(TypedParseTest, BindsTheClassThatIsThere) {
  const TCIMReference path = TCIMReference::Parse("ns:c.uint8=1", home);
  EXPECT_EQ(path.GetClass(), home->classes.at("c"));
  EXPECT_EQ(path.GetNamespace(), home);
  EXPECT_EQ(path.GetFullPath(), "ns:C.UInt8=1");
}

TEST_F(TypedParseTest, LeavesAnUnknownClassUnbound) {
  for (const unsigned failure : {0u, 15u, 25u}) {
    home->classFailure = failure;
    EXPECT_EQ(TCIMReference::Parse("nowhere.k=1", home).GetFullPath(), "nowhere.k=1");
  }
  home->classFailure = 1;
  EXPECT_STATUS(1, TCIMReference::Parse("nowhere.k=1", home));
}

TEST_F(TypedParseTest, ValuesTakeTheDeclaredType) {
  EXPECT_EQ(KeyOf("Boolean", "true"), TCIMValue(true));
  EXPECT_EQ(KeyOf("UInt8", "255"), TCIMValue(std::uint8_t{255}));
  EXPECT_EQ(KeyOf("SInt8", "-128"), TCIMValue(std::int8_t{-128}));
  EXPECT_EQ(KeyOf("UInt16", "65535"), TCIMValue(std::uint16_t{65535}));
  EXPECT_EQ(KeyOf("SInt16", "-32768"), TCIMValue(std::int16_t{-32768}));
  EXPECT_EQ(KeyOf("UInt32", "4294967295"), TCIMValue(std::uint32_t{4294967295}));
  EXPECT_EQ(KeyOf("SInt32", "+5"), TCIMValue(std::int32_t{5}));
  EXPECT_EQ(KeyOf("UInt64", "-0"), TCIMValue(std::uint64_t{0}));
  EXPECT_EQ(KeyOf("SInt64", "5"), TCIMValue(std::int64_t{5}));
  EXPECT_EQ(KeyOf("Real32", "0.1"), TCIMValue(0.1F));
  EXPECT_EQ(KeyOf("Real64", "5"), TCIMValue(5.0));
  EXPECT_EQ(KeyOf("Char16", R"("n")"), TCIMValue(u'n'));
  EXPECT_EQ(KeyOf("Char16", "\"\xC3\xA9\""), TCIMValue(u'\u00E9'));
  EXPECT_EQ(KeyOf("Char16", "\"\xE2\x82\xAC\""), TCIMValue(u'\u20AC'));
  EXPECT_EQ(KeyOf("String", R"("5")"), TCIMValue("5"));
  EXPECT_EQ(KeyOf("DateTime", R"("00000001000000.000000:000")"),
            TCIMValue(TCIMDateTime::Parse("00000001000000.000000:000")));
  for (const auto& [name, value] :
       TCIMReference::Parse("C.UInt8=NULL,String=NULL", home).GetKeyValues())
    EXPECT_EQ(value, TCIMValue::Null(name == "UInt8" ? kCIMUInt8 : kCIMString));
}

TEST_F(TypedParseTest, ReferencesAreReadFromTheQuotedText) {
  const TCIMValue value = KeyOf("Reference", R"("c.uint8=1,reference=\"c.uint8=2\"")");
  ASSERT_TRUE(value.IsReference());
  const auto& outer = static_cast<const TCIMReference&>(value);
  EXPECT_EQ(outer.GetClass(), home->classes.at("c"));
  const TKeys keys = outer.GetKeyValues();
  EXPECT_EQ(keys.at("UInt8"), TCIMValue(std::uint8_t{1}));
  ASSERT_TRUE(keys.at("Reference").IsReference());
  EXPECT_EQ(keys.at("Reference").ToString(10), "C.UInt8=2");
}

TEST_F(TypedParseTest, ValuesThatDoNotFitKeepTheTypeOfTheirText) {
  EXPECT_EQ(KeyOf("Boolean", "1"), TCIMValue(std::uint64_t{1}));
  EXPECT_EQ(KeyOf("Boolean", R"("TRUE")"), TCIMValue("TRUE"));
  EXPECT_EQ(KeyOf("UInt8", "256"), TCIMValue(std::uint64_t{256}));
  EXPECT_EQ(KeyOf("UInt8", "-1"), TCIMValue(std::int64_t{-1}));
  EXPECT_EQ(KeyOf("UInt8", "1.5"), TCIMValue(1.5));
  EXPECT_EQ(KeyOf("UInt8", R"("1")"), TCIMValue("1"));
  EXPECT_EQ(KeyOf("UInt8", "TRUE"), TCIMValue(true));
  EXPECT_EQ(KeyOf("SInt8", "128"), TCIMValue(std::uint64_t{128}));
  EXPECT_EQ(KeyOf("SInt64", "9223372036854775808"), TCIMValue(std::uint64_t{1} << 63));
  EXPECT_EQ(KeyOf("Real32", "1e300"), TCIMValue(1e300));
  EXPECT_EQ(KeyOf("Char16", R"("ab")"), TCIMValue("ab"));
  EXPECT_EQ(KeyOf("Char16", R"("four")"), TCIMValue("four"));
  EXPECT_EQ(KeyOf("Char16", "\"\xF0\x9F\x98\x80\""), TCIMValue("\xF0\x9F\x98\x80"));
  EXPECT_EQ(KeyOf("Char16", R"("")"), TCIMValue(""));
  EXPECT_EQ(KeyOf("Char16", "\"\xE2\x82\""), TCIMValue("\xE2\x82"));
  EXPECT_EQ(KeyOf("Char16", "\"\xC1\x81\""), TCIMValue("\xC1\x81"));
  EXPECT_EQ(KeyOf("String", "5"), TCIMValue(std::uint64_t{5}));
  EXPECT_EQ(KeyOf("DateTime", R"("yesterday")"), TCIMValue("yesterday"));
  EXPECT_EQ(KeyOf("Reference", R"("no path")"), TCIMValue("no path"));
  EXPECT_EQ(KeyOf("Strings", R"("{a}")"), TCIMValue("{a}"));
  EXPECT_EQ(KeyOf("Undeclared", "5"), TCIMValue(std::uint64_t{5}));
}

TEST_F(TypedParseTest, WhatTheNamespaceThrowsForAReferenceInAKeyPassesThrough) {
  struct THome : FakeNamespace {
    boost::shared_ptr<ICIMClass> GetClass(const std::string& name, TOptions options) override {
      if (name == "D") throw THAVException(static_cast<EHAVStatusCode>(status));
      return FakeNamespace::GetClass(name, options);
    }
    unsigned status = 1;
  };
  const auto failing = boost::make_shared<THome>();
  failing->AddClass("C", {{"Reference", kCIMReference}});
  for (const unsigned status : {1u, 16u}) {
    failing->status = status;
    EXPECT_STATUS(status, TCIMReference::Parse(R"(C.Reference="D.N=1")", failing));
  }
  failing->status = 14;
  EXPECT_EQ(TCIMReference::Parse(R"(C.Reference="D.N=1")", failing).GetKeyValues().at("Reference"),
            TCIMValue("D.N=1"));
}

TEST_F(TypedParseTest, RefusesANumberThatFitsNoType) {
  EXPECT_STATUS(15, TCIMReference::Parse("C.UInt8=1.2.3", home));
  EXPECT_STATUS(15, TCIMReference::Parse("C.Real32=1e999", home));
  EXPECT_STATUS(15, TCIMReference::Parse("C.UInt8=1,UINT8=1", home));
}

namespace {

// Makes the same paths in every run, of every type of key and nested references.
class TPathGenerator {
 public:
  explicit TPathGenerator(unsigned seed) : m_random(seed) {}

  std::uint64_t Next(std::uint64_t below) { return m_random() % below; }

  TCIMReference Path(const boost::shared_ptr<FakeNamespace>& home, int depth) {
    TCIMReference path(home, {});
    path.SetClass(home->classes.at("c"));
    if (Next(3) == 0) path.SetNameSpaceName("root/" + std::to_string(Next(3)));
    for (auto keys = Next(4); keys > 0; --keys) {
      const TCIMValue value = Value(home, depth);
      path.AddKeyValue(KeyName(value.GetType()), value);
    }
    return path;
  }

  // A path with a few bytes lost, doubled or replaced.
  std::string Damaged(std::string text) {
    constexpr char kBytes[] = "\"\\=,.:Ca1-+ \n<>\xC3";
    for (auto times = 1 + Next(3); times > 0 && !text.empty(); --times) {
      const auto at = static_cast<std::size_t>(Next(text.size()));
      const auto action = Next(3);
      if (action == 0)
        text.erase(at, 1);
      else if (action == 1)
        text.insert(at, 1, kBytes[Next(sizeof kBytes)]);
      else
        text[at] = kBytes[Next(sizeof kBytes)];
    }
    return text;
  }

 private:
  static std::string KeyName(ECIMType type) {
    static const char* const names[] = {
        "",       "BOOLEAN", "uint8",  "SInt8",  "UInt16", "SInt16", "UInt32",   "SInt32",
        "UInt64", "SInt64",  "Real32", "Real64", "Char16", "String", "DateTime", "reference"};
    return names[type];
  }

  std::string Text() {
    constexpr char kBytes[] = "\"\\=,.: aZ\n\xC3\xA9";
    std::string text;
    for (auto length = Next(8); length > 0; --length) text += kBytes[Next(sizeof kBytes)];
    return text;
  }

  TCIMValue Value(const boost::shared_ptr<FakeNamespace>& home, int depth) {
    const std::uint64_t bits = m_random();
    switch (Next(depth > 0 ? 11 : 10)) {
      case 0: return TCIMValue(Next(2) == 0);
      case 1: return TCIMValue(static_cast<std::uint8_t>(bits));
      case 2: return TCIMValue(static_cast<std::int16_t>(bits));
      case 3: return TCIMValue(bits);
      case 4: return TCIMValue(static_cast<std::int64_t>(bits));
      case 5: return TCIMValue(static_cast<float>(bits) / static_cast<float>(1 + Next(1000)));
      case 6: return TCIMValue(static_cast<double>(bits) * 1e-7 * static_cast<double>(Next(9)));
      case 7: return TCIMValue(static_cast<char16_t>(bits));
      case 8: return TCIMValue(Text());
      case 9:
        return TCIMValue(TCIMDateTime::Timestamp(
            static_cast<std::uint32_t>(Next(10000)), static_cast<std::uint16_t>(1 + Next(12)),
            static_cast<std::uint16_t>(1 + Next(28)), 1, 2, 3, static_cast<std::uint32_t>(Next(9)),
            static_cast<std::int32_t>(Next(1999)) - 999));
      default: return TCIMValue(Path(home, depth - 1));
    }
  }

  std::mt19937_64 m_random;
};

}  // namespace

TEST_F(TypedParseTest, GeneratedPathsReadBackWithTheirTypes) {
  TPathGenerator generator(20);
  for (int round = 0; round < 20000; ++round) {
    const TCIMReference path = generator.Path(home, 2);
    const std::string text = path.GetFullPath();
    const TCIMReference read = TCIMReference::Parse(text, home);
    ASSERT_EQ(read.GetFullPath(), text);
    ASSERT_EQ(read, path) << text;
    ASSERT_EQ(read.GetKeyValues(), path.GetKeyValues()) << text;

    const TCIMReference untyped = TCIMReference::Parse(text, {});
    ASSERT_EQ(untyped.GetFullPath(), text);
    ASSERT_EQ(untyped, path) << text;
    ASSERT_EQ(TCIMReference::Parse(path.GetPath(), home).GetPath(), path.GetPath());
    ASSERT_EQ(TCIMReference::Parse(path.GetPath(), {}).GetPath(), path.GetPath());
  }
}

TEST_F(TypedParseTest, DamagedPathsAreRefusedOrReadToAFixedText) {
  TPathGenerator generator(21);
  int refused = 0;
  int read = 0;
  for (int round = 0; round < 50000; ++round) {
    const std::string text = generator.Damaged(generator.Path(home, 2).GetFullPath());
    for (const auto& where : {home, boost::shared_ptr<FakeNamespace>()}) {
      try {
        const std::string once = TCIMReference::Parse(text, where).GetFullPath();
        ASSERT_EQ(TCIMReference::Parse(once, where).GetFullPath(), once) << text;
        ++read;
      } catch (const THAVException& failure) {
        ASSERT_EQ(failure.GetStatusCode(), kHAVNotFound) << text;
        ++refused;
      }
    }
  }
  EXPECT_GT(refused, 10000);
  EXPECT_GT(read, 10000);
}
