// TCIMValue: one CIM value: any of the fifteen CIM types or an array of one, or NULL.
//
// Ownership: a value. Numbers, booleans, characters and NULL stand in the object itself,
//            so that copying one allocates nothing; text, datetimes, references and arrays
//            are immutable and shared between copies. A reference holds its class and its
//            namespace weakly.
// Threads:   distinct objects may be used from distinct threads, also when they share.
// Errors:    THAVException 14 when a value is read as a type that it does not have; NULL
//            has nothing to read, so reading it throws 14 as well.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "havcore/ECIMType.h"
#include "havcore/Export.h"

namespace NORVHAV20 {

class ICIMClass;
class TCIMDateTime;
class TCIMReference;

class HAVCORE_API TCIMValue {
 public:
  // A type code that converts from and to ECIMType and streams as MOF writes it
  // ("uint32", "string[]"; "none" for kCIMNone).
  class HAVCORE_API TCIMType {
   public:
    TCIMType(ECIMType type) noexcept : m_type(type) {}
    operator ECIMType() const noexcept { return m_type; }
    friend HAVCORE_API std::ostream& operator<<(std::ostream& out, const TCIMType& type);

   private:
    ECIMType m_type;
  };

  // NULL without a type.
  TCIMValue() noexcept {}  // not defaulted: a const object may be made without initialiser

  TCIMValue(bool value) noexcept;
  TCIMValue(std::uint8_t value) noexcept;
  TCIMValue(std::int8_t value) noexcept;
  TCIMValue(std::uint16_t value) noexcept;
  TCIMValue(std::int16_t value) noexcept;
  TCIMValue(std::uint32_t value) noexcept;
  TCIMValue(std::int32_t value) noexcept;
  TCIMValue(std::uint64_t value) noexcept;
  TCIMValue(std::int64_t value) noexcept;
  TCIMValue(float value) noexcept;
  TCIMValue(double value) noexcept;
  TCIMValue(char16_t value) noexcept;
  TCIMValue(const std::string& value);
  TCIMValue(const char* value);  // a null pointer: NULL of type string
  TCIMValue(const TCIMDateTime& value);
  TCIMValue(const TCIMReference& value);
  // No pointer but text becomes a value by way of bool.
  template <class T>
  TCIMValue(T*) = delete;

  // An array. Throws 14 when `element` is no scalar type, or an element is neither of it nor
  // NULL; a NULL of no type, or of another, takes the element type.
  TCIMValue(ECIMType element, std::vector<TCIMValue> elements);

  // NULL of a type, and the NULL reference to a class (an empty pointer: to any class).
  static TCIMValue Null(TCIMType type) noexcept;
  static TCIMValue NullReference(const boost::shared_ptr<ICIMClass>& referenced);

  TCIMValue(const TCIMValue& other) noexcept;
  TCIMValue(TCIMValue&& other) noexcept;
  TCIMValue& operator=(const TCIMValue& other) noexcept;
  TCIMValue& operator=(TCIMValue&& other) noexcept;
  ~TCIMValue();

  bool IsNull() const noexcept { return m_null; }
  bool IsArray() const noexcept { return (m_type & kCIMArray) != 0; }
  // True for a scalar of type reference that is not NULL.
  bool IsReference() const noexcept { return m_type == kCIMReference && !m_null; }
  TCIMType GetType() const noexcept { return static_cast<ECIMType>(m_type); }

  // Returns the class of a reference value, NULL or not: the class itself while it lives,
  // else what its name resolves to in the reference's namespace. Empty when there is none.
  // Throws 14 when the value is no reference.
  boost::shared_ptr<ICIMClass> GetReferencedClass() const;
  // The name of that class, which outlives the class. Empty when the reference has none.
  std::string GetReferencedClassName() const;

  // The value as text: integers in `radix` (2 to 36, lower-case digits; others count as
  // 10), TRUE and FALSE, "NULL", the CIM text of datetimes, the full path of references,
  // strings as they are, characters in UTF-8, reals as short as they read back ("inf", "nan"
  // where there is no number), arrays as "{a, b}". Independent of the global locale.
  std::string ToString(unsigned char radix) const;

