// A load whose memory runs out, at every allocation in turn, once and for good: `bad_alloc` comes
// out or the load is whole, nothing is found wrong that is not, what was loaded before is as it
// was, no block is left behind, and the same load then succeeds.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <map>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "mof/TMofFolderSource.h"
#include "support/CompareNamespaces.h"
#include "support/FailingAllocations.h"
#include "support/RecordingLogger.h"
#include "tests/mof/Mof.h"

namespace havtest {
namespace {

using hav::mof::IMofSource;
using hav::mof::TMofFolderSource;
using hav::mof::TMofLoader;
using hav::mof::TMofReport;
using NORVHAV20::ICIMNamespace;

const std::string kClasses =
    "Qualifier EmbeddedInstance : string, Scope(property);\n"
    "class TheBase { [Key, Description(\"What it is called, at some length\")] string Name;"
    "  [Values{\"a value of some length\", \"b\"}] uint8 Kinds[4] = {1, 2}; datetime Since;"
    "  uint32 Run([In(false), MaxLen(80)] string Text, TheBase REF Other, boolean Flags[]); };\n"
    "[Description(\"A class whose name no text keeps within itself\")]"
    "class TheClassOfAVeryLongName : TheBase { [Override(\"Name\")] string Name = \"u\";"
    "  real64 Share = 0.25; char16 Letter = 'x'; sint64 Low = -9223372036854775808;"
    "  [Override(\"Run\")] uint32 Run([In(false)] string Text, TheBase REF Other,"
    "                                 boolean Flags[]); };\n"
    "class Holder : TheBase { [EmbeddedInstance(\"TheBase\")] string Inner; };\n"
    "[Association] class Link { [Key] TheBase REF FromTheOne; [Key] TheBase REF To; };\n"
    "[Association] class LinkOfMore : Link { string Note; };\n"
    "[Indication] class Told { string What; };\n";

const std::string kInstances =
    "instance of Link { FromTheOne = $there; To = \"TheBase.Name=\\\"the second, at length\\\"\"; "
    "};\n"
    "instance of TheBase as $there { Name = \"the first of some length\"; Kinds = {1, 2, 3}; };\n"
    "instance of TheBase { Name = \"the second, at length\"; };\n"
    "instance of LinkOfMore { FromTheOne = $there; To = $later; Note = \"of some more length\"; "
    "};\n"
    "instance of TheClassOfAVeryLongName as $later { Name = \"a third one that comes later\"; "
    "Share = 1.5; };\n"
    "instance of TheBase as $inner { Kinds = {7}; };\n"
    "instance of Holder { Name = \"by alias\"; Inner = $inner;"
    "  Since = \"20260102030405.000000+000\"; };\n"
    "instance of Holder { Name = \"as a text of its own\";"
    "  Inner = \"instance of TheBase { Name = \\\"x\\\"; };\"; };\n";

// What is read, and how.
struct Input {
  std::map<std::string, std::string> files;
  std::size_t messages = 0;
  bool strict = false;
  bool checks = false;
};

// The outcome of one load; empty where it threw.
struct Outcome {
  boost::shared_ptr<ICIMNamespace> ns;
  Lines messages;
  bool threw = false;
};

Outcome LoadFrom(IMofSource& source, const Input& input, const std::string& first) {
  Outcome outcome;
  TMofReport report;
  {
    TMofLoader loader(*Provider(), source);
    loader.SetStrict(input.strict);
    loader.SetChecks(input.checks);
    try {
      outcome.ns = loader.Load({first}, report);
    } catch (const std::bad_alloc&) {
      outcome.threw = true;
    }
  }
  const UnfailingAllocations unfailing;
  outcome.messages = Messages(report);
  return outcome;
}

constexpr std::size_t kEnough = 100000;

// Loads the same again and again.
class Repeated {
 public:
  Repeated(IMofSource& source, const Input& input, std::string first)
      : m_source(source),
        m_input(input),
        m_first(std::move(first)),
        m_whole(LoadFrom(source, input, m_first)) {
    EXPECT_EQ(input.messages, m_whole.messages.size()) << testing::PrintToString(m_whole.messages);
    EXPECT_TRUE(IsWhole(m_whole));  // what is looked at once keeps what was asked of it
    m_logger.Take();
  }

  // Loads once, with the allocation behind `allowed` others failing. False when none failed.
  bool Load(std::size_t allowed, FailingAllocation::ELength length) {
    bool failed = false;
    [[maybe_unused]] const long blocks = LiveAllocations();
    {
      Outcome outcome;
      {
        const FailingAllocation failing(allowed, length);
        outcome = LoadFrom(m_source, m_input, m_first);
        failed = failing.HasFailed();
      }
      EXPECT_TRUE(IsWhole(outcome) || (failed && IsTold(outcome)))
          << "allocation " << allowed << ": " << testing::PrintToString(outcome.messages);
    }
    m_logger.Take();
    // Each library of Windows has operators of its own, so that blocks would be counted once.
#if !defined(_WIN32)
    EXPECT_EQ(blocks, LiveAllocations()) << "allocation " << allowed;
#endif
    return failed;
  }

