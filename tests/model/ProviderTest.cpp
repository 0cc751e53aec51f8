// What the plug-in exports beside the contract: the provider as an object that may be copied, and
// the name rule.
#include <gtest/gtest.h>

#include <string>

#include "inmem/provider/TInmemNamespace.h"
#include "inmem/provider/TInmemNamespaceProvider.h"
#include "support/RecordingLogger.h"
#include "support/Status.h"

namespace {

using namespace havtest;
using namespace NORVHAV20;

TEST(Provider, ACopyIsAProviderLikeTheFirst) {
  const auto first = TInmemNamespaceProvider::GetInstance();
  boost::shared_ptr<ICIMNamespace> made;
  {
    TInmemNamespaceProvider copy(*first);
    EXPECT_EQ(&(copy = *first), &copy);
    EXPECT_EQ(copy.GetName({}), "inmem");
    made = copy.AllocateNamespace({}, false, "");
  }
  EXPECT_TRUE(made->GetClass("<root>", {}));
  EXPECT_EQ(TInmemNamespaceProvider::GetInstance(), first);
}

TEST(Provider, NormalizeNameFoldsNamesAndRefusesOthers) {
  const RecordingLogger log;
  EXPECT_EQ(TInmemNamespace::NormalizeName("CIM_LogicalDevice"), "cim_logicaldevice");
  EXPECT_EQ(TInmemNamespace::NormalizeName("_0aZ9"), "_0az9");
  EXPECT_EQ(TInmemNamespace::NormalizeName(""), "");
  for (const std::string name : {"0a", "a b", "a-b", "\xC3\x84", "<root>"})
    EXPECT_STATUS(25, TInmemNamespace::NormalizeName(name)) << name;
}

}  // namespace
