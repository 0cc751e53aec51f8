#include "mof/TMofEmbeddedText.h"

#include <utility>
#include <vector>

#include "mof/TMofParser.h"

namespace hav::mof {

using namespace NORVHAV20;

namespace {

std::string At(const TMofFile& file, TMofOffset offset, const std::string& what) {
  const auto place = file.text.PositionOf(offset);
  return std::to_string(place.line) + ':' + std::to_string(place.column) + ": " + what;
}

std::string FirstOf(const TMofReport& report) {
  for (const auto& message : report.GetMessages())
    if (message.severity == TMofMessage::ESeverity::kError)
      return std::to_string(message.line) + ':' + std::to_string(message.column) + ": " +
             message.text;
  return {};
}

}  // namespace

bool MayEmbed(const TMofShapes& shapes, const TMofSlot& slot, const ICIMClass& cls) {
  const auto wanted = shapes.FindClass(slot.embeddedClass);
  return slot.embeds != TMofSlot::EEmbedded::kInstance || !wanted || cls.IsA(wanted, {});
}

std::string WhatIsWrongWithSize(const TCIMValue& value, std::uint32_t arraySize) {
  if (arraySize == 0 || value.IsNull() || !value.IsArray()) return {};
  const auto size = static_cast<const std::vector<TCIMValue>&>(value).size();
  if (size <= arraySize) return {};
  return "the value has " + std::to_string(size) + " elements, the array has " +
         std::to_string(arraySize);
}

TMofEmbeddedText::TMofEmbeddedText(boost::shared_ptr<ICIMNamespace> home, TMofShapes& shapes,
                                   bool complete)
    : m_home(std::move(home)), m_shapes(shapes), m_complete(complete) {}

std::string TMofEmbeddedText::WhatIsWrong(const std::string& text, const TMofSlot& slot) {
  TMofFile file("", text);
  TMofReport report;
  TMofParser::Parse(file, report);
  if (report.HasErrors()) return FirstOf(report);
  const bool mayBeClass = slot.embeds == TMofSlot::EEmbedded::kObject;
  const bool isClass = mayBeClass && file.classes.size() == 1 && file.instances.empty();
  const bool isInstance = file.classes.empty() && file.instances.size() == 1;
  if ((!isClass && !isInstance) || !file.qualifierDecls.empty() || !file.pragmas.empty())
    return mayBeClass ? "expected one instance or one class" : "expected one instance";
  return isInstance ? CheckInstance(file, slot) : std::string();
}

std::string TMofEmbeddedText::CheckInstance(TMofFile& file, const TMofSlot& slot) {
  TMofReport deaf(0);
  TMofInstance instance;
  TMofParser(file, deaf).ReadInstance(file.instances.front(), instance);
  const auto* shape = m_shapes.Find(instance.className.text);
  auto wrong = CheckClass(file, instance.className, shape, slot);
  if (!shape || !wrong.empty()) return wrong;
  for (const auto& assignment : instance.assignments) {
    wrong = CheckAssignment(file, assignment, *shape);
    if (!wrong.empty()) return wrong;
  }
  return {};
}

std::string TMofEmbeddedText::CheckClass(const TMofFile& file, const TMofName& name,
                                         const TMofShape* shape, const TMofSlot& slot) const {
  if (!shape)
    return m_complete && !m_shapes.IsDeclared(name.text)
               ? At(file, name.offset, "class " + Quoted(name.text) + " is not declared")
               : std::string();
  if (shape->isAbstract)
    return At(file, name.offset, "class " + Quoted(name.text) + " is abstract");
  if (!MayEmbed(m_shapes, slot, *shape->cls))
    return At(file, name.offset,
              "expected an instance of " + Quoted(slot.embeddedClass) + ", and " +
                  Quoted(name.text) + " is none");
  return {};
}

std::string TMofEmbeddedText::CheckAssignment(const TMofFile& file,
                                              const TMofAssignment& assignment,
                                              const TMofShape& shape) {
  const auto* slot = shape.Find(assignment.name.text);
  if (!slot)
    return shape.isDamaged ? std::string()
                           : At(file, assignment.name.offset,
                                "class " + Quoted(shape.cls->GetName({})) + " has no property " +
                                    Quoted(assignment.name.text));
  TMofReport report;
  const auto value = TMofValueReader(m_home, report).Read(file, assignment.value, slot->type);
  if (!value) return FirstOf(report);
  auto wrong = WhatIsWrongWithSize(*value, slot->arraySize);
  if (wrong.empty() && slot->Embeds() && !value->IsNull() && !value->IsArray())
    wrong = WhatIsWrong(value->ToString(10), *slot);
  return wrong.empty() ? wrong : At(file, assignment.value.offset, wrong);
}

}  // namespace hav::mof
