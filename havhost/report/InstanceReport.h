// InstanceReport: what there is to tell of an instance, taken out of it.
//
// Ownership: values. A reference among them holds its class and namespace weakly, so that
//            reports must be gone before the plug-in is unloaded.
// Errors:    THAVException of the instance, other than from display texts: where there is
//            none, the value's plain text stands in.
#pragma once

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "havcore/ICIMInstance.h"
#include "havcore/ICIMProperty.h"
#include "havcore/TCIMValue.h"

namespace havhost {

struct TPropertyReport {
  std::string name;
  NORVHAV20::TCIMValue value;
  NORVHAV20::ECIMType type;
  // One text, or one for each element of an array.
  std::vector<std::string> display;
};

struct TInstanceReport {
  std::string path;
  std::string className;
  std::vector<TPropertyReport> properties;  // in the order of their case-folded names

  // What a person would call it: its element name, caption or name, else its path.
  std::string Title() const;
  // Returns the property of that name as it is declared, or nullptr.
  const TPropertyReport* Find(const std::string& name) const;
  // The same for the name in any case.
  const TPropertyReport* FindFolded(const std::string& name) const;
};

TInstanceReport ReportOf(NORVHAV20::ICIMInstance& instance);

// True for what says nothing of the thing itself: when it was looked at, and the class names
// among its keys.
bool IsBookkeeping(const TPropertyReport& property);
// True for NULL, an array without elements, and blank text.
bool IsEmpty(const TPropertyReport& property);

// The display texts of a slot's value; a datetime as a date.
std::vector<std::string> DisplayTexts(const NORVHAV20::ICIMProperty& slot);
// The same of its previous value, of which there is one text for all elements.
std::vector<std::string> PreviousDisplayTexts(const NORVHAV20::ICIMProperty& slot);

}  // namespace havhost
