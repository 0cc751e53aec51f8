// TPathOrder: the order in which people look for object paths: by class, then key by key,
// numbers by their value, also those within texts ("eth2" before "eth10").
//
// Ownership: a value.
#pragma once

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "havcore/ICIMInstance.h"
#include "havcore/TCIMReference.h"
#include "havcore/TCIMValue.h"

namespace havhost {

class TPathOrder {
 public:
  explicit TPathOrder(const NORVHAV20::TCIMReference& path);

  friend bool operator<(const TPathOrder& a, const TPathOrder& b) { return Compare(a, b) < 0; }

 private:
  // Negative, zero or positive.
  static int Compare(const TPathOrder& a, const TPathOrder& b);
  static int Compare(const NORVHAV20::TCIMValue& a, const NORVHAV20::TCIMValue& b);

  std::string m_className;
  std::vector<NORVHAV20::TCIMValue> m_keys;  // in the order of their names
};

void SortByPath(std::vector<boost::shared_ptr<NORVHAV20::ICIMInstance>>& instances);

}  // namespace havhost
