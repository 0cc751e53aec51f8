// Changes: what is different between two states of a namespace, for people and for programs.
//
// Ownership: values.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "havhost/TTextStyle.h"
#include "havhost/report/Json.h"

namespace havhost {

struct TPropertyChange {
  std::string name;
  // As in the documents of instances: "type", "value", "display".
  TJson before, after;
};

struct TInstanceChange {
  enum EKind { kAppeared, kChanged, kDisappeared };

  EKind kind;
  std::string path;
  std::string className;
  std::vector<TPropertyChange> properties;  // of a changed instance
};

using TChanges = std::vector<TInstanceChange>;

// A line for each instance, its path after "+", "~" or "-"; below a changed one its properties,
// old text beside new.
void PrintChanges(std::ostream& out, const TChanges& changes, const TTextStyle& style);
// {"appeared": [...], "changed": [...], "disappeared": [...]}
TJson ToJson(const TChanges& changes);

}  // namespace havhost
