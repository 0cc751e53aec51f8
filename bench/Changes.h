// Changes: what a live host does to a model between two questions. None of them touches the
// objects that are asked about, so every answer stays what it was.
#pragma once

namespace havbench {

enum class Change {
  kNone,
  kInstance,   // an object is added
  kLink,       // a link is added
  kUnlink,     // a link is removed
  kReference,  // a reference of a link is assigned
  kProperty,   // a property of an object is assigned
  kRekey,      // a link is stored again under another key
  kNeighbour,  // an object is added somewhere else: another namespace, another database
  kDerived,    // a property is read that no class declares
};

}  // namespace havbench
