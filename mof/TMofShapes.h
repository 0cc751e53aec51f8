// TMofShapes: what making instances asks about the properties of their classes, looked up once
// per class.
//
// Ownership: shares the classes; the schema must outlive it.
// Errors:    those of the classes pass through.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "havcore/client/FoldedName.h"
#include "havcore/havcore.h"
#include "mof/TMofSchemaBuilder.h"

namespace hav::mof {

struct TMofSlot {
  enum class EEmbedded { kNothing, kInstance, kObject };

  std::string name;  // as declared
  NORVHAV20::ECIMType type = NORVHAV20::kCIMNone;
  boost::shared_ptr<NORVHAV20::ICIMClass> referenced;  // empty: any
  bool isKey = false;
  bool hasDefault = false;      // one that is not NULL
  std::uint32_t arraySize = 0;  // 0: any
  EEmbedded embeds = EEmbedded::kNothing;
  std::string embeddedClass;  // of a kInstance
  // What the instance that is being made says of it: the number of that instance, and whether
  // it gives a value.
  mutable std::size_t givenTo = 0;
  mutable bool isGiven = false;

  bool Embeds() const noexcept { return embeds != EEmbedded::kNothing; }
  // Where an alias can be the value at all; elsewhere it is a value of a wrong type.
  bool TakesAlias() const noexcept { return type == NORVHAV20::kCIMReference || Embeds(); }
};

struct TMofKey {
  std::string name;
  const TMofSlot* slot;  // null: the class has no such property
};

struct TMofShape {
  boost::shared_ptr<NORVHAV20::ICIMClass> cls;
  bool isDamaged = false;  // not all of its properties could be read
  bool isAbstract = false;
  bool isAssociation = false;
  bool hasReferenceDefaults = false;
  std::vector<TMofKey> keys;
  client::TFoldedMap<TMofSlot> slots;
  std::vector<boost::shared_ptr<NORVHAV20::ICIMPropertyDecl>> decls;  // own the names in `slots`

  // Null when there is none of that name.
  const TMofSlot* Find(std::string_view property) const {
    const auto found = slots.find(property);
    return found == slots.end() ? nullptr : &found->second;
  }
  // The same for the property that is given at that place of an instance: those of one class give
  // theirs in one order most of the time.
  const TMofSlot* FindAt(std::size_t place, std::string_view property) const {
    if (place < order.size() && order[place]->name == property) return order[place];
    const auto* const slot = Find(property);
    if (slot && place < order.size()) order[place] = slot;
    if (slot && place == order.size()) order.push_back(slot);
    return slot;
  }

  mutable std::vector<const TMofSlot*> order;  // what was found at each place last
};

class TMofShapes {
 public:
  explicit TMofShapes(const TMofSchemaBuilder& schema) : m_schema(schema) {}

  // Null when there is no such class, or it could not be made.
  const TMofShape* Find(std::string_view className);
  bool IsDeclared(std::string_view className) const {
    return m_schema.FindClass(className) != nullptr;
  }
  // Empty when there is none.
  boost::shared_ptr<NORVHAV20::ICIMClass> FindClass(std::string_view className) const;

 private:
  static void AddSlots(TMofShape& shape);
  const TMofShape* FindAny(std::string_view className);

  const TMofSchemaBuilder& m_schema;
  // What was asked for last: many instances of a class stand together.
  std::string m_lastName;
  const TMofShape* m_last = nullptr;
  std::unordered_map<const void*, TMofShape> m_shapes;  // by declared class
};

}  // namespace hav::mof
