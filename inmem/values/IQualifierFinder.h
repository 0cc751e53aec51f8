// IQualifierFinder: what a declaration of the plug-in offers beside GetQualifier: to say that
// a qualifier is absent without an exception, and room for what was made of qualifiers. Most
// properties lack most of the qualifiers that display text asks for, and one exception costs more
// than everything else in making it.
//
// Ownership: a declaration is never owned through this interface.
// Errors:    THAVException 25 for a name that is no CIM name.
#pragma once

#include <string>

#include <boost/shared_ptr.hpp>

namespace NORVHAV20 {

class ICIMQualifier;
struct TKnownValueMap;

class IQualifierFinder {
 public:
  // Returns what GetQualifier returns, but an empty pointer where that throws 15.
  virtual boost::shared_ptr<ICIMQualifier> FindOrNull(const std::string& name) const = 0;
  // Where display text keeps the value map that it has read; null: nowhere.
  virtual boost::shared_ptr<const TKnownValueMap>* KnownValueMap() const noexcept {
    return nullptr;
  }

 protected:
  IQualifierFinder() = default;
  IQualifierFinder(const IQualifierFinder&) = default;
  IQualifierFinder& operator=(const IQualifierFinder&) = default;
  ~IQualifierFinder() = default;
};

}  // namespace NORVHAV20
