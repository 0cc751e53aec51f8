#include "havcore/THAVStatusCode.h"

#include <gtest/gtest.h>

#include <limits>
#include <set>
#include <string>

#include "havcore/THAVException.h"

using namespace NORVHAV20;

namespace {

std::string TextOf(unsigned code) {
  return THAVStatusCode(static_cast<EHAVStatusCode>(code)).TranslateStatusCode();
}

}  // namespace

TEST(THAVStatusCode, EveryCodeHasASentenceOfItsOwn) {
  EXPECT_EQ(TextOf(0), "The operation succeeded.");
  EXPECT_EQ(TextOf(1), "The operation is not supported.");
  EXPECT_EQ(TextOf(14), "The value or declaration is not of the type required here.");
  EXPECT_EQ(TextOf(15), "The element was not found.");
  EXPECT_EQ(TextOf(16), "An element of this name is already defined.");
  EXPECT_EQ(TextOf(17), "The class is still in use.");
  EXPECT_EQ(TextOf(18), "A key property of the instance is NULL.");
  EXPECT_EQ(TextOf(22), "A reference property is declared in a class that is not an association.");
  EXPECT_EQ(TextOf(25), "The name is not a valid CIM name.");
  EXPECT_EQ(TextOf(28), "The qualifier conflicts with one that the element already has.");
  EXPECT_EQ(TextOf(31), "The namespace does not accept underlying namespaces.");
}

TEST(THAVStatusCode, EveryOtherCodeSaysThatItHasNone) {
  const std::set<unsigned> known{0, 1, 14, 15, 16, 17, 18, 22, 25, 28, 31};
  for (unsigned code = 0; code < 100; ++code)
    EXPECT_EQ(TextOf(code) == "This status code has no text of its own.", known.count(code) == 0)
        << code;
  EXPECT_EQ(TextOf(std::numeric_limits<unsigned>::max()),
            "This status code has no text of its own.");
}

TEST(THAVStatusCode, TheSentenceIsOneObject) {
  const THAVStatusCode first(kHAVNotFound);
  const THAVStatusCode second(kHAVNotFound);
  EXPECT_EQ(&first.TranslateStatusCode(), &second.TranslateStatusCode());
}

TEST(THAVStatusCode, IsAValue) {
  THAVStatusCode status(kHAVNotFound);
  THAVStatusCode copy(status);
  EXPECT_EQ(copy.GetStatusCode(), kHAVNotFound);
  EXPECT_EQ(&(copy = kHAVSuccess), &copy);
  EXPECT_EQ(copy.GetStatusCode(), kHAVSuccess);
  EXPECT_EQ(&(status = copy), &status);
  EXPECT_EQ(status.GetStatusCode(), kHAVSuccess);
}

TEST(THAVException, CarriesTheStatusAndItsSentence) {
  const THAVException failure{THAVStatusCode(kHAVClassInUse)};
  const THAVException copy = failure;
  EXPECT_EQ(copy.GetStatusCode(), kHAVClassInUse);
  EXPECT_EQ(copy.GetStatus().GetStatusCode(), kHAVClassInUse);
  EXPECT_STREQ(copy.what(), "The class is still in use.");
}
