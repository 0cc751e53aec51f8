// TSnapshot: every instance of a namespace at one moment, taken from the namespace itself or from a
// JSON document that the program wrote then.
//
// Ownership: a value.
#pragma once

#include <map>
#include <string>

#include "havcore/ICIMNamespace.h"
#include "havhost/report/Changes.h"

namespace havhost {

class TSnapshot {
 public:
  static TSnapshot Of(NORVHAV20::ICIMNamespace& target);
  // Reads what `inventory`, `instances`, `references` or `associators` wrote as JSON. Throws
  // THostError, with `name` for where it stands, when the text is no such document.
  static TSnapshot Parse(const std::string& text, const std::string& name);

  // What became of `before`, in the order of the paths. The time of collection is no change.
  TChanges Since(const TSnapshot& before) const;

 private:
  struct TInstance {
    std::string className;
    TJson properties;
  };

  void Add(const TJson& instance);

  std::map<std::string, TInstance> m_instances;  // by path
};

}  // namespace havhost
