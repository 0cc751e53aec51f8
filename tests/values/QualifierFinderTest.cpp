// Declarations that say without an exception which qualifiers they lack, but keep no value map.
#include <gtest/gtest.h>

#include <string>

#include "inmem/values/DisplayText.h"
#include "inmem/values/IQualifierFinder.h"
#include "tests/values/FakeDecl.h"

namespace havtest {
namespace {

class FinderDecl final : public FakeDecl, public IQualifierFinder {
 public:
  using FakeDecl::FakeDecl;

  boost::shared_ptr<ICIMQualifier> FindOrNull(const std::string& name) const override {
    FakeDecl asked(*this);
    try {
      return asked.GetQualifier(name, {});
    } catch (const THAVException&) {
      return {};
    }
  }
};

TEST(QualifierFinder, WithoutRoomForAValueMapIsReadAgainEachTime) {
  FinderDecl decl(kCIMUInt8);
  EXPECT_EQ(DisplayText(decl, TCIMValue(std::uint8_t{0})), "0");
  decl.With("Values", Texts({"Off"}));
  EXPECT_EQ(DisplayText(decl, TCIMValue(std::uint8_t{0})), "Off");
  EXPECT_EQ(DisplayText(decl, TCIMValue(std::uint8_t{0})), "Off");
  decl.With("Values", Texts({"Aus"}));
  EXPECT_EQ(DisplayText(decl, TCIMValue(std::uint8_t{0})), "Aus");
  EXPECT_EQ(decl.Lookups(), Strings());
}

}  // namespace
}  // namespace havtest
