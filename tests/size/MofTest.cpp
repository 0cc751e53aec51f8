// MOF texts as large as anybody writes them.
#include "mof/Mof.h"
#include "size/Size.h"

namespace havtest {
namespace {

std::string Number(int number) { return std::to_string(number); }

Loaded LoadOnce(const std::string& text) {
  return LoadInPieces({{"a.mof", kQualifiers + text}}, {"a.mof"}, hav::mof::TMofText::kPieceSize);
}

// Whether it loads without a message.
void ExpectLoads(const std::string& text, std::size_t classes, std::size_t instances) {
  const auto loaded = LoadOnce(text);
  EXPECT_EQ(loaded.messages, Lines());
  EXPECT_EQ(loaded.report.classes, classes);
  EXPECT_EQ(loaded.report.instances, instances);
}

TEST(MofSize, OfTenThousandLevels) {
  ExpectLinear(10'000, [](int levels) {
    std::string text = "class C0 { [Key] string Name; };\n";
    for (int i = 1; i < levels; ++i)
      text += "class C" + Number(i) + " : C" + Number(i - 1) + " { string P" + Number(i) + "; };\n";
    ExpectLoads(text, static_cast<std::size_t>(levels), 0);
  });
}

std::string FirstError(const Loaded& loaded) {
  for (const auto& line : loaded.messages)
    if (line.find(" error: ") != std::string::npos) return line;
  return "none";
}

// The last comes first, so that each waits for the next.
TEST(MofSize, OfTenThousandLevelsFromTheLastUpwards) {
  ExpectLinear(10'000, [](int levels) {
    std::string text;
    for (int i = levels - 1; i > 0; --i)
      text += "class C" + Number(i) + " : C" + Number(i - 1) + " { };\n";
    ExpectLoads(text + "class C0 { [Key] string Name; };\n", static_cast<std::size_t>(levels), 0);
  });
}

TEST(MofSize, OfFiftyThousandSubclasses) {
  ExpectLinear(50'000, [](int count) {
    std::string text = "class Top { [Key] string Name; };\n";
    for (int i = 1; i < count; ++i) text += "class C" + Number(i) + " : Top { };\n";
    ExpectLoads(text, static_cast<std::size_t>(count), 0);
  });
}

TEST(MofSize, OfFiveThousandPropertiesInAnyOrder) {
  ExpectLinear(5'000 * kShare, [](int count) {
    std::string text = "class Wide { [Key] string Name;\n";
    for (int i = count; i > 0; --i) text += "  uint32 P" + Number(i) + " = " + Number(i) + ";\n";
    text += "};\ninstance of Wide { Name = \"one\";\n";
    for (int i = 1; i <= count; ++i) text += "  P" + Number(i) + " = 1;\n";
    ExpectLoads(text + "};\n", 1, 1);
  });
}

TEST(MofSize, OfOneHundredThousandInstances) {
  ExpectLinear(100'000, [](int count) {
    std::string text = "class Thing { [Key] string Name; };\n";
    for (int i = 0; i < count; ++i)
      text += "instance of Thing { Name = \"" + Number(i) + "\"; };\n";
    ExpectLoads(text, 1, static_cast<std::size_t>(count));
  });
}

// At the peak of a load there is the namespace, and of the text only what is still needed.
#if !defined(_WIN32)
void ExpectLittleMoreThanItsNamespace(const std::string& text) {
  TextSource source({{"a.mof", kQualifiers + text}});
  hav::mof::TMofReport report;
  const AllocationMeter meter;
  const auto ns = hav::mof::TMofLoader(*Provider(), source).Load({"a.mof"}, report);
  EXPECT_TRUE(ns) << report.ToString();
  EXPECT_LT(static_cast<double>(meter.Peak()), 1.2 * static_cast<double>(meter.Held()))
      << meter.Peak() << " bytes at the peak, " << meter.Held() << " behind it";
}

