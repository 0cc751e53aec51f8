#include "havcore/TCIMValue.h"

#include <algorithm>
#include <cmath>

#include "AsciiFold.h"
#include "TCIMValueShared.h"
#include "havcore/ICIMClass.h"
#include "havcore/THAVException.h"

namespace NORVHAV20 {

static_assert(sizeof(TCIMValue) == 16, "values are kept by the million");

TCIMValue::TCIMValue(bool value) noexcept : m_type(kCIMBoolean), m_null(false) {
  m_content.bits = value;
}
TCIMValue::TCIMValue(std::uint8_t value) noexcept : m_type(kCIMUInt8), m_null(false) {
  m_content.bits = value;
}
TCIMValue::TCIMValue(std::int8_t value) noexcept : m_type(kCIMSInt8), m_null(false) {
  m_content.integer = value;
}
TCIMValue::TCIMValue(std::uint16_t value) noexcept : m_type(kCIMUInt16), m_null(false) {
  m_content.bits = value;
}
TCIMValue::TCIMValue(std::int16_t value) noexcept : m_type(kCIMSInt16), m_null(false) {
  m_content.integer = value;
}
TCIMValue::TCIMValue(std::uint32_t value) noexcept : m_type(kCIMUInt32), m_null(false) {
  m_content.bits = value;
}
TCIMValue::TCIMValue(std::int32_t value) noexcept : m_type(kCIMSInt32), m_null(false) {
  m_content.integer = value;
}
TCIMValue::TCIMValue(std::uint64_t value) noexcept : m_type(kCIMUInt64), m_null(false) {
  m_content.bits = value;
}
TCIMValue::TCIMValue(std::int64_t value) noexcept : m_type(kCIMSInt64), m_null(false) {
  m_content.integer = value;
}
TCIMValue::TCIMValue(float value) noexcept : m_type(kCIMReal32), m_null(false) {
  m_content.real32 = value;
}
TCIMValue::TCIMValue(double value) noexcept : m_type(kCIMReal64), m_null(false) {
  m_content.real64 = value;
}
TCIMValue::TCIMValue(char16_t value) noexcept : m_type(kCIMChar16), m_null(false) {
  m_content.bits = value;
}

TCIMValue::TCIMValue(const std::string& value) : m_type(kCIMString), m_null(false) {
  m_content.shared = TSharedText::Make(value);
  m_shares = true;
}

TCIMValue::TCIMValue(const char* value)
    : TCIMValue(value ? TCIMValue(std::string(value)) : Null(kCIMString)) {}

TCIMValue::TCIMValue(const TCIMDateTime& value) : m_type(kCIMDateTime), m_null(false) {
  m_content.shared = new TSharedDateTime(value);
  m_shares = true;
}

TCIMValue::TCIMValue(const TCIMReference& value) : m_type(kCIMReference), m_null(false) {
  m_content.shared = new TSharedReference(value);
  m_shares = true;
}

TCIMValue::TCIMValue(ECIMType element, std::vector<TCIMValue> elements)
    : m_type(static_cast<std::uint8_t>(ArrayOf(element))), m_null(false) {
  if (element <= kCIMNone || element >= kCIMArray) throw THAVException(kHAVTypesDiffer);
  for (TCIMValue& each : elements) {
    if (each.m_type == element) continue;
    if (!each.m_null) throw THAVException(kHAVTypesDiffer);
    each = Null(element);
  }
  m_content.shared = new TSharedArray(std::move(elements));
  m_shares = true;
}

TCIMValue::TCIMValue(ECIMType type, bool null, TContent content) noexcept
    : m_content(content), m_type(static_cast<std::uint8_t>(type)), m_null(null) {}

TCIMValue TCIMValue::Null(TCIMType type) noexcept { return {type, true, TContent()}; }

TCIMValue TCIMValue::NullReference(const boost::shared_ptr<ICIMClass>& referenced) {
  TCIMValue value = Null(kCIMReference);
  if (!referenced) return value;
  TCIMReference reference({}, {});
  reference.SetClass(referenced);
  value.m_content.shared = new TSharedReference(reference);
  value.m_shares = true;
  return value;
}

// References nest as deep as their keys do, deeper than a stack: so what ends with something
// else waits in a list. The first value of each is the link to the next, so that there is no
// need of memory.
struct TCIMValue::TEnding {
  ECIMType type;
  TShared* shared;