  explicit operator bool() const;
  explicit operator std::uint8_t() const;
  explicit operator std::int8_t() const;
  explicit operator std::uint16_t() const;
  explicit operator std::int16_t() const;
  explicit operator std::uint32_t() const;
  explicit operator std::int32_t() const;
  explicit operator std::uint64_t() const;
  explicit operator std::int64_t() const;
  explicit operator float() const;
  explicit operator double() const;
  explicit operator char16_t() const;
  explicit operator std::string() const;
  // These refer into the value, and are good until it is assigned to or destroyed.
  explicit operator std::string_view() const;
  explicit operator const TCIMDateTime&() const;
  explicit operator const TCIMReference&() const;
  explicit operator const std::vector<TCIMValue>&() const;

  // Equal: same type, both NULL or neither, same content (references: same full path, NULL
  // references: same class name). Ordered by type, NULL first, then content; a NaN orders
  // after every number and equals itself.
  friend HAVCORE_API bool operator==(const TCIMValue& a, const TCIMValue& b);
  friend HAVCORE_API bool operator<(const TCIMValue& a, const TCIMValue& b);
  friend bool operator!=(const TCIMValue& a, const TCIMValue& b) { return !(a == b); }

 private:
  friend class TCIMReference;

  // What copies share. The concrete kinds are private to the implementation.
  struct TShared {
    std::atomic<std::uint32_t> references{1};
  };
  struct TSharedText;
  struct TSharedDateTime;
  struct TSharedReference;
  struct TSharedArray;

  union TContent {
    std::uint64_t bits = 0;  // booleans, characters and unsigned integers
    std::int64_t integer;
    float real32;
    double real64;
    TShared* shared;
  };

  TCIMValue(ECIMType type, bool null, TContent content) noexcept;

  void Require(ECIMType type) const;
  // Negative, zero or positive, in the order of operator<.
  static int Compare(const TCIMValue& a, const TCIMValue& b);
  static int CompareElements(const std::vector<TCIMValue>& a, const std::vector<TCIMValue>& b);
  // `nesting`: within how many object paths the text is to stand.
  void AppendTo(std::string& out, int radix, unsigned nesting) const;
  void AppendElementsTo(std::string& out, int radix, unsigned nesting) const;
  template <class T>
  const T& Shared() const noexcept {
    return static_cast<const T&>(*m_content.shared);
  }
  static void Destroy(ECIMType type, TShared* shared) noexcept;
  // What ends because nobody else shared it, and holds values that may end with it.
  struct TEnding;

  TContent m_content;
  std::uint8_t m_type = kCIMNone;
  bool m_null = true;
  bool m_shares = false;
};

inline TCIMValue::TCIMValue(const TCIMValue& other) noexcept
    : m_content(other.m_content),
      m_type(other.m_type),
      m_null(other.m_null),
      m_shares(other.m_shares) {
  if (m_shares) m_content.shared->references.fetch_add(1, std::memory_order_relaxed);
}

inline TCIMValue::TCIMValue(TCIMValue&& other) noexcept
    : m_content(other.m_content),
      m_type(other.m_type),
      m_null(other.m_null),
      m_shares(other.m_shares) {
  other.m_null = true;
  other.m_shares = false;
}

inline TCIMValue::~TCIMValue() {
  if (m_shares && m_content.shared->references.fetch_sub(1, std::memory_order_acq_rel) == 1)
    Destroy(static_cast<ECIMType>(m_type), m_content.shared);
}

inline TCIMValue& TCIMValue::operator=(TCIMValue&& other) noexcept {
  std::swap(m_content, other.m_content);
  std::swap(m_type, other.m_type);
  std::swap(m_null, other.m_null);
  std::swap(m_shares, other.m_shares);
  return *this;
}

inline TCIMValue& TCIMValue::operator=(const TCIMValue& other) noexcept {
  return *this = TCIMValue(other);
}

}  // namespace NORVHAV20
