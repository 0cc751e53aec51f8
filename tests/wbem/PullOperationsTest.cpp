#include <gtest/gtest.h>

#include "tests/wbem/Wbem.h"

namespace havtest {
namespace {

using std::chrono::seconds;

// What an answer says behind its elements.
struct Pulled {
  std::string elements;
  std::string context;
  bool ends;
};

std::string Between(const std::string& text, const std::string& before, const std::string& after) {
  const auto begin = text.find(before);
  if (begin == std::string::npos) return "no " + before + " in " + text;
  const auto from = begin + before.size();
  return text.substr(from, text.find(after, from) - from);
}

Pulled Read(const std::string& text) {
  return {Between(text, "<IRETURNVALUE>", "</IRETURNVALUE>"),
          Between(text, "NAME=\"EnumerationContext\" PARAMTYPE=\"string\"><VALUE>", "<"),
          Between(text, "NAME=\"EndOfSequence\" PARAMTYPE=\"boolean\"><VALUE>", "<") == "TRUE"};
}

std::string Max(unsigned count) { return TextParameter("MaxObjectCount", std::to_string(count)); }
std::string Context(const std::string& context) {
  return TextParameter("EnumerationContext", context);
}
const std::string kNoSuch = Error(21, "no such enumeration is open in this namespace");

class PullTest : public testing::Test {
 protected:
  Pulled Open(const std::string& parameters) {
    return Read(zoo.Run("OpenEnumerateInstancePaths", ClassParameter("Z_Bird") + parameters));
  }
  std::string PullRaw(const std::string& context, unsigned count = 1) {
    return zoo.Run("PullInstancePaths", Context(context) + Max(count));
  }

