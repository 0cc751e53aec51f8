// TCIMReference: an object path: a class, the name of a namespace, and key values.
//
// Ownership: a value. Class and namespace are held weakly; the class name is kept, so that
//            a path outlives what it points at.
// Threads:   a value.
// Errors:    THAVException, the status with each operation.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

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
  // A path without class. `home` is where it is resolved; empty: in its class's namespace.
  TCIMReference(const boost::shared_ptr<ICIMNamespace>& home,
                const std::map<std::string, TCIMValue>& keys);

  // Reads `text` as GetPath and GetFullPath write it; no blanks outside quotes, TRUE, FALSE
  // and NULL in any case. With `home`, the class is bound when it is there, and key values
  // take the types that it declares; without, and where a value does not fit, TRUE and FALSE
  // are booleans, integers uint64 or sint64, other numbers real64, quoted text strings.
  // Throws 15 when the text is no object path, or names a key twice.
  static TCIMReference Parse(const std::string& text, const boost::shared_ptr<ICIMNamespace>& home);

  // Adds a key value, or replaces the one of the same name (names ignore case). The name is
  // spelt as the bound class declares it, and as given where it declares none.
  void AddKeyValue(const std::string& name, const TCIMValue& value);
  // Binds the path to `cls` and takes its name and its spelling of the keys; an empty pointer
  // unbinds it and keeps them. A path without a home is resolved in the namespace of its
  // class, also when the class itself is gone.
  void SetClass(const boost::shared_ptr<ICIMClass>& cls);
  // A name with a double quote or an equals sign in it makes a full path that Parse refuses.
  void SetNameSpaceName(const std::string& name);
  void SetNamespace(const boost::shared_ptr<ICIMNamespace>& home);

  const std::string& GetClassName() const noexcept { return m_className; }
  const std::string& GetNameSpaceName() const noexcept { return m_namespaceName; }
  // The bound class while it lives, else what the name resolves to; else empty.
  boost::shared_ptr<ICIMClass> GetClass() const;
  boost::shared_ptr<ICIMNamespace> GetNamespace() const;
  std::map<std::string, TCIMValue> GetKeyValues() const;

  // "Class.Key1=…,Key2=…": keys sorted case-folded; strings, datetimes, characters (in UTF-8)
  // and references (as their own GetPath) in double quotes with \ and " escaped; TRUE and
  // FALSE; plain decimals, reals as short as they read back; NULL. Just "Class" without keys.
  // Equal references give equal text, up to the case of names that no class spells. Parse
  // reads it back to the same text. Throws 1, with a line in the core log, when a reference among
  // the keys has a path of more than 16 MiB: their texts double with each level that they nest.
  // Complexity: linear in the length of the text.
  std::string GetPath() const;
  // Writes the same text to a buffer of `size` bytes, allocating nothing, and returns its
  // length. Returns 0, and has written anything, where there is not enough room or where a key
  // is neither a string nor a reference of the kind: then GetPath has it.
  std::size_t CopyPath(char* buffer, std::size_t size) const noexcept;
  // The same for a path without being one: its keys are sorted by case-folded name, each name
  // once, spelt as the class declares it.
  using TKeyView = std::pair<std::string_view, const TCIMValue*>;
  static std::size_t CopyPath(char* buffer, std::size_t size, std::string_view className,
                              const TKeyView* keys, std::size_t count) noexcept;
  // GetPath with "namespace:" before it, when there is a namespace name; so for references
  // among the keys, too.
  std::string GetFullPath() const;

  // Returns the element that the path names: the instance, or for a path without keys that
  // names no instance the class. Throws 15 when the class, the namespace or the element is
  // not there; what else the namespace throws passes through. The argument is accepted and
  // ignored.
  boost::shared_ptr<ICIMElement> GetCIMElement(bool) const;

  // Same full path: the names of namespace, class and keys ignore case, key values compare by
  // their text, so that a path read without types equals the one that it was written from; they
  // throw what GetFullPath throws.
  // Ordered by namespace name, class name, then key by key.
  friend HAVCORE_API bool operator==(const TCIMReference& a, const TCIMReference& b);
  friend HAVCORE_API bool operator<(const TCIMReference& a, const TCIMReference& b);
  friend bool operator!=(const TCIMReference& a, const TCIMReference& b) { return !(a == b); }

 private:
  friend class TCIMValue;

  using TKey = std::pair<std::string, TCIMValue>;

  // Negative, zero or positive, in the order of operator<.
  static int Compare(const TCIMReference& a, const TCIMReference& b);
  static int CompareKeys(const TKey& a, const TKey& b);
  // `nesting`: how many paths stand around this one.
  void AppendPath(std::string& out, bool withNamespaces, unsigned nesting) const;
  static void AppendKeyText(std::string& out, const TCIMValue& value, bool withNamespaces,
                            unsigned nesting);

  boost::weak_ptr<ICIMNamespace> m_namespace;  // the home, or where the bound class came from
  boost::weak_ptr<ICIMClass> m_class;
  std::string m_className;
  std::string m_namespaceName;
  std::vector<TKey> m_keys;  // sorted by case-folded name
  bool m_hasHome = false;
};

}  // namespace NORVHAV20
