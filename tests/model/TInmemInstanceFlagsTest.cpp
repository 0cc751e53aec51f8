// The validation flags of an instance, which only its own constructor takes.
#include <boost/make_shared.hpp>

#include "inmem/model/TInmemInstance.h"
#include "support/Instances.h"

namespace havtest {
namespace {

constexpr int kKeys = TInmemInstance::kValidateKeysNonNull;
constexpr int kReferences = TInmemInstance::kValidateReferences;

// An association class "Link" with the string key "Id" and a reference "End".
struct Links {
  Repository repository;
  ClassPtr thing = repository.Class("Thing");
  ClassPtr link = repository.Allocate("Link", {}, {{"Association", TCIMValue(true)}});

  Links() {
    repository.Key(link, "Id");
    repository.Reference(link, "End", thing);
    link->AddToNamespace({});
  }
  InstancePtr New(int flags) const { return boost::make_shared<TInmemInstance>(link, flags); }
  // With its key, and a reference to what is not there.
  InstancePtr Dangling(int flags) const {
    auto instance = New(flags);
    instance->SetPropertyValue("Id", TCIMValue("1"), {});
    instance->SetPropertyValue("End", TCIMValue(ReferenceTo(thing, {{"Name", TCIMValue("gone")}})),
                               {});
    return instance;
  }
};

TEST(TInmemInstanceFlags, HaveTheirNumbers) {
  EXPECT_EQ(kKeys, 1);
  EXPECT_EQ(kReferences, 2);
}

TEST(TInmemInstanceFlags, NoneValidatesNothing) {
  Links links;
  RecordingLogger log;
  EXPECT_STATUS(0, links.New(0)->Validate({}));
  EXPECT_STATUS(0, links.Dangling(0)->Validate({}));
  EXPECT_EQ(log.Take(), LogLines{});
}

TEST(TInmemInstanceFlags, NoneAlwaysAdds) {
  Links links;
  RecordingLogger log;
  links.New(0)->AddToNamespace({});
  links.Dangling(0)->AddToNamespace({});
  EXPECT_EQ(log.Take(), LogLines{});
  EXPECT_EQ(Stored(links.link), (std::vector<std::string>{"Link.Id=\"1\"", "Link.Id=NULL"}));
}

TEST(TInmemInstanceFlags, KeysAloneLeaveReferencesUnexamined) {
  Links links;
  EXPECT_STATUS(18, links.New(kKeys)->Validate({}));
  RecordingLogger log;
  EXPECT_STATUS(0, links.Dangling(kKeys)->Validate({}));
  EXPECT_EQ(log.Take(), LogLines{});
}

TEST(TInmemInstanceFlags, ReferencesAloneLeaveKeysUnexamined) {
  Links links;
  RecordingLogger log;
  EXPECT_STATUS(0, links.New(kReferences)->Validate({}));
  EXPECT_EQ(log.Take(), LogLines{});
  EXPECT_STATUS(15, links.Dangling(kReferences)->Validate({}));
  EXPECT_EQ(log.Take(),
            (LogLines{{0, "Inmem: Reference Thing.Name=\"gone\" doesn't point to anything!"}}));
}

TEST(TInmemInstanceFlags, ReferencesOfAClassThatIsNoAssociationAreUnexamined) {
  Links links;
  links.link->AllocateQualifier(links.repository.Declaration("Association"), TCIMValue(false),
                                TOptions());
  ASSERT_FALSE(links.link->IsAssociation({}));
  RecordingLogger log;
  EXPECT_STATUS(0, links.Dangling(kReferences)->Validate({}));
  EXPECT_EQ(log.Take(), LogLines{});
}

TEST(TInmemInstanceFlags, BothCombine) {
  Links links;
  EXPECT_STATUS(18, links.New(kKeys | kReferences)->Validate({}));
  EXPECT_STATUS(15, links.Dangling(kKeys | kReferences)->Validate({}));
}

TEST(TInmemInstanceFlags, OtherBitsAreIgnored) {
  Links links;
  EXPECT_STATUS(0, links.New(~(kKeys | kReferences))->Validate({}));
  EXPECT_STATUS(0, links.Dangling(~(kKeys | kReferences))->Validate({}));
  EXPECT_STATUS(18, links.New(-1)->Validate({}));
  EXPECT_STATUS(15, links.Dangling(-1)->Validate({}));
}

TEST(TInmemInstanceFlags, AnEmptyClassIsRefusedWith15) {
  EXPECT_STATUS(15, boost::make_shared<TInmemInstance>(ClassPtr(), kKeys));
}

}  // namespace
}  // namespace havtest
