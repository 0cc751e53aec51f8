// What a load does about memory: without it, it says so; and it takes as much as what it makes.
#include <gtest/gtest.h>

#include <new>
#include <string>

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

}  // namespace
}  // namespace havtest
