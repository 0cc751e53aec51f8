#include "mof/TMofPlainReader.h"

#include <gtest/gtest.h>

#include <string>

#include "mof/TMofText.h"

namespace {

using hav::mof::TMofInstance;
using hav::mof::TMofPlainReader;
using hav::mof::TMofText;

// Whether the whole text is one plain instance; with and without keeping it, that is the same.
bool IsPlain(const std::string& content) {
  const TMofText text("a.mof", content);
  TMofInstance instance;
  bool plain[2];
  for (const bool keep : {false, true}) {
    TMofPlainReader reader(text.PartAt(0));
    plain[keep ? 1 : 0] = reader.ReadKeywords() && reader.ReadClassName(instance) &&
                          reader.ReadBody(keep ? &instance : nullptr) &&
                          reader.GetOffset() == content.size();
  }
  EXPECT_EQ(plain[0], plain[1]) << content;
  return plain[1];
}

bool IsPlainValue(const std::string& value) {
  return IsPlain("instance of T { P = " + value + "; };");
}

TEST(TMofPlainReader, ReadsWhatProgramsWrite) {
  EXPECT_TRUE(IsPlain("instance of T { };"));
  EXPECT_TRUE(IsPlain("INSTANCE\r\n\tOF T_1{A=1;b = \"x\" ;};"));
  for (const auto* value : {"\"\"", "\"a b\"", R"("\"a\\")", "0", "12", "-12", "+1", "true",
                            "FALSE", "Null", "{}", "{ 1 }", "{1, -2,3}", "{ \"a\", NULL }"})
    EXPECT_TRUE(IsPlainValue(value)) << value;
}

TEST(TMofPlainReader, LeavesTheRestToTheParser) {
  for (const auto* text :
       {"", "instance", "class T { };", "instanceof T { };", "instance of T as $a { };",
        "instance of T { } ", "instance of T { A 1; };", "instance of T { A = 1 };",
        "instance of T /* */ { };", "instance of 1 { };", "instance of T { [Q] A = 1; };"})
    EXPECT_FALSE(IsPlain(text)) << text;
  for (const auto* value :
       {"",         "\"a",  "\"a\" \"b\"", R"("\n")", R"("\x41")", "\"\xC3\xA4\"",
        "\"a\nb\"", "01",   "-0",          "0x1",     "1b",        "1.5",
        "1a",       "+",    "'a'",         "$a",      "yes",       "1 2",
        "{1",       "{1,}", "{ {1} }",     "1 // one"})
    EXPECT_FALSE(IsPlainValue(value)) << value;
  EXPECT_FALSE(IsPlainValue(std::string("\"a\0\"", 4)));
}

TEST(TMofPlainReader, KeepsWhatItReads) {
  const TMofText text("a.mof", "instance of T { A = 12; B = { \"b\", NULL }; };");
  TMofPlainReader reader(text.PartAt(0));
  TMofInstance instance;
  ASSERT_TRUE(reader.ReadKeywords());
  EXPECT_EQ(12u, reader.GetOffset());
  ASSERT_TRUE(reader.ReadClassName(instance) && reader.ReadBody(&instance));
  EXPECT_EQ("T", instance.className.text);
  ASSERT_EQ(2u, instance.assignments.size());
  const auto& first = instance.assignments[0];
  EXPECT_EQ("A", first.name.text);
  EXPECT_EQ(16u, first.name.offset);
  EXPECT_EQ(hav::mof::TMofToken::EKind::kInteger, first.value.scalar.kind);
  EXPECT_EQ("12", first.value.scalar.text);
  EXPECT_EQ(20u, first.value.offset);
  const auto& second = instance.assignments[1].value;
  EXPECT_TRUE(second.isArray);
  ASSERT_EQ(2u, second.elements.size());
  EXPECT_EQ("\"b\"", second.elements[0].text);
  EXPECT_EQ("NULL", second.elements[1].text);
}

}  // namespace
