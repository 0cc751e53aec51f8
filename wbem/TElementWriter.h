// TElementWriter: what stands in a namespace, written as CIM-XML elements.
//
// Ownership: borrows the string that it appends to.
// Errors:    those of the elements pass through.
#pragma once

#include <optional>
#include <string>
#include <unordered_set>

#include "havcore/client/FoldedName.h"
#include "havcore/havcore.h"
#include "wbem/TXmlWriter.h"

namespace hav::wbem {

using TNameSet =
    std::unordered_set<std::string, hav::client::TFoldedHash, hav::client::TFoldedEqual>;

// How much of a class or an instance is written.
struct TDetail {
  bool localOnly = false;  // only what the class declares itself
  bool qualifiers = false;
  bool classOrigin = false;
  std::optional<TNameSet> properties;  // nothing: all

  bool Shows(const std::string& property) const {
    return !properties || properties->count(property) != 0;
  }
};

// Where objects are, as their full paths tell it.
struct TPlace {
  std::string host;
  std::string namespaceName;
};

// The class above, empty when `cls` stands directly under the root.
boost::shared_ptr<NORVHAV20::ICIMClass> SuperclassOf(const NORVHAV20::ICIMClass& cls);

class TElementWriter {
 public:
  TElementWriter(std::string& out, const TPlace& place) : m_xml(out), m_place(place) {}

  TXmlWriter& Xml() { return m_xml; }

  void Class(NORVHAV20::ICIMClass& cls, const TDetail& detail);
  void ClassName(const std::string& name) { m_xml.Empty("CLASSNAME", {{"NAME", name}}); }
  void ClassPath(const std::string& name);
  void QualifierDecl(const NORVHAV20::ICIMQualifierDecl& decl);

  void Instance(NORVHAV20::ICIMInstance& instance, const TDetail& detail);
  void InstanceName(const NORVHAV20::TCIMReference& path);
  void InstancePath(const NORVHAV20::TCIMReference& path);

  // VALUE, VALUE.ARRAY, VALUE.REFERENCE or VALUE.REFARRAY; nothing for NULL.
  void Value(const NORVHAV20::TCIMValue& value);

 private:
  void Qualifiers(NORVHAV20::ICIMNamedElement& element, bool localOnly);
  void Qualifier(const NORVHAV20::ICIMQualifier& qualifier);
  void Flavor(std::uint32_t flavor);
  void PropertyDecl(const NORVHAV20::ICIMClass& cls, NORVHAV20::ICIMPropertyDecl& decl,
                    const TDetail& detail);
  void Property(const NORVHAV20::ICIMClass& cls, NORVHAV20::ICIMPropertyDecl& decl,
                const NORVHAV20::TCIMValue& value, const TDetail& detail);
  void Origin(const NORVHAV20::ICIMClass& cls,
              const boost::shared_ptr<NORVHAV20::ICIMClass>& origin, const TDetail& detail);
  void Method(const NORVHAV20::ICIMClass& cls, NORVHAV20::ICIMMethodDecl& decl,
              const TDetail& detail);
  void Parameter(NORVHAV20::ICIMParameterDecl& parameter, const TDetail& detail);
  void Scalar(const NORVHAV20::TCIMValue& value);
  void Reference(const NORVHAV20::TCIMReference& path);
  void KeyBinding(const std::string& name, const NORVHAV20::TCIMValue& value);
  void NamespacePath();
  void LocalNamespacePath(const std::string& name);

  TXmlWriter m_xml;
  const TPlace& m_place;
};

}  // namespace hav::wbem
