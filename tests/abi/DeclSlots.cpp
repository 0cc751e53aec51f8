// The slots of the declarations of properties, methods and parameters.
#include "abi/SlotCalls.h"
#include "support/Walks.h"

namespace havtest {
namespace {

const TCIMValue kTrue(true);
const TCIMValue kNumber(std::uint32_t{7});

// The slots that all three have in common; FindQualifier (4) is for those who offer it.
template <class Decl>
void CallQualifierSlotsOf(SlotCalls& calls, const Repository& repository, Decl& element) {
  const auto flavored = SLOT(2, element)(repository.Declaration("Flavored"), kTrue,
                                         ICIMQualifierDecl::kFlavorTranslatable, {});
  EXPECT_EQ(flavored->GetFlavor({}), ICIMQualifierDecl::kFlavorTranslatable);
  const auto decl = repository.Declaration("Plain");
  EXPECT_EQ(SLOT(3, element)(decl, kTrue, {})->GetFlavor({}), decl->GetFlavor({}));
  EXPECT_EQ(SLOT(5, element)("FLAVORED", {}), flavored);

  const auto lent =
      repository.Allocate("Lender")->AllocateQualifier(repository.Declaration("Lent"), kTrue, {});
  SLOT(1, element)(lent, {});
  EXPECT_EQ(NamesOf<ICIMQualifier>([&](auto callback) {
              SLOT(6, element)
              (callback, {});
            }),
            (Names{"Flavored", "Lent", "Plain"}));
}

// Slot 0 of a declaration that nothing refers to: its qualifier goes with it.
template <class Decl>
void CallDestructorOf(SlotCalls& calls, const Repository& repository,
                      const boost::shared_ptr<Decl>& decl) {
  const boost::weak_ptr<ICIMQualifier> qualifier =
      decl->AllocateQualifier(repository.Declaration("Plain"), kTrue, {});
  calls.Destroy(decl);
  EXPECT_TRUE(qualifier.expired());
}

// == is by the case-folded name, < by its order, = copies nothing.
#define CALL_COMPARISON_SLOTS(equal, less, assign, a, sameAsA, b) \
  EXPECT_TRUE(SLOT(equal, std::as_const(*(a)))(*(sameAsA)));      \
  EXPECT_FALSE(SLOT(equal, std::as_const(*(a)))(*(b)));           \
  EXPECT_TRUE(SLOT(less, std::as_const(*(a)))(*(b)));             \
  EXPECT_FALSE(SLOT(less, std::as_const(*(a)))(*(sameAsA)));      \
  EXPECT_EQ(&SLOT(assign, *(a))(*(b)), (a).get())

}  // namespace

void CallPropertyDeclSlots(SlotCalls& calls) {
  const Repository repository;
  const auto cls = repository.Class("Thing");
  const auto size = cls->AllocatePropertyDecl("Size", kNumber, {});
  const auto list = cls->AllocatePropertyDecl("List", TCIMValue(kCIMString, {}), {});
  const auto& decl = std::as_const(*size);

  CallQualifierSlotsOf(calls, repository, *size);
  bool found = false;
  EXPECT_EQ(SLOT(4, *size)("plain", found, {}), size->GetQualifier("Plain", {}));
  EXPECT_TRUE(found);

  SLOT(7, *size)({});
  EXPECT_EQ(PropertyNames(cls), (Names{"Name"}));
  SLOT(8, *size)({});
  EXPECT_EQ(PropertyNames(cls), (Names{"Name", "Size"}));
  SLOT(9, *size)({});
  EXPECT_EQ(PropertyNames(cls), (Names{"Name", "Size"}));
  EXPECT_EQ(SLOT(10, decl)({}), "Size");
  EXPECT_EQ(SLOT(11, decl)({}), cls);
  EXPECT_EQ(SLOT(12, decl)({}), kCIMUInt32);
  EXPECT_FALSE(SLOT(13, decl)({}));
  EXPECT_TRUE(SLOT(13, std::as_const(*list))({}));
  EXPECT_EQ(SLOT(14, decl)({}), kNumber);
  SLOT(15, *size)(TCIMValue(std::uint32_t{8}), {});
  EXPECT_EQ(SLOT(14, decl)({}), TCIMValue(std::uint32_t{8}));

  const auto same = cls->AllocatePropertyDecl("SIZE", kTrue, {});
  const auto type = cls->AllocatePropertyDecl("Type", kTrue, {});
  CALL_COMPARISON_SLOTS(16, 17, 18, size, same, type);
  EXPECT_EQ(size->GetName({}), "Size");

  CallDestructorOf(calls, repository, cls->AllocatePropertyDecl("Doomed", kTrue, {}));
}

void CallMethodDeclSlots(SlotCalls& calls) {
  const Repository repository;
  const auto cls = repository.Class("Thing");
  const auto reset = cls->AllocateMethodDecl("Reset", kCIMUInt16, {});
  const auto& decl = std::as_const(*reset);

  CallQualifierSlotsOf(calls, repository, *reset);
  bool found = false;
  EXPECT_STATUS(1, SLOT(4, *reset)("Plain", found, {}));

  SLOT(7, *reset)({});
  EXPECT_EQ(MethodNames(cls), Names());
  SLOT(8, *reset)({});
  EXPECT_EQ(MethodNames(cls), (Names{"Reset"}));
  EXPECT_EQ(SLOT(9, decl)({}), "Reset");
  EXPECT_EQ(SLOT(10, decl)({}), cls);
  EXPECT_EQ(SLOT(11, decl)({}), kCIMUInt16);
  const auto force = SLOT(12, *reset)("Force", kTrue, {});
  EXPECT_EQ(force->GetType({}), kCIMBoolean);
  EXPECT_EQ(SLOT(13, decl)("FORCE", {}), force);
  EXPECT_EQ(NamesOf<ICIMParameterDecl>([&](auto callback) {
              SLOT(14, decl)
              (callback, {});
            }),
            (Names{"Force"}));

  const auto same = cls->AllocateMethodDecl("RESET", kCIMUInt32, {});
  const auto start = cls->AllocateMethodDecl("Start", kCIMUInt32, {});
  CALL_COMPARISON_SLOTS(15, 16, 17, reset, same, start);
  EXPECT_EQ(reset->GetName({}), "Reset");

  CallDestructorOf(calls, repository, cls->AllocateMethodDecl("Doomed", kCIMUInt16, {}));
}

void CallParameterDeclSlots(SlotCalls& calls) {
  const Repository repository;
  const auto cls = repository.Class("Thing");
  const auto method = cls->AllocateMethodDecl("Reset", kCIMUInt16, {});
  const auto other = cls->AllocateMethodDecl("Start", kCIMUInt16, {});
  const auto force = method->AllocateParameter("Force", kNumber, {});
  const auto list = method->AllocateParameter("List", TCIMValue(kCIMString, {}), {});
  const auto& decl = std::as_const(*force);

  CallQualifierSlotsOf(calls, repository, *force);
  bool found = false;
  EXPECT_STATUS(1, SLOT(4, *force)("Plain", found, {}));

  EXPECT_STATUS(0, SLOT(7, *force)({}));
  EXPECT_STATUS(16, SLOT(8, *force)({}));
  EXPECT_EQ(SLOT(9, decl)({}), "Force");
  EXPECT_EQ(SLOT(10, decl)({}), method);
  EXPECT_EQ(SLOT(11, decl)({}), kCIMUInt32);
  EXPECT_FALSE(SLOT(12, decl)({}));
  EXPECT_TRUE(SLOT(12, std::as_const(*list))({}));

  const auto same = other->AllocateParameter("FORCE", kTrue, {});
  const auto wait = other->AllocateParameter("Wait", kTrue, {});
  CALL_COMPARISON_SLOTS(13, 14, 15, force, same, wait);
  EXPECT_EQ(force->GetName({}), "Force");

  const auto doomedMethod = cls->AllocateMethodDecl("Doomed", kCIMUInt16, {});
  const auto doomed = doomedMethod->AllocateParameter("Doomed", kTrue, {});
  const boost::weak_ptr<ICIMQualifier> qualifier =
      doomed->AllocateQualifier(repository.Declaration("Plain"), kTrue, {});
  calls.Destroy(doomed, {doomedMethod});
  EXPECT_TRUE(qualifier.expired());
}

void CallQualifierSlots(SlotCalls& calls) {
  const Repository repository;
  const auto cls = repository.Class("Thing");
  const auto decl = repository.ns->AllocateQualifierDecl("Color", TCIMValue::Null(kCIMString),
                                                         ICIMQualifierDecl::kScopeAny,
                                                         ICIMQualifierDecl::kFlavorToSubclass, {});
  const auto color = cls->AllocateQualifier(decl, TCIMValue("red"), {});
  const auto& qualifier = std::as_const(*color);

  SLOT(1, *color)({});
  const auto subclass = repository.Class("Subclass", cls);
  const auto inherited = subclass->GetQualifier("Color", {});
  EXPECT_TRUE(SLOT(16, std::as_const(*inherited))({}));
  EXPECT_FALSE(SLOT(16, qualifier)({}));

  SLOT(3, *color)({});
  EXPECT_EQ(QualifierNames(cls), (Names{"Color"}));
  EXPECT_EQ(SLOT(4, qualifier)({}), "Color");
  EXPECT_EQ(SLOT(5, qualifier)({}).get(), static_cast<ICIMNamedElement*>(cls.get()));
  EXPECT_EQ(SLOT(6, qualifier)({}), kCIMString);
  EXPECT_FALSE(SLOT(7, qualifier)({}));
  EXPECT_EQ(SLOT(8, qualifier)({}), decl);
  EXPECT_EQ(SLOT(9, qualifier)({}), TCIMValue("red"));
  SLOT(10, *color)(TCIMValue(kCIMString, {TCIMValue("blue")}), {});
  EXPECT_TRUE(SLOT(7, qualifier)({}));

  SLOT(11, *color)(ICIMQualifierDecl::kFlavorTranslatable, {});
  EXPECT_EQ(SLOT(13, qualifier)({}),
            ICIMQualifierDecl::kFlavorToSubclass | ICIMQualifierDecl::kFlavorTranslatable);
  SLOT(12, *color)(ICIMQualifierDecl::kFlavorToSubclass, {});
  EXPECT_EQ(SLOT(13, qualifier)({}), ICIMQualifierDecl::kFlavorTranslatable);

  const auto shape = cls->AllocateQualifier(repository.Declaration("Shape"), kTrue, {});
  CALL_COMPARISON_SLOTS(14, 15, 17, color, inherited, shape);
  EXPECT_EQ(color->GetName({}), "Color");

  // Attached again, a qualifier of another value conflicts with the one that stands there.
  const auto again = repository.Allocate("Again");
  const auto first = again->AllocateQualifier(decl, TCIMValue("red"), {});
  EXPECT_STATUS(0, SLOT(2, *first)({}));
  EXPECT_EQ(QualifierNames(again), (Names{"Color"}));
  first->RemoveFlavor(ICIMQualifierDecl::kFlavorOverridable, {});
  EXPECT_STATUS(28, again->AllocateQualifier(decl, TCIMValue("green"), {}));

  const auto owners = decl.use_count();
  calls.Destroy(first, {again, repository.ns});
  EXPECT_LT(decl.use_count(), owners);
}

void CallQualifierDeclSlots(SlotCalls& calls) {
  const Repository repository;
  const auto color = repository.ns->AllocateQualifierDecl("Color", TCIMValue("red"),
                                                          ICIMQualifierDecl::kScopeMethod,
                                                          ICIMQualifierDecl::kFlavorToSubclass, {});
  const auto& decl = std::as_const(*color);

  EXPECT_STATUS(0, SLOT(1, *color)({}));
  EXPECT_STATUS(16, SLOT(2, *color)({}));
  SLOT(3, *color)({});
  EXPECT_EQ(QualifierDeclNames(repository.ns), (Names{"Color"}));
  EXPECT_EQ(SLOT(4, decl)({}), "Color");
  EXPECT_EQ(SLOT(5, decl)({}), repository.ns);
  EXPECT_EQ(SLOT(6, decl)({}), kCIMString);
  EXPECT_FALSE(SLOT(7, decl)({}));
  EXPECT_EQ(SLOT(8, decl)({}), TCIMValue("red"));
  SLOT(9, *color)(TCIMValue(kCIMString, {TCIMValue("blue")}), {});
  EXPECT_TRUE(SLOT(7, decl)({}));
  EXPECT_EQ(SLOT(10, decl)({}), ICIMQualifierDecl::kScopeMethod);
  SLOT(11, *color)(ICIMQualifierDecl::kFlavorTranslatable, {});
  EXPECT_EQ(SLOT(13, decl)({}),
            ICIMQualifierDecl::kFlavorToSubclass | ICIMQualifierDecl::kFlavorTranslatable);
  SLOT(12, *color)(ICIMQualifierDecl::kFlavorToSubclass, {});
  EXPECT_EQ(SLOT(13, decl)({}), ICIMQualifierDecl::kFlavorTranslatable);

  const Repository elsewhere;
  const auto same = elsewhere.Declaration("COLOR");
  const auto shape = elsewhere.Declaration("Shape");
  CALL_COMPARISON_SLOTS(14, 15, 16, color, same, shape);
  EXPECT_EQ(color->GetName({}), "Color");

  // It owns nothing that would be seen to go: all that shows is that the call is survived.
  calls.Destroy(same, {elsewhere.ns});
}

}  // namespace havtest
