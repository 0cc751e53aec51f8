#include "havcore/TCIMReference.h"

#include <algorithm>
#include <utility>

#include "havcore/ICIMClass.h"
#include "havcore/ICIMInstance.h"
#include "havcore/ICIMNamespace.h"
#include "havcore/ICIMPropertyDecl.h"
#include "havcore/THAVException.h"

namespace NORVHAV20 {

namespace {

std::string Folded(std::string name) {
  for (char& c : name)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return name;
}

// The name as the class declares it, as given where it declares none.
std::string Spelling(const boost::shared_ptr<ICIMClass>& cls, const std::string& name) {
  std::string spelling = name;
  if (!cls) return spelling;
  const auto take = [&](const boost::shared_ptr<ICIMPropertyDecl>& decl) {
    if (Folded(decl->GetName({})) == Folded(name)) spelling = decl->GetName({});
    return true;
  };
  cls->EnumeratePropertyDecls(take, {});
  return spelling;
}

std::string Quoted(const std::string& text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return quoted + '"';
}

// The text between the quotes that begin at `next`, which then stands behind them.
std::string UnquotedAt(const std::string& text, std::size_t& next) {
  std::string value;
  for (++next; next < text.size() && text[next] != '"'; ++next) {
    if (text[next] == '\\') ++next;
    value += text[next];
  }
  if (next++ >= text.size()) throw THAVException(kHAVNotFound);
  return value;
}

}  // namespace

TCIMReference::TCIMReference(const boost::shared_ptr<ICIMNamespace>& home,
                             const std::map<std::string, TCIMValue>& keys)
    : m_namespace(home) {
  for (const auto& [name, value] : keys) AddKeyValue(name, value);
}

TCIMReference TCIMReference::Parse(const std::string& text,
                                   const boost::shared_ptr<ICIMNamespace>& home) {
  TCIMReference path(home, {});
  std::size_t next = std::min(text.find('.'), text.size());
  path.m_className = text.substr(0, next);
  while (next < text.size()) {
    const std::size_t equals = text.find('=', next);
    if (equals == std::string::npos) throw THAVException(kHAVNotFound);
    const std::string name = text.substr(next + 1, equals - next - 1);
    next = equals + 1;
    if (text[next] == '"') {
      path.AddKeyValue(name, UnquotedAt(text, next));
    } else {
      const std::size_t end = std::min(text.find(',', next), text.size());
      path.AddKeyValue(name,
                       static_cast<std::uint64_t>(std::stoull(text.substr(next, end - next))));
      next = end;
    }
  }
  return path;
}

TCIMReference::TCIMReference(const TCIMReference&) = default;
TCIMReference& TCIMReference::operator=(const TCIMReference&) = default;
TCIMReference::~TCIMReference() = default;

void TCIMReference::AddKeyValue(const std::string& name, const TCIMValue& value) {
  m_keys.insert_or_assign(Folded(name), std::pair(Spelling(m_class.lock(), name), value));
}

void TCIMReference::SetClass(const boost::shared_ptr<ICIMClass>& cls) {
  m_class = cls;
  if (!cls) return;
  m_className = cls->GetName({});
  if (m_namespace.expired()) m_namespace = cls->GetNamespace({});
  for (auto& entry : m_keys) entry.second.first = Spelling(cls, entry.second.first);
}

void TCIMReference::SetNameSpaceName(const std::string& name) { m_namespaceName = name; }

std::string TCIMReference::GetPath() const { return PathText(false); }

std::string TCIMReference::GetFullPath() const { return PathText(true); }

std::string TCIMReference::GetClassName() const { return m_className; }

std::string TCIMReference::PathText(bool withNamespaces) const {
  std::string text = withNamespaces && !m_namespaceName.empty() ? m_namespaceName + ':' : "";
  text += m_className;
  char separator = '.';
  for (const auto& [folded, key] : m_keys) {
    const auto& [name, value] = key;
    text += std::exchange(separator, ',') + name + '=';
    if (value.IsReference())
      text += Quoted(static_cast<TCIMReference>(value).PathText(withNamespaces));
    else if (!value.IsNull() && (value.GetType() == kCIMString || value.GetType() == kCIMDateTime))
      text += Quoted(value.ToString(10));
    else
      text += value.ToString(10);
  }
  return text;
}

boost::shared_ptr<ICIMNamespace> TCIMReference::Home() const {
  if (auto home = m_namespace.lock()) return home;
  const auto cls = m_class.lock();
  return cls ? cls->GetNamespace({}) : nullptr;
}

boost::shared_ptr<ICIMClass> TCIMReference::Class() const {
  if (auto cls = m_class.lock()) return cls;
  const auto home = Home();
  if (!home || m_className.empty()) return {};
  try {
    return home->GetClass(m_className, {});
  } catch (const THAVException& failure) {
    if (failure.GetStatusCode() != kHAVNotFound && failure.GetStatusCode() != kHAVInvalidName)
      throw;
    return {};
  }
}

boost::shared_ptr<ICIMClass> TCIMReference::GetClass() const { return Class(); }

std::map<std::string, TCIMValue> TCIMReference::GetKeyValues() const {
  std::map<std::string, TCIMValue> keys;
  for (const auto& entry : m_keys) keys.insert(entry.second);
  return keys;
}

boost::shared_ptr<ICIMElement> TCIMReference::GetCIMElement(bool) const {
  const auto home = Home();
  if (!home || m_className.empty()) throw THAVException(kHAVNotFound);
  TCIMReference bound = *this;
  if (m_class.expired()) {
    const auto cls = home->GetClass(m_className, {});
    if (!cls) throw THAVException(kHAVNotFound);
    bound.SetClass(cls);
  }
  if (auto instance = home->GetInstance(bound, {})) return instance;
  const auto cls = m_keys.empty() ? home->GetClass(m_className, {}) : nullptr;
  if (!cls) throw THAVException(kHAVNotFound);
  return cls;
}

}  // namespace NORVHAV20
