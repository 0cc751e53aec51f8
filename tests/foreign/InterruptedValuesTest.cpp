// Every operation, with each use of a value in it failing in turn: what was interrupted leaves the
// namespace as it was or whole, frees what it took, and succeeds when it is tried again.
#include <functional>
#include <sstream>
#include <stdexcept>

#include "havcore/InterruptedValues.h"
#include "support/Instances.h"
#include "support/LoggedRepository.h"

namespace havtest {
namespace {

using Lines = std::vector<std::string>;

// A small namespace with everything in it that the operations need.
struct Model {
  Model() : repository(true) {
    node = repository.Class("Node");
    repository.Property(node, "Size", TCIMValue(std::uint32_t{7}),
                        {{"UNITS", "Bytes"},
                         {"DISPLAYFIXEDUNITS", "Tera"},
                         {"ABBREVIATEUNITS", true},
                         {"Note", "a note"}});
    repository.Property(node, "State", TCIMValue::Null(kCIMUInt16),
                        {{"Values", TCIMValue(kCIMString, {"Off", "On"})}});
    link = repository.Association("Link", "From", node, "To", node);
    first = repository.Instance(node, {{"Name", "first"}, {"State", std::uint16_t{1}}});
    second = repository.Instance(node, {{"Name", "second"}});
    joint = repository.Link(link, "From", first, "To", second);
    leaf = repository.Class("Leaf", node);
    again = repository.Allocate("Leaf2", node);
    loose = node->AllocateInstance({});
    loose->SetPropertyValue("Name", "loose", {});
    repository.TakeLog();
  }

