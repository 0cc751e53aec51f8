// What a load does about memory: without it, it says so; and it takes as much as what it makes.
#include <gtest/gtest.h>

#include <new>
#include <string>
#include <vector>

#include "support/CompareNamespaces.h"
#include "support/FailingAllocations.h"
#include "support/RecordingLogger.h"
#include "tests/mof/Mof.h"

namespace havtest {
namespace {

const std::string kText =
    "class T { [Key] string Zulu; uint8 Bravo[4]; uint8 Run(string B, T REF A); };"
    "class U : T { [Override] string Zulu; };"
    "[Association] class L { [Key] T REF To; [Key] T REF From; };"
    "instance of L { From = $t; To = \"T.Zulu=\\\"a name of some length\\\"\"; };"
    "instance of L { From = \"U.Zulu=\\\"u\\\"\"; To = $t; };"
    "instance of T as $t { Zulu = \"a name of some length\"; Bravo = {1, 2}; };"
    "instance of U { Zulu = \"u\"; };";

// Nothing is found wrong with the text, and nothing is left out of the namespace.
TEST(Allocations, LackOfMemoryLeavesALoadAsBadAlloc) {
  RecordingLogger logger;
  const auto whole = LoadText(kText);
  ASSERT_EQ(Lines{}, whole.messages);
  bool done = false;
  std::size_t thrown = 0;
  for (std::size_t allowed = 0; !done; ++allowed) {
    ASSERT_LT(allowed, 20000u);
    std::map<std::string, std::string> files{{"a.mof", kQualifiers + kText}};
    TextSource source(std::move(files));
    hav::mof::TMofReport report;
    boost::shared_ptr<NORVHAV20::ICIMNamespace> ns;
    {
      const FailingAllocation failing(allowed);
      try {
        ns = hav::mof::TMofLoader(*Provider(), source).Load({"a.mof"}, report);
        done = !failing.HasFailed();
      } catch (const std::bad_alloc&) {
        ++thrown;
      }
    }
    ASSERT_EQ("", report.ToString()) << allowed;
    if (!ns) continue;
    ASSERT_EQ(Lines{}, Differences(*whole.ns, *ns)) << allowed;
  }
  EXPECT_LT(300u, thrown);
}

constexpr std::size_t kEnough = 1u << 30;

const std::string kThings =
    "class T { [Key] string Name; uint32 Size; string Note; };"
    "[Association] class L { [Key] T REF From; [Key] T REF To; };";

std::string NameOf(int i) { return "a name of some length " + std::to_string(i); }

std::string PathOf(int i) { return "\"T.Name=\\\"" + NameOf(i) + "\\\"\""; }

// `count` things and as many links from each to the next.
std::string Things(int count, bool linksFirst) {
  std::string things;
  std::string links;
  for (int i = 0; i < count; ++i) {
    things += "instance of T { Name = \"" + NameOf(i) + "\"; Size = 1; Note = \"none\"; };";
    links += "instance of L { From = " + PathOf(i) + "; To = " + PathOf((i + 1) % count) + "; };";
  }
  return kThings + (linksFirst ? links + things : things + links);
}

// The allocations of loading a text.
std::size_t AllocationsOf(const std::string& text) {
  TextSource source({{"a.mof", kQualifiers + text}});
  hav::mof::TMofReport report;
  const FailingAllocation counted(kEnough);
  const auto ns = hav::mof::TMofLoader(*Provider(), source).Load({"a.mof"}, report);
  const auto count = counted.Count();
  EXPECT_EQ("", report.ToString());
  return count;
}

// The allocations of making the same through the contract.
std::size_t AllocationsOfMaking(int count) {
  using namespace NORVHAV20;
  const auto loaded = LoadText(kThings);
  const auto thing = loaded.ns->GetClass("T", {});
  const auto link = loaded.ns->GetClass("L", {});
  std::vector<boost::shared_ptr<ICIMInstance>> things;
  const FailingAllocation counted(kEnough);
  for (int i = 0; i < count; ++i) {
    things.push_back(thing->AllocateInstance({}));
    things.back()->SetPropertyValue("Name", TCIMValue(NameOf(i)), {});
    things.back()->SetPropertyValue("Size", TCIMValue(std::uint32_t{1}), {});
    things.back()->SetPropertyValue("Note", TCIMValue("none"), {});
    things.back()->AddToNamespace({});
  }
  for (int i = 0; i < count; ++i) {
    const auto one = link->AllocateInstance({});
    const auto& next = *things[static_cast<std::size_t>((i + 1) % count)];
    one->SetPropertyValue("From", things[static_cast<std::size_t>(i)]->GetReference({}), {});
    one->SetPropertyValue("To", next.GetReference({}), {});
    one->AddToNamespace({});
  }
  return counted.Count();
}

// Twice as many instances take twice as many allocations, wherever what they refer to stands.
TEST(Allocations, OfALoadGrowWithItsInstances) {
  RecordingLogger logger;
  const auto none = AllocationsOf(kThings);
  for (const bool linksFirst : {false, true}) {
    const auto once = AllocationsOf(Things(500, linksFirst)) - none;
    const auto twice = AllocationsOf(Things(1000, linksFirst)) - none;
    EXPECT_NEAR(2.0, static_cast<double>(twice) / static_cast<double>(once), 0.05) << linksFirst;
  }
}

// Reading, checking and storing: each reference is looked up once more than making does.
TEST(Allocations, OfALoadAreLessThanTwiceThoseOfMaking) {
  RecordingLogger logger;
  const auto made = AllocationsOfMaking(500);
  for (const bool linksFirst : {false, true}) {
    const auto loaded = AllocationsOf(Things(500, linksFirst)) - AllocationsOf(kThings);
    EXPECT_LE(loaded, 19 * made / 10) << linksFirst;
    EXPECT_GE(loaded, made / 2) << linksFirst;
  }
}

}  // namespace
}  // namespace havtest
