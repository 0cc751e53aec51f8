#include "bench/Loading.h"

#include <vector>

#include "bench/InmemSubject.h"
#include "mof/IMofSource.h"
#include "mof/TMofLoader.h"
#include "support/Plugin.h"

namespace havbench {

using namespace NORVHAV20;

namespace {

const std::string kQualifiers =
    "Qualifier Key : boolean = false, Scope(property, reference);\n"
    "Qualifier Association : boolean = false, Scope(association);\n";
const std::string kClasses = kQualifiers +
                             "class T { [Key] string Name; uint32 Size; string Note; };\n"
                             "[Association] class L { [Key] T REF From; [Key] T REF To; };\n";

std::string NameOf(std::size_t i) { return "thing number " + std::to_string(i); }

std::string PathOf(std::size_t i) { return "\"T.Name=\\\"" + NameOf(i) + "\\\"\""; }

std::size_t ThingsOf(Loading kind, std::size_t count) {
  return kind == Loading::kThings ? count : (count + 1) / 2;
}

// Somewhere else, so that nothing stands where it stood last.
std::size_t OtherEnd(std::size_t i, std::size_t things) { return (i * 7919 + 1) % things; }

class TText : public hav::mof::IMofSource {
 public:
  explicit TText(const std::string& text) : m_text(text) {}
  bool Find(const std::string& name, const std::string&, std::string& identity) override {
    identity = name;
    return true;
  }
  bool Read(const std::string&, std::string& text) override {
    text = m_text;
    return true;
  }

 private:
  const std::string& m_text;
};

}  // namespace

std::string LoadingText(Loading kind, std::size_t count) {
  const auto things = ThingsOf(kind, count);
  std::string first;
  std::string links;
  for (std::size_t i = 0; i < things; ++i)
    first += "instance of T {\n  Name = \"" + NameOf(i) + "\";\n  Size = " + std::to_string(i) +
             ";\n  Note = \"nothing to be said\";\n};\n";
  for (std::size_t i = 0; i < count - things; ++i)
    links += "instance of L {\n  From = " + PathOf(i) + ";\n  To = " + PathOf(OtherEnd(i, things)) +
             ";\n};\n";
  return kClasses + (kind == Loading::kLinksFirst ? links + first : first + links);
}

std::string ClassesText(std::size_t count) {
  std::string text = kQualifiers;
  for (std::size_t i = 0; i < count; ++i) {
    const auto number = std::to_string(i);
    text += "class Bench_Class" + number;
    if (i % 10 != 0) text += " : Bench_Class" + std::to_string(i - 1);
    text += " {\n";
    if (i % 10 == 0) text += "  [Key] string Name;\n";
    text += "  uint32 Size" + number + ";\n  string Note" + number + ";\n};\n";
  }
  return text;
}

boost::shared_ptr<ICIMNamespace> LoadText(const std::string& text) {
  TText source(text);
  hav::mof::TMofReport report;
  return hav::mof::TMofLoader(*havtest::Provider(), source).Load({"text.mof"}, report);
}

boost::shared_ptr<ICIMNamespace> MakeObjects(Loading kind, std::size_t count) {
  const auto ns = LoadText(kClasses);
  const auto thing = ns->GetClass("T", {});
  const auto link = ns->GetClass("L", {});
  const auto things = ThingsOf(kind, count);
  std::vector<boost::shared_ptr<ICIMInstance>> made;
  made.reserve(things);
  for (std::size_t i = 0; i < things; ++i) {
    made.push_back(thing->AllocateInstance({}));
    made.back()->SetPropertyValue("Name", TCIMValue(NameOf(i)), {});
    made.back()->SetPropertyValue("Size", TCIMValue(static_cast<std::uint32_t>(i)), {});
    made.back()->SetPropertyValue("Note", TCIMValue("nothing to be said"), {});
    made.back()->AddToNamespace({});
  }
  for (std::size_t i = 0; i < count - things; ++i) {
    const auto one = link->AllocateInstance({});
    one->SetPropertyValue("From", made[i]->GetReference({}), {});
    one->SetPropertyValue("To", made[OtherEnd(i, things)]->GetReference({}), {});
    one->AddToNamespace({});
  }
  return ns;
}

boost::shared_ptr<ICIMNamespace> MakeClasses(std::size_t count) {
  const auto ns = LoadText(kQualifiers);
  boost::shared_ptr<ICIMClass> last;
  for (std::size_t i = 0; i < count; ++i) {
    const auto number = std::to_string(i);
    last = ns->AllocateClass("Bench_Class" + number,
                             i % 10 == 0 ? boost::shared_ptr<ICIMClass>() : last, {});
    if (i % 10 == 0) Declare(*ns, *last, "Name", TCIMValue::Null(kCIMString), true);
    Declare(*ns, *last, ("Size" + number).c_str(), TCIMValue::Null(kCIMUInt32));
    Declare(*ns, *last, ("Note" + number).c_str(), TCIMValue::Null(kCIMString));
    last->AddToNamespace({});
  }
  return ns;
}

std::size_t CountObjects(ICIMNamespace& ns) {
  std::size_t count = 0;
  for (const char* const name : {"T", "L"})
    ns.GetClass(name, {})->EnumerateInstances(
        [&](const boost::shared_ptr<ICIMInstance>&) { return ++count != 0; }, false, {});
  return count;
}

std::size_t CountClasses(ICIMNamespace& ns) {
  std::size_t count = 0;
  std::vector<boost::shared_ptr<ICIMClass>> left;
  const auto note = [&](const boost::shared_ptr<ICIMClass>& cls) {
    left.push_back(cls);
    return ++count != 0;
  };
  ns.EnumerateRootClasses(note, {});
  while (!left.empty()) {
    const auto cls = left.back();
    left.pop_back();
    cls->EnumerateSubclasses(note, {});
  }
  return count;
}

}  // namespace havbench
