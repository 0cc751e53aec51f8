// Any text as an object path: it is read here by the rules, letter by letter. What the reader makes
// of it has to be the same; it is written, read again and looked up in a namespace, where a plain
// search over the few instances knows the answer.
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/Check.h"
#include "havcore/TCIMDateTime.h"
#include "havcore/TCIMReference.h"
#include "support/RecordingLogger.h"
#include "support/Repository.h"

namespace {

using namespace havtest;
using havfuzz::Require;
using havfuzz::RequireEqual;

std::string Folded(std::string_view text) {
  std::string folded(text);
  for (char& c : folded)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c | 0x20);
  return folded;
}

bool IsLetter(char c) { return c == '_' || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }

bool IsName(std::string_view text) {
  if (text.empty() || IsDigit(text[0])) return false;
  for (const char c : text)
    if (!IsLetter(c) && !IsDigit(c)) return false;
  return true;
}

struct TPlainKey {
  std::string name;
  bool isQuoted = false;
  std::string text;  // what stands between the quotes, without escapes; else as it is written

  bool Is(std::string_view word) const { return !isQuoted && Folded(text) == word; }
};

struct TPlainPath {
  std::string ns, cls;
  std::map<std::string, TPlainKey> keys;  // by folded name
};

// The number that `text` is in decimal, as a number of C; nothing where it is none, or too large.
std::optional<double> NumberOf(std::string text) {
  if (text == "inf" || text == "-inf" || text == "nan") return std::strtod(text.c_str(), nullptr);
  std::size_t at = text.find_first_of("+-") == 0 ? 1 : 0;
  const auto skipDigits = [&] {
    const auto begin = at;
    while (at < text.size() && IsDigit(text[at])) ++at;
    return at - begin;
  };
  std::size_t digits = skipDigits();
  if (at < text.size() && text[at] == '.') {
    ++at;
    digits += skipDigits();
  }
  if (digits == 0) return {};
  if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
    ++at;
    if (at < text.size() && (text[at] == '+' || text[at] == '-')) ++at;
    if (skipDigits() == 0) return {};
  }
  if (at != text.size()) return {};
  const double number = std::strtod(text.c_str(), nullptr);
  if (std::isinf(number)) return {};
  return number;
}

bool IsTooSmall(const std::string& text) {
  errno = 0;
  std::strtod(text.c_str(), nullptr);
  return errno == ERANGE;
}

// Reads what stands behind the name of the class. `isDoubtful` is set where a number is smaller
// than the smallest: the rules do not say whether that is one.
bool ReadKeys(std::string_view text, TPlainPath& path, bool& isDoubtful) {
  for (;;) {
    TPlainKey key;
    std::size_t at = 0;
    while (at < text.size() && text[at] != '=') key.name += text[at++];
    if (at == text.size() || !IsName(key.name)) return false;
    ++at;
    if (at < text.size() && text[at] == '"') {
      key.isQuoted = true;
      for (++at; at < text.size() && text[at] != '"'; ++at) {
        if (text[at] == '\\') {
          ++at;
          if (at == text.size() || (text[at] != '"' && text[at] != '\\')) return false;
        }
        key.text += text[at];
      }
      if (at == text.size()) return false;
      ++at;
    } else {
      while (at < text.size() && text[at] != ',') key.text += text[at++];
      if (!key.Is("true") && !key.Is("false") && !key.Is("null")) {
        if (!NumberOf(key.text)) return false;
        isDoubtful = isDoubtful || IsTooSmall(key.text);
      }
    }
    const auto name = Folded(key.name);
    if (!path.keys.emplace(name, key).second) return false;
    if (at == text.size()) return true;
    if (text[at] != ',') return false;
    text.remove_prefix(at + 1);
  }
}

std::optional<TPlainPath> ReadPlain(std::string_view text, bool& isDoubtful) {
  TPlainPath path;
  // The name of a namespace ends with the last colon before any value.
  std::size_t colon = std::string_view::npos;
  for (std::size_t i = 0; i < text.size() && text[i] != '='; ++i)
    if (text[i] == ':') colon = i;
  if (colon != std::string_view::npos) {
    path.ns = text.substr(0, colon);
    if (path.ns.empty() || path.ns.find('"') != std::string::npos) return {};
    text.remove_prefix(colon + 1);
  }
  const auto point = text.find('.');
  const auto equals = text.find('=');
  if (point < equals) {
    path.cls = text.substr(0, point);
    if (!ReadKeys(text.substr(point + 1), path, isDoubtful)) return {};
  } else {
    path.cls = text;
  }
  if (!IsName(path.cls) && path.cls != "<root>") return {};
  return path;
}

