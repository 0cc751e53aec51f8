// The slots of a namespace, and of the interfaces around it.
#include "abi/SlotCalls.h"
#include "support/Instances.h"
#include "support/RecordingLogger.h"
#include "support/Walks.h"

namespace havtest {
namespace {

const TCIMValue kTrue(true);

class OwnNamespaceProvider : public INamespaceProvider {
 public:
  using TInterface = INamespaceProvider;
  const std::string& GetName(TOptions) const override { return m_name; }
  NamespacePtr AllocateNamespace(TOptions, bool, std::string) const override { return {}; }
  EType GetType(TOptions) const override { return kForwarding; }
  bool IsIndicationsSupported(TOptions) const override { return false; }

 private:
  std::string m_name = "own";
};

class OwnProviderManager : public INamespaceProviderManager {
 public:
  using TInterface = INamespaceProviderManager;
  void RegisterNamespaceProvider(boost::shared_ptr<INamespaceProvider>) override {}
};

class OwnLogger : public ILogger {
 public:
  using TInterface = ILogger;
  void Log(int, const std::string&) override {}
};

class OwnConsumer : public INamespaceConsumer {
 public:
  using TInterface = INamespaceConsumer;
  const std::string& GetName(TOptions) const override { return m_name; }
  void OnNamespaceAdded(NamespacePtr added, TOptions) override { heard = added; }
  void OnNamespaceRemoved(NamespacePtr removed, TOptions) override {
    if (heard == removed) heard.reset();
  }

  NamespacePtr heard;

 private:
  std::string m_name = "own";
};

class OwnProvider : public IProvider {
 public:
  using TInterface = IProvider;
};

class OwnFilter : public ICIMIndicationFilter {
 public:
  using TInterface = ICIMIndicationFilter;
};

void CallNamespaceClassSlots(SlotCalls& calls, const Repository& repository) {
  const auto& ns = *repository.ns;
  auto& changed = *repository.ns;
  EXPECT_EQ(SLOT(1, ns)({}), Provider());
  SLOT(2, changed)(NewNamespace(), {});
  EXPECT_STATUS(31, SLOT(3, changed)(NewNamespace(), {}));

  const auto base = repository.Class("Base");
  const auto cls = SLOT(4, changed)("Derived", base, {});
  EXPECT_EQ(cls->GetSuperClass({}), base);
  EXPECT_EQ(SLOT(5, changed)("base", {}), base);
  EXPECT_EQ(ClassNames([&](auto callback) { SLOT(6, changed)(callback, {}); }), (Names{"Base"}));
  SLOT(7, changed)
  (
      [](boost::shared_ptr<IProvider>) {
        ADD_FAILURE() << "there are no providers";
        return true;
      },
      {});
}

void CallNamespaceQualifierSlots(SlotCalls& calls, const Repository& repository) {
  auto& changed = *repository.ns;
  const auto& ns = *repository.ns;
  const auto decl = SLOT(8, changed)("Color", TCIMValue("red"), ICIMQualifierDecl::kScopeClass,
                                     ICIMQualifierDecl::kFlavorTranslatable, {});
  EXPECT_EQ(decl->GetScope({}), ICIMQualifierDecl::kScopeClass);
  EXPECT_EQ(decl->GetFlavor({}), ICIMQualifierDecl::kFlavorTranslatable);
  EXPECT_EQ(SLOT(9, ns)("COLOR", {}), decl);
  EXPECT_EQ(NamesOf<ICIMQualifierDecl>([&](auto callback) {
              SLOT(10, ns)
              (callback, {});
            }),
            (Names{"Color", "Key"}));
}

void CallNamespaceInstanceSlots(SlotCalls& calls, const Repository& repository) {
  auto& changed = *repository.ns;
  const auto& ns = *repository.ns;
  const auto cls = repository.Class("Thing");
  const auto instance = repository.Instance(cls, {{"Name", TCIMValue("a")}});
  const auto path = instance->GetReference({});
  const TEnumCallback<ICIMInstance> ignore = [](InstancePtr) { return true; };
  std::string query = "select *";

  EXPECT_EQ(SLOT(12, ns)(path, {}), instance);
  EXPECT_STATUS(1, SLOT(11, changed)({}, ignore, {}));
  EXPECT_STATUS(1, SLOT(13, changed)(path, {}));
  EXPECT_STATUS(1, SLOT(14, changed)(path, {}, {}));
  EXPECT_STATUS(1, SLOT(15, changed)(ignore, query, ignore, {}));
  EXPECT_EQ(Stored(cls), (Names{"Thing.Name=\"a\""}));
  SLOT(16, changed)();
  EXPECT_EQ(Stored(cls), Names());
}

}  // namespace

void CallNamespaceSlots(SlotCalls& calls) {
  const Repository repository;
  CallNamespaceClassSlots(calls, repository);
  CallNamespaceQualifierSlots(calls, repository);
  CallNamespaceInstanceSlots(calls, repository);
  const auto other = NewNamespace();
  EXPECT_EQ(&SLOT(17, *repository.ns)(*other), repository.ns.get());
  EXPECT_EQ(RootClassNames(repository.ns), (Names{"Base", "Thing"}));

  const Repository doomed;
  const boost::weak_ptr<ICIMClass> cls = doomed.Class("Thing");
  calls.Destroy(doomed.ns);
  EXPECT_TRUE(cls.expired());
}

void CallNamespaceProviderSlots(SlotCalls& calls) {
  const INamespaceProvider& provider = *Provider();
  EXPECT_EQ(SLOT(1, provider)({}), "inmem");
  EXPECT_EQ(RootClassNames(SLOT(2, provider)({}, false, "root/test")), Names());
  EXPECT_EQ(SLOT(3, provider)({}), 2u);
  EXPECT_FALSE(SLOT(4, provider)({}));
  // Not the plug-in's own, which there is only one of.
  calls.DestroyOwn<OwnNamespaceProvider>();
}

void CallNamespaceProviderManagerSlots(SlotCalls& calls) {
  TNamespaceProviderManager manager;
  SLOT(1, static_cast<INamespaceProviderManager&>(manager))(Provider());
  EXPECT_EQ(manager.FindNamespaceProvider("inmem"), Provider());
  calls.DestroyOwn<OwnProviderManager>();
}

void CallLoggerSlots(SlotCalls& calls) {
  RecordingLogger logger;
  SLOT(1, *TRootObject::GetCoreLogger())(ILogger::kError, "heard");
  EXPECT_EQ(logger.Take(), (LogLines{{ILogger::kError, "heard"}}));
  calls.DestroyOwn<OwnLogger>();
}

void CallNamespaceConsumerSlots(SlotCalls& calls) {
  OwnConsumer own;
  INamespaceConsumer& consumer = own;
  const auto ns = NewNamespace();
  EXPECT_EQ(SLOT(1, static_cast<const INamespaceConsumer&>(consumer))({}), "own");
  SLOT(2, consumer)(ns, {});
  EXPECT_EQ(own.heard, ns);
  SLOT(3, consumer)(ns, {});
  EXPECT_EQ(own.heard, nullptr);
  calls.DestroyOwn<OwnConsumer>();
}

void CallProviderSlots(SlotCalls& calls) { calls.DestroyOwn<OwnProvider>(); }

void CallIndicationFilterSlots(SlotCalls& calls) { calls.DestroyOwn<OwnFilter>(); }

}  // namespace havtest