  LoggedRepository repository;
  ClassPtr node, link, leaf, again;
  InstancePtr first, second, joint, loose;
};

std::string Text(const TCIMValue& value) {
  std::ostringstream text;
  text << value.GetType() << ' ' << value.ToString(10);
  return text.str();
}

template <class Element>
std::string Qualifiers(Element& element) {
  std::string text;
  element.EnumerateQualifiers(TEnumCallback<ICIMQualifier>([&](QualifierPtr qualifier) {
                                text += " [" + qualifier->GetName({}) + ' ' +
                                        Text(qualifier->GetValue({})) + ' ' +
                                        std::to_string(qualifier->GetFlavor({})) + ']';
                                return true;
                              }),
                              {});
  return text;
}

void AddInstance(Lines& lines, ICIMInstance& instance) {
  lines.push_back(instance.GetReference({}).GetPath());
  instance.EnumerateProperties(
      [&](PropertyPtr slot) {
        lines.push_back(slot->GetDecl({})->GetName({}) + ' ' + Text(slot->GetValue({})) + ' ' +
                        (slot->HasPrevValue({}) ? Text(slot->GetPrevValue({})) : "none"));
        return true;
      },
      {});
}

Lines Shown(const Model& model) {
  Lines lines;
  model.repository.ns->EnumerateQualifierDecls(
      TEnumCallback<ICIMQualifierDecl>([&](QualifierDeclPtr decl) {
        lines.push_back(decl->GetName({}) + ' ' + Text(decl->GetDefaultValue({})));
        return true;
      }),
      {});
  std::vector<ClassPtr> classes;
  const TEnumCallback<ICIMClass> keep([&](ClassPtr cls) {
    classes.push_back(cls);
    return true;
  });
  model.repository.ns->EnumerateRootClasses(keep, {});
  for (std::size_t i = 0; i < classes.size(); ++i) {
    const auto cls = classes[i];
    lines.push_back(cls->GetName({}) + Qualifiers(*cls));
    cls->EnumeratePropertyDecls(TEnumCallback<ICIMPropertyDecl>([&](PropertyDeclPtr decl) {
                                  lines.push_back(decl->GetName({}) + ' ' +
                                                  Text(decl->GetDefaultValue({})) +
                                                  Qualifiers(*decl));
                                  return true;
                                }),
                                {});
    cls->EnumerateMethodDecls(TEnumCallback<ICIMMethodDecl>([&](MethodDeclPtr decl) {
                                lines.push_back(decl->GetName({}) + Qualifiers(*decl));
                                return true;
                              }),
                              {});
    cls->EnumerateInstances(TEnumCallback<ICIMInstance>([&](InstancePtr instance) {
                              AddInstance(lines, *instance);
                              return true;
                            }),
                            false, {});
    cls->EnumerateSubclasses(keep, {});
  }
  AddInstance(lines, *model.loose);
  lines.push_back(Text(TCIMValue(Paths([&](const auto& callback) {
                                   model.first->EnumerateAssociatedInstances(callback, "", "<root>",
                                                                             "", "", {});
                                 }).size() == 1)));
  return lines;
}

struct Operation {
  const char* name;
  std::function<void(Model&)> run;
};

class InterruptedValues : public testing::TestWithParam<Operation> {};

TEST_P(InterruptedValues, LeaveEverythingAsItWasOrWhole) {
  const auto& operation = GetParam();
  Model untouched, done;
  const auto before = Shown(untouched);
  operation.run(done);
  const auto after = Shown(done);
  long thrown = 0;
  for (long allowed = 0;; ++allowed) {
    ASSERT_LT(allowed, 5000);
    SCOPED_TRACE(std::string(operation.name) + ", use " + std::to_string(allowed));
    Model model;
    bool threw = false;
    InterruptValues(allowed);
    try {
      operation.run(model);
    } catch (const std::runtime_error&) {
      threw = true;
    }
    const bool interrupted = AreInterrupted();
    InterruptValues(-1);
    if (!interrupted) {
      ASSERT_EQ(Shown(model), after);
      break;
    }
    if (!threw) {
      ASSERT_EQ(Shown(model), after) << "nobody was told";
      continue;
    }
    ++thrown;
    const auto shown = Shown(model);
    if (shown != after) {
      ASSERT_EQ(shown, before);
      ASSERT_NO_THROW(operation.run(model));
      ASSERT_EQ(Shown(model), after);
    }
  }
  EXPECT_GT(thrown, 0);
}

const TCIMValue& Long() {
  static const TCIMValue text(std::string("a text that is long enough to be allocated"));
  return text;
}

INSTANTIATE_TEST_SUITE_P(
    Operations, InterruptedValues,
    testing::Values(
        Operation{"set", [](Model& m) { m.first->SetPropertyValue("Name", Long(), {}); }},
        Operation{"set slot",
                  [](Model& m) { m.first->GetProperty("Name", {})->SetValue(Long(), {}); }},
        Operation{"set previous",
                  [](Model& m) { m.first->GetProperty("Name", {})->SetPrevValue(Long(), {}); }},
        Operation{"clear previous",
                  [](Model& m) { m.first->GetProperty("Name", {})->ClearPrevValue({}); }},
        Operation{"set previous reference",
                  [](Model& m) {
                    m.joint->GetProperty("From", {})
                        ->SetPrevValue(TCIMValue(m.second->GetReference({})), {});
                  }},
        Operation{"store", [](Model& m) { m.loose->AddToNamespace({}); }},
        Operation{"remove", [](Model& m) { m.second->Delete({}); }},
        Operation{"find",
                  [](Model& m) {
                    const auto path = m.first->GetReference({});
                    if (m.repository.ns->GetInstance(path, {}) != m.first)
                      throw std::logic_error("not found");
                  }},
        Operation{"display",
                  [](Model& m) {
                    m.first->GetProperty("Size", {})->GetDisplayValue({});
                    m.first->GetProperty("State", {})->GetDisplayValue({});
                    m.second->GetProperty("State", {})->GetDisplayValues({});
                  }},
        Operation{
            "declare property",
            [](Model& m) {
              m.leaf->AllocatePropertyDecl("Size", TCIMValue(std::uint32_t{8}), {})->AddToClass({});
            }},
        Operation{
            "set default",
            [](Model& m) {
              m.node->GetPropertyDecl("Size", {})->SetDefaultValue(TCIMValue(std::uint32_t{9}), {});
            }},
        Operation{"qualify class",
                  [](Model& m) {
                    m.node->AllocateQualifier(m.repository.ns->GetQualifierDecl("Note", {}), Long(),
                                              TOptions());
                  }},
        Operation{"declare qualifier",
                  [](Model& m) {
                    m.repository.ns->AllocateQualifierDecl("Other", Long(),
                                                           ICIMQualifierDecl::kScopeAny,
                                                           ICIMQualifierDecl::kFlavorNone, {});
                  }},
        Operation{"register class", [](Model& m) { m.again->AddToNamespace({}); }},
        Operation{"allocate instance", [](Model& m) { m.node->AllocateInstance({}); }}),
    [](const auto& parameter) {
      std::string name = parameter.param.name;
      for (char& c : name)
        if (c == ' ') c = '_';
      return name;
    });

}  // namespace
}  // namespace havtest
