// HostServices: what the plug-in uses of a host core beyond what every host core offers.
//
// Every core has the value types with their constructors, comparisons and conversions, object
// paths, datetimes, the log, the provider manager and the status texts. The plug-in asks for
// no more than that, with the exceptions below: each is used where the headers of the core at
// hand offer it, and done without otherwise.
//
//   service                                     without it
//   what a value holds, by reference or view    a copy is made
//   TCIMValue::NullReference                    status 1: a host without it declares references
//                                               as properties whose default it makes itself; and
//                                               one to a class that is gone counts as one to none
//   TCIMReference::CopyPath                     the path is made, and its text
//   TCIMReference::GetNamespace                 no index of links is made; walks answer
//
// Errors: THAVException 14 where a value is read as a type that it does not have; what the
//         core throws passes through.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "havcore/TCIMReference.h"
#include "havcore/TCIMValue.h"
#include "inmem/values/Failure.h"

namespace NORVHAV20 {

class ICIMClass;
class ICIMNamespace;

namespace host {

// Whether TCIMValue has a conversion to exactly this type.
template <class To, class Value, class = void>
struct TConverts : std::false_type {};
template <class To, class Value>
struct TConverts<To, Value, std::void_t<decltype(std::declval<const Value&>().operator To())>>
    : std::true_type {};

template <class Value, class = void>
struct TMakesNullReferences : std::false_type {};
template <class Value>
struct TMakesNullReferences<Value, std::void_t<decltype(Value::NullReference(
                                       std::declval<const boost::shared_ptr<ICIMClass>&>()))>>
    : std::true_type {};

template <class Reference, class = void>
struct TCopiesPath : std::false_type {};
template <class Reference>
struct TCopiesPath<Reference, std::void_t<typename Reference::TKeyView,
                                          decltype(std::declval<const Reference&>().CopyPath(
                                              std::declval<char*>(), std::size_t{}))>>
    : std::true_type {};

template <class Reference, class = void>
struct TTellsNamespace : std::false_type {};
template <class Reference>
struct TTellsNamespace<Reference,
                       std::void_t<decltype(std::declval<const Reference&>().GetNamespace())>>
    : std::true_type {};

}  // namespace host

// What reading a T from a value gives: what the value holds, good until it is assigned to or
// destroyed, or a copy. To be kept in a `const T&`, which keeps a copy alive.
template <class T, class Value = TCIMValue>
using THeld = std::conditional_t<host::TConverts<const T&, Value>::value, const T&, T>;

template <class T, class Value>
THeld<T, Value> Held(const Value& value) {
  return static_cast<THeld<T, Value>>(value);
}

// The same for text.
template <class Value>
using THeldText = std::conditional_t<host::TConverts<std::string_view, Value>::value,
                                     std::string_view, std::string>;

template <class Value>
THeldText<Value> HeldText(const Value& value) {
  return static_cast<THeldText<Value>>(value);
}

// The elements of an array value, for as long as this object lives.
class THeldElements {
 public:
  // Throws 14 when `array` is none.
  explicit THeldElements(TCIMValue array)
      : m_array(std::move(array)), m_elements(Held<std::vector<TCIMValue>>(m_array)) {}
  THeldElements(const THeldElements&) = delete;
  THeldElements& operator=(const THeldElements&) = delete;

  const std::vector<TCIMValue>& operator*() const noexcept { return m_elements; }
  const std::vector<TCIMValue>* operator->() const noexcept { return &m_elements; }

 private:
  TCIMValue m_array;
  THeld<std::vector<TCIMValue>> m_elements;
};

// Returns the NULL reference to a class. Throws 1 where the core makes none.
template <class Value = TCIMValue>
Value NullReferenceTo(const boost::shared_ptr<ICIMClass>& referenced) {
  if constexpr (host::TMakesNullReferences<Value>::value)
    return Value::NullReference(referenced);
  else
    Throw(kHAVNotSupported);
}

// Whether a reference whose class is not there was declared to none in the first place.
template <class Value>
bool IsToNoClass(const Value& declared) {
  if constexpr (host::TMakesNullReferences<Value>::value)
    return declared == Value::NullReference({});
  else
    return true;
}

// The text of an object path, mostly in no memory but the object's own.
class TPathText {
 public:
  TPathText() noexcept {}
  template <class Reference>
  explicit TPathText(const Reference& path) {
    Set(path);
  }
  TPathText(const TPathText&) = delete;
  TPathText& operator=(const TPathText&) = delete;

  // Replaces the text, which was empty.
  template <class Reference>
  void Set(const Reference& path) {
    if constexpr (host::TCopiesPath<Reference>::value)
      m_text = std::string_view(m_short, path.CopyPath(m_short, sizeof(m_short)));
    if (!m_text.empty()) return;
    m_long = path.GetPath();
    m_text = m_long;
  }
  // The same for the path of a class and as many keys, in the order of their folded names.
  // `keyAt` gives name and value of one by its number, false when there is none. False, with the
  // text left empty, where only a path can tell.
  template <class Reference = TCIMReference, class TKeyAt>
  bool Set(std::string_view className, std::size_t count, const TKeyAt& keyAt) noexcept {
    if constexpr (host::TCopiesPath<Reference>::value) {
      typename Reference::TKeyView keys[kMostKeys];
      if (count > kMostKeys) return false;
      for (std::size_t i = 0; i < count; ++i)
        if (!keyAt(i, keys[i].first, keys[i].second)) return false;
      m_text = std::string_view(
          m_short, Reference::CopyPath(m_short, sizeof(m_short), className, keys, count));
    }
    return !m_text.empty();
  }

  operator std::string_view() const noexcept { return m_text; }

 private:
  static constexpr std::size_t kShort = 256;
  static constexpr std::size_t kMostKeys = 8;

  char m_short[kShort];
  std::string m_long;
  std::string_view m_text;
};

// Whether the core tells in which namespace a path is resolved, and which that is; empty where
// it does not tell, or there is none.
template <class Reference>
inline constexpr bool kTellsNamespace = host::TTellsNamespace<Reference>::value;

template <class Reference>
boost::shared_ptr<ICIMNamespace> NamespaceOf(const Reference& path) {
  if constexpr (kTellsNamespace<Reference>)
    return path.GetNamespace();
  else
    return {};
}

}  // namespace NORVHAV20