std::string Quoted(const std::string& text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return quoted + '"';
}

// Where a value stands for one number, its text may be another; then this is what was written.
bool IsSameKeyText(const TPlainKey& key, const std::string& written) {
  if (key.isQuoted) return written == Quoted(key.text);
  for (const char* const word : {"TRUE", "FALSE", "NULL"})
    if (key.Is(Folded(word))) return written == word;
  const auto a = NumberOf(key.text), b = NumberOf(written);
  return b && (*a == *b || (std::isnan(*a) && std::isnan(*b)));
}

// Compares a path that was read without a namespace with the plain one.
void CheckRead(const TCIMReference& read, const TPlainPath& plain, const std::string& text) {
  RequireEqual(read.GetNameSpaceName(), plain.ns, "namespace", text);
  RequireEqual(read.GetClassName(), plain.cls, "class", text);
  const auto values = read.GetKeyValues();
  RequireEqual(values.size(), plain.keys.size(), "number of keys", text);
  std::string path = plain.cls;
  char separator = '.';
  for (const auto& [folded, key] : plain.keys) {
    const auto found = values.find(key.name);
    Require(found != values.end(), "a key is missing");
    RequireEqual(found->second.IsNull(), key.Is("null"), "whether a key is NULL", text);
    std::string written = found->second.ToString(10);
    if (key.isQuoted) {
      RequireEqual(written, key.text, "text of a key", text);
      written = Quoted(written);
    }
    Require(IsSameKeyText(key, written), "a key has another value");
    path += separator + key.name + '=' + written;
    separator = ',';
  }
  RequireEqual(read.GetPath(), path, "path", text);
  RequireEqual(read.GetFullPath(), plain.ns.empty() ? path : plain.ns + ':' + path, "full path",
               text);
}

std::optional<TCIMReference> Read(const std::string& text, const NamespacePtr& home) {
  try {
    return TCIMReference::Parse(text, home);
  } catch (const THAVException& failure) {
    RequireEqual(static_cast<int>(failure.GetStatusCode()), 15, "status", text);
    return {};
  }
}

// What is written reads back, and a buffer gets all of it or nothing.
void CheckWritten(const TCIMReference& path, const NamespacePtr& home) {
  const auto full = path.GetFullPath();
  const auto again = Read(full, home);
  if (!again) havfuzz::Fail("what was written cannot be read: ", full);
  RequireEqual(again->GetFullPath(), full, "the text written again");
  Require(*again == path && !(*again < path) && !(path < *again), "the path read back differs");
  const auto text = path.GetPath();
  std::vector<char> buffer(text.size());
  RequireEqual(path.CopyPath(buffer.data(), text.size() - 1), std::size_t{0}, "a short buffer");
  const auto length = path.CopyPath(buffer.data(), buffer.size());
  Require(length == 0 || std::string_view(buffer.data(), length) == text, "the copy differs");
}

// A namespace with a few instances, and what the keys of each are.
class TWorld {
 public:
  TWorld() {
    const auto disk = repository.Class("T_Disk");
    const auto typed = repository.Allocate("T_Typed");
    repository.Key(typed, "Count", TCIMValue::Null(kCIMUInt32));
    repository.Key(typed, "Ratio", TCIMValue::Null(kCIMReal64));
    repository.Key(typed, "Flag", TCIMValue::Null(kCIMBoolean));
    repository.Key(typed, "When", TCIMValue::Null(kCIMDateTime));
    repository.Key(typed, "Unit", TCIMValue::Null(kCIMChar16));
    typed->AddToNamespace({});
    const auto link = repository.Association("T_Link", "From", disk, "To", typed);
    for (const char* const name : {"one", "a\"b\\c", "", "7"})
      Keep(repository.Instance(disk, {{"Name", std::string(name)}}));
    const auto one = instances.front();
    Keep(repository.Instance(typed, {{"Count", std::uint32_t{7}},
                                     {"Ratio", 0.5},
                                     {"Flag", true},
                                     {"When", TCIMDateTime::Parse("20240229133015.123456+060")},
                                     {"Unit", u'\u20AC'}}));
    Keep(repository.Link(link, "From", one, "To", instances.back()));
    log.Take();
  }