  std::size_t Size() const noexcept {
    return type == kCIMReference ? Reference().m_keys.size() : Elements().size();
  }
  TCIMValue& At(std::size_t index) const noexcept {
    return type == kCIMReference ? Reference().m_keys[index].second : Elements()[index];
  }
  static bool MayHold(const TCIMValue& value) noexcept {
    return value.m_shares && value.m_type != kCIMString && value.m_type != kCIMDateTime;
  }
  bool HoldsHolders() const noexcept {
    for (std::size_t i = 0; i < Size(); ++i)
      if (MayHold(At(i))) return true;
    return false;
  }
  void Free() const noexcept {
    if (type == kCIMReference)
      delete static_cast<TSharedReference*>(shared);
    else
      delete static_cast<TSharedArray*>(shared);
  }
  TCIMReference& Reference() const noexcept {
    return static_cast<TSharedReference*>(shared)->value;
  }
  std::vector<TCIMValue>& Elements() const noexcept {
    return static_cast<TSharedArray*>(shared)->value;
  }

  // Takes from `value` what ends with it and holds values of its own, if there is anything.
  static TEnding TakenFrom(TCIMValue& value) noexcept {
    if (!MayHold(value)) return {};
    value.m_shares = false;
    const TEnding taken{static_cast<ECIMType>(value.m_type), value.m_content.shared};
    if (taken.shared->references.fetch_sub(1, std::memory_order_acq_rel) != 1) return {};
    return taken;
  }
  // Puts this before `list`, and before it what its first value holds, and so on.
  void PutBefore(TEnding& list) const noexcept {
    for (TEnding next = *this; next.shared;) {
      const TEnding current = next;
      if (current.Size() == 0) return current.Free();
      TCIMValue& first = current.At(0);
      next = TakenFrom(first);
      first = Null(list.type);
      first.m_content.shared = list.shared;
      list = current;
    }
  }
};

void TCIMValue::Destroy(ECIMType type, TShared* shared) noexcept {
  if (type == kCIMString) return TSharedText::Destroy(static_cast<TSharedText*>(shared));
  if (type == kCIMDateTime) return delete static_cast<TSharedDateTime*>(shared);
  const TEnding ending{type, shared};
  if (type != kCIMReference) return ending.Free();  // an array: its elements end one by one
  if (!ending.HoldsHolders()) return ending.Free();
  TEnding list{};
  ending.PutBefore(list);
  while (list.shared) {
    const TEnding current = list;
    list = {static_cast<ECIMType>(current.At(0).m_type), current.At(0).m_content.shared};
    for (std::size_t i = 1; i < current.Size(); ++i)
      TEnding::TakenFrom(current.At(i)).PutBefore(list);
    current.Free();
  }
}

void TCIMValue::Require(ECIMType type) const {
  if (m_type != type || m_null) throw THAVException(kHAVTypesDiffer);
}

boost::shared_ptr<ICIMClass> TCIMValue::GetReferencedClass() const {
  if (m_type != kCIMReference) throw THAVException(kHAVTypesDiffer);
  if (!m_shares) return {};
  return Shared<TSharedReference>().value.GetClass();
}

std::string TCIMValue::GetReferencedClassName() const {
  if (m_type != kCIMReference) throw THAVException(kHAVTypesDiffer);
  if (!m_shares) return {};
  return Shared<TSharedReference>().value.GetClassName();
}

TCIMValue::operator bool() const {
  Require(kCIMBoolean);
  return m_content.bits != 0;
}
TCIMValue::operator std::uint8_t() const {
  Require(kCIMUInt8);
  return static_cast<std::uint8_t>(m_content.bits);
}
TCIMValue::operator std::int8_t() const {
  Require(kCIMSInt8);
  return static_cast<std::int8_t>(m_content.integer);
}
TCIMValue::operator std::uint16_t() const {
  Require(kCIMUInt16);
  return static_cast<std::uint16_t>(m_content.bits);
}
TCIMValue::operator std::int16_t() const {
  Require(kCIMSInt16);
  return static_cast<std::int16_t>(m_content.integer);
}
TCIMValue::operator std::uint32_t() const {
  Require(kCIMUInt32);
  return static_cast<std::uint32_t>(m_content.bits);
}
TCIMValue::operator std::int32_t() const {
  Require(kCIMSInt32);
  return static_cast<std::int32_t>(m_content.integer);
}
TCIMValue::operator std::uint64_t() const {
  Require(kCIMUInt64);
  return m_content.bits;
}
TCIMValue::operator std::int64_t() const {
  Require(kCIMSInt64);
  return m_content.integer;
}
TCIMValue::operator float() const {
  Require(kCIMReal32);
  return m_content.real32;
}
TCIMValue::operator double() const {
  Require(kCIMReal64);
  return m_content.real64;
}
TCIMValue::operator char16_t() const {
  Require(kCIMChar16);
  return static_cast<char16_t>(m_content.bits);
}
TCIMValue::operator std::string() const {
  return std::string(static_cast<std::string_view>(*this));
}
TCIMValue::operator std::string_view() const {
  Require(kCIMString);
  return Shared<TSharedText>().Text();
}
TCIMValue::operator const TCIMDateTime&() const {
  Require(kCIMDateTime);
  return Shared<TSharedDateTime>().value;
}
TCIMValue::operator const TCIMReference&() const {
  Require(kCIMReference);
  return Shared<TSharedReference>().value;
}
TCIMValue::operator const std::vector<TCIMValue>&() const {
  if (!IsArray() || m_null) throw THAVException(kHAVTypesDiffer);
  return Shared<TSharedArray>().value;
}

namespace {

template <class T>
int CompareOf(const T& a, const T& b) {
  if (a == b) return 0;
  return a < b ? -1 : 1;
}

template <class T>
int CompareReals(T a, T b) {
  if (std::isnan(b)) return std::isnan(a) ? 0 : -1;
  return CompareOf(a, b);  // which puts what is no number last
}

}  // namespace

int TCIMValue::Compare(const TCIMValue& a, const TCIMValue& b) {
  if (a.m_type != b.m_type) return CompareOf(a.m_type, b.m_type);
  if (a.m_null != b.m_null) return a.m_null ? -1 : 1;
  if (a.m_null) {
    if (a.m_type != kCIMReference) return 0;
    return CompareFolded(a.GetReferencedClassName(), b.GetReferencedClassName());
  }
  if (a.m_shares && a.m_content.shared == b.m_content.shared) return 0;
  switch (a.m_type) {
    case kCIMSInt8:
    case kCIMSInt16:
    case kCIMSInt32:
    case kCIMSInt64: return CompareOf(a.m_content.integer, b.m_content.integer);
    case kCIMReal32: return CompareReals(a.m_content.real32, b.m_content.real32);
    case kCIMReal64: return CompareReals(a.m_content.real64, b.m_content.real64);
    case kCIMString: return a.Shared<TSharedText>().Text().compare(b.Shared<TSharedText>().Text());
    case kCIMDateTime:
      return CompareOf(a.Shared<TSharedDateTime>().value, b.Shared<TSharedDateTime>().value);
    case kCIMReference:
      return TCIMReference::Compare(a.Shared<TSharedReference>().value,
                                    b.Shared<TSharedReference>().value);
    default: break;
  }
  if (!a.IsArray()) return CompareOf(a.m_content.bits, b.m_content.bits);
  return CompareElements(a.Shared<TSharedArray>().value, b.Shared<TSharedArray>().value);
}

int TCIMValue::CompareElements(const std::vector<TCIMValue>& a, const std::vector<TCIMValue>& b) {
  const std::size_t common = std::min(a.size(), b.size());
  for (std::size_t i = 0; i < common; ++i)
    if (const int elements = Compare(a[i], b[i])) return elements;
  return CompareOf(a.size(), b.size());
}

bool operator==(const TCIMValue& a, const TCIMValue& b) { return TCIMValue::Compare(a, b) == 0; }

bool operator<(const TCIMValue& a, const TCIMValue& b) { return TCIMValue::Compare(a, b) < 0; }

}  // namespace NORVHAV20
