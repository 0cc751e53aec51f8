// As many instances, and as large values, as anybody makes.
#include "size/Size.h"
#include "support/Walks.h"

namespace havtest {
namespace {

constexpr int kMegabyte = 1'000'000;

std::string Numbered(int number) { return std::to_string(number); }

TEST(Size, OfAMillionInstances) {
  ExpectLinear(1'000'000, [](int count) {
    Repository repository;
    const ClassPtr cls = repository.Class("Thing");
    for (int i = 0; i < count; ++i) repository.Instance(cls, {{"Name", TCIMValue(Numbered(i))}});
    int seen = 0;
    cls->EnumerateInstances([&](const InstancePtr&) { return ++seen; }, false, {});
    EXPECT_EQ(seen, count);
    TCIMReference path({}, {{"Name", TCIMValue(Numbered(count - 1))}});
    path.SetClass(cls);
    const InstancePtr last = repository.ns->GetInstance(path, {});
    ASSERT_TRUE(last);
    last->Delete({});
    EXPECT_FALSE(repository.ns->GetInstance(path, {}));
  });
}

TEST(Size, OfAHundredThousandLinksOfOneInstance) {
  ExpectLinear(100'000, [](int count) {
    Repository repository;
    const ClassPtr cls = repository.Class("Thing");
    const ClassPtr link = repository.Association("Link", "From", cls, "To", cls);
    const InstancePtr hub = repository.Instance(cls, {{"Name", TCIMValue("hub")}});
    for (int i = 0; i < count; ++i) {
      const InstancePtr end = repository.Instance(cls, {{"Name", TCIMValue(Numbered(i))}});
      repository.Link(link, "From", hub, "To", end);
    }
    for (int question = 0; question < 3; ++question) {
      int found = 0;
      hub->EnumerateAssociationInstances([&](const InstancePtr&) { return ++found; }, "", "", {});
      EXPECT_EQ(found, count);
    }
  });
}

// Stores the text as a key and as a value, and finds it by the path that it makes.
void ExpectKept(const std::string& content, std::size_t escapes) {
  Repository repository;
  const ClassPtr cls = repository.Allocate("Thing");
  repository.Key(cls, "Name");
  repository.Property(cls, "Text", TCIMValue::Null(kCIMString));
  cls->AddToNamespace({});
  const TCIMValue text(content);
  const InstancePtr one = repository.Instance(cls, {{"Name", text}, {"Text", text}});
  const PropertyPtr slot = one->GetProperty("Text", {});
  slot->SetValue(slot->GetValue({}), {});
  slot->SetPrevValue(text, {});
  EXPECT_TRUE(slot->GetValue({}) == text);
  const TCIMReference path = one->GetReference({});
  EXPECT_EQ(path.GetPath().size(), content.size() + escapes + 13);
  EXPECT_EQ(repository.ns->GetInstance(path, {}), one);
  EXPECT_TRUE(TCIMReference::Parse(path.GetPath(), repository.ns) == path);
  EXPECT_EQ(slot->GetDisplayValue({}).size(), content.size());
}

TEST(Size, OfTextsOfAHundredMegabytes) {
  ExpectLinear(100 * kMegabyte,
               [](int size) { ExpectKept(std::string(static_cast<std::size_t>(size), 'x'), 0); });
}

TEST(Size, OfTextsOfNothingButBackslashesOrQuotes) {
  for (const char special : {'\\', '"'})
    ExpectLinear(2 * kMegabyte, [&](int size) {
      ExpectKept(std::string(static_cast<std::size_t>(size), special),
                 static_cast<std::size_t>(size));
    });
}

TEST(Size, OfArraysOfAMillion) {
  ExpectLinear(1'000'000, [](int size) {
    Repository repository;
    const ClassPtr cls = repository.Allocate("Thing");
    repository.Key(cls, "Name");
    repository.Property(cls, "Numbers", TCIMValue::Null(ArrayOf(kCIMUInt32)),
                        {{"Values", TCIMValue(kCIMString, {TCIMValue("none"), TCIMValue("one")})}});
    cls->AddToNamespace({});
    std::vector<TCIMValue> numbers(static_cast<std::size_t>(size), TCIMValue(std::uint32_t{1}));
    const TCIMValue array(kCIMUInt32, numbers);
    const InstancePtr one =
        repository.Instance(cls, {{"Name", TCIMValue("a")}, {"Numbers", array}});
    EXPECT_TRUE(one->GetProperty("Numbers", {})->GetValue({}) == array);
    const auto texts = one->GetProperty("Numbers", {})->GetDisplayValues({});
    ASSERT_EQ(texts.size(), numbers.size());
    EXPECT_EQ(texts.back(), "one");
  });
}

// An instance whose key refers to an instance whose key refers … : paths that double.
TEST(Size, OfPathsThatDoubleIsRefusedWhereTheyAreTooLong) {
  OnSmallStack([] {
    LoggedRepository repository;
    const ClassPtr node = repository.Class("Node");
    const ClassPtr link = repository.Allocate("Link", node, {{"Association", TCIMValue(true)}});
    repository.Reference(link, "Next", node, {{"Key", TCIMValue(true)}});
    link->AddToNamespace({});
    InstancePtr before = repository.Instance(node, {{"Name", TCIMValue("")}});
    for (int level = 0; level < 12; ++level) {
      before = repository.Instance(
          link, {{"Name", TCIMValue("")}, {"Next", TCIMValue(before->GetReference({}))}});
      ASSERT_TRUE(repository.ns->GetInstance(before->GetReference({}), {})) << level;
    }
    EXPECT_EQ(repository.TakeLog(), kNothingLogged);
    for (int level = 0; level < 12; ++level) {
      const InstancePtr next = link->AllocateInstance({});
      next->SetPropertyValue("Name", TCIMValue(""), {});
      next->SetPropertyValue("Next", TCIMValue(before->GetReference({})), {});
      before = next;
    }
    EXPECT_STATUS(1, before->GetReference({}).GetPath());
    EXPECT_STATUS(1, link->AddInstance(before, {}));
    const LogLine refused = Error(
        "Havcore: the object path of class Link is a key in another path, and its text is longer "
        "than 16 MiB");
    EXPECT_EQ(repository.TakeLog(), (LogLines{refused, refused}));
    before->AddToNamespace({});
    EXPECT_EQ(repository.TakeLog(),
              (LogLines{refused, {ILogger::kNote, "Inmem: Instance Link: invalid references"}}));
    int stored = 0;
    link->EnumerateInstances([&](const InstancePtr&) { return ++stored; }, false, {});
    EXPECT_EQ(stored, 12);
  });
}

}  // namespace
}  // namespace havtest
