// ElementReader: CIM-XML elements as values and paths of a namespace.
//
// Threads: functions of their arguments.
// Errors:  TCimError; kInvalidParameter for elements that are not what they should be, and
//          kTypeMismatch for values that are not of their type.
#pragma once

#include <optional>
#include <string>

#include <boost/shared_ptr.hpp>

#include "havcore/havcore.h"
#include "wbem/TXmlElement.h"

namespace hav::wbem {

using TNamespacePtr = boost::shared_ptr<NORVHAV20::ICIMNamespace>;

// LOCALNAMESPACEPATH as a name, "root/cimv2".
std::string ReadNamespaceName(const TXmlElement& path);

// The one child of an element. Throws when there is none, or more.
const TXmlElement& OnlyChild(const TXmlElement& element);
// The value of an attribute; throws when it is not there.
const std::string& Required(const TXmlElement& element, std::string_view attribute);

// The class of that name, empty when there is none; never the root of all classes, and none
// that carries the host's mark, which is put on what was deleted.
boost::shared_ptr<NORVHAV20::ICIMClass> FindClass(NORVHAV20::ICIMNamespace& home,
                                                  const std::string& name);

// INSTANCENAME; key values take the types that the class declares, when it is there.
NORVHAV20::TCIMReference ReadInstanceName(const TXmlElement& element, const TNamespacePtr& home);
// VALUE.REFERENCE: whatever kind of path is in it.
NORVHAV20::TCIMReference ReadReference(const TXmlElement& element, const TNamespacePtr& home);

// The value among the children of `element`, which may be of any kind that `type` allows; NULL
// of the type when there is none.
NORVHAV20::TCIMValue ReadValue(const TXmlElement& element, NORVHAV20::ECIMType type,
                               const TNamespacePtr& home);

// The type of a PROPERTY…, PARAMETER… or QUALIFIER element, as its name and attributes tell it.
NORVHAV20::ECIMType ReadType(const TXmlElement& element);

// An attribute that is true or false.
bool ReadFlag(const TXmlElement& element, std::string_view attribute, bool otherwise);

}  // namespace hav::wbem
