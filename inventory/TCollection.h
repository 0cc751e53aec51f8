// TCollection: what the collectors found, before it is in a namespace: elements with their
// property values, links between elements, and what could not be read.
//
// Ownership: a value; owns all that was added.
// Threads:   one thread at a time.
// Errors:    none of its own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "havcore/TCIMValue.h"

namespace hav::inventory {

// One instance to be. `id` stands for it in links and is never shown.
struct TElement {
  std::string id;
  std::string className;
  std::vector<std::pair<std::string, NORVHAV20::TCIMValue>> values;

  // A value that is not known is left out, which makes the property NULL.
  template <class T>
  TElement& Set(const char* property, const std::optional<T>& value) {
    if (value) values.emplace_back(property, NORVHAV20::TCIMValue(*value));
    return *this;
  }
  TElement& Set(const char* property, const std::vector<std::string>& texts);

  // Sets the caption "NAME, WHAT", or none when it is not known what the element is.
  TElement& Describe(const std::optional<std::string>& what);

  // Returns the value, NULL when the property was not set.
  NORVHAV20::TCIMValue Get(const std::string& property) const;
};

// One association instance to be. It is made only when both its ends were collected.
struct TLink {
  struct TEnd {
    std::string role;
    std::string id;
  };
  std::string className;
  TEnd antecedent;
  TEnd dependent;
};

// What could not be collected: by which collector, from which file or call, and why.
struct TFailure {
  std::string collector;
  std::string source;
  std::string reason;

  // "collector: source: reason"
  std::string ToString() const;
};

class TCollection {
 public:
  // The id of the computer system, of which there is one.
  static const char* const kSystem;

  // Names the collector that the following failures belong to.
  void SetCollector(const std::string& name) { m_collector = name; }

  // Adds an element named `name`. The reference stays good as long as the collection.
  TElement& Add(const std::string& id, const std::string& className, const std::string& name);
  // Adds an element that belongs to the computer system directly.
  TElement& AddSystemDevice(const std::string& id, const std::string& className,
                            const std::string& name);
  void Link(const std::string& className, TLink::TEnd antecedent, TLink::TEnd dependent);
  // The usual pair of roles.
  void Link(const std::string& className, const std::string& antecedent,
            const std::string& dependent);
  void Fail(const std::string& source, const std::string& reason);

  // Returns the first element of that id, or nullptr. Complexity: linear in the elements.
  const TElement* Find(const std::string& id) const;

  const std::deque<TElement>& Elements() const { return m_elements; }
  const std::vector<TLink>& Links() const { return m_links; }
  const std::vector<TFailure>& Failures() const { return m_failures; }

 private:
  std::string m_collector;
  std::deque<TElement> m_elements;
  std::vector<TLink> m_links;
  std::vector<TFailure> m_failures;
};

}  // namespace hav::inventory
