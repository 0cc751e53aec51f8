#include <gtest/gtest.h>

#include "tests/wbem/Wbem.h"

namespace havtest {
namespace {

const std::string kAda = BirdName("Ada");

// As an answer writes it.
std::string WrittenName(const std::string& name) {
  return "<INSTANCENAME CLASSNAME=\"Z_Bird\"><KEYBINDING NAME=\"Name\"><KEYVALUE "
         "VALUETYPE=\"string\" TYPE=\"string\">" +
         name + "</KEYVALUE></KEYBINDING></INSTANCENAME>";
}
const std::string kBob = WrittenName("Bob &amp; &quot;Co&quot;");
const std::string kWrittenCage =
    "<INSTANCENAME CLASSNAME=\"Z_Cage\"><KEYBINDING NAME=\"Inside\"><KEYVALUE "
    "VALUETYPE=\"boolean\" TYPE=\"boolean\">TRUE</KEYVALUE></KEYBINDING><KEYBINDING "
    "NAME=\"Number\"><KEYVALUE VALUETYPE=\"numeric\" TYPE=\"uint32\">1</KEYVALUE></KEYBINDING>"
    "</INSTANCENAME>";

std::string Only(const std::string& property) {
  return Parameter("PropertyList", "<VALUE.ARRAY><VALUE>" + property + "</VALUE></VALUE.ARRAY>");
}

TEST(GetInstance, GivesEveryPropertyWithItsValue) {
  Zoo zoo;
  EXPECT_EQ(
      "<INSTANCE CLASSNAME=\"Z_Bird\">"
      "<PROPERTY.ARRAY NAME=\"Colours\" TYPE=\"string\"><VALUE.ARRAY><VALUE>red</VALUE>"
      "<VALUE>&lt;blue&gt;</VALUE></VALUE.ARRAY></PROPERTY.ARRAY>"
      "<PROPERTY NAME=\"Depth\" TYPE=\"sint8\"><VALUE>-3</VALUE></PROPERTY>"
      "<PROPERTY NAME=\"Flies\" TYPE=\"boolean\"><VALUE>TRUE</VALUE></PROPERTY>"
      "<PROPERTY NAME=\"Hatched\" TYPE=\"datetime\"><VALUE>20240301101500.000000+060</VALUE>"
      "</PROPERTY>"
      "<PROPERTY NAME=\"Legs\" TYPE=\"uint16\"><VALUE>2</VALUE></PROPERTY>"
      "<PROPERTY NAME=\"Name\" TYPE=\"string\" PROPAGATED=\"true\"><VALUE>Ada</VALUE></PROPERTY>"
      "<PROPERTY NAME=\"Ring\" TYPE=\"char16\"><VALUE>A</VALUE></PROPERTY>"
      "<PROPERTY NAME=\"Weight\" TYPE=\"real64\"><VALUE>0.5</VALUE></PROPERTY></INSTANCE>",
      zoo.Value("GetInstance", Parameter("InstanceName", kAda)));
}

TEST(GetInstance, PropertyListNamesWhatIsGiven) {
  Zoo zoo;
  EXPECT_EQ(
      "<INSTANCE CLASSNAME=\"Z_Bird\"><PROPERTY NAME=\"Weight\" TYPE=\"real64\"></PROPERTY>"
      "</INSTANCE>",
      zoo.Value("GetInstance", Parameter("InstanceName", kBob) + Only("WEIGHT")));
  EXPECT_EQ("<INSTANCE CLASSNAME=\"Z_Bird\"></INSTANCE>",
            zoo.Value("GetInstance", Parameter("InstanceName", kAda) + Only("Unknown")));
}

TEST(GetInstance, ClassOriginAndQualifiersComeWhenTheyAreAskedFor) {
  Zoo zoo;
  EXPECT_EQ(
      "<INSTANCE CLASSNAME=\"Z_Cage\"><PROPERTY NAME=\"Number\" TYPE=\"uint32\" "
      "CLASSORIGIN=\"Z_Cage\"><QUALIFIER NAME=\"Key\" TYPE=\"boolean\" OVERRIDABLE=\"false\">"
      "<VALUE>TRUE</VALUE></QUALIFIER><VALUE>1</VALUE></PROPERTY></INSTANCE>",
      zoo.Value("GetInstance", Parameter("InstanceName", kCageName) + Only("Number") +
                                   TextParameter("IncludeQualifiers", "true") +
                                   TextParameter("IncludeClassOrigin", "true")));
}

TEST(GetInstance, WhatIsNotThereIsTold) {
  Zoo zoo;
  EXPECT_EQ(Error(6, "there is no instance Z_Bird.Name=&quot;Eve&quot; in namespace root/zoo"),
            zoo.Run("GetInstance", Parameter("InstanceName", BirdName("Eve"))));
  EXPECT_EQ(
      Error(5, "there is no class 'Z_Fish' in namespace root/zoo"),
      zoo.Run("GetInstance", Parameter("InstanceName", "<INSTANCENAME CLASSNAME=\"Z_Fish\"/>")));
  EXPECT_EQ(
      Error(4, "'a.b=1' is no class name"),
      zoo.Run("GetInstance", Parameter("InstanceName", "<INSTANCENAME CLASSNAME=\"a.b=1\"/>")));
  EXPECT_EQ(Error(13, "'one' is no uint32"),
            zoo.Run("GetInstance",
                    Parameter("InstanceName",
                              "<INSTANCENAME CLASSNAME=\"Z_Cage\"><KEYBINDING NAME=\"Number\">"
                              "<KEYVALUE>one</KEYVALUE></KEYBINDING></INSTANCENAME>")));
}

TEST(GetInstance, TheOnlyKeyNeedsNoName) {
  Zoo zoo;
  EXPECT_EQ(
      "<INSTANCE CLASSNAME=\"Z_Bird\"><PROPERTY NAME=\"Flies\" TYPE=\"boolean\"><VALUE>TRUE"
      "</VALUE></PROPERTY></INSTANCE>",
      zoo.Value("GetInstance", Parameter("InstanceName",
                                         "<INSTANCENAME CLASSNAME=\"Z_Bird\"><KEYVALUE>Ada"
                                         "</KEYVALUE></INSTANCENAME>") +
                                   Only("Flies")));
  EXPECT_EQ(Error(4, "the path gives a key value without its name"),
            zoo.Run("GetInstance", Parameter("InstanceName",
                                             "<INSTANCENAME CLASSNAME=\"Z_Cage\"><KEYVALUE>1"
                                             "</KEYVALUE></INSTANCENAME>")));
}

TEST(EnumerateInstanceNames, TakesInSubclasses) {
  Zoo zoo;
  EXPECT_EQ(WrittenName("Ada") + WrittenName("Bob &amp; &quot;Co&quot;"),
            zoo.Value("EnumerateInstanceNames", ClassParameter("Z_Animal")));
  EXPECT_EQ(Error(5, "there is no class 'Z_Fish' in namespace root/zoo"),
            zoo.Run("EnumerateInstanceNames", ClassParameter("Z_Fish")));
}

TEST(EnumerateInstances, ReferencesAreKeysAndProperties) {
  Zoo zoo;
  const auto reference = [](const std::string& name) {
    return "<VALUE.REFERENCE>" + name + "</VALUE.REFERENCE>";
  };
  const auto ends = [&](const std::string& bird) {
    return "<VALUE.NAMEDINSTANCE><INSTANCENAME CLASSNAME=\"Z_Lives\"><KEYBINDING NAME=\"Animal\">" +
           reference(bird) + "</KEYBINDING><KEYBINDING NAME=\"Cage\">" + reference(kWrittenCage) +
           "</KEYBINDING></INSTANCENAME><INSTANCE CLASSNAME=\"Z_Lives\"><PROPERTY.REFERENCE "
           "NAME=\"Animal\" REFERENCECLASS=\"Z_Animal\">" +
           reference(bird) +
           "</PROPERTY.REFERENCE><PROPERTY.REFERENCE NAME=\"Cage\" REFERENCECLASS=\"Z_Cage\">" +
           reference(kWrittenCage) + "</PROPERTY.REFERENCE></INSTANCE></VALUE.NAMEDINSTANCE>";
  };
  EXPECT_EQ(ends(WrittenName("Ada")) + ends(kBob),
            zoo.Value("EnumerateInstances", ClassParameter("Z_Lives")));
}

TEST(EnumerateInstances, NotDeepLeavesOutWhatSubclassesAdd) {
  Zoo zoo;
  const auto legs = [](const std::string& name, const std::string& count) {
    return "<VALUE.NAMEDINSTANCE>" + name +
           "<INSTANCE CLASSNAME=\"Z_Bird\"><PROPERTY NAME=\"Legs\" TYPE=\"uint16\"><VALUE>" +
           count +
           "</VALUE></PROPERTY><PROPERTY NAME=\"Name\" TYPE=\"string\" PROPAGATED=\"true\">"
           "<VALUE>" +
           (count == "2" ? "Ada" : "Bob &amp; &quot;Co&quot;") +
           "</VALUE></PROPERTY></INSTANCE></VALUE.NAMEDINSTANCE>";
  };
  EXPECT_EQ(legs(WrittenName("Ada"), "2") + legs(kBob, "1"),
            zoo.Value("EnumerateInstances",
                      ClassParameter("Z_Animal") + TextParameter("DeepInheritance", "false")));
}

std::string NewBird(const std::string& properties) {
  return Parameter("NewInstance", "<INSTANCE CLASSNAME=\"Z_Bird\">" + properties + "</INSTANCE>");
}

TEST(CreateInstance, IsStoredAndNamed) {
  Zoo zoo;
  EXPECT_EQ(WrittenName("Eve"),
            zoo.Value("CreateInstance",
                      NewBird("<PROPERTY NAME=\"name\" TYPE=\"string\"><VALUE>Eve</VALUE>"
                              "</PROPERTY><PROPERTY.ARRAY NAME=\"Colours\" TYPE=\"string\">"
                              "<VALUE.ARRAY><VALUE>green</VALUE></VALUE.ARRAY></PROPERTY.ARRAY>")));
  EXPECT_EQ(
      "<INSTANCE CLASSNAME=\"Z_Bird\"><PROPERTY.ARRAY NAME=\"Colours\" TYPE=\"string\">"
      "<VALUE.ARRAY><VALUE>green</VALUE></VALUE.ARRAY></PROPERTY.ARRAY></INSTANCE>",
      zoo.Value("GetInstance", Parameter("InstanceName", BirdName("Eve")) + Only("Colours")));
}

TEST(CreateInstance, WhatIsWrongIsRefused) {
  Zoo zoo;
  const auto create = [&](const std::string& properties) {
    return zoo.Run("CreateInstance", NewBird(properties));
  };
  EXPECT_EQ(Error(4, "A key property of the instance is NULL."), create(""));
  EXPECT_EQ(Error(11, "there is an instance Z_Bird.Name=&quot;Ada&quot; already"),
            create("<PROPERTY NAME=\"Name\" TYPE=\"string\"><VALUE>Ada</VALUE></PROPERTY>"));
  EXPECT_EQ(Error(12, "class Z_Bird has no property 'Wings'"),
            create("<PROPERTY NAME=\"Wings\" TYPE=\"uint8\"><VALUE>2</VALUE></PROPERTY>"));
  EXPECT_EQ(Error(13, "property Legs is of type uint16"),
            create("<PROPERTY NAME=\"Legs\" TYPE=\"uint8\"><VALUE>2</VALUE></PROPERTY>"));
  EXPECT_EQ(Error(13, "'many' is no uint16"),
            create("<PROPERTY NAME=\"Legs\" TYPE=\"uint16\"><VALUE>many</VALUE></PROPERTY>"));
  EXPECT_EQ(
      Error(7, "class Z_Animal is abstract and has no instances of its own"),
      zoo.Run("CreateInstance", Parameter("NewInstance", "<INSTANCE CLASSNAME=\"Z_Animal\"/>")));
  EXPECT_EQ(
      Error(5, "there is no class 'Z_Fish' in namespace root/zoo"),
      zoo.Run("CreateInstance", Parameter("NewInstance", "<INSTANCE CLASSNAME=\"Z_Fish\"/>")));
}

TEST(CreateInstance, AssociationsRefer) {
  Zoo zoo;
  const auto link =
      "<INSTANCE CLASSNAME=\"Z_Lives\"><PROPERTY.REFERENCE NAME=\"Cage\"><VALUE.REFERENCE>"
      "<INSTANCEPATH><NAMESPACEPATH><HOST>h</HOST>" +
      std::string(kNamespacePath) + "</NAMESPACEPATH>" +
      "<INSTANCENAME CLASSNAME=\"Z_Cage\"><KEYBINDING NAME=\"Number\"><KEYVALUE>2</KEYVALUE>"
      "</KEYBINDING><KEYBINDING NAME=\"Inside\"><KEYVALUE>false</KEYVALUE></KEYBINDING>"
      "</INSTANCENAME></INSTANCEPATH></VALUE.REFERENCE></PROPERTY.REFERENCE>"
      "<PROPERTY.REFERENCE NAME=\"Animal\"><VALUE.REFERENCE>" +
      kAda + "</VALUE.REFERENCE></PROPERTY.REFERENCE></INSTANCE>";
  zoo.Value("CreateInstance",
            Parameter("NewInstance",
                      "<INSTANCE CLASSNAME=\"Z_Cage\"><PROPERTY NAME=\"Number\" TYPE=\"uint32\">"
                      "<VALUE>2</VALUE></PROPERTY><PROPERTY NAME=\"Inside\" TYPE=\"boolean\">"
                      "<VALUE>false</VALUE></PROPERTY></INSTANCE>"));
  const auto made = zoo.Run("CreateInstance", Parameter("NewInstance", link));
  EXPECT_EQ(std::string::npos, made.find("ERROR")) << made;
  const auto cages = zoo.Value("AssociatorNames", Parameter("ObjectName", kAda));
  EXPECT_NE(std::string::npos, cages.find("TYPE=\"uint32\">2<")) << cages;
}

std::string Modified(const std::string& name, const std::string& properties) {
  return Parameter("ModifiedInstance", "<VALUE.NAMEDINSTANCE>" + name +
                                           "<INSTANCE CLASSNAME=\"Z_Bird\">" + properties +
                                           "</INSTANCE></VALUE.NAMEDINSTANCE>");
}
constexpr char kTenLegs[] = "<PROPERTY NAME=\"Legs\" TYPE=\"uint16\"><VALUE>10</VALUE></PROPERTY>";
constexpr char kFlightless[] =
    "<PROPERTY NAME=\"Flies\" TYPE=\"boolean\"><VALUE>FALSE</VALUE></PROPERTY>";

std::string LegsOf(Zoo& zoo, const std::string& name) {
  return zoo.Value("GetProperty",
                   Parameter("InstanceName", name) + TextParameter("PropertyName", "legs"));
}
std::string FliesOf(Zoo& zoo, const std::string& name) {
  return zoo.Value("GetProperty",
                   Parameter("InstanceName", name) + TextParameter("PropertyName", "Flies"));
}

TEST(ModifyInstance, AssignsWhatIsGiven) {
  Zoo zoo;
  EXPECT_EQ("", zoo.Run("ModifyInstance", Modified(kAda, std::string(kTenLegs) + kFlightless)));
  EXPECT_EQ("<VALUE>10</VALUE>", LegsOf(zoo, kAda));
  EXPECT_EQ("<VALUE>FALSE</VALUE>", FliesOf(zoo, kAda));
}

TEST(ModifyInstance, PropertyListSelectsAndDefaults) {
  Zoo zoo;
  EXPECT_EQ("", zoo.Run("ModifyInstance", Modified(kAda, kTenLegs) + Only("Flies")));
  EXPECT_EQ("<VALUE>2</VALUE>", LegsOf(zoo, kAda));
  EXPECT_EQ("", FliesOf(zoo, kAda));
  EXPECT_EQ(Error(12, "class Z_Bird has no property 'Wings'"),
            zoo.Run("ModifyInstance", Modified(kAda, kTenLegs) + Only("Wings")));
}

TEST(ModifyInstance, KeysStay) {
  Zoo zoo;
  const auto renamed = [&](const std::string& name) {
    return zoo.Run("ModifyInstance",
                   Modified(kAda, kTenLegs + ("<PROPERTY NAME=\"Name\" TYPE=\"string\"><VALUE>" +
                                              name + "</VALUE></PROPERTY>")));
  };
  EXPECT_EQ(Error(4, "the key Name of class Z_Bird cannot be changed"), renamed("Eve"));
  EXPECT_EQ("<VALUE>2</VALUE>", LegsOf(zoo, kAda));
  EXPECT_EQ("", renamed("Ada"));
  EXPECT_EQ("<VALUE>10</VALUE>", LegsOf(zoo, kAda));
}

TEST(SetProperty, AssignsOneValueOrNull) {
  Zoo zoo;
  const auto set = [&](const std::string& name, const std::string& value) {
    return zoo.Run("SetProperty",
                   Parameter("InstanceName", kAda) + TextParameter("PropertyName", name) + value);
  };
  EXPECT_EQ("", set("Legs", TextParameter("NewValue", "3")));
  EXPECT_EQ("<VALUE>3</VALUE>", LegsOf(zoo, kAda));
  EXPECT_EQ("", set("Flies", ""));
  EXPECT_EQ("", FliesOf(zoo, kAda));
  EXPECT_EQ(Error(13, "'-1' is no uint16"), set("Legs", TextParameter("NewValue", "-1")));
  EXPECT_EQ(Error(12, "class Z_Bird has no property 'Wings'"),
            set("Wings", TextParameter("NewValue", "2")));
  EXPECT_EQ(Error(4, "the key Name of class Z_Bird cannot be changed"),
            set("Name", TextParameter("NewValue", "Eve")));
  EXPECT_EQ(Error(13, "an array is expected, not VALUE"),
            set("Colours", TextParameter("NewValue", "red")));
}

TEST(DeleteInstance, TakesTheInstanceAway) {
  Zoo zoo;
  EXPECT_EQ("", zoo.Run("DeleteInstance", Parameter("InstanceName", kAda)));
  EXPECT_EQ(Error(6, "there is no instance Z_Bird.Name=&quot;Ada&quot; in namespace root/zoo"),
            zoo.Run("DeleteInstance", Parameter("InstanceName", kAda)));
}

std::string Path(const std::string& name) {
  return "<INSTANCEPATH><NAMESPACEPATH><HOST>zoo.example:5988</HOST><LOCALNAMESPACEPATH>"
         "<NAMESPACE NAME=\"root\"></NAMESPACE><NAMESPACE NAME=\"zoo\"></NAMESPACE>"
         "</LOCALNAMESPACEPATH></NAMESPACEPATH>" +
         name + "</INSTANCEPATH>";
}
std::string ObjectPath(const std::string& name) {
  return "<OBJECTPATH>" + Path(name) + "</OBJECTPATH>";
}
std::string ClassObjectPath(const std::string& cls) {
  return "<OBJECTPATH><CLASSPATH><NAMESPACEPATH><HOST>zoo.example:5988</HOST>"
         "<LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\"></NAMESPACE><NAMESPACE NAME=\"zoo\">"
         "</NAMESPACE></LOCALNAMESPACEPATH></NAMESPACEPATH><CLASSNAME NAME=\"" +
         cls + "\"></CLASSNAME></CLASSPATH></OBJECTPATH>";
}

TEST(AssociatorNames, AreFollowedFromAnInstance) {
  Zoo zoo;
  const auto object = Parameter("ObjectName", kCageName);
  const auto both = ObjectPath(WrittenName("Ada")) + ObjectPath(kBob);
  EXPECT_EQ(both, zoo.Value("AssociatorNames", object));
  EXPECT_EQ(both, zoo.Value("AssociatorNames", object + ClassParameter("Z_Lives", "AssocClass") +
                                                   ClassParameter("Z_Animal", "ResultClass") +
                                                   TextParameter("Role", "cage") +
                                                   TextParameter("ResultRole", "Animal")));
  EXPECT_EQ("", zoo.Value("AssociatorNames", object + TextParameter("Role", "Animal")));
  EXPECT_EQ("", zoo.Value("AssociatorNames", object + TextParameter("ResultRole", "Cage")));
  EXPECT_EQ("", zoo.Value("AssociatorNames", object + ClassParameter("Z_Cage", "ResultClass")));
  EXPECT_EQ(Error(6, "there is no instance Z_Bird.Name=&quot;Eve&quot; in namespace root/zoo"),
            zoo.Run("AssociatorNames", Parameter("ObjectName", BirdName("Eve"))));
  EXPECT_EQ(Error(4, "there is no class 'Z_Fish' in namespace root/zoo"),
            zoo.Run("AssociatorNames", ClassParameter("Z_Fish", "ObjectName")));
}

TEST(AssociatorNames, AreFollowedFromAClass) {
  Zoo zoo;
  EXPECT_EQ(ClassObjectPath("Z_Animal"),
            zoo.Value("AssociatorNames", ClassParameter("Z_Cage", "ObjectName")));
  // Some clients name a class like an instance.
  EXPECT_EQ(ClassObjectPath("Z_Animal"),
            zoo.Value("AssociatorNames",
                      Parameter("ObjectName", "<INSTANCENAME CLASSNAME=\"Z_Cage\"/>")));
  EXPECT_EQ("", zoo.Value("AssociatorNames", ClassParameter("Z_Cage", "ObjectName") +
                                                 TextParameter("Role", "Animal")));
}

TEST(Associators, GiveObjectsWithTheirPaths) {
  Zoo zoo;
  EXPECT_EQ("<VALUE.OBJECTWITHPATH>" + Path(kWrittenCage) +
                "<INSTANCE CLASSNAME=\"Z_Cage\"><PROPERTY NAME=\"Number\" TYPE=\"uint32\"><VALUE>"
                "1</VALUE></PROPERTY></INSTANCE></VALUE.OBJECTWITHPATH>",
            zoo.Value("Associators", Parameter("ObjectName", kAda) + Only("Number")));
  const auto cls = zoo.Value("Associators", ClassParameter("Z_Cage", "ObjectName"));
  EXPECT_NE(std::string::npos, cls.find("<CLASS NAME=\"Z_Animal\"><PROPERTY NAME=\"Legs\" "
                                        "TYPE=\"uint16\"><VALUE>4</VALUE></PROPERTY>"))
      << cls;
}

TEST(References, GiveTheAssociations) {
  Zoo zoo;
  const auto name =
      "<INSTANCENAME CLASSNAME=\"Z_Lives\"><KEYBINDING NAME=\"Animal\"><VALUE.REFERENCE>" +
      WrittenName("Ada") +
      "</VALUE.REFERENCE></KEYBINDING><KEYBINDING NAME=\"Cage\"><VALUE.REFERENCE>" + kWrittenCage +
      "</VALUE.REFERENCE></KEYBINDING></INSTANCENAME>";
  EXPECT_EQ(ObjectPath(name), zoo.Value("ReferenceNames", Parameter("ObjectName", kAda)));
  EXPECT_EQ("", zoo.Value("ReferenceNames",
                          Parameter("ObjectName", kAda) + TextParameter("Role", "Cage")));
  EXPECT_EQ("<VALUE.OBJECTWITHPATH>" + Path(name) +
                "<INSTANCE CLASSNAME=\"Z_Lives\"></INSTANCE></VALUE.OBJECTWITHPATH>",
            zoo.Value("References", Parameter("ObjectName", kAda) + Only("")));
  EXPECT_EQ(ClassObjectPath("Z_Lives"),
            zoo.Value("ReferenceNames", ClassParameter("Z_Bird", "ObjectName")));
  EXPECT_EQ(Error(4, "The name is not a valid CIM name."),
            zoo.Run("References",
                    Parameter("ObjectName", kAda) + ClassParameter("not a name", "ResultClass")));
}

}  // namespace
}  // namespace havtest
