// What callbacks may do during association traversal: answer false, throw, be empty, and
// change what is being walked.
#include <stdexcept>

#include "contract/Links.h"

namespace havtest {
namespace {

void WalkReferences(const InstancePtr& instance, const TEnumCallback<ICIMInstance>& callback) {
  instance->EnumerateAssociationInstances(callback, "", "", {});
}
void WalkAssociators(const InstancePtr& instance, const TEnumCallback<ICIMInstance>& callback,
                     const std::string& resultRole = "") {
  instance->EnumerateAssociatedInstances(callback, "", "<root>", "", resultRole, {});
}

// Three links of one system with one disk.
struct ThreeLinks : LinkedModel {
  InstancePtr one = Link("1"), two = Link("2"), three = Link("3");
};

TEST(TraversalCallbacks, ReferencesGoOnWhenTheCallbackAnswersFalse) {
  ThreeLinks model;
  int calls = 0;
  WalkReferences(model.s, [&](InstancePtr) { return ++calls, false; });
  EXPECT_EQ(calls, 3);
}

TEST(TraversalCallbacks, AssociatorsGoOnWhenTheCallbackAnswersFalse) {
  ThreeLinks model;
  int calls = 0;
  WalkAssociators(model.s, [&](InstancePtr) { return ++calls, false; });
  EXPECT_EQ(calls, 3);
}

TEST(TraversalCallbacks, AssociatorsWithAResultRoleGoOnWhenTheCallbackAnswersFalse) {
  ThreeLinks model;
  int calls = 0;
  WalkAssociators(
      model.s, [&](InstancePtr) { return ++calls, false; }, "Part");
  EXPECT_EQ(calls, 3);
}

TEST(TraversalCallbacks, AnExceptionOfTheCallbackIsDroppedAndTheWalkGoesOn) {
  ThreeLinks model;
  int calls = 0;
  const TEnumCallback<ICIMInstance> throwing = [&](InstancePtr) -> bool {
    if (++calls % 2 != 0) throw std::runtime_error("callback");
    throw THAVException(kHAVNotSupported);
  };
  RecordingLogger log;
  WalkReferences(model.s, throwing);
  EXPECT_EQ(calls, 3);
  WalkAssociators(model.s, throwing);
  EXPECT_EQ(calls, 6);
  WalkAssociators(model.s, throwing, "Part");
  EXPECT_EQ(calls, 9);
  EXPECT_EQ(log.Take(), LogLines{});
}

TEST(TraversalCallbacks, AStatus15OfTheCallbackDoesNotMakeTheWalkTryTheNextReference) {
  SelfModel model;
  Join(model.repository, model.edge, "1", {{"First", model.a}, {"Second", model.a}});
  int calls = 0;
  WalkReferences(model.a, [&](InstancePtr) -> bool {
    ++calls;
    throw THAVException(kHAVNotFound);
  });
  EXPECT_EQ(calls, 1);
}

TEST(TraversalCallbacks, AnEmptyCallbackIsDropped) {
  ThreeLinks model;
  RecordingLogger log;
  EXPECT_NO_THROW(WalkReferences(model.s, {}));
  EXPECT_NO_THROW(WalkAssociators(model.s, {}));
  EXPECT_NO_THROW(WalkAssociators(model.s, {}, "Part"));
  EXPECT_EQ(log.Take(), LogLines{});
}

TEST(TraversalCallbacks, WhatTheCallbackAddsIsNotVisited) {
  ThreeLinks model;
  int calls = 0;
  WalkReferences(model.s, [&](InstancePtr) {
    model.Link("9" + std::to_string(calls));
    return ++calls, true;
  });
  EXPECT_EQ(calls, 3);
  EXPECT_EQ(References(model.s).size(), 6u);
}

TEST(TraversalCallbacks, TheCallbackMayDeleteTheAssociationItIsGiven) {
  ThreeLinks model;
  int calls = 0;
  WalkReferences(model.s, [&](InstancePtr link) {
    link->Delete({});
    return ++calls, true;
  });
  EXPECT_EQ(calls, 3);
  EXPECT_EQ(References(model.s), Names{});
}

TEST(TraversalCallbacks, AssociatorsWithstandTheDeletionOfWhatTheyReport) {
  ThreeLinks model;
  int calls = 0;
  WalkAssociators(model.s, [&](InstancePtr disk) {
    disk->Delete({});
    return ++calls, true;
  });
  EXPECT_GE(calls, 1);
  EXPECT_EQ(Associators(model.s), Names{});
}

TEST(TraversalCallbacks, TheCallbackMayClearTheNamespace) {
  ThreeLinks model;
  model.one.reset();
  model.two.reset();
  model.three.reset();
  int calls = 0;
  WalkReferences(model.s, [&](InstancePtr link) {
    model.repository.ns->ClearInstances();
    EXPECT_FALSE(PathOf(link).empty());
    return ++calls, true;
  });
  EXPECT_GE(calls, 1);
  EXPECT_EQ(References(model.s), Names{});
}

TEST(TraversalCallbacks, TheCallbackMayDropTheLastHoldOnTheInstance) {
  ThreeLinks model;
  int calls = 0;
  const auto drop = [&](InstancePtr) {
    if (model.s) model.s->Delete({});
    model.s.reset();
    return ++calls, true;
  };
  WalkReferences(InstancePtr(model.s.get(), [](ICIMInstance*) {}), drop);
  EXPECT_GE(calls, 1);
}

TEST(TraversalCallbacks, TheCallbackMayDropTheLastHoldOnTheNamespace) {
  ThreeLinks model;
  int calls = 0;
  WalkAssociators(model.s, [&](InstancePtr disk) {
    model.repository.ns.reset();
    EXPECT_EQ(PathOf(disk), "Disk.Name=\"d\"");
    return ++calls, true;
  });
  EXPECT_GE(calls, 1);
}

TEST(TraversalCallbacks, TheCallbackMayDeleteTheAssociationClass) {
  ThreeLinks model;
  int calls = 0;
  WalkReferences(model.s, [&](InstancePtr) {
    if (calls == 0) model.link->Delete({});
    return ++calls, true;
  });
  EXPECT_EQ(calls, 3);
  EXPECT_EQ(References(model.s), Names{});
}

TEST(TraversalCallbacks, TheCallbackMayRegisterAnAssociationClass) {
  ThreeLinks model;
  int calls = 0;
  WalkReferences(model.s, [&](InstancePtr) {
    if (calls == 0) {
      auto added = LinkClass(model.repository, "Added", {{"Group", model.system}});
      Join(model.repository, added, "1", {{"Group", model.s}});
    }
    return ++calls, true;
  });
  EXPECT_EQ(calls, 3);
  EXPECT_EQ(References(model.s, "Added"), (Names{"Added.Id=\"1\""}));
}

TEST(TraversalCallbacks, TheCallbackMayReadDerivedPropertiesOfWhatIsWalked) {
  ThreeLinks model;
  int calls = 0;
  WalkReferences(model.s, [&](InstancePtr link) {
    EXPECT_EQ(ValueOf(link, "speedDuplex"), TCIMValue("Unknown"));
    EXPECT_EQ(ValueOf(model.s, "Description"), TCIMValue(" "));
    return ++calls, true;
  });
  EXPECT_EQ(calls, 3);
}

TEST(TraversalCallbacks, TheCallbackMayTraverseAgain) {
  ThreeLinks model;
  std::size_t inner = 0;
  WalkReferences(model.s, [&](InstancePtr) {
    inner += References(model.d).size() + Associators(model.s).size();
    return true;
  });
  EXPECT_EQ(inner, 3u * (3u + 3u));
}

}  // namespace
}  // namespace havtest
