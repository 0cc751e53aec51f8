#include "havcore/TCIMValue.h"

#include <cstdlib>
#include <iostream>
#include <locale>
#include <new>
#include <sstream>
#include <stdexcept>
#include <utility>
#include <variant>

#include "havcore/ICIMClass.h"
#include "havcore/InterruptedValues.h"
#include "havcore/TCIMDateTime.h"
#include "havcore/TCIMReference.h"
#include "havcore/THAVException.h"

namespace NORVHAV20 {

namespace {

const char* const kTypeNames[] = {"none",   "boolean", "uint8",    "sint8",    "uint16", "sint16",
                                  "uint32", "sint32",  "uint64",   "sint64",   "real32", "real64",
                                  "char16", "string",  "datetime", "reference"};

long g_allowed = -1;
bool g_interrupted = false;

// Every use of a value comes here.
void Use() {
  if (g_allowed < 0 || g_allowed-- != 0) return;
  g_interrupted = true;
  throw std::runtime_error("a value refuses to be used");
}

std::string IntegerText(std::uint64_t magnitude, bool negative, unsigned radix) {
  std::string text;
  do {
    text.insert(text.begin(), "0123456789abcdefghijklmnopqrstuvwxyz"[magnitude % radix]);
    magnitude /= radix;
  } while (magnitude != 0);
  return negative ? '-' + text : text;
}

long g_living = 0;
long g_left = -1;

// Counts one that is being made.
long CountOne() {
  if (g_left >= 0 && g_left-- == 0) throw std::bad_alloc();
  return ++g_living;
}

std::string RealText(double number) {
  std::ostringstream out;
  out.imbue(std::locale::classic());
  out << number;
  return out.str();
}

}  // namespace

void InterruptValues(long allowed) {
  g_allowed = allowed;
  g_interrupted = false;
}

bool AreInterrupted() { return g_interrupted; }

struct TCIMValue::TContent {
  using THeldValue = std::variant<std::uint64_t, std::int64_t, double, std::string, TCIMDateTime,
                                  TCIMReference, std::vector<TCIMValue>>;

  ECIMType type;
  bool null;
  THeldValue held;

