// The slots of a class, and of the two interfaces that it is made of.
#include "abi/SlotCalls.h"
#include "support/Instances.h"
#include "support/LoggedRepository.h"
#include "support/Walks.h"

namespace havtest {
namespace {

const TCIMValue kTrue(true);
const TCIMValue kText = TCIMValue::Null(kCIMString);

// What the slots of an element's qualifiers do, wherever they stand. `calls` records them.
void CallQualifierOperations(SlotCalls& calls, const Repository& repository,
                             ICIMNamedElement& element) {
  const auto plain = repository.Declaration("Plain", kTrue, ICIMQualifierDecl::kFlavorNone);
  const auto made = repository.Declaration("Made", kTrue);

  const auto withFlavor =
      SLOT(2, element)(plain, kTrue, ICIMQualifierDecl::kFlavorTranslatable, {});
  EXPECT_EQ(withFlavor->GetFlavor({}), ICIMQualifierDecl::kFlavorTranslatable);
  const auto withoutFlavor = SLOT(3, element)(made, kTrue, {});
  EXPECT_EQ(withoutFlavor->GetFlavor({}), made->GetFlavor({}));

  bool found = false;
  EXPECT_EQ(SLOT(4, element)("plain", found, {}), withFlavor);
  EXPECT_TRUE(found);
  EXPECT_EQ(SLOT(5, element)("MADE", {}), withoutFlavor);

  Repository elsewhere;
  const auto lent =
      elsewhere.Class("Lender")->AllocateQualifier(elsewhere.Declaration("Lent", kTrue), kTrue, {});
  SLOT(1, element)(lent, {});
  EXPECT_EQ(NamesOf<ICIMQualifier>([&](auto callback) {
              SLOT(6, element)
              (callback, {});
            }),
            (Names{"Lent", "Made", "Plain"}));
}

class OwnElement : public ICIMElement {
 public:
  using TInterface = ICIMElement;
  void Validate(TOptions) const override {}
};

class OwnNamedElement : public ICIMNamedElement {
 public:
  using TInterface = ICIMNamedElement;
  void AddQualifier(QualifierPtr, TOptions) override {}
  QualifierPtr AllocateQualifier(QualifierDeclPtr, const TCIMValue&, ICIMQualifierDecl::EFlavor,
                                 TOptions) override {
    return {};
  }
  QualifierPtr AllocateQualifier(QualifierDeclPtr, const TCIMValue&, TOptions) override {
    return {};
  }
  QualifierPtr FindQualifier(const std::string&, bool&, TOptions) override { return {}; }
  QualifierPtr GetQualifier(const std::string&, TOptions) override { return {}; }
  void EnumerateQualifiers(const TEnumCallback<ICIMQualifier>&, TOptions) override {}
};

// One class of each kind, and a model around them.
struct ClassModel {
  LoggedRepository repository;
  ClassPtr base = repository.Class("Base");
  ClassPtr other = repository.Class("Other");
  ClassPtr derived = repository.Class("Derived", base);
  ClassPtr link = repository.Association("Link", "From", base, "To", other);
};

void CallNameSlots(SlotCalls& calls, const ClassModel& model) {
  EXPECT_EQ(SLOT(5, *model.base)({}), "Base");
  EXPECT_EQ(SLOT(6, *model.base)({}), model.repository.ns);

  const auto abstract = model.repository.Class("Abstract", {}, {{"Abstract", kTrue}});
  const auto indication = model.repository.Class("Alert", {}, {{"Indication", kTrue}});
  EXPECT_TRUE(SLOT(7, *model.link)({}));
  EXPECT_FALSE(SLOT(7, *abstract)({}));
  EXPECT_FALSE(SLOT(7, *indication)({}));
  EXPECT_TRUE(SLOT(8, *abstract)({}));
  EXPECT_FALSE(SLOT(8, *model.link)({}));
  EXPECT_FALSE(SLOT(8, *indication)({}));
  EXPECT_TRUE(SLOT(9, *indication)({}));
  EXPECT_FALSE(SLOT(9, *model.link)({}));
  EXPECT_FALSE(SLOT(9, *abstract)({}));

  EXPECT_TRUE(SLOT(28, *model.base)(*model.base));
  EXPECT_FALSE(SLOT(28, *model.base)(*model.other));
  EXPECT_TRUE(SLOT(29, *model.base)(*model.other));
  EXPECT_FALSE(SLOT(29, *model.base)(*model.base));
  EXPECT_EQ(&SLOT(30, *model.base)(*model.other), model.base.get());
  EXPECT_EQ(model.base->GetName({}), "Base");

  EXPECT_FALSE(SLOT(31, *model.base)({}));
  SLOT(32, *model.base)({});
  EXPECT_TRUE(SLOT(31, *model.base)({}));
}

void CallRelationSlots(SlotCalls& calls, const ClassModel& model) {
  EXPECT_EQ(SLOT(10, *model.derived)({}), model.base);
  EXPECT_EQ(ClassNames([&](auto callback) {
              SLOT(11, *model.base)
              (callback, {});
            }),
            (Names{"Derived"}));
  EXPECT_TRUE(SLOT(12, *model.derived)(model.base, {}));
  EXPECT_FALSE(SLOT(12, *model.derived)(model.other, {}));
  EXPECT_EQ(ClassNames([&](auto callback) {
              SLOT(13, *model.base)
              (callback, "", "", "", "", {});
            }),
            (Names{"Other"}));
  EXPECT_EQ(ClassNames([&](auto callback) {
              SLOT(14, *model.base)
              (callback, "", "", {});
            }),
            (Names{"Link"}));
  Names keys;
  SLOT(15, *model.link)
  (
      [&](const std::string* name) {
        keys.push_back(*name);
        return true;
      },
      {});
  EXPECT_EQ(keys, (Names{"From", "To"}));

  const auto stray = model.repository.Allocate("Stray");
  SLOT(33, *model.other)(stray, {});
  EXPECT_EQ(SubclassNames(model.other), (Names{"Stray"}));
  SLOT(34, *model.other)(stray, {});
  EXPECT_EQ(SubclassNames(model.other), Names());
  SLOT(37, *stray)(model.link, {});
  EXPECT_EQ(AssociationNames(stray), (Names{"Link"}));
  SLOT(38, *stray)(model.link, {});
  EXPECT_EQ(AssociationNames(stray), Names());
}

void CallDeclarationSlots(SlotCalls& calls, const ClassModel& model) {
  const auto& cls = model.link;
  const auto property = SLOT(16, *cls)("Size", TCIMValue(std::uint32_t{1}), {});
  EXPECT_EQ(property->GetType({}), kCIMUInt32);
  EXPECT_EQ(PropertyNames(cls), (Names{"From", "To"}));
  SLOT(39, *cls)(property, {});
  EXPECT_EQ(SLOT(17, *cls)("size", {}), property);
  EXPECT_EQ(NamesOf<ICIMPropertyDecl>([&](auto callback) {
              SLOT(18, *cls)
              (callback, {});
            }),
            (Names{"From", "Size", "To"}));
  SLOT(40, *cls)(property, {});
  EXPECT_EQ(PropertyNames(cls), (Names{"From", "To"}));

  const auto reference = SLOT(19, *cls)("Via", model.base, {});
  EXPECT_EQ(reference->GetDefaultValue({}).GetReferencedClassName(), "Base");
  EXPECT_EQ(SLOT(20, *cls)("from", {})->GetName({}), "From");
  cls->AddPropertyDecl(property, {});
  EXPECT_EQ(NamesOf<ICIMPropertyDecl>([&](auto callback) {
              SLOT(21, *cls)
              (callback, {});
            }),
            (Names{"From", "To"}));
  EXPECT_STATUS(15, SLOT(20, *cls)("Size", {}));

  const auto method = SLOT(24, *cls)("Reset", kCIMUInt16, {});
  EXPECT_EQ(method->GetType({}), kCIMUInt16);
  EXPECT_EQ(MethodNames(cls), Names());
  SLOT(41, *cls)(method, {});
  EXPECT_EQ(SLOT(25, *cls)("RESET", {}), method);
  EXPECT_EQ(NamesOf<ICIMMethodDecl>([&](auto callback) {
              SLOT(26, *cls)
              (callback, {});
            }),
            (Names{"Reset"}));
  SLOT(42, *cls)(method, {});
  EXPECT_EQ(MethodNames(cls), Names());
  std::map<std::string, TCIMValue> parameters;
  EXPECT_TRUE(SLOT(27, *cls)("Reset", parameters, {}).IsNull());
}

void CallInstanceStoreSlots(SlotCalls& calls, const ClassModel& model) {
  const auto instance = SLOT(22, *model.base)({});
  EXPECT_EQ(instance->GetClass({}), model.base);
  EXPECT_EQ(Stored(model.base), Names());
  instance->SetPropertyValue("Name", "b", {});
  SLOT(4, *model.base)(instance, {});
  EXPECT_EQ(Stored(model.base), Names());
  SLOT(35, *model.base)(instance, {});
  model.repository.Instance(model.derived, {{"Name", TCIMValue("d")}});
  const auto walk = [&](bool deep) {
    return Paths([&](auto callback) { SLOT(23, *model.base)(callback, deep, {}); });
  };
  EXPECT_EQ(walk(false), (Names{"Base.Name=\"b\""}));
  EXPECT_EQ(walk(true), (Names{"Base.Name=\"b\"", "Derived.Name=\"d\""}));
  SLOT(4, *model.base)(instance, {});
  EXPECT_EQ(Stored(model.base), (Names{"Base.Name=\"b\""}));
  SLOT(36, *model.base)(instance, {});
  EXPECT_EQ(Stored(model.base), Names());
}

void CallRegistrationSlots(SlotCalls& calls, ClassModel& model) {
  const auto cls = model.repository.Allocate("Late", model.other);
  model.repository.Property(cls, "Size", kText);
  model.repository.TakeLog();
  const auto keyless = model.repository.Allocate("Keyless");
  SLOT(1, *keyless)({});
  EXPECT_EQ(model.repository.TakeLog(),
            (LogLines{{ILogger::kError, "Inmem: Class Keyless has no keys"}}));
  SLOT(2, *cls)({});
  EXPECT_EQ(model.repository.ns->GetClass("late", {}), cls);
  EXPECT_EQ(SubclassNames(model.other), (Names{"Late"}));
  SLOT(3, *cls)({});
  EXPECT_EQ(SubclassNames(model.other), Names());

  const auto doomed = model.repository.Allocate("Doomed");
  const boost::weak_ptr<ICIMQualifier> qualifier =
      doomed->AllocateQualifier(model.repository.Declaration("Abstract"), kTrue, {});
  calls.Destroy(doomed, {model.repository.ns});
  EXPECT_TRUE(qualifier.expired());
}

}  // namespace

void CallElementSlots(SlotCalls& calls) {
  LoggedRepository repository;
  const auto keyless = repository.Allocate("Keyless");
  const ICIMElement& element = *keyless;
  SLOT(1, element)({});
  EXPECT_EQ(repository.TakeLog(),
            (LogLines{{ILogger::kError, "Inmem: Class Keyless has no keys"}}));
  calls.DestroyOwn<OwnElement>();
}

void CallNamedElementSlots(SlotCalls& calls) {
  const Repository repository;
  const auto cls = repository.Class("Thing");
  // A property's declaration, because it offers every one of the operations.
  CallQualifierOperations(calls, repository, *repository.Property(cls, "Size", kText));
  calls.DestroyOwn<OwnNamedElement>();
}

void CallClassSlots(SlotCalls& calls) {
  ClassModel model;
  CallNameSlots(calls, model);
  CallRelationSlots(calls, model);
  CallDeclarationSlots(calls, model);
  CallInstanceStoreSlots(calls, model);
  CallRegistrationSlots(calls, model);
}

void CallNamedElementSlotsOfClass(SlotCalls& calls) {
  const Repository repository;
  const auto cls = repository.Class("Thing");
  CallQualifierOperations(calls, repository, *cls);

  const auto doomed = repository.Allocate("Doomed");
  const boost::weak_ptr<ICIMQualifier> qualifier =
      doomed->AllocateQualifier(repository.Declaration("Made"), kTrue, {});
  calls.Destroy<ICIMNamedElement>(doomed, {repository.ns});
  EXPECT_TRUE(qualifier.expired());
}

}  // namespace havtest
