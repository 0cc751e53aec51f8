#include <gtest/gtest.h>

#include "tests/wbem/Wbem.h"

namespace havtest {
namespace {

const std::string kNoQualifiers = TextParameter("IncludeQualifiers", "false");
const std::string kAll = TextParameter("LocalOnly", "false");

TEST(GetClass, GivesWhatTheClassDeclaresItself) {
  Zoo zoo;
  EXPECT_EQ(
      "<CLASS NAME=\"Z_Bird\" SUPERCLASS=\"Z_Animal\">"
      "<PROPERTY.ARRAY NAME=\"Colours\" TYPE=\"string\"></PROPERTY.ARRAY>"
      "<PROPERTY NAME=\"Depth\" TYPE=\"sint8\"></PROPERTY>"
      "<PROPERTY NAME=\"Flies\" TYPE=\"boolean\"></PROPERTY>"
      "<PROPERTY NAME=\"Hatched\" TYPE=\"datetime\"></PROPERTY>"
      "<PROPERTY NAME=\"Legs\" TYPE=\"uint16\"><VALUE>2</VALUE></PROPERTY>"
      "<PROPERTY NAME=\"Ring\" TYPE=\"char16\"></PROPERTY>"
      "<PROPERTY NAME=\"Weight\" TYPE=\"real64\"></PROPERTY>"
      "<METHOD NAME=\"Sing\" TYPE=\"uint32\">"
      "<PARAMETER NAME=\"Song\" TYPE=\"string\"></PARAMETER>"
      "<PARAMETER.ARRAY NAME=\"Volumes\" TYPE=\"uint8\"></PARAMETER.ARRAY></METHOD></CLASS>",
      zoo.Value("GetClass", ClassParameter("z_bird") + kNoQualifiers));
}

TEST(GetClass, GivesWhatIsInheritedWhenItIsAskedFor) {
  Zoo zoo;
  const auto list = Parameter("PropertyList",
                              "<VALUE.ARRAY><VALUE>NAME</VALUE><VALUE>Legs</VALUE></VALUE.ARRAY>");
  EXPECT_EQ(
      "<CLASS NAME=\"Z_Bird\" SUPERCLASS=\"Z_Animal\">"
      "<PROPERTY NAME=\"Legs\" TYPE=\"uint16\" CLASSORIGIN=\"Z_Bird\"><VALUE>2</VALUE></PROPERTY>"
      "<PROPERTY NAME=\"Name\" TYPE=\"string\" CLASSORIGIN=\"Z_Animal\" PROPAGATED=\"true\">"
      "</PROPERTY><METHOD NAME=\"Sing\" TYPE=\"uint32\" CLASSORIGIN=\"Z_Bird\">"
      "<PARAMETER NAME=\"Song\" TYPE=\"string\"></PARAMETER>"
      "<PARAMETER.ARRAY NAME=\"Volumes\" TYPE=\"uint8\"></PARAMETER.ARRAY></METHOD></CLASS>",
      zoo.Value("GetClass", ClassParameter("Z_Bird") + kNoQualifiers + kAll + list +
                                TextParameter("IncludeClassOrigin", "TRUE")));
}

TEST(GetClass, QualifiersComeWithTypeFlavorAndValue) {
  Zoo zoo;
  EXPECT_EQ(
      "<CLASS NAME=\"Z_Lives\">"
      "<QUALIFIER NAME=\"Association\" TYPE=\"boolean\" OVERRIDABLE=\"false\"><VALUE>TRUE</VALUE>"
      "</QUALIFIER>"
      "<PROPERTY.REFERENCE NAME=\"Animal\" REFERENCECLASS=\"Z_Animal\">"
      "<QUALIFIER NAME=\"Key\" TYPE=\"boolean\" OVERRIDABLE=\"false\"><VALUE>TRUE</VALUE>"
      "</QUALIFIER></PROPERTY.REFERENCE>"
      "<PROPERTY.REFERENCE NAME=\"Cage\" REFERENCECLASS=\"Z_Cage\">"
      "<QUALIFIER NAME=\"Key\" TYPE=\"boolean\" OVERRIDABLE=\"false\"><VALUE>TRUE</VALUE>"
      "</QUALIFIER></PROPERTY.REFERENCE></CLASS>",
      zoo.Value("GetClass", ClassParameter("Z_Lives")));
}

TEST(GetClass, PropagatedQualifiersAreNotLocal) {
  Zoo zoo;
  const auto none = Parameter("PropertyList", "<VALUE.ARRAY></VALUE.ARRAY>");
  const auto local = zoo.Value("GetClass", ClassParameter("Z_Bird") + none);
  const auto all = zoo.Value("GetClass", ClassParameter("Z_Bird") + none + kAll);
  EXPECT_EQ(std::string::npos, local.find("All that lives")) << local;
  EXPECT_NE(std::string::npos,
            all.find("<QUALIFIER NAME=\"Description\" TYPE=\"string\" PROPAGATED=\"true\" "
                     "TRANSLATABLE=\"true\"><VALUE>All that lives.</VALUE></QUALIFIER>"))
      << all;
}

TEST(GetClass, UnknownClassIsNotFound) {
  Zoo zoo;
  EXPECT_EQ(Error(6, "there is no class 'Z_Fish' in namespace root/zoo"),
            zoo.Run("GetClass", ClassParameter("Z_Fish")));
  EXPECT_EQ(Error(6, "there is no class '&lt;root&gt;' in namespace root/zoo"),
            zoo.Run("GetClass", ClassParameter("&lt;root&gt;")));
  EXPECT_EQ(Error(6, "there is no class '1st' in namespace root/zoo"),
            zoo.Run("GetClass", ClassParameter("1st")));
}

TEST(Parameters, WhatIsWrongWithThemIsSaid) {
  Zoo zoo;
  EXPECT_EQ(Error(4, "ClassName is missing"), zoo.Run("GetClass", ""));
  EXPECT_EQ(Error(4, "ClassName is missing"), zoo.Run("GetClass", Parameter("ClassName", "")));
  EXPECT_EQ(Error(4, "classname is given twice"),
            zoo.Run("GetClass", ClassParameter("A") + ClassParameter("B", "classname")));
  EXPECT_EQ(Error(4, "Colour is no parameter of this operation"),
            zoo.Run("GetClass", ClassParameter("Z_Bird") + TextParameter("Colour", "red")));
  EXPECT_EQ(Error(4, "LocalOnly is TRUE or FALSE: 'maybe' is no boolean"),
            zoo.Run("GetClass", ClassParameter("Z_Bird") + TextParameter("LocalOnly", "maybe")));
  EXPECT_EQ(Error(4, "ClassName is a CLASSNAME, not a VALUE"),
            zoo.Run("GetClass", TextParameter("ClassName", "Z_Bird")));
  EXPECT_EQ(Error(4, "IPARAMVALUE has 2 elements in it, not one"),
            zoo.Run("GetClass", Parameter("ClassName", "<CLASSNAME NAME=\"A\"/><VALUE/>")));
  EXPECT_EQ(Error(4, "PropertyList is a VALUE.ARRAY, not a VALUE"),
            zoo.Run("GetClass", ClassParameter("Z_Bird") + TextParameter("PropertyList", "Name")));
}

TEST(EnumerateClassNames, GivesOneLevelOrAll) {
  Zoo zoo;
  const auto name = [](const std::string& cls) {
    return "<CLASSNAME NAME=\"" + cls + "\"></CLASSNAME>";
  };
  EXPECT_EQ(name("Z_Animal") + name("Z_Cage") + name("Z_Lives"),
            zoo.Value("EnumerateClassNames", ""));
  EXPECT_EQ(name("Z_Animal") + name("Z_Bird") + name("Z_Cage") + name("Z_Lives"),
            zoo.Value("EnumerateClassNames", TextParameter("DeepInheritance", "true")));
  EXPECT_EQ(name("Z_Bird"), zoo.Value("EnumerateClassNames", ClassParameter("Z_Animal")));
  EXPECT_EQ("", zoo.Value("EnumerateClassNames", ClassParameter("Z_Bird")));
  EXPECT_EQ(Error(5, "there is no class 'Z_Fish' in namespace root/zoo"),
            zoo.Run("EnumerateClassNames", ClassParameter("Z_Fish")));
}

TEST(EnumerateClasses, GivesClassesInTheSameOrder) {
  Zoo zoo;
  EXPECT_EQ(
      "<CLASS NAME=\"Z_Cage\"><PROPERTY NAME=\"Inside\" TYPE=\"boolean\"></PROPERTY>"
      "<PROPERTY NAME=\"Number\" TYPE=\"uint32\"></PROPERTY></CLASS>",
      zoo.Value("GetClass", ClassParameter("Z_Cage") + kNoQualifiers));
  const auto all = zoo.Value("EnumerateClasses", kNoQualifiers);
  EXPECT_LT(all.find("<CLASS NAME=\"Z_Animal\">"), all.find("<CLASS NAME=\"Z_Cage\">")) << all;
  EXPECT_EQ(std::string::npos, all.find("Z_Bird")) << all;
}

constexpr char kFish[] =
    "<CLASS NAME=\"Z_Fish\" SUPERCLASS=\"Z_Animal\">"
    "<QUALIFIER NAME=\"Description\" TYPE=\"string\"><VALUE>It swims.</VALUE></QUALIFIER>"
    "<PROPERTY NAME=\"Legs\" TYPE=\"uint16\"><QUALIFIER NAME=\"Override\" TYPE=\"string\">"
    "<VALUE>Legs</VALUE></QUALIFIER></PROPERTY>"
    "<PROPERTY.ARRAY NAME=\"Fins\" TYPE=\"uint8\"><VALUE.ARRAY><VALUE>1</VALUE><VALUE.NULL/>"
    "</VALUE.ARRAY></PROPERTY.ARRAY>"
    "<METHOD NAME=\"Meet\" TYPE=\"boolean\"><PARAMETER.REFERENCE NAME=\"Who\" "
    "REFERENCECLASS=\"Z_Animal\"></PARAMETER.REFERENCE></METHOD></CLASS>";

TEST(CreateClass, WhatIsMadeReadsBack) {
  Zoo zoo;
  EXPECT_EQ("", zoo.Run("CreateClass", Parameter("NewClass", kFish)));
  EXPECT_EQ(
      "<CLASS NAME=\"Z_Fish\" SUPERCLASS=\"Z_Animal\">"
      "<PROPERTY.ARRAY NAME=\"Fins\" TYPE=\"uint8\"><VALUE.ARRAY><VALUE>1</VALUE><VALUE.NULL>"
      "</VALUE.NULL></VALUE.ARRAY></PROPERTY.ARRAY>"
      // The default is that of the overridden property.
      "<PROPERTY NAME=\"Legs\" TYPE=\"uint16\"><VALUE>4</VALUE></PROPERTY>"
      "<METHOD NAME=\"Meet\" TYPE=\"boolean\"><PARAMETER.REFERENCE NAME=\"Who\" "
      "REFERENCECLASS=\"Z_Animal\"></PARAMETER.REFERENCE></METHOD></CLASS>",
      zoo.Value("GetClass", ClassParameter("Z_Fish") + kNoQualifiers));
  EXPECT_EQ(Error(11, "there is a class 'Z_Fish' already"),
            zoo.Run("CreateClass", Parameter("NewClass", kFish)));
}

TEST(CreateClass, WhatIsWrongIsRefusedAndNothingIsMade) {
  Zoo zoo;
  const auto create = [&](const std::string& cls) {
    return zoo.Run("CreateClass", Parameter("NewClass", cls));
  };
  EXPECT_EQ(Error(10, "there is no superclass 'Z_None'"),
            create("<CLASS NAME=\"Z_New\" SUPERCLASS=\"Z_None\"></CLASS>"));
  EXPECT_EQ(Error(4, "qualifier Odd is not declared in this namespace"),
            create("<CLASS NAME=\"Z_New\"><QUALIFIER NAME=\"Odd\" TYPE=\"boolean\"/></CLASS>"));
  EXPECT_EQ(Error(4, "The name is not a valid CIM name."), create("<CLASS NAME=\"1st\"></CLASS>"));
  EXPECT_EQ(Error(4, "'uint128' is no CIM type"),
            create("<CLASS NAME=\"Z_New\"><PROPERTY NAME=\"A\" TYPE=\"uint128\"/></CLASS>"));
  EXPECT_EQ(Error(13, "'x' is no uint8"),
            create("<CLASS NAME=\"Z_New\"><PROPERTY NAME=\"A\" TYPE=\"uint8\"><VALUE>x</VALUE>"
                   "</PROPERTY></CLASS>"));
  EXPECT_EQ(Error(4, "A reference property is declared in a class that is not an association."),
            create("<CLASS NAME=\"Z_New\"><PROPERTY.REFERENCE NAME=\"A\" "
                   "REFERENCECLASS=\"Z_Cage\"/></CLASS>"));
  EXPECT_EQ(Error(6, "there is no class 'Z_New' in namespace root/zoo"),
            zoo.Run("GetClass", ClassParameter("Z_New")));
}

TEST(ModifyClass, ClassesStayAsTheyAre) {
  Zoo zoo;
  const auto before = zoo.Value("GetClass", ClassParameter("Z_Bird"));
  const auto modify = [&](const std::string& cls) {
    return zoo.Run("ModifyClass", Parameter("ModifiedClass", "<CLASS NAME=\"" + cls + "\"/>"));
  };
  EXPECT_EQ(Error(7, "class Z_Bird stays as it is: classes are not modified here"),
            modify("Z_Bird"));
  EXPECT_EQ(Error(6, "there is no class 'Z_Fish' in namespace root/zoo"), modify("Z_Fish"));
  EXPECT_EQ(before, zoo.Value("GetClass", ClassParameter("Z_Bird")));
}

TEST(DeleteClass, IsRefusedWhileTheClassIsInUse) {
  Zoo zoo;
  EXPECT_EQ(Error(8, "class Z_Animal has subclasses"),
            zoo.Run("DeleteClass", ClassParameter("Z_Animal")));
  EXPECT_EQ(Error(9, "class Z_Bird has instances"),
            zoo.Run("DeleteClass", ClassParameter("Z_Bird")));
  EXPECT_EQ(Error(6, "there is no class 'Z_Fish' in namespace root/zoo"),
            zoo.Run("DeleteClass", ClassParameter("Z_Fish")));
}

TEST(DeleteClass, TakesTheClassAway) {
  Zoo zoo;
  EXPECT_EQ("", zoo.Run("CreateClass", Parameter("NewClass", kFish)));
  EXPECT_EQ("", zoo.Run("DeleteClass", ClassParameter("Z_Fish")));
  EXPECT_EQ(Error(6, "there is no class 'Z_Fish' in namespace root/zoo"),
            zoo.Run("GetClass", ClassParameter("Z_Fish")));
}

TEST(DeleteClass, NameIsNotUsedAgain) {
  Zoo zoo;
  EXPECT_EQ("", zoo.Run("CreateClass", Parameter("NewClass", kFish)));
  EXPECT_EQ("", zoo.Run("DeleteClass", ClassParameter("Z_Fish")));
  EXPECT_EQ("<CLASSNAME NAME=\"Z_Bird\"></CLASSNAME>",
            zoo.Value("EnumerateClassNames", ClassParameter("Z_Animal")));
  EXPECT_EQ(Error(5, "there is no class 'Z_Fish' in namespace root/zoo"),
            zoo.Run("EnumerateInstanceNames", ClassParameter("Z_Fish")));
  EXPECT_EQ(Error(1, "the name 'Z_Fish' belonged to a class that was deleted"),
            zoo.Run("CreateClass", Parameter("NewClass", kFish)));
}

TEST(DeleteClass, AssociationThatRefersKeepsAClass) {
  Zoo zoo(true,
          "class A { [Key] string N; };"
          "[Association] class L { [Key] A REF One; [Key] A REF Two; };");
  EXPECT_EQ(Error(1, "The class is still in use."), zoo.Run("DeleteClass", ClassParameter("A")));
}

TEST(Qualifiers, AreEnumeratedAndGotten) {
  Zoo zoo;
  const std::string key =
      "<QUALIFIER.DECLARATION NAME=\"Key\" TYPE=\"boolean\" ISARRAY=\"false\" "
      "OVERRIDABLE=\"false\"><SCOPE CLASS=\"false\" ASSOCIATION=\"false\" REFERENCE=\"true\" "
      "PROPERTY=\"true\" METHOD=\"false\" PARAMETER=\"false\" INDICATION=\"false\"></SCOPE>"
      "<VALUE>FALSE</VALUE></QUALIFIER.DECLARATION>";
  EXPECT_EQ(key, zoo.Value("GetQualifier", TextParameter("QualifierName", "key")));
  EXPECT_NE(std::string::npos, zoo.Value("EnumerateQualifiers", "").find(key));
  EXPECT_EQ(Error(6, "there is no qualifier 'Odd' in namespace root/zoo"),
            zoo.Run("GetQualifier", TextParameter("QualifierName", "Odd")));
}

TEST(Qualifiers, AreDeclaredAndChanged) {
  Zoo zoo;
  const auto set = [&](const std::string& attributes, const std::string& value) {
    return zoo.Run("SetQualifier", Parameter("QualifierDeclaration",
                                             "<QUALIFIER.DECLARATION NAME=\"Odd\" " + attributes +
                                                 ">" + value + "</QUALIFIER.DECLARATION>"));
  };
  const auto get = [&] { return zoo.Value("GetQualifier", TextParameter("QualifierName", "Odd")); };
  const std::string scope =
      "<SCOPE CLASS=\"true\" ASSOCIATION=\"false\" REFERENCE=\"false\" PROPERTY=\"false\" "
      "METHOD=\"false\" PARAMETER=\"false\" INDICATION=\"false\"></SCOPE>";
  EXPECT_EQ("", set("TYPE=\"string\" ISARRAY=\"true\" TRANSLATABLE=\"true\"",
                    "<SCOPE CLASS=\"true\"/><VALUE.ARRAY><VALUE>a</VALUE></VALUE.ARRAY>"));
  EXPECT_EQ(
      "<QUALIFIER.DECLARATION NAME=\"Odd\" TYPE=\"string\" ISARRAY=\"true\" "
      "TRANSLATABLE=\"true\">" +
          scope + "<VALUE.ARRAY><VALUE>a</VALUE></VALUE.ARRAY></QUALIFIER.DECLARATION>",
      get());
  EXPECT_EQ(
      "", set("TYPE=\"string\" ISARRAY=\"true\" TOSUBCLASS=\"false\"", "<SCOPE CLASS=\"true\"/>"));
  EXPECT_EQ(
      "<QUALIFIER.DECLARATION NAME=\"Odd\" TYPE=\"string\" ISARRAY=\"true\" "
      "TOSUBCLASS=\"false\">" +
          scope + "</QUALIFIER.DECLARATION>",
      get());
  EXPECT_EQ(Error(7, "type and scope of the declared qualifier Odd cannot be changed"),
            set("TYPE=\"uint8\"", "<SCOPE CLASS=\"true\"/>"));
}

TEST(Qualifiers, OnceDeclaredAreKept) {
  Zoo zoo;
  EXPECT_EQ(Error(7, "this repository keeps qualifiers once declared"),
            zoo.Run("DeleteQualifier", TextParameter("QualifierName", "Key")));
}

TEST(Repository, ServedForReadingIsNotChanged) {
  Zoo zoo(false);
  const auto refusal = Error(2, "the namespace root/zoo is served for reading only");
  for (const auto* const operation :
       {"CreateClass", "ModifyClass", "DeleteClass", "CreateInstance", "ModifyInstance",
        "DeleteInstance", "SetProperty", "SetQualifier", "DeleteQualifier"})
    EXPECT_EQ(refusal, zoo.Run(operation, "")) << operation;
}

TEST(Repository, OperationsThatAreNotOfferedAreNotSupported) {
  Zoo zoo;
  for (const auto* const operation : {"ExecQuery", "OpenQueryInstances", "Frobnicate"})
    EXPECT_EQ(Error(7, std::string("the operation '") + operation + "' is not offered"),
              zoo.Run(operation, ""));
}

}  // namespace
}  // namespace havtest