  Zoo zoo;
};

TEST_F(PullTest, PiecesMakeTheWhole) {
  const auto opened = Open("");
  EXPECT_EQ("", opened.elements);
  EXPECT_FALSE(opened.ends);
  EXPECT_EQ(32u, opened.context.size());
  const auto first = Read(PullRaw(opened.context));
  EXPECT_NE(std::string::npos, first.elements.find(">Ada<")) << first.elements;
  EXPECT_EQ(opened.context, first.context);
  EXPECT_FALSE(first.ends);
  EXPECT_EQ("", Read(PullRaw(opened.context, 0)).elements);
  const auto second = Read(PullRaw(opened.context, 5));
  EXPECT_NE(std::string::npos, second.elements.find(">Bob ")) << second.elements;
  EXPECT_EQ(std::string::npos, second.elements.find(">Ada<"));
  EXPECT_EQ("", second.context);
  EXPECT_TRUE(second.ends);
  EXPECT_EQ(kNoSuch, PullRaw(opened.context));
}

TEST_F(PullTest, WhatFitsAtOnceLeavesNothingOpen) {
  const auto opened = Open(Max(2));
  EXPECT_TRUE(opened.ends);
  EXPECT_EQ("", opened.context);
  EXPECT_NE(std::string::npos, opened.elements.find(">Bob ")) << opened.elements;
}

TEST_F(PullTest, InstancesComeWithTheirPaths) {
  const auto opened =
      Read(zoo.Run("OpenEnumerateInstances",
                   ClassParameter("Z_Animal") + Max(1) + TextParameter("DeepInheritance", "false") +
                       Parameter("PropertyList",
                                 "<VALUE.ARRAY><VALUE>Legs</VALUE><VALUE>Flies</VALUE>"
                                 "</VALUE.ARRAY>")));
  EXPECT_EQ(
      "<VALUE.INSTANCEWITHPATH><INSTANCEPATH><NAMESPACEPATH><HOST>zoo.example:5988</HOST>"
      "<LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\"></NAMESPACE><NAMESPACE NAME=\"zoo\">"
      "</NAMESPACE></LOCALNAMESPACEPATH></NAMESPACEPATH><INSTANCENAME CLASSNAME=\"Z_Bird\">"
      "<KEYBINDING NAME=\"Name\"><KEYVALUE VALUETYPE=\"string\" TYPE=\"string\">Ada</KEYVALUE>"
      "</KEYBINDING></INSTANCENAME></INSTANCEPATH><INSTANCE CLASSNAME=\"Z_Bird\"><PROPERTY "
      "NAME=\"Legs\" TYPE=\"uint16\"><VALUE>2</VALUE></PROPERTY></INSTANCE>"
      "</VALUE.INSTANCEWITHPATH>",
      opened.elements);
  EXPECT_EQ(Error(21, "this enumeration is of the other kind"), PullRaw(opened.context));
  EXPECT_TRUE(Read(zoo.Run("PullInstancesWithPath", Context(opened.context) + Max(9))).ends);
}

TEST_F(PullTest, AssociationsArePulledToo) {
  const auto object = Parameter("InstanceName", kCageName) + Max(9);
  for (const auto* const operation : {"OpenAssociatorInstances", "OpenAssociatorInstancePaths",
                                      "OpenReferenceInstances", "OpenReferenceInstancePaths"}) {
    const auto opened = Read(zoo.Run(operation, object));
    EXPECT_TRUE(opened.ends) << operation;
    EXPECT_NE(std::string::npos, opened.elements.find(">Ada<")) << operation;
    EXPECT_NE(std::string::npos, opened.elements.find(">Bob ")) << operation;
  }
}

TEST_F(PullTest, CloseEndsIt) {
  const auto opened = Open("");
  EXPECT_EQ("<VALUE>2</VALUE>", zoo.Value("EnumerationCount", Context(opened.context)));
  EXPECT_EQ("", zoo.Run("CloseEnumeration", Context(opened.context)));
  EXPECT_EQ(kNoSuch, zoo.Run("CloseEnumeration", Context(opened.context)));
  EXPECT_EQ(kNoSuch, PullRaw(opened.context));
}

TEST_F(PullTest, TimeRunsOutFromTheLastAnswer) {
  const auto opened = Open(TextParameter("OperationTimeout", "10"));
  zoo.now += seconds(9);
  EXPECT_FALSE(Read(PullRaw(opened.context)).ends);
  zoo.now += seconds(9);
  EXPECT_EQ("", Read(PullRaw(opened.context, 0)).elements);
  zoo.now += seconds(10);
  EXPECT_EQ(kNoSuch, PullRaw(opened.context));
}

TEST_F(PullTest, TimeIsBounded) {
  const auto refusal = Error(22, "OperationTimeout is 1 to 600 seconds here");
  for (const auto* const timeout : {"0", "601"})
    EXPECT_EQ(refusal,
              zoo.Run("OpenEnumerateInstances",
                      ClassParameter("Z_Bird") + TextParameter("OperationTimeout", timeout)));
}

TEST_F(PullTest, NumberIsBoundedAndComesBackWithTime) {
  for (int i = 0; i < 100; ++i) EXPECT_FALSE(Open("").ends);
  EXPECT_EQ(Error(27, "100 enumerations are open already"),
            zoo.Run("OpenEnumerateInstancePaths", ClassParameter("Z_Bird")));
  EXPECT_TRUE(Open(Max(2)).ends);  // needs none
  zoo.now += seconds(60);
  EXPECT_FALSE(Open("").ends);
}

TEST_F(PullTest, WhatIsNotOfferedIsSaid) {
  const auto open = [&](const std::string& parameters) {
    return zoo.Run("OpenEnumerateInstances", ClassParameter("Z_Bird") + parameters);
  };
  EXPECT_EQ(Error(25, "enumerations are not filtered by queries here"),
            open(TextParameter("FilterQueryLanguage", "DMTF:FQL") +
                 TextParameter("FilterQuery", "Legs = 2")));
  EXPECT_EQ(Error(26, "an enumeration ends with its first error here"),
            open(TextParameter("ContinueOnError", "true")));
  EXPECT_EQ(Error(4, "MaxObjectCount is missing"),
            zoo.Run("PullInstancePaths", Context(Open("").context)));
}

TEST_F(PullTest, InstancesThatHaveGoneAreLeftOut) {
  const auto opened = Open("");
  EXPECT_EQ("", zoo.Run("DeleteInstance", Parameter("InstanceName", BirdName("Ada"))));
  const auto pulled = Read(PullRaw(opened.context, 9));
  EXPECT_TRUE(pulled.ends);
  EXPECT_NE(std::string::npos, pulled.elements.find(">Bob "));
}

}  // namespace
}  // namespace havtest