  // The instance that the path leads to; empty: none.
  InstancePtr Find(const TPlainPath& path) const {
    for (const auto& instance : instances)
      if (Folded(instance->GetClass({})->GetName({})) == Folded(path.cls) && Has(instance, path))
        return instance;
    return {};
  }

  Repository repository;
  std::vector<InstancePtr> instances;
  RecordingLogger log;

 private:
  void Keep(const InstancePtr& instance) {
    instances.push_back(instance);
    std::map<std::string, TCIMValue> keys;
    for (const auto& [name, value] : instance->GetReference({}).GetKeyValues())
      keys.emplace(Folded(name), value);
    m_keys.push_back(keys);
  }

  bool Has(const InstancePtr& instance, const TPlainPath& path) const {
    std::size_t place = 0;
    while (instances[place] != instance) ++place;
    const auto& keys = m_keys[place];
    if (keys.size() != path.keys.size()) return false;
    for (const auto& [name, key] : path.keys) {
      const auto found = keys.find(name);
      if (found == keys.end() || !Is(found->second, key)) return false;
    }
    return true;
  }

  bool Is(const TCIMValue& value, const TPlainKey& key) const {
    switch (value.GetType()) {
      case kCIMUInt32:
      case kCIMReal64:
        return !key.isQuoted && NumberOf(key.text) &&
               NumberOf(key.text) == NumberOf(value.ToString(10));
      case kCIMBoolean: return key.Is("true");
      case kCIMDateTime: return key.isQuoted && IsTime(value, key.text);
      case kCIMReference: return key.isQuoted && Leads(value, key.text);
      default: return key.isQuoted && key.text == value.ToString(10);
    }
  }

  static bool IsTime(const TCIMValue& value, const std::string& text) {
    try {
      return TCIMDateTime::Parse(text).ToString() == value.ToString(10);
    } catch (const THAVException&) {
      return false;
    }
  }

  bool Leads(const TCIMValue& value, const std::string& text) const {
    bool isDoubtful = false;
    const auto path = ReadPlain(text, isDoubtful);
    const auto found = path ? Find(*path) : nullptr;
    return found && found->GetReference({}) == static_cast<const TCIMReference&>(value);
  }

  std::vector<std::map<std::string, TCIMValue>> m_keys;
};

void CheckLookUp(const TWorld& world, const TCIMReference& path, const TPlainPath& plain,
                 const std::string& text) {
  const auto expected = world.Find(plain);
  InstancePtr found;
  bool hasClass = true;
  try {
    found = world.repository.ns->GetInstance(path, {});
  } catch (const THAVException& failure) {
    RequireEqual(static_cast<int>(failure.GetStatusCode()), 15, "status of a look-up", text);
    hasClass = false;
  }
  if (found != expected) havfuzz::Fail("another instance is found by ", text);
  bool isThere = true;
  try {
    Require(static_cast<bool>(path.GetCIMElement(false)), "an empty element");
  } catch (const THAVException& failure) {
    RequireEqual(static_cast<int>(failure.GetStatusCode()), 15, "status of resolving", text);
    isThere = false;
  }
  RequireEqual(isThere, expected || (hasClass && plain.keys.empty()), "whether it resolves", text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static TWorld world;
  const std::string text(data, data + size);
  bool isDoubtful = false;
  const auto plain = ReadPlain(text, isDoubtful);
  if (isDoubtful) return 0;
  const auto read = Read(text, {});
  RequireEqual(read.has_value(), plain.has_value(), "whether it is a path", text);
  const auto bound = Read(text, world.repository.ns);
  RequireEqual(bound.has_value(), plain.has_value(), "whether it is a path in a namespace", text);
  if (!read) return 0;
  CheckRead(*read, *plain, text);
  CheckWritten(*read, {});
  CheckWritten(*bound, world.repository.ns);
  CheckLookUp(world, *bound, *plain, text);
  Require(world.log.lines.empty(), "a line is logged");
  return 0;
}
