// How every failure reaches the caller: a THAVException that carries a status and nothing
// else, thrown after its line was logged.
#include <exception>
#include <string>

#include "support/LoggedRepository.h"

namespace havtest {
namespace {

TEST(Status, FailureIsAStandardExceptionWithTheTextOfItsStatus) {
  Repository repository;
  try {
    repository.ns->GetClass("Unknown", {});
    FAIL() << "the class should be unknown";
  } catch (const std::exception& failure) {
    EXPECT_EQ(std::string(failure.what()), THAVStatusCode(kHAVNotFound).TranslateStatusCode());
  }
}

TEST(Status, FailureCarriesItsStatusAndCopiesKeepIt) {
  Repository repository;
  try {
    repository.ns->AddUnderlyingNamespace({}, {});
    FAIL() << "underlying namespaces should be refused";
  } catch (const THAVException& failure) {
    const THAVException copy(failure);
    EXPECT_EQ(static_cast<unsigned>(failure.GetStatusCode()), 31u);
    EXPECT_EQ(static_cast<unsigned>(copy.GetStatus().GetStatusCode()), 31u);
    EXPECT_EQ(std::string(copy.what()), failure.what());
  }
}

// Throws out of the log call, so that the repository never reaches its own throw.
class ThrowingLogger : public ILogger {
 public:
  ThrowingLogger() : m_before(TRootObject::SetCoreLogger(this)) {}
  ~ThrowingLogger() override { TRootObject::SetCoreLogger(m_before); }
  void Log(int level, const std::string& text) override { throw LogLine{level, text}; }

 private:
  ILogger* m_before;
};

TEST(Status, LineIsLoggedBeforeTheExceptionIsThrown) {
  Repository repository;
  ThrowingLogger logger;
  try {
    repository.ns->GetClass("1", {});
    FAIL() << "the name should be refused";
  } catch (const LogLine& line) {
    EXPECT_EQ(line, (LogLine{ILogger::kError, "Inmem: CIM name '1' is invalid"}));
  }
}

}  // namespace
}  // namespace havtest
