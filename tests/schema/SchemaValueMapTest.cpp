// The value maps of the whole DMTF schema 2.49.
//
// Every property that has "Values" or "ValueMap" is set, in an instance of the class that
// declares it, to every number that a pattern names, both ends of every range, and the
// numbers next to them; what the slot shows has to be what the plain way makes of the
// qualifiers. The maps of methods' results and parameters are tried the same way, on a
// property of their type.
#include <cstdio>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "inmem/values/TInmemProperty.h"
#include "mof/TMofFolderSource.h"
#include "mof/TMofLoader.h"
#include "mof/TMofReport.h"
#include "support/CimSchema.h"
#include "support/Repository.h"
#include "tests/values/PlainDisplay.h"

namespace havtest {
namespace {

std::vector<ClassPtr> AllClasses(ICIMNamespace& ns) {
  std::vector<ClassPtr> classes;
  const TEnumCallback<ICIMClass> collect = [&](ClassPtr cls) {
    classes.push_back(std::move(cls));
    return true;
  };
  ns.EnumerateRootClasses(collect, {});
  for (std::size_t i = 0; i < classes.size(); ++i) {
    const ClassPtr cls = classes[i];
    cls->EnumerateSubclasses(collect, {});
  }
  return classes;
}

bool Has(ICIMNamedElement& element, const std::string& qualifier) {
  bool has = false;
  element.EnumerateQualifiers(
      [&](const QualifierPtr& each) {
        has = has || each->GetName({}) == qualifier;
        return true;
      },
      {});
  return has;
}

bool IsMapped(ICIMNamedElement& element) {
  return Has(element, "Values") || Has(element, "ValueMap");
}

std::vector<PropertyDeclPtr> MappedPropertiesOf(const ClassPtr& cls) {
  std::vector<PropertyDeclPtr> decls;
  cls->EnumeratePropertyDecls(
      [&](const PropertyDeclPtr& decl) {
        if (decl->GetClass({}) == cls && IsMapped(*decl)) decls.push_back(decl);
        return true;
      },
      {});
  return decls;
}

std::vector<MethodDeclPtr> MethodsOf(const ClassPtr& cls) {
  std::vector<MethodDeclPtr> decls;
  cls->EnumerateMethodDecls(
      [&](const MethodDeclPtr& decl) {
        if (decl->GetClass({}) == cls) decls.push_back(decl);
        return true;
      },
      {});
  return decls;
}

std::vector<ParameterDeclPtr> MappedParametersOf(const MethodDeclPtr& method) {
  std::vector<ParameterDeclPtr> decls;
  method->EnumerateParameters(
      [&](const ParameterDeclPtr& decl) {
        if (IsMapped(*decl)) decls.push_back(decl);
        return true;
      },
      {});
  return decls;
}

// A property of `cls` that has the type and the map of another element.
template <class Element>
PropertyDeclPtr PropertyLike(const ClassPtr& cls, Element& element) {
  auto decl = cls->AllocatePropertyDecl("Mapped", TCIMValue::Null(element.GetType(TOptions())), {});
  for (const char* name : {"Values", "ValueMap"}) {
    if (!Has(element, name)) continue;
    const auto qualifier = element.GetQualifier(name, {});
    decl->AllocateQualifier(qualifier->GetQualifierDecl({}), qualifier->GetValue({}), TOptions());
  }
  return decl;
}

template <class T>
std::optional<TCIMValue> Fitting(std::uint64_t number) {
  const auto narrow = static_cast<T>(number);
  // A negative number stands in a map as its 64 bits.
  if (static_cast<std::uint64_t>(narrow) != number) return std::nullopt;
  return TCIMValue(narrow);
}

// The number as a value of `type`, nothing when the type does not have it.
std::optional<TCIMValue> ValueOf(ECIMType type, std::uint64_t number) {
  switch (type) {
    case kCIMBoolean:
      if (number > 1) return std::nullopt;
      return TCIMValue(number == 1);
    case kCIMUInt8: return Fitting<std::uint8_t>(number);
    case kCIMUInt16: return Fitting<std::uint16_t>(number);
    case kCIMUInt32: return Fitting<std::uint32_t>(number);
    case kCIMUInt64: return Fitting<std::uint64_t>(number);
    case kCIMSInt8: return Fitting<std::int8_t>(number);
    case kCIMSInt16: return Fitting<std::int16_t>(number);
    case kCIMSInt32: return Fitting<std::int32_t>(number);
    case kCIMSInt64: return Fitting<std::int64_t>(number);
    case kCIMString: return TCIMValue(std::to_string(number));
    default: return std::nullopt;
  }
}

// The numbers that the patterns name, and those next to them.
std::set<std::uint64_t> NumbersToShow(const std::vector<std::string>& patterns) {
  PlainValueMap map;
  std::uint64_t next = 0;
  for (const std::string& pattern : patterns) AddPlainPattern(map, next, pattern, "");
  std::set<std::uint64_t> numbers;
  for (const PlainEntry& entry : map.entries)
    numbers.insert({entry.low - 1, entry.low, entry.high, entry.high + 1});
  return numbers;
}

// The elements of an array of strings; empty when the qualifier is absent or something else.
std::vector<std::string> TextsOf(ICIMPropertyDecl& decl, const std::string& qualifier) {
  if (!Has(decl, qualifier)) return {};
  const TCIMValue value = decl.GetQualifier(qualifier, {})->GetValue({});
  if (value.IsNull() || value.GetType() != ArrayOf(kCIMString)) return {};
  std::vector<std::string> texts;
  for (const TCIMValue& element : static_cast<const std::vector<TCIMValue>&>(value))
    texts.push_back(element.ToString(10));
  return texts;
}

std::vector<TCIMValue> ValuesToShow(ICIMPropertyDecl& decl) {
  std::vector<std::string> patterns = TextsOf(decl, "ValueMap");
  if (patterns.empty())
    for (std::size_t i = 0; i < TextsOf(decl, "Values").size(); ++i)
      patterns.push_back(std::to_string(i));
  const ECIMType type = ElementOf(decl.GetType({}));
  std::vector<TCIMValue> values;
  for (const std::uint64_t number : NumbersToShow(patterns))
    if (const auto value = ValueOf(type, number)) values.push_back(*value);
  if (type == kCIMString) values.insert(values.end(), patterns.begin(), patterns.end());
  return values;
}

class SchemaValueMap : public testing::Test {
 protected:
  static void TearDownTestSuite() { s_namespace.reset(); }

