// DeviceClasses: the part of DMTF's schema that the device model is made of, as the model's
// generator and the oracle know it. A test holds it against the loaded schema.
#pragma once

#include <string>
#include <vector>

namespace havtest {

// A class of things: a system, a device or what these derive from.
struct ThingClass {
  std::string name;
  std::string superclass;  // empty: none
};

struct Role {
  std::string name;
  std::string referenced;
};

// An association class; its roles stand in the order of their names.
struct LinkClassFact {
  std::string name;
  std::string superclass;  // empty: none
  std::vector<Role> roles;
  bool concrete;
};

const std::vector<ThingClass>& ThingClasses();
const std::vector<LinkClassFact>& LinkClasses();

// True when the class of that name is `ancestor` or derives from it; both of one table.
bool Derives(const std::string& name, const std::string& ancestor);

const LinkClassFact& LinkFact(const std::string& name);

}  // namespace havtest