TEST(MofSize, TakesLittleMoreThanItsNamespace) {
  const std::string classes =
      "class T { [Key] string Name; uint32 Size; string Note; };\n"
      "[Association] class L { [Key] T REF From; [Key] T REF To; };\n";
  std::string things;
  std::string links;
  std::string mixed;
  constexpr int count = 10'000;
  for (int i = 0; i < count; ++i) {
    const auto thing = "instance of T {\n  Name = \"thing number " + Number(i) +
                       "\";\n  Size = " + Number(i) + ";\n  Note = \"nothing\";\n};\n";
    const auto link = "instance of L {\n  From = \"T.Name=\\\"thing number " + Number(i) +
                      "\\\"\";\n  To = \"T.Name=\\\"thing number " + Number(count - 1 - i) +
                      "\\\"\";\n};\n";
    things += thing;
    links += link;
    mixed += thing + link;
  }
  ExpectLittleMoreThanItsNamespace(classes + things);
  ExpectLittleMoreThanItsNamespace(classes + things + links);
  ExpectLittleMoreThanItsNamespace(classes + links + things);
  ExpectLittleMoreThanItsNamespace(classes + mixed);
}
#endif

TEST(MofSize, OfATextOfAHundredMegabytes) {
  ExpectLinear(100'000'000, [](int size) {
    ExpectLoads(
        "class Thing { [Key] string Name; string Text; };\n"
        "instance of Thing { Name = \"a\"; Text = \"" +
            std::string(static_cast<std::size_t>(size), 'x') + "\"; };\n",
        1, 1);
  });
}

TEST(MofSize, OfAnArrayOfAMillion) {
  ExpectLinear(1'000'000, [](int size) {
    std::string text =
        "class Thing { [Key] string Name; uint8 Bytes[]; };\n"
        "instance of Thing { Name = \"a\"; Bytes = { 0";
    for (int i = 1; i < size; ++i) text += ", 7";
    ExpectLoads(text + " }; };\n", 1, 1);
  });
}

TEST(MofSize, OfBracketsWithoutAnEnd) {
  OnSmallStack([] {
    for (const char* open :
         {"[", "{", "[Q(", "class C {", "instance of C { P = {", "\"", "/*", "#"}) {
      std::string text;
      for (int i = 0; i < 100'000; ++i) text += open;
      EXPECT_FALSE(Load({{"a.mof", text}}, {"a.mof"}).ns) << open;
    }
  });
}

// Each instance's key refers to the one before it: their paths double.
TEST(MofSize, OfPathsThatDoubleIsAnErrorAtItsPlace) {
  OnSmallStack([] {
    const RecordingLogger log;
    std::string text =
        "class Node { [Key] string Name; };\n"
        "[Association] class Link : Node { [Key] Node ref Next; };\n"
        "instance of Node as $a0 { Name = \"\"; };\n";
    for (int i = 1; i < 26; ++i)
      text += "instance of Link as $a" + Number(i) + " { Name = \"\"; Next = $a" + Number(i - 1) +
              "; };\n";
    const auto loaded = LoadOnce(text);
    EXPECT_FALSE(loaded.ns);
    EXPECT_EQ(FirstError(loaded),
              "a.mof:27:13: error: the path of this instance of 'Link' is too long");
  });
}

// Each embeds the one before it as text, which escapes what that embeds once more.
TEST(MofSize, OfObjectsThatEmbedObjectsIsAnErrorAtItsPlace) {
  OnSmallStack([] {
    std::string text =
        "Qualifier EmbeddedInstance : string = null, Scope(property);\n"
        "class Box { [Key] string Name; [EmbeddedInstance(\"Box\")] string Inside; };\n"
        "instance of Box as $a0 { Name = \"\"; };\n";
    for (int i = 1; i < 40; ++i)
      text += "instance of Box as $a" + Number(i) + " { Name = \"" + Number(i) + "\"; Inside = $a" +
              Number(i - 1) + "; };\n";
    const auto loaded = LoadOnce(text);
    EXPECT_FALSE(loaded.ns);
    EXPECT_EQ(FirstError(loaded),
              "a.mof:26:49: error: the text of the embedded object is longer than 16 MiB");
  });
}

}  // namespace
}  // namespace havtest