  void SetUp() override {
    if (s_namespace) return;
    if (const std::string why = WhyNoCimSchema(); !why.empty()) {
      if (IsCimSchemaRequired()) FAIL() << why;
      GTEST_SKIP() << why;
    }
    hav::mof::TMofFolderSource source;
    hav::mof::TMofReport report;
    s_namespace =
        hav::mof::TMofLoader(*Provider(), source).Load({CimSchemaFile().u8string()}, report);
    ASSERT_TRUE(s_namespace) << report.ToString();
  }

  // The slot of a property in a new instance.
  static PropertyPtr Slot(const std::string& cls, const std::string& property) {
    return s_namespace->GetClass(cls, {})->AllocateInstance({})->GetProperty(property, {});
  }

  // Shows everything that the map of the slot's property names, and compares.
  void ShowAll(ICIMProperty& slot) {
    const PropertyDeclPtr decl = slot.GetDecl({});
    const std::vector<TCIMValue> values = ValuesToShow(*decl);
    if (decl->IsArray({})) {
      Show(slot, TCIMValue(ElementOf(decl->GetType({})), values));
    } else {
      for (const TCIMValue& value : values) Show(slot, value);
    }
    m_values += values.size();
  }

  RecordingLogger m_logger;
  std::size_t m_values = 0;  // shown so far
  std::size_t m_named = 0;   // of them as something else than the value itself

  static NamespacePtr s_namespace;

