// Every slot of every interface, called by its number.
#include <iostream>
#include <map>
#include <set>
#include <string>
#include <type_traits>

#include "abi/SlotCalls.h"

namespace havtest {

// How a failure names the table.
void PrintTo(const TSlotTable& table, std::ostream* out) { *out << table.name; }

namespace {

// The table of slots is written in these terms.
static_assert(std::is_same_v<TOptions, std::map<std::string, TCIMValue>>);
static_assert(
    std::is_same_v<TEnumCallback<ICIMClass>, boost::function<bool(boost::shared_ptr<ICIMClass>)>>);

#if defined(_MSC_VER)
constexpr char kAbi[] = "MSVC ABI";
#else
constexpr char kAbi[] = "Itanium ABI";
#endif
#if defined(_WIN32)
constexpr char kPlatform[] = "Windows";
#else
constexpr char kPlatform[] = "Linux";
#endif

const std::map<std::string, void (*)(SlotCalls&)> kCallers = {
    {"ICIMElement", CallElementSlots},
    {"ICIMNamedElement", CallNamedElementSlots},
    {"ICIMClass", CallClassSlots},
    {"ICIMClass/ICIMNamedElement", CallNamedElementSlotsOfClass},
    {"ICIMNamespace", CallNamespaceSlots},
    {"ICIMInstance", CallInstanceSlots},
    {"ICIMProperty", CallPropertySlots},
    {"ICIMPropertyDecl", CallPropertyDeclSlots},
    {"ICIMMethodDecl", CallMethodDeclSlots},
    {"ICIMParameterDecl", CallParameterDeclSlots},
    {"ICIMQualifier", CallQualifierSlots},
    {"ICIMQualifierDecl", CallQualifierDeclSlots},
    {"INamespaceProvider", CallNamespaceProviderSlots},
    {"INamespaceProviderManager", CallNamespaceProviderManagerSlots},
    {"ILogger", CallLoggerSlots},
    {"INamespaceConsumer", CallNamespaceConsumerSlots},
    {"IProvider", CallProviderSlots},
    {"ICIMIndicationFilter", CallIndicationFilterSlots},
};

class Slots : public testing::TestWithParam<TSlotTable> {};

TEST_P(Slots, AnswerByTheirNumber) {
  const TSlotTable& table = GetParam();
  const auto caller = kCallers.find(table.name);
  ASSERT_NE(caller, kCallers.end()) << "nothing calls the slots of " << table.name;

  SlotCalls calls;
  caller->second(calls);

  std::set<int> every;
  for (int number = 0; number < table.slots; ++number) every.insert(number);
  EXPECT_EQ(calls.Called(), every);
  std::cout << kPlatform << ", " << kAbi << ", " << HowThePluginIsReached() << ": " << table.name
            << ", " << calls.Called().size() << " slots called\n";
}

std::string TestName(const testing::TestParamInfo<TSlotTable>& info) {
  std::string name = info.param.name;
  const auto slash = name.find('/');
  if (slash != std::string::npos) name.replace(slash, 1, "_");
  return name;
}

INSTANTIATE_TEST_SUITE_P(OfEveryTable, Slots, testing::ValuesIn(kSlotTables), TestName);

}  // namespace
}  // namespace havtest