 private:
  // The same as the namespace that was loaded first, which is thereby as it was.
  bool IsWhole(const Outcome& outcome) const {
    return !outcome.threw && outcome.messages == m_whole.messages &&
           (m_whole.ns && outcome.ns ? Differences(*m_whole.ns, *outcome.ns).empty()
                                     : !m_whole.ns && !outcome.ns);
  }
  // What was found wrong until then is wrong indeed.
  bool IsTold(const Outcome& outcome) const {
    const auto& all = m_whole.messages;
    return outcome.threw &&
           std::all_of(outcome.messages.begin(), outcome.messages.end(), [&](const auto& line) {
             return std::find(all.begin(), all.end(), line) != all.end();
           });
  }

  RecordingLogger m_logger;
  IMofSource& m_source;
  const Input& m_input;
  std::string m_first;
  Outcome m_whole;
};

// `least`: how many allocations the load makes at the least.
void ExpectAllToldAndUndone(IMofSource& source, const Input& input, const std::string& first,
                            std::size_t least) {
  Repeated loads(source, input, first);
  for (const auto length : {FailingAllocation::kOnce, FailingAllocation::kFromThenOn}) {
    std::size_t allowed = 0;
    while (loads.Load(allowed, length)) {
      ASSERT_FALSE(loads.Load(kEnough, length));
      ASSERT_FALSE(testing::Test::HasFailure());
      ASSERT_LT(++allowed, kEnough);
    }
    EXPECT_LT(least, allowed);
  }
}

void ExpectAllToldAndUndone(const Input& input, std::size_t least) {
  TextSource source(input.files);
  ExpectAllToldAndUndone(source, input, "a.mof", least);
}

TEST(LackOfMemory, InALoadOfClasses) {
  ExpectAllToldAndUndone({{{"a.mof", kQualifiers + kClasses}}}, 200);
}

TEST(LackOfMemory, InALoadOfInstancesLinksAndWhatIsEmbedded) {
  ExpectAllToldAndUndone({{{"a.mof", kQualifiers + kClasses + kInstances}}}, 400);
}

TEST(LackOfMemory, InALoadOfTextThatCannotBeRead) {
  ExpectAllToldAndUndone({{{"a.mof", kQualifiers + "#pragma unheard (\"of\")\n"
                                                   "class A { [Key] uint8 k; uint8 n = 300; };\n"
                                                   "class { };\n"
                                                   "instance of A { k = 1; k = \"text\"; };\n"}},
                          4},
                         60);
}

TEST(LackOfMemory, InALoadThatFindsErrorsInClassesAndInstances) {
  ExpectAllToldAndUndone(
      {{{"a.mof", kQualifiers + "class A { [Key] string Name; [Unheard] uint8 k; };\n"
                                "class B : Nowhere { [Key] uint8 k; };\n"
                                "class A { };\n"
                                "class T { [Key] string Name; };\n"
                                "instance of T { Name = \"given twice\"; };\n"
                                "instance of T { Name = \"given twice\"; };\n"
                                "instance of T { Name = 1; };\n"
                                "instance of Nowhere { Name = \"u\"; };\n"}},
       6},
      100);
}

TEST(LackOfMemory, InALoadThatLeavesOutLinksAndOneThatRefusesThem) {
  const std::string text =
      "class N { [Key] string Name; };\n"
      "[Association] class L { [Key] N REF From; [Key] N REF To; };\n"
      "instance of N { Name = \"a\"; };\n"
      "instance of L { From = \"N.Name=\\\"a\\\"\"; To = \"N.Name=\\\"not there\\\"\"; };\n";
  for (const bool strict : {false, true})
    ExpectAllToldAndUndone({{{"a.mof", kQualifiers + text}}, 1, strict}, 100);
}

TEST(LackOfMemory, InALoadThatChecksWhatWillBecomeOfDeclarations) {
  ExpectAllToldAndUndone(
      {{{"a.mof", kQualifiers + "class A { string NoKey; [Values{\"a\"}] uint8 Kind; };\n"
                                "class B : A { string NoKey; };\n"}},
       3,
       false,
       true},
      100);
}

TEST(LackOfMemory, InALoadThatIncludesFilesFromTheDisk) {
  const auto folder = std::filesystem::path(testing::TempDir()) / "lack_of_memory_test";
  std::filesystem::create_directories(folder / "within");
  std::ofstream(folder / "within" / "qualifiers.mof") << kQualifiers;
  std::ofstream(folder / "a.mof") << "#pragma include (\"qualifiers.mof\")\n"
                                  << "#pragma include (\"b.mof\")\n"
                                  << "#pragma include (\"nowhere.mof\")\n";
  std::ofstream(folder / "b.mof") << "class B { [Key] string Name; };\n";
  TMofFolderSource source({folder / "within"});
  ExpectAllToldAndUndone(source, {{}, 1}, (folder / "a.mof").string(), 60);
  std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace havtest