 private:
  void Show(ICIMProperty& slot, const TCIMValue& value) {
    const PropertyDeclPtr decl = slot.GetDecl({});
    slot.SetValue(value, {});
    const std::string text = slot.GetDisplayValue({});
    const std::vector<std::string> texts = slot.GetDisplayValues({});
    EXPECT_EQ(PlainDisplayText(*decl, value), text);
    EXPECT_EQ(PlainDisplayTexts(*decl, value), texts);
    const std::vector<TCIMValue> elements = value.IsArray()
                                                ? static_cast<const std::vector<TCIMValue>&>(value)
                                                : std::vector<TCIMValue>{value};
    for (std::size_t i = 0; i < elements.size(); ++i)
      if ((value.IsArray() ? texts[i] : text) != elements[i].ToString(10)) ++m_named;
  }
};

NamespacePtr SchemaValueMap::s_namespace;

TEST_F(SchemaValueMap, EveryPropertyShowsWhatItsPatternsName) {
  std::size_t properties = 0;
  for (const ClassPtr& cls : AllClasses(*s_namespace)) {
    const auto instance = cls->AllocateInstance({});
    for (const PropertyDeclPtr& decl : MappedPropertiesOf(cls)) {
      SCOPED_TRACE(cls->GetName({}) + "." + decl->GetName({}));
      ShowAll(*instance->GetProperty(decl->GetName({}), {}));
      ++properties;
    }
  }
  std::printf("%zu properties, %zu values, %zu of them shown by name\n", properties, m_values,
              m_named);
  EXPECT_EQ(1315u, properties);
  EXPECT_GT(m_named, 9000u);
}

TEST_F(SchemaValueMap, EveryMethodAndParameterToo) {
  std::size_t methods = 0;
  std::size_t parameters = 0;
  for (const ClassPtr& cls : AllClasses(*s_namespace)) {
    for (const MethodDeclPtr& method : MethodsOf(cls)) {
      SCOPED_TRACE(cls->GetName({}) + "." + method->GetName({}));
      if (IsMapped(*method)) {
        ShowAll(*TInmemProperty::Standalone(PropertyLike(cls, *method)));
        ++methods;
      }
      for (const ParameterDeclPtr& parameter : MappedParametersOf(method)) {
        SCOPED_TRACE(parameter->GetName({}));
        ShowAll(*TInmemProperty::Standalone(PropertyLike(cls, *parameter)));
        ++parameters;
      }
    }
  }
  std::printf("%zu methods, %zu parameters, %zu values, %zu of them shown by name\n", methods,
              parameters, m_values, m_named);
  EXPECT_EQ(358u, methods);
  EXPECT_EQ(263u, parameters);
  EXPECT_GT(m_named, 5000u);
}

// What a reader of the schema's own text would expect to see.

TEST_F(SchemaValueMap, ClosedRangesOfEnabledState) {
  const auto slot = Slot("CIM_EnabledLogicalElement", "EnabledState");
  const auto shown = [&](std::uint16_t value) {
    slot->SetValue(TCIMValue(value), {});
    return slot->GetDisplayValue({});
  };
  EXPECT_EQ("Unknown", shown(0));
  EXPECT_EQ("Starting", shown(10));
  EXPECT_EQ("DMTF Reserved", shown(11));
  EXPECT_EQ("DMTF Reserved", shown(32767));
  EXPECT_EQ("Vendor Reserved", shown(32768));
  EXPECT_EQ("Vendor Reserved", shown(65535));
}

TEST_F(SchemaValueMap, DefaultAndOpenHexadecimalRangeOfOperationalStatus) {
  const auto slot = Slot("CIM_ManagedSystemElement", "OperationalStatus");
  const std::vector<std::uint16_t> numbers{2, 19, 20, 0x7FFF, 0x8000, 0xFFFF};
  slot->SetValue({kCIMUInt16, {numbers.begin(), numbers.end()}}, {});
  EXPECT_EQ((std::vector<std::string>{"OK", "Relocating", "DMTF Reserved", "DMTF Reserved",
                                      "Vendor Reserved", "Vendor Reserved"}),
            slot->GetDisplayValues({}));
}

}  // namespace
}  // namespace havtest
