#include "havcore/TCIMReference.h"

#include <algorithm>

#include "AsciiFold.h"
#include "ObjectPathText.h"
#include "TTextWriter.h"
#include "havcore/ICIMClass.h"
#include "havcore/ICIMInstance.h"
#include "havcore/ICIMNamespace.h"
#include "havcore/ICIMPropertyDecl.h"
#include "havcore/ILogger.h"
#include "havcore/THAVException.h"
#include "havcore/TRootObject.h"

namespace NORVHAV20 {
namespace {

using TKey = std::pair<std::string, TCIMValue>;

// A key may have any name; a class is not asked for what it could only complain about.
boost::shared_ptr<ICIMPropertyDecl> FindDeclaration(const ICIMClass& cls, const std::string& name) {
  if (!IsCimName(name)) return {};
  try {
    return cls.GetPropertyDecl(name, {});
  } catch (const THAVException&) {
    return {};
  }
}

// The name as it is spelt in its declaration; as given where there is none.
const std::string& DeclaredName(const ICIMPropertyDecl* decl, const std::string& name) {
  if (!decl) return name;
  const std::string& declared = decl->GetName({});
  return EqualFolded(declared, name) ? declared : name;
}

// The registered class, empty where there is none or the name is none.
boost::shared_ptr<ICIMClass> FindClass(ICIMNamespace& home, const std::string& name) {
  try {
    return home.GetClass(name, {});
  } catch (const THAVException& failure) {
    if (failure.GetStatusCode() != kHAVNotFound && failure.GetStatusCode() != kHAVInvalidName)
      throw;
    return {};
  }
}

TCIMValue KeyValue(const TKeyText& key, const ICIMPropertyDecl* decl,
                   const boost::shared_ptr<ICIMNamespace>& home) {
  if (decl)
    if (auto typed = TypedKeyValue(key, decl->GetType({}), home)) return *std::move(typed);
  return UntypedKeyValue(key);
}

// Adds a key under its spelling, or replaces the value of the one that is there.
void Put(std::vector<TKey>& keys, const std::string& spelling, TCIMValue value) {
  // Most classes have one key or two.
  if (keys.empty()) keys.reserve(2);
  const auto at = std::lower_bound(keys.begin(), keys.end(), spelling,
                                   [](const TKey& key, const std::string& other) {
                                     return CompareFolded(key.first, other) < 0;
                                   });
  if (at != keys.end() && EqualFolded(at->first, spelling))
    *at = TKey(spelling, std::move(value));
  else
    keys.emplace(at, spelling, std::move(value));
}

constexpr std::size_t kShortPath = 256;

// Each path within a path has its quotes escaped once more, so that texts double with each level
// that they nest: what nests deeper than this is longer than that.
constexpr std::size_t kMostNestedText = std::size_t{1} << 24;
constexpr unsigned kMostNesting = 24;

[[noreturn]] void RefuseNesting(const std::string& className) {
  TRootObject::GetCoreLogger()->Log(
      ILogger::kError, "Havcore: the object path of class " + className +
                           " is a key in another path, and its text is longer than 16 MiB");
  throw THAVException(kHAVNotSupported);
}

// Adds one key of a path with what separates it from what stands before.
void AddKey(TTextWriter& out, char separator, std::string_view name,
            const TCIMValue& value) noexcept {
  out.Add(separator);
  out.Add(name);
  out.Add('=');
  if (!value.IsNull() && value.GetType() == kCIMString)
    return out.AddQuoted(static_cast<std::string_view>(value));
  char text[kShortPath];
  // No more than still fits, so that this ends however deep references nest.
  const std::size_t room = std::min(out.Room(), sizeof(text));
  const std::size_t length = value.IsReference() && room != 0
                                 ? static_cast<const TCIMReference&>(value).CopyPath(text, room)
                                 : 0;
  if (length == 0) return out.GiveUp();
  out.AddQuoted({text, length});
}

bool IsSameReference(const TCIMValue& a, const TCIMValue& b) {
  return a.IsReference() && b.IsReference() &&
         &static_cast<const TCIMReference&>(a) == &static_cast<const TCIMReference&>(b);
}

}  // namespace

TCIMReference::TCIMReference(const boost::shared_ptr<ICIMNamespace>& home,
                             const std::map<std::string, TCIMValue>& keys)
    : m_namespace(home), m_hasHome(home) {
  m_keys.reserve(keys.size());
  for (const auto& [name, value] : keys) AddKeyValue(name, value);
}

TCIMReference TCIMReference::Parse(const std::string& text,
                                   const boost::shared_ptr<ICIMNamespace>& home) {
  const TObjectPathText path = ParseObjectPath(text);
  TCIMReference reference(home, {});
  reference.m_namespaceName = path.namespaceName;
  reference.m_className = path.className;
  const auto cls = home ? FindClass(*home, path.className) : boost::shared_ptr<ICIMClass>();
  if (cls) reference.SetClass(cls);
  reference.m_keys.reserve(path.keys.size());
  for (const TKeyText& key : path.keys) {
    const auto decl = cls ? FindDeclaration(*cls, key.name) : boost::shared_ptr<ICIMPropertyDecl>();
    const std::size_t before = reference.m_keys.size();
    Put(reference.m_keys, DeclaredName(decl.get(), key.name), KeyValue(key, decl.get(), home));
    if (reference.m_keys.size() == before) throw THAVException(kHAVNotFound);
  }
  return reference;
}

void TCIMReference::AddKeyValue(const std::string& name, const TCIMValue& value) {
  const auto cls = m_class.lock();
  const auto decl = cls ? FindDeclaration(*cls, name) : boost::shared_ptr<ICIMPropertyDecl>();
  Put(m_keys, DeclaredName(decl.get(), name), value);
}

void TCIMReference::SetClass(const boost::shared_ptr<ICIMClass>& cls) {
  if (!cls) {
    m_class.reset();
    return;
  }
  std::string className = cls->GetName({});
  std::vector<TKey> keys;
  keys.reserve(m_keys.size());
  for (const TKey& key : m_keys) {
    const auto decl = FindDeclaration(*cls, key.first);
    keys.emplace_back(DeclaredName(decl.get(), key.first), key.second);
  }
  if (!m_hasHome) m_namespace = cls->GetNamespace({});
  m_class = cls;
  m_className = std::move(className);
  m_keys = std::move(keys);
}

void TCIMReference::SetNameSpaceName(const std::string& name) { m_namespaceName = name; }

void TCIMReference::SetNamespace(const boost::shared_ptr<ICIMNamespace>& home) {
  const auto cls = m_class.lock();
  m_namespace = home || !cls ? home : cls->GetNamespace({});
  m_hasHome = static_cast<bool>(home);
}

boost::shared_ptr<ICIMNamespace> TCIMReference::GetNamespace() const {
  if (auto home = m_namespace.lock()) return home;
  const auto cls = m_class.lock();
  return cls ? cls->GetNamespace({}) : boost::shared_ptr<ICIMNamespace>();
}

boost::shared_ptr<ICIMClass> TCIMReference::GetClass() const {
  if (auto cls = m_class.lock()) return cls;
  const auto home = GetNamespace();
  return home && !m_className.empty() ? FindClass(*home, m_className)
                                      : boost::shared_ptr<ICIMClass>();
}

std::map<std::string, TCIMValue> TCIMReference::GetKeyValues() const {
  return {m_keys.begin(), m_keys.end()};
}

void TCIMReference::AppendKeyText(std::string& out, const TCIMValue& value, bool withNamespaces,
                                  unsigned nesting) {
  if (value.IsNull()) {
    out += "NULL";
    return;
  }
  std::string text;
  switch (const ECIMType type = value.GetType()) {
    case kCIMString: return AppendQuoted(out, static_cast<std::string_view>(value));
    case kCIMReference:
      static_cast<const TCIMReference&>(value).AppendPath(text, withNamespaces, nesting + 1);
      break;
    default:
      if (!value.IsArray() && type != kCIMChar16 && type != kCIMDateTime)
        return value.AppendTo(out, 10, nesting);
      value.AppendTo(text, 10, nesting + 1);
  }
  AppendQuoted(out, text);
}

void TCIMReference::AppendPath(std::string& out, bool withNamespaces, unsigned nesting) const {
  if (nesting > kMostNesting) RefuseNesting(m_className);
  if (withNamespaces && !m_namespaceName.empty()) out.append(m_namespaceName).append(1, ':');
  std::size_t size = out.size() + m_className.size();
  for (const auto& [name, value] : m_keys) size += name.size() + 2 + KeyTextSize(value);
  out.reserve(size);
  out += m_className;
  char separator = '.';
  for (const auto& [name, value] : m_keys) {
    out += separator;
    out += name;
    out += '=';
    AppendKeyText(out, value, withNamespaces, nesting);
    separator = ',';
  }
  if (nesting != 0 && out.size() > kMostNestedText) RefuseNesting(m_className);
}

std::size_t TCIMReference::CopyPath(char* buffer, std::size_t size) const noexcept {
  TTextWriter out(buffer, size);
  out.Add(m_className);
  char separator = '.';
  for (const auto& [name, value] : m_keys) {
    AddKey(out, separator, name, value);
    separator = ',';
  }
  return out.Length();
}

std::size_t TCIMReference::CopyPath(char* buffer, std::size_t size, std::string_view className,
                                    const TKeyView* keys, std::size_t count) noexcept {
  TTextWriter out(buffer, size);
  out.Add(className);
  char separator = '.';
  for (const TKeyView* key = keys; key != keys + count; ++key) {
    AddKey(out, separator, key->first, *key->second);
    separator = ',';
  }
  return out.Length();
}

std::string TCIMReference::GetPath() const {
  char text[kShortPath];
  if (const std::size_t length = CopyPath(text, sizeof(text))) return {text, length};
  std::string path;
  AppendPath(path, false, 0);
  return path;
}

std::string TCIMReference::GetFullPath() const {
  std::string path;
  AppendPath(path, true, 0);
  return path;
}

boost::shared_ptr<ICIMElement> TCIMReference::GetCIMElement(bool) const {
  const auto home = GetNamespace();
  if (!home || m_className.empty()) throw THAVException(kHAVNotFound);
  boost::shared_ptr<ICIMInstance> instance;
  if (!m_class.expired()) {
    instance = home->GetInstance(*this, {});
  } else {
    // Bound to the class of its name, the path is spelt as the class stores its instances.
    const auto cls = home->GetClass(m_className, {});
    if (!cls) throw THAVException(kHAVNotFound);
    TCIMReference bound = *this;
    bound.SetClass(cls);
    instance = home->GetInstance(bound, {});
  }
  if (instance) return instance;
  const auto cls =
      m_keys.empty() ? home->GetClass(m_className, {}) : boost::shared_ptr<ICIMClass>();
  if (!cls) throw THAVException(kHAVNotFound);
  return cls;
}

int TCIMReference::CompareKeys(const TKey& a, const TKey& b) {
  const int names = CompareFolded(a.first, b.first);
  if (names != 0) return names;
  // The text decides, for keys read from text may lack their declared type; the values are
  // asked first because they usually share what they hold.
  if (a.second.GetType() == kCIMString && a.second == b.second) return 0;
  if (IsSameReference(a.second, b.second)) return 0;
  std::string texts[2];
  AppendKeyText(texts[0], a.second, true, 0);
  AppendKeyText(texts[1], b.second, true, 0);
  return texts[0].compare(texts[1]);
}

int TCIMReference::Compare(const TCIMReference& a, const TCIMReference& b) {
  if (const int names = CompareFolded(a.m_namespaceName, b.m_namespaceName)) return names;
  if (const int names = CompareFolded(a.m_className, b.m_className)) return names;
  const std::size_t common = std::min(a.m_keys.size(), b.m_keys.size());
  for (std::size_t i = 0; i < common; ++i)
    if (const int keys = CompareKeys(a.m_keys[i], b.m_keys[i])) return keys;
  if (a.m_keys.size() == b.m_keys.size()) return 0;
  return a.m_keys.size() < b.m_keys.size() ? -1 : 1;
}

bool operator==(const TCIMReference& a, const TCIMReference& b) {
  return a.m_keys.size() == b.m_keys.size() && TCIMReference::Compare(a, b) == 0;
}

bool operator<(const TCIMReference& a, const TCIMReference& b) {
  return TCIMReference::Compare(a, b) < 0;
}

}  // namespace NORVHAV20
