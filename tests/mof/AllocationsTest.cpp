// A load takes as much memory as what it makes.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/FailingAllocations.h"
#include "support/RecordingLogger.h"
#include "tests/mof/Mof.h"

namespace havtest {
namespace {

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
