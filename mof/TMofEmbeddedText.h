// TMofEmbeddedText: the text of an object that is the value of a property, checked as if it
// stood in a file of its own. Nothing is made of it.
//
// Ownership: borrows what it is made with.
// Errors:    returned as text.
#pragma once

#include <string>

#include <boost/shared_ptr.hpp>

#include "mof/MofSyntax.h"
#include "mof/TMofShapes.h"
#include "mof/TMofValueReader.h"

namespace hav::mof {

class TMofEmbeddedText {
 public:
  // `complete`: every class is known.
  TMofEmbeddedText(boost::shared_ptr<NORVHAV20::ICIMNamespace> home, TMofShapes& shapes,
                   bool complete);

  // What is wrong with `text` as the value of `slot`, which embeds objects; empty: nothing.
  std::string WhatIsWrong(const std::string& text, const TMofSlot& slot);

 private:
  std::string CheckInstance(TMofFile& file, const TMofSlot& slot);
  std::string CheckClass(const TMofFile& file, const TMofName& name, const TMofShape* shape,
                         const TMofSlot& slot) const;
  std::string CheckAssignment(const TMofFile& file, const TMofAssignment& assignment,
                              const TMofShape& shape);

  boost::shared_ptr<NORVHAV20::ICIMNamespace> m_home;
  TMofShapes& m_shapes;
  bool m_complete;
};

// Whether an instance of `cls` may be the value of `slot`.
bool MayEmbed(const TMofShapes& shapes, const TMofSlot& slot, const NORVHAV20::ICIMClass& cls);

// What is wrong with a value of that size; empty: nothing.
std::string WhatIsWrongWithSize(const NORVHAV20::TCIMValue& value, std::uint32_t arraySize);

}  // namespace hav::mof
