// TCIMValue of the foreign core: what the plug-in may ask of any host core, and nothing else;
// the host's own programs see the second half as well. Laid out as no other core does it: a
// virtual table, content that every copy copies, an object that knows where it stands.
//
// Ownership: owns its content. A reference holds class and namespace weakly.
// Threads:   distinct objects may be used from distinct threads.
// Errors:    THAVException 14 when a value is read as a type that it does not have. Moving the
//            bytes of a value, or using one that was not constructed, ends the process.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>
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
  class HAVCORE_API TCIMType {
   public:
    TCIMType(ECIMType type);
    TCIMType(const TCIMType& other);
    TCIMType& operator=(const TCIMType& other);
    virtual ~TCIMType();
    operator ECIMType() const;

   private:
    ECIMType m_element;
    bool m_array;
  };

  TCIMValue();
  TCIMValue(bool value);
  TCIMValue(std::uint16_t value);
  TCIMValue(const std::string& value);
  TCIMValue(const TCIMDateTime& value);
  TCIMValue(const TCIMValue& other);
  TCIMValue& operator=(const TCIMValue& other);
  virtual ~TCIMValue();

  bool operator==(const TCIMValue& other) const;
  bool operator!=(const TCIMValue& other) const;
  bool operator<(const TCIMValue& other) const;

  bool IsNull() const;
  bool IsArray() const;
  bool IsReference() const;
  TCIMType GetType() const;
  boost::shared_ptr<ICIMClass> GetReferencedClass() const;
  std::string ToString(unsigned char radix) const;

  // Everything that is read is a copy.
  explicit operator bool() const;
  explicit operator std::uint8_t() const;
  explicit operator std::uint16_t() const;
  explicit operator std::uint32_t() const;
  explicit operator std::uint64_t() const;
  explicit operator std::string() const;
  explicit operator TCIMReference() const;
  explicit operator std::vector<TCIMValue>() const;

#if defined(FOREIGN_CORE_HOST)
  TCIMValue(std::uint8_t value);
  TCIMValue(std::int8_t value);
  TCIMValue(std::int16_t value);
  TCIMValue(std::uint32_t value);
  TCIMValue(std::int32_t value);
  TCIMValue(std::uint64_t value);
  TCIMValue(std::int64_t value);
  TCIMValue(float value);
  TCIMValue(double value);
  TCIMValue(char16_t value);
  TCIMValue(const char* value);
  TCIMValue(const TCIMReference& value);
  TCIMValue(ECIMType element, std::vector<TCIMValue> elements);
  static TCIMValue Null(ECIMType type);
  static TCIMValue NullReference(const boost::shared_ptr<ICIMClass>& referenced);
  explicit operator std::int8_t() const;
  explicit operator std::int16_t() const;
  explicit operator std::int32_t() const;
  explicit operator std::int64_t() const;
  explicit operator TCIMDateTime() const;
  std::string GetReferencedClassName() const;

  // How many values there are, and after how many more the making of one lacks memory; negative:
  // never.
  static long Living();
  static void FailAfter(long count);
#endif

 private:
  struct TContent;

  explicit TCIMValue(const TContent& content);
  // What a value of this type holds that is not NULL; throws 14 for any other.
  template <class T>
  const T& Read(ECIMType type) const;
  void RequireMade() const;
  const TContent& Content() const;
  static int Compare(const TCIMValue& a, const TCIMValue& b);

  const TCIMValue* m_self;
  std::string m_typeName;
  TContent* m_content;
};

HAVCORE_API std::ostream& operator<<(std::ostream& out, const TCIMValue::TCIMType& type);

}  // namespace NORVHAV20
