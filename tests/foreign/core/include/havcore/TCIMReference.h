// TCIMReference of the foreign core; see its TCIMValue.h.
//
// Ownership: holds class and namespace weakly, and keeps the class's name.
// Threads:   a value.
// Errors:    THAVException; the status with each operation.
#pragma once

#include <map>
#include <string>

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include "havcore/Export.h"
#include "havcore/TCIMValue.h"

namespace NORVHAV20 {

class ICIMClass;
class ICIMElement;
class ICIMNamespace;

class HAVCORE_API TCIMReference {
 public:
  TCIMReference(const boost::shared_ptr<ICIMNamespace>& home,
                const std::map<std::string, TCIMValue>& keys);
  TCIMReference(const TCIMReference& other);
  TCIMReference& operator=(const TCIMReference& other);
  virtual ~TCIMReference();

  void AddKeyValue(const std::string& name, const TCIMValue& value);
  void SetClass(const boost::shared_ptr<ICIMClass>& cls);
  void SetNameSpaceName(const std::string& name);

  std::string GetPath() const;
  std::string GetClassName() const;
  // Throws 15 when there is no such class, namespace or element.
  boost::shared_ptr<ICIMElement> GetCIMElement(bool) const;

#if defined(FOREIGN_CORE_HOST)
  // Reads a path whose key values are strings and unsigned integers.
  static TCIMReference Parse(const std::string& text, const boost::shared_ptr<ICIMNamespace>& home);
  bool operator==(const TCIMReference& other) const { return GetFullPath() == other.GetFullPath(); }
  std::string GetNameSpaceName() const { return m_namespaceName; }
  std::string GetFullPath() const;
  std::map<std::string, TCIMValue> GetKeyValues() const;
  boost::shared_ptr<ICIMClass> GetClass() const;
#endif

 private:
  friend class TCIMValue;

  boost::shared_ptr<ICIMNamespace> Home() const;
  boost::shared_ptr<ICIMClass> Class() const;
  std::string PathText(bool withNamespaces) const;

  std::string m_namespaceName;
  std::map<std::string, std::pair<std::string, TCIMValue>> m_keys;  // by folded name
  std::string m_className;
  boost::weak_ptr<ICIMClass> m_class;
  boost::weak_ptr<ICIMNamespace> m_namespace;
};

}  // namespace NORVHAV20