  static TContent Of(ECIMType type, THeldValue held) { return {type, false, std::move(held)}; }
  static TContent Null(ECIMType type) { return {type, true, std::uint64_t{0}}; }
};

TCIMValue::TCIMType::TCIMType(ECIMType type)
    : m_element(ElementOf(type)), m_array((type & kCIMArray) != 0) {}
TCIMValue::TCIMType::TCIMType(const TCIMType&) = default;
TCIMValue::TCIMType& TCIMValue::TCIMType::operator=(const TCIMType&) = default;
TCIMValue::TCIMType::~TCIMType() = default;
TCIMValue::TCIMType::operator ECIMType() const { return m_array ? ArrayOf(m_element) : m_element; }

std::ostream& operator<<(std::ostream& out, const TCIMValue::TCIMType& type) {
  const ECIMType code = type;
  return out << kTypeNames[ElementOf(code)] << (code == ElementOf(code) ? "" : "[]");
}

TCIMValue::TCIMValue(const TContent& content)
    : m_self((Use(), this)),
      m_typeName(kTypeNames[ElementOf(content.type)]),
      m_content(new TContent(content)) {
  try {
    CountOne();
  } catch (...) {
    delete m_content;
    throw;
  }
}

long TCIMValue::Living() { return g_living; }
void TCIMValue::FailAfter(long count) { g_left = count; }

TCIMValue::TCIMValue() : TCIMValue(TContent::Null(kCIMNone)) {}
TCIMValue::TCIMValue(bool value) : TCIMValue(TContent::Of(kCIMBoolean, std::uint64_t{value})) {}
TCIMValue::TCIMValue(std::uint16_t value)
    : TCIMValue(TContent::Of(kCIMUInt16, std::uint64_t{value})) {}
TCIMValue::TCIMValue(const std::string& value) : TCIMValue(TContent::Of(kCIMString, value)) {}
TCIMValue::TCIMValue(const TCIMDateTime& value) : TCIMValue(TContent::Of(kCIMDateTime, value)) {}
TCIMValue::TCIMValue(const TCIMValue& other) : TCIMValue(other.Content()) {}

TCIMValue::TCIMValue(std::uint8_t value)
    : TCIMValue(TContent::Of(kCIMUInt8, std::uint64_t{value})) {}
TCIMValue::TCIMValue(std::int8_t value) : TCIMValue(TContent::Of(kCIMSInt8, std::int64_t{value})) {}
TCIMValue::TCIMValue(std::int16_t value)
    : TCIMValue(TContent::Of(kCIMSInt16, std::int64_t{value})) {}
TCIMValue::TCIMValue(std::uint32_t value)
    : TCIMValue(TContent::Of(kCIMUInt32, std::uint64_t{value})) {}
TCIMValue::TCIMValue(std::int32_t value)
    : TCIMValue(TContent::Of(kCIMSInt32, std::int64_t{value})) {}
TCIMValue::TCIMValue(std::uint64_t value) : TCIMValue(TContent::Of(kCIMUInt64, value)) {}
TCIMValue::TCIMValue(std::int64_t value) : TCIMValue(TContent::Of(kCIMSInt64, value)) {}
TCIMValue::TCIMValue(float value) : TCIMValue(TContent::Of(kCIMReal32, double{value})) {}
TCIMValue::TCIMValue(double value) : TCIMValue(TContent::Of(kCIMReal64, value)) {}
TCIMValue::TCIMValue(char16_t value) : TCIMValue(TContent::Of(kCIMChar16, std::uint64_t{value})) {}
TCIMValue::TCIMValue(const char* value)
    : TCIMValue(value ? TContent::Of(kCIMString, std::string(value)) : TContent::Null(kCIMString)) {
}
TCIMValue::TCIMValue(const TCIMReference& value) : TCIMValue(TContent::Of(kCIMReference, value)) {}
TCIMValue::TCIMValue(ECIMType element, std::vector<TCIMValue> elements)
    : TCIMValue(TContent::Of(ArrayOf(element), std::move(elements))) {
  for (TCIMValue& value : std::get<std::vector<TCIMValue>>(m_content->held))
    if (value.IsNull())
      value = Null(element);
    else if (value.Content().type != element)
      throw THAVException(kHAVTypesDiffer);
}

TCIMValue TCIMValue::Null(ECIMType type) { return TCIMValue(TContent::Null(type)); }

TCIMValue TCIMValue::NullReference(const boost::shared_ptr<ICIMClass>& referenced) {
  TCIMReference path({}, {});
  if (referenced) path.SetClass(referenced);
  return TCIMValue(TContent{kCIMReference, true, path});
}

TCIMValue::~TCIMValue() {
  RequireMade();
  delete m_content;
  m_self = nullptr;
  --g_living;
}

TCIMValue& TCIMValue::operator=(const TCIMValue& other) {
  auto* const content = new TContent(other.Content());
  m_typeName = other.m_typeName;
  delete std::exchange(m_content, content);
  return *this;
}

void TCIMValue::RequireMade() const {
  if (m_self == this) return;
  std::cerr << "a value is used where none was constructed\n";
  std::abort();
}

const TCIMValue::TContent& TCIMValue::Content() const {
  RequireMade();
  Use();
  return *m_content;
}

template <class T>
const T& TCIMValue::Read(ECIMType type) const {
  const TContent& content = Content();
  if (content.null || content.type != type) throw THAVException(kHAVTypesDiffer);
  return std::get<T>(content.held);
}

bool TCIMValue::IsNull() const { return Content().null; }
bool TCIMValue::IsArray() const { return (Content().type & kCIMArray) != 0; }
bool TCIMValue::IsReference() const { return Content().type == kCIMReference && !IsNull(); }
TCIMValue::TCIMType TCIMValue::GetType() const { return Content().type; }

boost::shared_ptr<ICIMClass> TCIMValue::GetReferencedClass() const {
  if (Content().type != kCIMReference) throw THAVException(kHAVTypesDiffer);
  const auto* const path = std::get_if<TCIMReference>(&Content().held);
  return path ? path->Class() : nullptr;
}

std::string TCIMValue::GetReferencedClassName() const {
  if (Content().type != kCIMReference) throw THAVException(kHAVTypesDiffer);
  const auto* const path = std::get_if<TCIMReference>(&Content().held);
  return path ? path->GetClassName() : std::string();
}

std::string TCIMValue::ToString(unsigned char radix) const {
  const TContent& content = Content();
  const unsigned base = radix >= 2 && radix <= 36 ? radix : 10;
  if (content.null) return "NULL";
  if (content.type == kCIMBoolean) return static_cast<bool>(*this) ? "TRUE" : "FALSE";
  if (content.type == kCIMChar16)
    return std::string(1, static_cast<char>(std::get<std::uint64_t>(content.held)));
  if (const auto* number = std::get_if<std::uint64_t>(&content.held))
    return IntegerText(*number, false, base);
  if (const auto* number = std::get_if<std::int64_t>(&content.held))
    return IntegerText(
        *number < 0 ? 0 - static_cast<std::uint64_t>(*number) : static_cast<std::uint64_t>(*number),
        *number < 0, base);
  if (const auto* number = std::get_if<double>(&content.held)) return RealText(*number);
  if (const auto* text = std::get_if<std::string>(&content.held)) return *text;
  if (const auto* time = std::get_if<TCIMDateTime>(&content.held)) return time->ToUIString();
  if (const auto* path = std::get_if<TCIMReference>(&content.held)) return path->PathText(true);
  std::string text = "{";
  for (const TCIMValue& element : std::get<std::vector<TCIMValue>>(content.held))
    text += (text.size() > 1 ? ", " : "") + element.ToString(radix);
  return text + '}';
}

TCIMValue::operator bool() const { return Read<std::uint64_t>(kCIMBoolean) != 0; }
TCIMValue::operator std::uint8_t() const {
  return static_cast<std::uint8_t>(Read<std::uint64_t>(kCIMUInt8));
}
TCIMValue::operator std::uint16_t() const {
  return static_cast<std::uint16_t>(Read<std::uint64_t>(kCIMUInt16));
}
TCIMValue::operator std::uint32_t() const {
  return static_cast<std::uint32_t>(Read<std::uint64_t>(kCIMUInt32));
}
TCIMValue::operator std::uint64_t() const { return Read<std::uint64_t>(kCIMUInt64); }
TCIMValue::operator std::int8_t() const {
  return static_cast<std::int8_t>(Read<std::int64_t>(kCIMSInt8));
}
TCIMValue::operator std::int16_t() const {
  return static_cast<std::int16_t>(Read<std::int64_t>(kCIMSInt16));
}
TCIMValue::operator std::int32_t() const {
  return static_cast<std::int32_t>(Read<std::int64_t>(kCIMSInt32));
}
TCIMValue::operator std::int64_t() const { return Read<std::int64_t>(kCIMSInt64); }
TCIMValue::operator std::string() const { return Read<std::string>(kCIMString); }
TCIMValue::operator TCIMDateTime() const { return Read<TCIMDateTime>(kCIMDateTime); }
TCIMValue::operator TCIMReference() const { return Read<TCIMReference>(kCIMReference); }
TCIMValue::operator std::vector<TCIMValue>() const {
  return Read<std::vector<TCIMValue>>(IsArray() ? GetType() : TCIMType(kCIMNone));
}

// Negative, zero or positive; by type, NULL first, then content.
int TCIMValue::Compare(const TCIMValue& a, const TCIMValue& b) {
  const TContent& left = a.Content();
  const TContent& right = b.Content();
  if (left.type != right.type) return left.type < right.type ? -1 : 1;
  if (left.null != right.null) return left.null ? -1 : 1;
  if (left.null && left.type != kCIMReference) return 0;
  if (left.null) return a.GetReferencedClassName().compare(b.GetReferencedClassName());
  if (const auto* number = std::get_if<std::uint64_t>(&left.held)) {
    const auto other = std::get<std::uint64_t>(right.held);
    return *number == other ? 0 : *number < other ? -1 : 1;
  }
  if (const auto* number = std::get_if<std::int64_t>(&left.held)) {
    const auto other = std::get<std::int64_t>(right.held);
    return *number == other ? 0 : *number < other ? -1 : 1;
  }
  if (const auto* number = std::get_if<double>(&left.held)) {
    const auto other = std::get<double>(right.held);
    return *number < other ? -1 : other < *number ? 1 : 0;
  }
  if (const auto* elements = std::get_if<std::vector<TCIMValue>>(&left.held)) {
    const auto& others = std::get<std::vector<TCIMValue>>(right.held);
    for (std::size_t i = 0; i < elements->size() && i < others.size(); ++i)
      if (const int order = Compare((*elements)[i], others[i])) return order;
    return elements->size() == others.size() ? 0 : elements->size() < others.size() ? -1 : 1;
  }
  return a.ToString(10).compare(b.ToString(10));
}

bool TCIMValue::operator==(const TCIMValue& other) const { return Compare(*this, other) == 0; }
bool TCIMValue::operator!=(const TCIMValue& other) const { return Compare(*this, other) != 0; }
bool TCIMValue::operator<(const TCIMValue& other) const { return Compare(*this, other) < 0; }

}  // namespace NORVHAV20
